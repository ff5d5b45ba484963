"""The library's Python package, from the source tree, and what the figures share."""
import os
import sys
import time
from pathlib import Path

import numpy
from PIL import Image as Picture

ROOT = Path(__file__).resolve().parents[2]
DATA = ROOT / "tests" / "data"
IMAGES = ROOT / "docs" / "images"
os.environ.setdefault("PORTRAITCUT_LIBRARY", str(ROOT / "build" / "release" / "libportraitcut.so"))
sys.path.insert(0, str(ROOT / "python"))

from portraitcut import Context, Image  # noqa: E402


def read(name):
    """A sample picture as rows, columns, red-green-blue."""
    return numpy.asarray(Picture.open(DATA / name).convert("RGB"))


def faces(pixels, **settings):
    return Image.from_array(pixels).faces(Context(**settings))


def largest_face(pixels):
    return max(faces(pixels), key=lambda face: face.width)


def frame(pixels, width, height, **framing):
    return Image.from_array(pixels).portrait_frame(width, height, **framing)


def portrait(pixels, width, height, **framing):
    return Image.from_array(pixels).portrait(width, height, **framing).to_array()


def detection_time(pixels, **settings):
    """Milliseconds of processor time, the least of nine detections; the gray copy is made before."""
    image, context, times = Image.from_array(pixels), Context(**settings), []
    for _ in range(10):
        start = time.process_time()
        image.faces(context)
        times.append(time.process_time() - start)
    return 1000 * min(times[1:])
