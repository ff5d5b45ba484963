"""The one picture class."""

from __future__ import annotations

import ctypes
import os
from contextlib import nullcontext
from types import TracebackType
from typing import Any, Callable, ContextManager, Literal, overload

import numpy as np
import numpy.typing as npt

from ._context import Context, id_of
from ._errors import BufferTooSmallError, ImageIOError, check
from ._handle import CHANNELS, Handle, make, view_of
from ._library import FacePosition, lib, search_lock
from ._types import Face, Features, Rect, face_of, int32, position_of

Path = os.PathLike[str] | os.PathLike[bytes] | str | bytes
_MODES = {"L": 0, "RGB": 1, "RGBA": 2}
_NO_FACE = -7
_PNG = b"\x89PNG"
_MANY_FACES = 256


def _name(path: Path) -> tuple[bytes, str]:
    """The name for the library and for people. One with a zero byte would open another file than it shows."""
    encoded = os.fsencode(path)
    if b"\0" in encoded:
        raise ValueError("embedded null byte in a file name")
    return encoded, os.fsdecode(encoded)


def _lendable(array: npt.ArrayLike) -> npt.NDArray[np.uint8]:
    """The pixels so that the library can read them where they are: a copy only if they lie otherwise."""
    pixels = np.asarray(array)
    if pixels.dtype != np.uint8:
        raise TypeError(f"pixels are of uint8, not {pixels.dtype}")
    if pixels.ndim == 2:
        pixels = pixels[:, :, np.newaxis]
    if pixels.ndim != 3 or pixels.shape[2] not in CHANNELS:
        raise ValueError(f"pixels have a shape of (height, width) or (height, width, 1, 3 or 4), not {pixels.shape}")
    height, width, channels = pixels.shape
    down, right, deep = pixels.strides
    whole_pixels = (deep == 1 or channels == 1) and (right == channels or width == 1)
    whole_rows = height == 1 or width * channels <= abs(down) < 2**31
    return pixels if whole_pixels and whole_rows else np.ascontiguousarray(pixels)


