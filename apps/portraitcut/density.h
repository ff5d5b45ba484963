// The size on paper of a picture file.
#ifndef APPS_PORTRAITCUT_DENSITY_H
#define APPS_PORTRAITCUT_DENSITY_H

#include <vector>

// The bytes of a JPEG, PNG or BMP file as the library writes it, telling so many dots per inch; unchanged for 0.
std::vector<unsigned char> withDensity(std::vector<unsigned char> file, double dotsPerInch);

#endif
