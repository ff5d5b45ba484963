// libpng's error functions, made silent.
#pragma once

#include <png.h>

// Jump to the place set by setjmp(png_jmpbuf(png)); between the two no object with a destructor may live.
[[noreturn]] void pngJumpOut(png_structp png, png_const_charp message);
void pngDropWarning(png_structp png, png_const_charp message);
