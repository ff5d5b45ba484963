// The local brightness of a picture.
#pragma once

#include "image/TIppiImage.h"

// Makes `result` an imRGBA32f image of the size of `source`, an imRGBA32 image: channels 0 to 2 hold the Gaussian mean
// of the same channel over about 1.5 sigma pixels, channel 3 holds 0. Beyond the frame the nearest pixel counts. A
// sigma that is not above 0, or so large that its kernel finds no memory, gives zeros.
void ApplyGaussianBlurAC4R(TIppiImage& source, TIppiImage& result, float sigma);
