"""Settings of detection and saving."""

from __future__ import annotations

import ctypes
import enum
from typing import Any

from ._errors import check
from ._library import lib
from ._types import int32


class Performance(enum.IntEnum):
    """How thoroughly to look for faces."""

    FAST = 0
    """Upright faces only, in a picture reduced to 100 pixels."""
    BALANCED = 1
    """Tilted faces too, 256 pixels."""
    THOROUGH = 2
    """Tilted faces with their angle, 384 pixels; the default everywhere."""


class Context:
    """A set of settings. It can't be changed, so any number of threads may share it.

    performance: sets the first three of the others, which are then not looked at.
    tilted: look for faces tilted by about 15 degrees to either side too.
    fine_angle: work out each face's angle in steps of 1.5 degrees.
    working_width: detection scales the longer side of the picture to this many pixels, 20 or more; faces below about 20
        pixels there are not seen.
    threshold: how many like hits make a face, 1 or more. More gives fewer false faces and loses more true ones.
    quality: of JPEG files, 0 to 100.

    Raises InvalidArgumentError for a value out of range.

    >>> image = Image.load("average_faces.png")
    >>> len(image.faces(Context(Performance.FAST))) < len(image.faces())
    True
    """

    __slots__ = ("_id",)

    def __init__(
        self,
        performance: Performance | None = None,
        *,
        tilted: bool = True,
        fine_angle: bool = True,
        working_width: int = 384,
        threshold: int = 3,
        quality: int = 90,
    ) -> None:
        self._id = 0
        made = ctypes.c_int32()
        check(lib.pcCreateContextID(ctypes.byref(made)))
        self._id = made.value
        if performance is not None:
            check(lib.pcSetDetectionPerformance_C(performance, self._id))
        else:
            check(lib.VIZL_SetFaceDetectionParameters_C(tilted, fine_angle, int32(working_width), self._id))
        check(lib.VIZL_SetFaceDetectionThreshold_C(int32(threshold), self._id))
        check(lib.VIZL_SetJpegCompressionQuality_C(int32(quality), self._id))

    # The default keeps the function alive for contexts that end with the interpreter.
    def __del__(self, _free: Any = lib.pcFreeContextID) -> None:
        if self._id > 0:
            _free(self._id)


def id_of(context: Context | None) -> int:
    """0 are the settings of the process, which this package leaves at their defaults."""
    return 0 if context is None else context._id
