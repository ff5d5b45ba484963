#!/usr/bin/python3
"""Processor time and memory that one worker of portraitcut needs for a file, on this machine.

usage: measure.py PROGRAM PICTURE [FILES]

Makes photo-like JPEG files of 12 and 1 megapixels out of PICTURE (enlarged, with noise, so that they have as many bytes
as photos), and runs the program over FILES of them, 40 unless told otherwise. Needs python3-numpy and python3-pil.
Processor time, unlike time on the clock, hardly depends on what else the machine does.
"""

import pathlib
import subprocess
import sys
import tempfile

import numpy
from PIL import Image

SIZES = {"12 MP": (4000, 3000), "1 MP": (1152, 864)}
COMMANDS = {
    "cut, fast": ["cut", "-p", "fast", "-o", "out", "--force"],
    "cut, balanced": ["cut", "-p", "balanced", "-o", "out", "--force"],
    "cut, thorough": ["cut", "-o", "out", "--force"],
    "detect, balanced": ["detect", "-p", "balanced"],
    "features, balanced": ["features", "-p", "balanced"],
}
NOISE = 6  # standard deviation in gray levels, as of a phone in a room
# Runs a command in a process of its own, whose children are then only that command and its workers.
METER = """
import resource, subprocess, sys
subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, check=True)
used = resource.getrusage(resource.RUSAGE_CHILDREN)
print(used.ru_utime, used.ru_stime, used.ru_maxrss / 1024)
"""


def make_photo(picture, size, path, seed):
    """A JPEG file of quality 90."""
    noise = numpy.random.default_rng(seed).normal(0, NOISE, (size[1], size[0], 1))
    pixels = numpy.asarray(picture.resize(size, Image.Resampling.BICUBIC), dtype=float) + noise
    Image.fromarray(pixels.clip(0, 255).astype(numpy.uint8)).save(path, quality=90)


def measure(program, arguments, names, folder):
    """User seconds, system seconds and the resident memory of the largest process in MiB."""
    command = [program, *arguments, "--jobs", "1", "--quiet", "--files-from", "-"]
    done = subprocess.run([sys.executable, "-c", METER, *command], cwd=folder, input="\n".join(names), text=True,
                          capture_output=True, check=True)
    return [float(number) for number in done.stdout.split()]


def main():
    program, picture = str(pathlib.Path(sys.argv[1]).resolve()), Image.open(sys.argv[2]).convert("RGB")
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 40
    with tempfile.TemporaryDirectory() as folder:
        for text, size in SIZES.items():
            names = []
            for number in range(count):
                path = pathlib.Path(folder, f"{size[0]}-{number}.jpg")
                if number < 4:
                    make_photo(picture, size, path, number)
                else:
                    path.hardlink_to(pathlib.Path(folder, f"{size[0]}-{number % 4}.jpg"))
                names.append(path.name)
            print(f"{text}, {path.stat().st_size / 1e6:.2f} MB a file")
            for command, arguments in COMMANDS.items():
                user, system, memory = measure(program, arguments, names, folder)
                each = (user + system) / count
                print(f"  {command:20} {1000 * user / count:6.1f} ms user {1000 * system / count:5.1f} ms system"
                      f" {1 / each:6.1f} files/s {memory:5.0f} MiB", flush=True)


if __name__ == "__main__":
    main()
