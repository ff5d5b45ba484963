// The format of a picture file, told by its name.
#pragma once

enum class TFileFormat { unknown, bmp, jpeg, png };

// By the last letters of the name, in upper or lower case; no dot is needed.
TFileFormat FileFormatOf(const char* fileName);

// Whether fopen succeeds. "wbe" makes the file, or empties it.
bool CanOpenFile(const char* fileName, const char* openMode);