class Image:
    """A picture inside the library. What changes a picture gives a new Image; an Image never changes.

    Image() is empty, 0 by 0 pixels. The methods raise PortraitCutError's subclasses, and ValueError once the image is
    closed. Any number of threads may use one image at once, and close it too.
    """

    __slots__ = ("_owner",)

    def __init__(self) -> None:
        self._owner: Handle | None = make(lib.VIZL_CreateEmptyImage)

    # Making

    @classmethod
    def _of(cls, handle: Handle) -> Image:
        image = cls.__new__(cls)
        image._owner = handle
        return image

    @classmethod
    def load(cls, path: Path, *, alpha: bool = False) -> Image:
        """Loads a BMP, JPEG or PNG file, which the end of its name tells; with alpha, 255 where the file has none.

        Raises ImageNotFoundError, a FileNotFoundError, CannotOpenFileError, UnknownExtensionError, BadImageFileError.

        >>> Image.load("average_faces.png").size
        (600, 420)
        """
        name, shown = _name(path)
        function = lib.VIZL_LoadImageFromFileWithAlpha if alpha else lib.VIZL_LoadImageFromFile
        return cls._of(make(lambda made: function(made, name), shown))

    @classmethod
    def decode(cls, data: Any, *, alpha: bool = False) -> Image:
        """Decodes a PNG or JPEG file in memory: bytes or anything else with a buffer, which is not copied.

        Raises ImageIOError for a file that is neither or damaged.

        >>> with open("average_face_1.jpg", "rb") as file:
        ...     Image.decode(file.read()).size
        (288, 360)
        """
        file = np.frombuffer(data, np.uint8)
        if file.nbytes >= 2**32:
            raise ImageIOError(-5)
        png = file[:4].tobytes() == _PNG
        function = lib.VIZL_LoadImageFromJpegBuffer
        if png:
            function = lib.VIZL_LoadImageFromPngBufferWithAlpha if alpha else lib.VIZL_LoadImageFromPngBuffer
        image = cls._of(make(lambda made: function(made, file.ctypes.data, file.nbytes)))
        return cls.from_array(image.to_array("RGBA")) if alpha and not png else image

    @classmethod
    def from_array(cls, array: npt.ArrayLike) -> Image:
        """Takes over pixels of uint8: (height, width) or (height, width, 1) for gray, else 3 or 4 channels.

        The library reads the array where it lies, rows of any distance and order included, and keeps nothing of it.
        Only an array whose channels or columns lie apart is copied first. Gray becomes a picture of three channels.

        >>> picture = numpy.zeros((40, 60, 3), numpy.uint8)
        >>> Image.from_array(picture[::-2, 10:]).size
        (50, 20)
        """
        pixels = _lendable(array)
        height, width, channels = pixels.shape
        if pixels.size == 0:
            return cls()
        down = int32(pixels.strides[0] if height > 1 else width * channels)
        shape = (int32(width), int32(height), down, CHANNELS.index(channels))
        return cls._of(make(lambda made: lib.VIZL_LoadImageFromBuffer(made, pixels.ctypes.data, *shape)))

    # Life

    def close(self) -> None:
        """Lets go of the pixels now; they stay as long as a view of them or a running call needs them."""
        self._owner = None

    def __enter__(self) -> Image:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None) -> None:
        self.close()

    @property
    def _handle(self) -> Handle:
        if self._owner is None:
            raise ValueError("the image is closed")
        return self._owner

    def __repr__(self) -> str:
        return "<portraitcut.Image, closed>" if self._owner is None else "<portraitcut.Image, {} by {}>".format(*self.size)

    # Reading out

    @property
    def size(self) -> tuple[int, int]:
        """Width and height in pixels."""
        height, width = self.pixels.shape[:2]
        return width, height

    @property
    def pixels(self) -> npt.NDArray[np.uint8]:
        """The pixels without a copy: read-only, (height, width, 3 or 4). They outlive the image.

        >>> pixels = Image.load("average_faces.png").pixels
        >>> pixels.shape, pixels.flags.owndata, pixels.flags.writeable
        ((420, 600, 3), False, False)
        """
        return view_of(self._handle)

    def __array__(self, dtype: npt.DTypeLike | None = None, copy: bool | None = None) -> npt.NDArray[Any]:
        return np.array(self.pixels, dtype) if copy else np.asarray(self.pixels, dtype)

    def to_array(
        self, mode: Literal["L", "RGB", "RGBA"] = "RGB", out: npt.NDArray[np.uint8] | None = None
    ) -> npt.NDArray[np.uint8]:
        """The pixels as an array of the caller's, converted on the way: gray (height, width), else (height, width, 3 or 4).

        out: where to write them instead of a new array: uint8, C-contiguous, of that shape; it is returned.
        Raises BufferTooSmallError for another one.

        >>> Image.load("average_faces.png").to_array("L").shape
        (420, 600)
        """
        handle, layout = self._handle, _MODES[mode]
        width, height = self.size
        shape = (height, width) if layout == 0 else (height, width, CHANNELS[layout])
        if out is None:
            out = np.empty(shape, np.uint8)
        elif out.dtype != np.uint8 or out.shape != shape or not out.flags.c_contiguous or not out.flags.writeable:
            raise BufferTooSmallError(-8)
        if out.size:
            check(lib.VIZL_SaveImageToBuffer(handle.number, out.ctypes.data, layout))
        return out

    def save(self, path: Path, *, quality: int | None = None) -> None:
        """Saves a BMP or PNG file if the name ends so, else a JPEG file of a quality from 0 to 100, by default 90.

        An existing file is overwritten. Raises CannotCreateFileError, or ImageIOError if it can't be written whole.
        """
        name, shown = _name(path)
        handle = self._handle
        context = None if quality is None else Context(quality=quality)
        check(lib.VIZL_SaveImageToFile_C(handle.number, name, id_of(context)), shown)

    # Image to image

    def _derive(self, operation: Callable[[int, int], Any]) -> Image:
        handle = self._handle
        made = make(lib.VIZL_CreateEmptyImage)
        check(operation(handle.number, made.number))
        return Image._of(made)

    def copy(self) -> Image:
        """A copy of the pixels."""
        return self._derive(lambda source, made: lib.VIZL_CopyImage(source, made))

    def resize(self, ratio: float) -> Image:
        """Scales by `ratio`, destination by source. For a side of n pixels take (n + 0.4) / side.

        >>> Image.load("average_faces.png").resize(300.4 / 600).size
        (300, 210)
        """
        return self._derive(lambda source, made: lib.VIZL_ResizeImage(source, ratio, made))

    def rotate(self, angle: float, center: tuple[float, float] | None = None) -> Image:
        """Turns by `angle` degrees, clockwise, about the middle or another place; the size stays, what is missing is black."""
        if center is None:
            return self._derive(lambda source, made: lib.VIZL_RotateImage(source, angle, made))
        x, y = center
        return self._derive(lambda source, made: lib.VIZL_RotateImageCenter(source, angle, x, y, made))

    def crop(self, rect: Rect | tuple[int, int, int, int]) -> Image:
        """Cuts out a rectangle x1, y1, x2, y2; both corners belong to it. What lies outside the picture is black.

        >>> Image.load("average_faces.png").crop(Rect(10, 10, 29, 39)).size
        (20, 30)
        """
        corners = [int32(value) for value in rect]
        return self._derive(lambda source, made: lib.VIZL_CopyRect(source, *corners, made))

    def place_on(self, back: Image, x: int, y: int) -> Image:
        """Puts this picture onto `back` with its top left pixel at (x, y), its colours matched; both need alpha."""
        ground, place = back._handle, (int32(x), int32(y))
        return self._derive(lambda source, made: lib.VIZL_PutImageAdjustColors(source, *place, ground.number, made))

    # Faces

    def face(self, context: Context | None = None) -> Face | None:
        """The strongest face, or None. Raises ImageTooSmallError below 20 by 20 pixels.

        >>> face = Image.load("average_face_1.jpg").face()
        >>> 100 < face.width < 200
        True
        """
        handle, found = self._handle, FacePosition()
        code = lib.VIZL_DetectFace_C(handle.number, ctypes.byref(found), id_of(context))
        if code == _NO_FACE:
            return None
        check(code)
        return face_of(found)

    def faces(self, context: Context | None = None) -> list[Face]:
        """All faces, an empty list if there are none. Raises ImageTooSmallError below 20 by 20 pixels.

        >>> len(Image.load("average_faces.png").faces()) >= 7
        True
        """
        handle, room = self._handle, _MANY_FACES
        while True:
            found, count = (FacePosition * room)(), ctypes.c_int32()
            size = ctypes.sizeof(found)
            code = lib.VIZL_DetectMultipleFaces_C(handle.number, ctypes.byref(count), found, size, id_of(context))
            if code == _NO_FACE:
                return []
            check(code)
            # What finds no room is dropped, so a full array may not be all.
            if count.value < room:
                return [face_of(position) for position in found[: count.value]]
            room *= 8

    @overload
    def features(self, face: Face, context: Context | None = None) -> Features:
        ...

    @overload
    def features(self, face: None = None, context: Context | None = None) -> Features | None:
        ...

    def features(self, face: Face | None = None, context: Context | None = None) -> Features | None:
        """The forty points of a face; without one, of the strongest face or None if there is none.

        Searches of one process take turns, see the package's text.

        >>> features = Image.load("average_face_1.jpg").features()
        >>> features.points[Node.NOSE_TIP].shape
        (2,)
        """
        handle = self._handle
        # The detection is kept out of the lock.
        face = self.face(context) if face is None else face
        if face is None:
            return None
        position, points, confidences = position_of(face), np.zeros((40, 2), np.int32), np.zeros(40, np.float32)
        to = (points.ctypes.data, confidences.ctypes.data)
        with search_lock:
            code = lib.VIZL_DetectFacialFeaturesInRegionEx(handle.number, ctypes.byref(position), *to)
        check(code)
        return Features(points, confidences)

    def eyes(self, face: Face) -> npt.NDArray[np.int32]:
        """The centres of the eyes of a face, (2, 2), the one at the smaller x first. The face counts as upright."""
        handle, points, position = self._handle, np.zeros((40, 2), np.int32), position_of(face)
        check(lib.VIZL_DetectEyesInRegion(handle.number, ctypes.byref(position), points.ctypes.data))
        return points[:2].copy()

    # Portraits

    def portrait_frame(
        self,
        width: int,
        height: int,
        *,
        scale: float = 1.0,
        shift: tuple[float, float] = (0.0, 0.0),
        by_eyes: bool = False,
        context: Context | None = None,
    ) -> Rect:
        """The rectangle that portrait() would cut out; the arguments are the same."""
        handle = self._handle
        corners = [ctypes.c_int32() for _ in range(4)]
        framing = (int32(width), int32(height), scale, *shift, by_eyes)
        with _turns(by_eyes):
            code = lib.VIZL_GetFacePosition_C(handle.number, *framing, *map(ctypes.byref, corners), id_of(context))
        check(code)
        return Rect(*(corner.value for corner in corners))

    def portrait(
        self,
        width: int,
        height: int,
        *,
        scale: float = 1.0,
        shift: tuple[float, float] = (0.0, 0.0),
        by_eyes: bool = False,
        context: Context | None = None,
    ) -> Image:
        """Cuts out the largest face in an upright rectangle and scales it to exactly width by height pixels.

        scale: zoom; 2 shows half as much around the face, 0.6 the shoulders.
        shift: how far the centre lies from the face's, right and down, in natural widths and heights of the rectangle.
        by_eyes: search the points of the face and frame by its eyes; such calls take turns, see the package's text.
        Raises NoFaceError and ImageTooSmallError.

        >>> Image.load("average_faces.png").portrait(300, 400, scale=0.8).size
        (300, 400)
        """
        framing = (int32(width), int32(height), scale, *shift, by_eyes)
        with _turns(by_eyes):
            return self._derive(lambda source, made: lib.VIZL_PortraitCut_C(source, *framing, made, id_of(context)))

    def extract_face(self, features: Features, width: int) -> tuple[Image, npt.NDArray[np.int32]]:
        """Cuts out the square around the points of a face, scales it to `width`, and tells the points in it, (40, 2)."""
        handle, points = self._handle, np.array(features.points, np.int32, order="C")
        if points.shape != (40, 2):
            raise ValueError(f"forty points are needed, not {points.shape}")
        side, at = int32(width), points.ctypes.data
        made = make(lambda to: lib.VIZL_ExtractFaceImage(handle.number, at, side, side, to, at))
        return Image._of(made), points


def _turns(by_eyes: bool) -> ContextManager[Any]:
    if by_eyes:
        return search_lock
    return nullcontext()
