"""Finds faces in still pictures, tells forty points and the eyes of each, and cuts portraits out.

>>> import portraitcut
>>> with portraitcut.Image.load("average_faces.png") as image:
...     portrait = image.portrait(240, 320, by_eyes=True)
>>> portrait.size
(240, 320)

Pixels come from NumPy arrays and go to them, rows from the top, channels red, green, blue and perhaps alpha:

>>> import numpy
>>> gray = numpy.full((90, 120), 128, numpy.uint8)
>>> portraitcut.Image.from_array(gray).faces()
[]

Coordinates are in pixels from the top left corner, x to the right and y downwards. Angles are in degrees, positive
clockwise. A picture is taken as it is stored: turn photos upright by their orientation tag first, with Pillow for
example: `Image.from_array(PIL.ImageOps.exif_transpose(photo))`.

Threads. Calls release the interpreter's lock, so threads run side by side: loading, saving, detection, eyes, cutting and
all else, on one image too. One thing takes turns: the search for the forty points, which features() and anything with
`by_eyes` use. It draws from the C library's `rand`, of which a process has one; a lock in this package keeps its results
the same from run to run, as long as nothing else in the process calls `rand` meanwhile. To search on several cores use
processes.

Memory. The pixels of an image are freed with the last of it: the Image itself or a view of its pixels, whichever lives
longer. `close`, or a `with` block, ends the Image's share without waiting for the garbage collector.
"""

from ._context import Context, Performance
from ._cut import cut
from ._errors import (
    BadImageFileError,
    BufferTooSmallError,
    CannotCreateFileError,
    CannotOpenFileError,
    ImageIOError,
    ImageNotFoundError,
    ImageTooSmallError,
    InvalidArgumentError,
    NoFaceError,
    PortraitCutError,
    UnknownExtensionError,
)
from ._image import Image
from ._library import library_path, version
from ._types import Face, Features, Node, Rect

__version__ = version()
"""The version of the library in use; the package in a wheel has the same."""

__all__ = [
    "BadImageFileError",
    "BufferTooSmallError",
    "CannotCreateFileError",
    "CannotOpenFileError",
    "Context",
    "Face",
    "Features",
    "Image",
    "ImageIOError",
    "ImageNotFoundError",
    "ImageTooSmallError",
    "InvalidArgumentError",
    "NoFaceError",
    "Node",
    "Performance",
    "PortraitCutError",
    "Rect",
    "UnknownExtensionError",
    "cut",
    "library_path",
    "version",
]
