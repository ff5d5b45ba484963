// Groups of people who look alike, found in the pictures themselves: the labels name only the source.
#pragma once

#include <string>
#include <vector>

#include "training/face_labels.h"

// Splits the faces into `groupCount` groups by the colours of head and hair (k-means on small upright
// pictures), takes the `wanted` groups that differ most, the darkest first, and gives of each the
// `groupSize` faces nearest to its middle.
std::vector<std::vector<const FaceLabel*>> appearanceGroups(const std::vector<const FaceLabel*>& faces,
                                                            const std::string& folder, std::size_t groupCount,
                                                            std::size_t wanted, std::size_t groupSize);
