"""Ownership of one image inside the library."""

from __future__ import annotations

import ctypes
from typing import Any, Callable

import numpy as np
import numpy.typing as npt

from ._errors import check
from ._library import lib

_NONE = 0xFFFFFFFF
CHANNELS = (1, 3, 4)
"""Indexed by the library's number of a layout."""


class Handle:
    """Frees the image when the last reference goes: that of an Image, of a view or of a running call."""

    __slots__ = ("number",)

    def __init__(self, number: int) -> None:
        self.number = number

    # The default keeps the function alive for handles that end with the interpreter.
    def __del__(self, _free: Any = lib.VIZL_FreeImage) -> None:
        _free(self.number)


def make(call: Callable[[Any], Any], filename: str | None = None) -> Handle:
    """The handle that `call` writes to its argument. Some functions give one although they fail; it is freed then."""
    number = ctypes.c_uint32(_NONE)
    code = call(ctypes.byref(number))
    handle = Handle(number.value) if number.value != _NONE else None
    check(code, filename)
    assert handle is not None
    return handle


class _Pixels:
    """Lets NumPy see the pixels of a handle, top row first, and keeps the handle as long as any array looks at them."""

    def __init__(self, handle: Handle) -> None:
        bottom = ctypes.c_void_p()
        width, height, step, mode = (ctypes.c_int32() for _ in range(4))
        sizes = (ctypes.byref(width), ctypes.byref(height), ctypes.byref(step), ctypes.byref(mode))
        check(lib.VIZL_GetImageData(handle.number, ctypes.byref(bottom), *sizes))
        self.handle = handle
        channels = CHANNELS[mode.value]
        self.shape = (height.value, width.value, channels)
        self.__array_interface__ = {
            "version": 3,
            "typestr": "|u1",
            "shape": self.shape,
            "strides": (-step.value, channels, 1),
            "data": ((bottom.value or 0) + (height.value - 1) * step.value, True),
        }


def view_of(handle: Handle) -> npt.NDArray[np.uint8]:
    """A read-only view of the pixels, (height, width, 3 or 4)."""
    pixels = _Pixels(handle)
    return np.asarray(pixels) if 0 not in pixels.shape else np.empty(pixels.shape, np.uint8)
