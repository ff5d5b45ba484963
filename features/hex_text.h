// Numbers in hexadecimal text, two upper-case digits a byte, high digit first. Other characters count as 0.
#pragma once

extern const char hex_codes[17];

// A new text of two digits, which the caller releases with delete[].
char* byte2hex(unsigned char value);
// The value of two digits.
char hex2byte(const char* digits);
// The signed 16-bit value of four digits.
int hex2int(const char* digits);
