"""What the tests of the program share: running it, and making pictures with orientation tags byte by byte."""

import os
import pathlib
import struct
import subprocess
import tempfile
import unittest
import zlib

PROGRAM = os.environ["PORTRAITCUT_PROGRAM"]
DATA = pathlib.Path(os.environ["PORTRAITCUT_TEST_DATA"])
FACE = DATA / "average_face_1.jpg"
FACES = DATA / "average_faces.png"
# Finds the upright faces of the test pictures in a tenth of the time.
QUICK = ["--performance", "fast", "--working-width", "200"]


class ProgramTest(unittest.TestCase):
    """Runs each test in an empty folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def run_program(self, *arguments, expect=0, **options):
        """The finished process; its output as bytes. `expect` is the exit code."""
        done = subprocess.run([PROGRAM, *map(os.fspath, arguments)], cwd=self.folder, capture_output=True,
                              timeout=180, check=False, **options)
        self.assertEqual(done.returncode, expect, done.stderr.decode(errors="replace"))
        return done

    def names(self, folder="."):
        """All files below a folder, hidden ones included."""
        root = self.folder / folder
        return sorted(str(path.relative_to(root)) for path in root.rglob("*") if not path.is_dir())


def exif_block(orientation, little_endian=True):
    """A TIFF block with the orientation tag and nothing else."""
    order = "<" if little_endian else ">"
    head = (b"II" if little_endian else b"MM") + struct.pack(order + "HI", 42, 8)
    entry = struct.pack(order + "HHIHH", 0x112, 3, 1, orientation, 0)
    return head + struct.pack(order + "H", 1) + entry + struct.pack(order + "I", 0)


def jpeg_with_exif(jpeg, block):
    """A JPEG file with an Exif segment put first."""
    payload = b"Exif\0\0" + block
    return jpeg[:2] + b"\xff\xe1" + struct.pack(">H", len(payload) + 2) + payload + jpeg[2:]


def png_file(rows, exif=None):
    """A PNG file of rows of (red, green, blue) or (red, green, blue, alpha)."""

    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))

    raw = b"".join(b"\0" + b"".join(map(bytes, row)) for row in rows)
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 6 if len(rows[0][0]) == 4 else 2, 0, 0, 0)
    tag = chunk(b"eXIf", exif) if exif else b""
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + tag + chunk(b"IDAT", zlib.compress(raw, 1)) + chunk(b"IEND", b"")


def bmp_rows(data):
    """The rows of a 24-bit BMP file, top first, as (red, green, blue)."""
    offset, width, height = struct.unpack_from("<I", data, 10)[0], *struct.unpack_from("<ii", data, 18)
    step = (3 * width + 3) // 4 * 4
    rows = []
    for y in range(abs(height)):
        line = data[offset + y * step:offset + y * step + 3 * width]
        rows.append([(line[x + 2], line[x + 1], line[x]) for x in range(0, 3 * width, 3)])
    return rows if height < 0 else rows[::-1]


def stored_rows(upright, orientation):
    """How a camera would store upright rows under an orientation, after the table of the EXIF standard."""
    flipped = [row[::-1] for row in upright]
    turned = {
        1: lambda: upright,
        2: lambda: flipped,
        3: lambda: flipped[::-1],
        4: lambda: upright[::-1],
        5: lambda: [list(column) for column in zip(*upright)],
        6: lambda: [list(column) for column in zip(*upright)][::-1],
        7: lambda: [list(column)[::-1] for column in zip(*upright)][::-1],
        8: lambda: [list(column)[::-1] for column in zip(*upright)],
    }
    return turned[orientation]()
