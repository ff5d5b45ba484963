// Pictures for tests of the eye search.
#pragma once

#include <memory>
#include <random>
#include <vector>

#include "eyes/eye_model.h"
#include "eyes/eye_window.h"

class TIppiImage;

// 32 by 32 pixels with edges of all kinds, row by row.
std::vector<unsigned char> texturedWindow(std::mt19937& random);
// A textured gray image of any size.
void fillTextured(TIppiImage& image, int width, int height, std::mt19937& random);
// Weights as large as trained ones.
std::unique_ptr<eyeFeature> randomModel(std::mt19937& random);
const TEyeHMaxFeatures& testPrototype();
// The window of a textured frame.
std::unique_ptr<TEyeWindow> texturedEyeWindow(std::mt19937& random);
