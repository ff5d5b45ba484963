// Names of the forty points, in the order of the library; the Python package has the same. Left and right are the
// viewer's: of a pair, left has the smaller x while the face is upright.
#ifndef APPS_PORTRAITCUT_POINT_NAMES_H
#define APPS_PORTRAITCUT_POINT_NAMES_H

#include "result.h"

inline constexpr const char* kPointNames[kPointCount] = {
    "eye_left",          "eye_right",          "nose_tip",          "mouth_left",         "mouth_right",
    "forehead_top",      "forehead_left",      "forehead_right",    "temple_left",        "temple_right",
    "side_left_at_eyes", "side_right_at_eyes", "jaw_left",          "jaw_right",          "chin_left",
    "chin_right",        "brow_left_outer",    "brow_left_inner",   "brow_right_inner",   "brow_right_outer",
    "upper_lip",         "lower_lip",          "nose_bridge",       "eye_left_outer",     "eye_left_inner",
    "eye_right_inner",   "eye_right_outer",    "nostril_left",      "nostril_right",      "chin",
    "cheek_left",        "cheek_right",        "side_left_at_nose", "side_right_at_nose", "brow_left_middle",
    "brow_right_middle", "upper_lip_left",     "upper_lip_right",   "lower_lip_left",     "lower_lip_right",
};

#endif
