"""What detections answer."""

from __future__ import annotations

import enum
from dataclasses import dataclass
from typing import NamedTuple

import numpy as np
import numpy.typing as npt

from ._library import FacePosition


class Face(NamedTuple):
    """A face: its centre, the side of the square around it in pixels, and by how many degrees rotate() turns it upright."""

    x: int
    y: int
    width: int
    angle: float = 0.0


class Rect(NamedTuple):
    """A rectangle of pixels; both corners belong to it.

    >>> Rect(10, 20, 39, 59).size
    (30, 40)
    >>> numpy.zeros((100, 100))[Rect(10, 20, 39, 59).slices].shape
    (40, 30)
    """

    x1: int
    y1: int
    x2: int
    y2: int

    @property
    def size(self) -> tuple[int, int]:
        """Width and height in pixels."""
        return self.x2 - self.x1 + 1, self.y2 - self.y1 + 1

    @property
    def slices(self) -> tuple[slice, slice]:
        """An index into an array of pixels, for a rectangle inside the picture."""
        return slice(self.y1, self.y2 + 1), slice(self.x1, self.x2 + 1)


@dataclass(frozen=True, eq=False)
class Features:
    """The forty points of a face, in the order of Node.

    points: int32, (40, 2), x and y in pixels.
    confidences: float32, (40,), higher is better, at most 1.5; below 0.8 a point is often wrong.
    """

    points: npt.NDArray[np.int32]
    confidences: npt.NDArray[np.float32]


class Node(enum.IntEnum):
    """The points of a face by name. Left is the smaller x while the face is upright."""

    EYE_LEFT = 0
    EYE_RIGHT = 1
    NOSE_TIP = 2
    MOUTH_LEFT = 3
    MOUTH_RIGHT = 4
    FOREHEAD_TOP = 5
    FOREHEAD_LEFT = 6
    FOREHEAD_RIGHT = 7
    TEMPLE_LEFT = 8
    TEMPLE_RIGHT = 9
    SIDE_LEFT_AT_EYES = 10
    SIDE_RIGHT_AT_EYES = 11
    JAW_LEFT = 12
    JAW_RIGHT = 13
    CHIN_LEFT = 14
    CHIN_RIGHT = 15
    BROW_LEFT_OUTER = 16
    BROW_LEFT_INNER = 17
    BROW_RIGHT_INNER = 18
    BROW_RIGHT_OUTER = 19
    UPPER_LIP = 20
    LOWER_LIP = 21
    NOSE_BRIDGE = 22
    EYE_LEFT_OUTER = 23
    EYE_LEFT_INNER = 24
    EYE_RIGHT_INNER = 25
    EYE_RIGHT_OUTER = 26
    NOSTRIL_LEFT = 27
    NOSTRIL_RIGHT = 28
    CHIN = 29
    CHEEK_LEFT = 30
    CHEEK_RIGHT = 31
    SIDE_LEFT_AT_NOSE = 32
    SIDE_RIGHT_AT_NOSE = 33
    BROW_LEFT_MIDDLE = 34
    BROW_RIGHT_MIDDLE = 35
    UPPER_LIP_LEFT = 36
    UPPER_LIP_RIGHT = 37
    LOWER_LIP_LEFT = 38
    LOWER_LIP_RIGHT = 39


def face_of(position: FacePosition) -> Face:
    return Face(position.xc, position.yc, position.w, position.angle)


def position_of(face: Face) -> FacePosition:
    return FacePosition(int32(face.x), int32(face.y), int32(face.width), 0, face.angle)


def int32(value: int) -> int:
    """The value, which ctypes would cut to its lowest bits if it were too large."""
    if not -(2**31) <= value < 2**31:
        raise OverflowError(f"{value} does not fit into 32 bits")
    return value
