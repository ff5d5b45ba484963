"""Where pictures go: nothing is lost, nothing is left half written, any name works."""

import os
import shutil
import subprocess
import unittest

from support import FACE, PROGRAM, QUICK, ProgramTest, bmp_rows, png_file

CUT = ["cut", *QUICK, "--size", "30x40"]


class Output(ProgramTest):

    def copy(self, *names):
        for name in names:
            path = self.folder / name
            path.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(FACE, path)

    def test_nothing_is_replaced_unasked(self):
        (self.folder / "old.jpg").write_bytes(b"mine")
        os.symlink("nowhere", self.folder / "link.jpg")
        for name in ("old.jpg", "link.jpg"):
            done = self.run_program(*CUT, FACE, "-o", name, expect=1)
            self.assertIn(b"exists", done.stderr)
        self.assertEqual((self.folder / "old.jpg").read_bytes(), b"mine")
        self.run_program(*CUT, FACE, "-o", "old.jpg", "--force")
        self.assertTrue((self.folder / "old.jpg").read_bytes().startswith(b"\xff\xd8"))
        self.assertEqual(self.names(), ["link.jpg", "old.jpg"])

    def test_inputs_are_never_changed(self):
        self.copy("a.jpg", "b.jpeg")
        os.link(self.folder / "a.jpg", self.folder / "other.jpg")
        # Onto itself, onto itself by another name, and onto another input that comes later.
        for arguments in (["a.jpg", "-o", "a.jpg"], ["a.jpg", "-o", "other.jpg"], ["a.jpg", "-o", "."]):
            done = self.run_program(*CUT, "--force", *arguments, expect=1)
            self.assertIn(b"never changed", done.stderr)
        self.copy("a.bmp")
        self.run_program(*CUT, "--force", "--format", "jpg", "a.bmp", "a.jpg", "-o", ".", expect=1)
        for name in ("a.jpg", "b.jpeg", "a.bmp"):
            self.assertEqual((self.folder / name).read_bytes(), FACE.read_bytes())

    def test_one_output_for_two_inputs_is_told(self):
        self.copy("x/a.jpg", "y/a.jpg")
        done = self.run_program(*CUT, "x", "y", "-o", "out", expect=1)
        self.assertIn(b"y/a.jpg: out/a.jpg is also the output of x/a.jpg", done.stderr)
        self.assertEqual(self.names("out"), ["a.jpg"])

    def test_odd_names(self):
        odd = [b"with space.jpg", b"line\nbreak.jpg", "f\u00fc\u00df\u4eba.jpg".encode(), b"bad\xff\xfe.jpg", b"-dash.jpg",
               b"\"quote'.jpg", b"%s%n.jpg", b"dot..jpg", b"UPPER.JPG", b"no_ending"]
        for name in odd:
            shutil.copy(FACE, os.path.join(os.fsencode(self.folder), name))
        self.run_program(*CUT, "-o", "out/", "--", *odd)
        expected = sorted(name if name != b"no_ending" else b"no_ending.jpg" for name in odd)
        self.assertEqual(sorted(os.listdir(os.fsencode(self.folder / "out"))), expected)

    def test_folders_are_mirrored(self):
        self.copy("in/b.jpg", "in/a.jpg", "in/sub/deep/c.jpg", "in/.hidden.jpg", "in/.git/d.jpg")
        (self.folder / "in/notes.txt").write_text("no picture")
        os.symlink("..", self.folder / "in/sub/loop")
        self.run_program(*CUT, "in", "-o", "flat")
        self.assertEqual(self.names("flat"), ["a.jpg", "b.jpg"])
        # The output folder lies inside the input; what an earlier run left there is no input.
        for _ in range(2):
            self.run_program(*CUT, "-r", "in", "-o", "in/out", "--force")
        self.assertEqual(self.names("in/out"), ["a.jpg", "b.jpg", "sub/deep/c.jpg"])

    def test_pipes(self):
        self.run_program(*CUT, FACE, "-o", "file.png")
        with open(FACE, "rb") as picture:
            piped = self.run_program(*CUT, "-", "-o", "-", "--format", "png", stdin=picture)
        self.assertEqual(piped.stdout, (self.folder / "file.png").read_bytes())
        feeder = subprocess.Popen(["cat", FACE], stdout=subprocess.PIPE)
        self.run_program(*CUT, "/dev/stdin", "-o", "again.png", stdin=feeder.stdout)
        feeder.stdout.close()
        self.assertEqual(feeder.wait(), 0)
        self.assertEqual((self.folder / "again.png").read_bytes(), piped.stdout)

    def test_transparent_pixels_show_the_fill_colour(self):
        self.run_program("cut", *QUICK, FACE, "-o", "face.bmp", "--size", "150x180", "--face-scale", "0.8")
        rows = bmp_rows((self.folder / "face.bmp").read_bytes())
        alphas = [0, 1, 128, 254, 255, 255, 255]
        clear = [[(*pixel, alphas[(x + y) % 7] if x < 40 else 255) for x, pixel in enumerate(row)]
                 for y, row in enumerate(rows)]

        def shown(*ground):
            mixed = [[[round((c * a + g * (255 - a)) / 255) for c, g in zip(pixel, ground)] for *pixel, a in row]
                     for row in clear]
            return png_file(mixed)

        (self.folder / "clear.png").write_bytes(png_file(clear))
        (self.folder / "white.png").write_bytes(shown(255, 255, 255))
        (self.folder / "green.png").write_bytes(shown(16, 240, 32))
        cut = ["cut", *QUICK, "--face-scale", "0.8", "--size", "90x120", "--format", "bmp"]
        self.run_program(*cut, "clear.png", "white.png", "-o", "one/")
        self.run_program(*cut, "clear.png", "green.png", "-o", "two/", "--fill-colour", "10f020")
        for folder, name in (("one", "white"), ("two", "green")):
            portraits = [(self.folder / folder / f"{file}.bmp").read_bytes() for file in ("clear", name)]
            self.assertEqual(*portraits)

    def test_all_faces_are_numbered(self):
        self.run_program(*CUT, FACE.parent / "average_faces.png", "-o", "x.y.jpg", "--face", "all")
        names = self.names()
        self.assertGreaterEqual(len(names), 2)
        self.assertEqual(names, [f"x.y-{number}.jpg" for number in range(1, len(names) + 1)])

    def test_full_disk(self):
        for target, report in (("/dev/full", []), ("-", [])):
            with open("/dev/full", "wb") as full:
                done = subprocess.run([PROGRAM, *CUT, FACE, "-o", target, *report], stdout=full, stderr=subprocess.PIPE,
                                      check=False, timeout=180)
            self.assertEqual(done.returncode, 1)
            self.assertIn(b"No space left on device", done.stderr)
        with open("/dev/full", "wb") as full:
            done = subprocess.run([PROGRAM, "detect", *QUICK, FACE], stdout=full, stderr=subprocess.PIPE, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertIn(b"No space left on device", done.stderr)

    def test_full_file_system(self):
        small = self.folder / "small"
        small.mkdir()
        if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", small], capture_output=True,
                          check=False).returncode != 0:
            self.skipTest("no right to mount")
        try:
            for ending in ("png", "bmp", "jpg"):
                done = self.run_program("cut", *QUICK, FACE, "-o", small / f"big.{ending}", "--size", "900x1200",
                                        "-q", "100", expect=1)
                self.assertIn(b"No space left on device", done.stderr)
                self.assertEqual(self.names("small"), [])
        finally:
            subprocess.run(["umount", small], check=True)

    def test_unwritable_places(self):
        (self.folder / "file").write_text("in the way")
        for target in ("file/out.jpg", "/proc/none/out.jpg"):
            self.run_program(*CUT, FACE, "-o", target, expect=1)
        self.run_program(*CUT, FACE, "-o", "x" * 300 + ".jpg", expect=1)
        self.assertEqual(self.names(), ["file"])


if __name__ == "__main__":
    unittest.main()
