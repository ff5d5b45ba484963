"""Finds the C library, tells ctypes its functions and makes it ready."""

from __future__ import annotations

import ctypes
import os
import threading
from ctypes import POINTER, c_bool, c_char_p, c_double, c_int32, c_uint32, c_void_p
from pathlib import Path

_NAME = "libportraitcut.so.0"


class FacePosition(ctypes.Structure):
    """TFacePosition."""

    _fields_ = [("xc", c_int32), ("yc", c_int32), ("w", c_int32), ("reserved", c_int32), ("angle", c_double)]


_OUT = POINTER(c_int32)
_HANDLE = POINTER(c_uint32)
_FACE = POINTER(FacePosition)
# c_void_p stands for the arrays: their addresses come from NumPy.
_PROTOTYPES: dict[str, list[object]] = {
    "VIZL_Initialize": [c_char_p],
    "VIZL_GetDetectedFaceConfidence": [_OUT],
    "VIZL_CreateEmptyImage": [_HANDLE],
    "VIZL_FreeImage": [c_uint32],
    "VIZL_LoadImageFromFile": [_HANDLE, c_char_p],
    "VIZL_LoadImageFromFileWithAlpha": [_HANDLE, c_char_p],
    "VIZL_LoadImageFromJpegBuffer": [_HANDLE, c_void_p, c_uint32],
    "VIZL_LoadImageFromPngBuffer": [_HANDLE, c_void_p, c_uint32],
    "VIZL_LoadImageFromPngBufferWithAlpha": [_HANDLE, c_void_p, c_uint32],
    "VIZL_LoadImageFromBuffer": [_HANDLE, c_void_p, c_int32, c_int32, c_int32, c_int32],
    "VIZL_GetImageData": [c_uint32, POINTER(c_void_p), _OUT, _OUT, _OUT, _OUT],
    "VIZL_GetImageBufferSize": [c_uint32, _OUT, c_int32],
    "VIZL_SaveImageToBuffer": [c_uint32, c_void_p, c_int32],
    "VIZL_SaveImageToFile_C": [c_uint32, c_char_p, c_int32],
    "VIZL_CopyImage": [c_uint32, c_uint32],
    "VIZL_ResizeImage": [c_uint32, c_double, c_uint32],
    "VIZL_RotateImage": [c_uint32, c_double, c_uint32],
    "VIZL_RotateImageCenter": [c_uint32, c_double, c_double, c_double, c_uint32],
    "VIZL_CopyRect": [c_uint32, c_int32, c_int32, c_int32, c_int32, c_uint32],
    "VIZL_PutImageAdjustColors": [c_uint32, c_int32, c_int32, c_uint32, c_uint32],
    "VIZL_DetectFace_C": [c_uint32, _FACE, c_int32],
    "VIZL_DetectMultipleFaces_C": [c_uint32, _OUT, _FACE, c_int32, c_int32],
    "VIZL_DetectFacialFeaturesInRegionEx": [c_uint32, _FACE, c_void_p, c_void_p],
    "VIZL_DetectEyesInRegion": [c_uint32, _FACE, c_void_p],
    "VIZL_GetFacePosition_C": [
        *[c_uint32, c_int32, c_int32, c_double, c_double, c_double, c_bool],
        *[_OUT, _OUT, _OUT, _OUT, c_int32],
    ],
    "VIZL_PortraitCut_C": [
        *[c_uint32, c_int32, c_int32, c_double, c_double, c_double, c_bool],
        *[c_uint32, c_int32],
    ],
    "VIZL_ExtractFaceImage": [c_uint32, c_void_p, c_int32, c_int32, _HANDLE, c_void_p],
    "VIZL_SetFaceDetectionParameters_C": [c_bool, c_bool, c_int32, c_int32],
    "VIZL_SetFaceDetectionThreshold_C": [c_int32, c_int32],
    "VIZL_SetJpegCompressionQuality_C": [c_int32, c_int32],
    "pcCreateContextID": [_OUT],
    "pcFreeContextID": [c_int32],
    "pcSetDetectionPerformance_C": [c_int32, c_int32],
}


def library_path() -> str:
    """Where the library is taken from: the file that the environment variable PORTRAITCUT_LIBRARY names, else the one
    that this package carries, else the system's, for which only the name is told."""
    chosen = os.environ.get("PORTRAITCUT_LIBRARY")
    if chosen:
        return chosen
    carried = Path(__file__).with_name(_NAME)
    return str(carried) if carried.exists() else _NAME


def _load() -> ctypes.CDLL:
    path = library_path()
    try:
        library = ctypes.CDLL(path)
        for name, arguments in _PROTOTYPES.items():
            function = getattr(library, name)
            function.argtypes = arguments
            function.restype = c_int32
        library.VIZL_GetVersion.argtypes = []
        library.VIZL_GetVersion.restype = c_char_p
    except (OSError, AttributeError) as error:
        raise ImportError(f"portraitcut: the C library can't be used: {error}", path=path) from error
    return library


def _make_ready(library: ctypes.CDLL) -> None:
    # An application that has this very library in use already must not lose its handles to a second start.
    if library.VIZL_GetDetectedFaceConfidence(ctypes.byref(c_int32())) != 0 and library.VIZL_Initialize(None) != 0:
        raise ImportError("portraitcut: the C library can't be started: memory is short", path=library_path())


lib = _load()
# Never finalised: at the end of the process threads may still be in a call.
_make_ready(lib)

search_lock = threading.Lock()
"""Held while points are searched: the search draws from the C library's one sequence of random numbers."""


def version() -> str:
    """The version of the library as "major.minor.patch"."""
    text: bytes = lib.VIZL_GetVersion()
    return text.decode("ascii")
