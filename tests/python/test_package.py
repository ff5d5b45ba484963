"""The Python package: pixels in and out, who owns what, errors, threads, and the examples of its docstrings."""

import csv
import doctest
import importlib
import os
import pickle
import tempfile
import threading
import unittest
from pathlib import Path

import numpy as np
import portraitcut
from portraitcut import Context, Face, Image

DATA = Path(__file__).parents[1] / "data"


def random_pixels(*shape: int) -> np.ndarray:
    return np.random.default_rng(1).integers(0, 256, shape, np.uint8)


def next_handle() -> int:
    """Handles are given out lowest number first, so this one tells whether earlier ones were freed."""
    return Image()._handle.number


class Arrays(unittest.TestCase):
    def test_pixels_arrive_however_they_lie(self):
        base = random_pixels(31, 47, 4)
        rgb = random_pixels(31, 47, 3)
        lying = {
            "rgba": base,
            "rgb": rgb,
            "gray": rgb[:, :, 0].copy(),
            "gray with a channel": rgb[:, :, :1].copy(),
            "part of larger rows": rgb[3:20, 5:40],
            "bottom row first": rgb[::-1],
            "every second row": base[::-2],
            "one row": rgb[7:8],
            "one column": rgb[:, 7:8],
            "channels turned over": rgb[:, :, ::-1],
            "channels of four": base[:, :, :3],
            "mirrored": rgb[:, ::-1],
            "turned": rgb.transpose(1, 0, 2),
            "column order": np.asfortranarray(rgb),
            "one row many times": np.broadcast_to(rgb[0], (9, 47, 3)),
        }
        for name, array in lying.items():
            with self.subTest(name):
                pixels = Image.from_array(array).pixels
                gray = array.ndim == 2 or array.shape[2] == 1
                expected = np.repeat(array.reshape(*array.shape[:2], 1), 3, 2) if gray else array
                np.testing.assert_array_equal(pixels, expected)

    def test_rows_of_any_order_and_distance_are_lent(self):
        from portraitcut._image import _lendable

        rgb = random_pixels(31, 47, 3)
        for array in rgb, rgb[3:20, 5:40], rgb[::-2], rgb[7:8], rgb[:, :, 0].copy():
            self.assertTrue(np.shares_memory(_lendable(array), array))

    def test_what_are_no_pixels_is_refused(self):
        for array in np.zeros((4, 4)), np.zeros((4, 4, 3), np.int8), [[1, 2]]:
            self.assertRaises(TypeError, Image.from_array, array)
        for shape in (5,), (4, 4, 2), (4, 4, 3, 1):
            self.assertRaises(ValueError, Image.from_array, np.zeros(shape, np.uint8))
        free = next_handle()
        self.assertRaises(portraitcut.InvalidArgumentError, Image.from_array, np.zeros((1, 70000), np.uint8))
        self.assertEqual(next_handle(), free)
        self.assertEqual(Image.from_array(np.zeros((0, 5, 3), np.uint8)).size, (0, 0))

    def test_pixels_leave_in_each_layout(self):
        rgb = random_pixels(31, 47, 3)
        image = Image.from_array(rgb)
        out = np.empty_like(rgb)
        self.assertIs(image.to_array(out=out), out)
        np.testing.assert_array_equal(out, rgb)
        np.testing.assert_array_equal(image.to_array("RGBA"), np.dstack([rgb, np.full((31, 47), 255, np.uint8)]))
        gray = image.to_array("L")
        self.assertLess(np.abs(gray - rgb @ [0.299, 0.587, 0.114]).max(), 1.5)
        read_only = np.empty_like(rgb)
        read_only.flags.writeable = False
        for wrong in out[:-1], out[::-1], np.empty((31, 47, 3), np.int8), gray, read_only:
            self.assertRaises(portraitcut.BufferTooSmallError, image.to_array, out=wrong)
        self.assertEqual(Image().pixels.shape[:2], (0, 0))


