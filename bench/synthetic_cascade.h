// A cascade to time the scan with, whatever cascade the library carries.
#pragma once

#include <vector>

class TIppiImage;

// A stream of 22 stages with the classifier counts of a full frontal cascade. The features are random; the
// stage thresholds are measured on `image` so that about half of the windows of all scales survive each stage, as with
// a trained cascade on a photo.
std::vector<unsigned char> makeSyntheticCascade(TIppiImage& image);
