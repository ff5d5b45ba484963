"""From a file to a file."""

from __future__ import annotations

from ._context import Context, Performance
from ._image import Image, Path


def cut(
    source: Path,
    target: Path,
    width: int,
    height: int,
    *,
    scale: float = 1.0,
    shift: tuple[float, float] = (0.0, 0.0),
    by_eyes: bool = True,
    performance: Performance = Performance.THOROUGH,
    quality: int = 90,
) -> None:
    """Cuts a portrait of the largest face of a picture file and saves it; nothing is written if there is none.

    scale, shift, by_eyes: as for Image.portrait. quality: of a JPEG file, 0 to 100. An existing file is overwritten.

    >>> cut("average_faces.png", temporary / "portrait.jpg", 240, 320, scale=0.8)
    >>> Image.load(temporary / "portrait.jpg").size
    (240, 320)
    """
    context = Context(performance, quality=quality)
    with Image.load(source) as image:
        with image.portrait(width, height, scale=scale, shift=shift, by_eyes=by_eyes, context=context) as portrait:
            portrait.save(target, quality=quality)