class Ownership(unittest.TestCase):
    def test_a_view_outlives_its_image(self):
        free = next_handle()
        rgb = random_pixels(300, 300, 3)
        image = Image.from_array(rgb)
        part = image.pixels[10:20]
        image.close()
        del image
        others = [Image.from_array(np.zeros((300, 300, 3), np.uint8)) for _ in range(20)]
        np.testing.assert_array_equal(part, rgb[10:20])
        self.assertEqual(others[0]._handle.number, free + 1)
        del part, others
        self.assertEqual(next_handle(), free)

    def test_failures_leave_nothing_behind(self):
        free, image = next_handle() + 1, Image.from_array(np.zeros((50, 50, 3), np.uint8))
        nowhere = portraitcut.Features(np.zeros((40, 2), np.int32), np.zeros(40, np.float32))
        with tempfile.TemporaryDirectory() as folder:
            damaged = Path(folder, "damaged.jpg")
            damaged.write_bytes(b"no picture")
            failures = {
                FileNotFoundError: lambda: Image.load("no/such/file.png"),
                portraitcut.CannotOpenFileError: lambda: Image.load("no/such/file.png"),
                portraitcut.BadImageFileError: lambda: Image.load(damaged),
                portraitcut.UnknownExtensionError: lambda: Image.load(DATA / "average_faces.csv"),
                portraitcut.ImageIOError: lambda: Image.decode(b"no picture"),
                portraitcut.InvalidArgumentError: lambda: image.resize(float("nan")),
                portraitcut.NoFaceError: lambda: image.portrait(30, 40),
                portraitcut.ImageTooSmallError: lambda: Image.from_array(np.zeros((9, 9), np.uint8)).faces(),
                portraitcut.CannotCreateFileError: lambda: image.save("no/such/folder.png"),
                portraitcut.PortraitCutError: lambda: image.extract_face(nowhere, 100),
                OverflowError: lambda: image.crop((0, 0, 2**32, 0)),
                ValueError: lambda: Image.load(f"{damaged}\0.png"),
            }
            for kind, failure in failures.items():
                with self.subTest(kind.__name__):
                    self.assertRaises(kind, failure)
                    self.assertEqual(next_handle(), free)
        image.close()
        self.assertRaisesRegex(ValueError, "closed", image.faces)

    def test_contexts_end(self):
        first = Context()._id
        self.assertRaises(portraitcut.InvalidArgumentError, Context, threshold=0)
        self.assertRaises(portraitcut.InvalidArgumentError, Context, working_width=19)
        self.assertEqual(Context()._id, first)

    def test_errors_cross_processes(self):
        try:
            Image.load("missing.png")
        except portraitcut.PortraitCutError as error:
            copy = pickle.loads(pickle.dumps(error))
            self.assertIs(type(copy), portraitcut.ImageNotFoundError)
            self.assertEqual((copy.code, copy.filename, str(copy)), (-10, "missing.png", str(error)))


class Threads(unittest.TestCase):
    def test_points_are_those_of_one_thread(self):
        images = [Image.load(DATA / f"average_face_{n}.jpg") for n in (1, 2, 3, 4)]
        serial = [image.features() for image in images]
        framed = images[0].portrait(60, 80, by_eyes=True)
        failures: list[object] = []

        def search(n: int) -> None:
            for k in range(2):
                found = images[(n + k) % 4].features()
                same = images[0].portrait(60, 80, by_eyes=True)
                if not np.array_equal(found.points, serial[(n + k) % 4].points):
                    failures.append(n)
                if not np.array_equal(same.pixels, framed.pixels):
                    failures.append("framed")

        threads = [threading.Thread(target=search, args=(n,)) for n in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(failures, [])

    def test_closing_waits_for_running_calls(self):
        expected = Image.load(DATA / "average_face_1.jpg").faces()
        for _ in range(3):
            image = Image.load(DATA / "average_face_1.jpg")
            answers: list[object] = []

            def detect() -> None:
                try:
                    answers.append(image.faces())
                except ValueError:
                    answers.append(expected)

            threads = [threading.Thread(target=detect) for _ in range(3)]
            for thread in threads:
                thread.start()
            image.close()
            Image.from_array(np.zeros((320, 240, 3), np.uint8))  # takes over the handle if it was freed too early
            for thread in threads:
                thread.join()
            self.assertEqual(answers, [expected] * 3)


class Answers(unittest.TestCase):
    def test_faces_lie_where_the_picture_has_them(self):
        """Within a tenth of the face's width of the truth beside the picture."""
        with open(DATA / "average_faces.csv", encoding="utf-8", newline="") as file:
            single = [row for row in csv.DictReader(file) if row["file"] != "average_faces.png"]
        self.assertEqual(len(single), 7)
        for texts in single[::2]:
            image = Image.load(DATA / texts.pop("file"))
            row = {name: float(text) for name, text in texts.items()}
            face = image.face()
            self.assertIsInstance(face, Face)
            self.assertLess(np.hypot(face.x - row["xc"], face.y - row["yc"]), 0.1 * row["w"], row)
            eyes = [[row["left_eye_x"], row["left_eye_y"]], [row["right_eye_x"], row["right_eye_y"]]]
            for points in image.eyes(face), image.features(face).points[:2]:
                self.assertLess(np.abs(points - eyes).max(), 0.1 * row["w"], row)


def load_tests(loader: unittest.TestLoader, tests: unittest.TestSuite, pattern: object) -> unittest.TestSuite:
    """The examples run in a folder with the sample pictures."""
    folder = tempfile.TemporaryDirectory()
    start = os.getcwd()
    names = {**vars(portraitcut), "numpy": np, "temporary": Path(folder.name)}

    def enter(test: object) -> None:
        os.chdir(DATA)

    def leave(test: object) -> None:
        os.chdir(start)

    for name in ("", "._context", "._cut", "._errors", "._image", "._types"):
        module = importlib.import_module("portraitcut" + name)
        tests.addTests(doctest.DocTestSuite(module, extraglobs=names, setUp=enter, tearDown=leave))
    # Lives as long as the suite.
    tests.folder = folder  # type: ignore[attr-defined]
    return tests


if __name__ == "__main__":
    unittest.main()
