"""The codes of the library as exceptions."""

from __future__ import annotations

import errno as errno_codes
import os
from typing import Any

_TEXTS = {
    -4: "an argument is out of range, or memory is short",
    -5: "the picture can't be decoded or written",
    -6: "the picture is smaller than 20 by 20 pixels",
    -7: "no face found",
    -8: "the buffer is too small",
    -9: "the name does not end in bmp, jpg, jpe, jfif, jpeg or png",
    -10: "the file can't be opened",
    -11: "the file can't be created",
    -12: "the file is damaged or not of the kind that its name tells",
}


class PortraitCutError(Exception):
    """A function of the library answered with a code other than 0.

    code: the code, negative.
    filename: the file that it is about, or None.
    errno: the operating system's reason where one is known, or None.

    >>> try:
    ...     Image.load("average_faces.csv")
    ... except PortraitCutError as error:
    ...     print(error.code, error)
    -9 average_faces.csv: the name does not end in bmp, jpg, jpe, jfif, jpeg or png
    """

    code: int
    filename: Any
    errno: Any

    def __init__(self, code: int, filename: str | None = None, errno: int | None = None) -> None:
        text = _TEXTS.get(code, f"unknown code {code}")
        if errno is not None:
            text = f"{text} ({os.strerror(errno)})"
        super().__init__(f"{filename}: {text}" if filename is not None else text)
        self.code = code
        self.filename = filename
        self.errno = errno

    def __str__(self) -> str:
        return str(self.args[0])

    def __reduce__(self) -> tuple[Any, ...]:
        # OSError would repeat the text as arguments, which this constructor doesn't take.
        return type(self), (self.code, self.filename, self.errno)


class InvalidArgumentError(PortraitCutError, ValueError):
    """A number out of range, a result too large, or memory is short (-4)."""


class ImageIOError(PortraitCutError, OSError):
    """A picture in memory can't be decoded, or a file can't be written (-5)."""


class ImageTooSmallError(PortraitCutError, ValueError):
    """Detection needs at least 20 by 20 pixels (-6)."""


class NoFaceError(PortraitCutError, LookupError):
    """A portrait was wanted of a picture in which no face was found (-7)."""


class BufferTooSmallError(PortraitCutError, ValueError):
    """The array for a result has no room for it (-8)."""


class UnknownExtensionError(PortraitCutError, ValueError):
    """The name of a file to load ends in no known extension (-9)."""


class CannotOpenFileError(PortraitCutError, OSError):
    """A file to load can't be opened for reading (-10)."""


class ImageNotFoundError(CannotOpenFileError, FileNotFoundError):
    """A file to load is not there (-10)."""


class CannotCreateFileError(PortraitCutError, OSError):
    """A file to save can't be opened for writing (-11)."""


class BadImageFileError(PortraitCutError, ValueError):
    """The file is there and its extension known, but decoding failed (-12)."""


_CLASSES: dict[int, type[PortraitCutError]] = {
    -4: InvalidArgumentError,
    -5: ImageIOError,
    -6: ImageTooSmallError,
    -7: NoFaceError,
    -8: BufferTooSmallError,
    -9: UnknownExtensionError,
    -10: CannotOpenFileError,
    -11: CannotCreateFileError,
    -12: BadImageFileError,
}


def _why_not_open(filename: str) -> int | None:
    """The library doesn't tell why it could not open a file, so the file is asked once more."""
    try:
        with open(filename, "rb"):
            return None
    except OSError as error:
        return error.errno


def check(code: int, filename: str | None = None) -> None:
    """Raises the exception of a code, none for 0."""
    if code == 0:
        return
    errno = _why_not_open(filename) if code == -10 and filename is not None else None
    if errno == errno_codes.ENOENT:
        raise ImageNotFoundError(code, filename, errno)
    raise _CLASSES.get(code, PortraitCutError)(code, filename, errno)
