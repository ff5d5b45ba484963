// Names of the forty points, in the order of the library. Left and right are the viewer's: of a pair, left has the
// smaller x while the face is upright.
#ifndef APPS_PORTRAITCUT_POINT_NAMES_H
#define APPS_PORTRAITCUT_POINT_NAMES_H

#include "result.h"

inline constexpr const char* kPointNames[kPointCount] = {
    "left_eye",
    "right_eye",
    "nose_tip",
    "left_mouth_corner",
    "right_mouth_corner",
    "forehead_top",
    "left_upper_forehead",
    "right_upper_forehead",
    "left_temple",
    "right_temple",
    "left_face_side_at_eyes",
    "right_face_side_at_eyes",
    "left_jaw",
    "right_jaw",
    "left_chin_side",
    "right_chin_side",
    "left_brow_outer_end",
    "left_brow_inner_end",
    "right_brow_inner_end",
    "right_brow_outer_end",
    "upper_lip_middle",
    "lower_lip_middle",
    "nose_bridge",
    "left_eye_outer_corner",
    "left_eye_inner_corner",
    "right_eye_inner_corner",
    "right_eye_outer_corner",
    "left_nostril",
    "right_nostril",
    "chin",
    "left_lower_cheek",
    "right_lower_cheek",
    "left_face_side_at_nose",
    "right_face_side_at_nose",
    "left_brow_middle",
    "right_brow_middle",
    "left_upper_lip",
    "right_upper_lip",
    "left_lower_lip",
    "right_lower_lip",
};

#endif
