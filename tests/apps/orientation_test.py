"""Pictures whose EXIF tag says that they lie on a side or are mirrored."""

import json
import unittest

from support import FACE, QUICK, ProgramTest, bmp_rows, exif_block, jpeg_with_exif, png_file, stored_rows


class Orientation(ProgramTest):

    def setUp(self):
        super().setUp()
        self.run_program("cut", *QUICK, FACE, "-o", "upright.bmp", "--size", "150x181", "--face-scale", "0.8")
        self.upright = bmp_rows((self.folder / "upright.bmp").read_bytes())

    def write_all(self):
        """The names of the picture in all eight orientations."""
        names = [f"{value}.png" for value in range(1, 9)]
        for value, name in enumerate(names, start=1):
            png = png_file(stored_rows(self.upright, value), exif_block(value, value % 2 == 0))
            (self.folder / name).write_bytes(png)
        return names

    def test_all_give_the_same_portrait(self):
        names = self.write_all()
        self.run_program("cut", *QUICK, *names, "-o", "out/", "--size", "60x80", "--format", "bmp")
        portraits = {(self.folder / "out" / f"{value}.bmp").read_bytes() for value in range(1, 9)}
        self.assertEqual(len(portraits), 1)

    def test_stored_coordinates_point_at_the_same_pixels(self):
        names = self.write_all()
        upright = self.records("eyes", *QUICK, *names)
        stored = self.records("eyes", *QUICK, "--stored-coordinates", *names)
        for value, (want, got) in enumerate(zip(upright, stored), start=1):
            self.assertEqual(got["orientation"], value)
            # Each pixel carries its own place through the same turn as the picture.
            places = [[(x, y) for x in range(want["width"])] for y in range(want["height"])]
            places = stored_rows(places, value)
            self.assertEqual((got["width"], got["height"]), (len(places[0]), len(places)))
            face, there = want["faces"][0], got["faces"][0]
            self.assertEqual(places[there["yc"]][there["xc"]], (face["xc"], face["yc"]))
            for eye, stored_eye in zip(face["eyes"], there["eyes"]):
                self.assertEqual(places[stored_eye["y"]][stored_eye["x"]], (eye["x"], eye["y"]))

    def test_points_and_frame_in_stored_coordinates(self):
        self.write_all()
        up, lying = (self.records("features", *QUICK, *option, "6.png")[0]
                     for option in ([], ["--stored-coordinates"]))
        for point, stored in zip(up["faces"][0]["points"], lying["faces"][0]["points"]):
            self.assertEqual((stored["x"], stored["y"]), (point["y"], up["width"] - 1 - point["x"]))
        cut = ["cut", *QUICK, "6.png", "--size", "20x30", "--json", "-o"]
        frame = self.records(*cut, "up.png")[0]["faces"][0]["frame"]
        lying = self.records(*cut, "lying.png", "--stored-coordinates")[0]["faces"][0]["frame"]
        self.assertEqual(lying, {"x1": frame["y1"], "y1": up["width"] - 1 - frame["x2"], "x2": frame["y2"],
                                 "y2": up["width"] - 1 - frame["x1"]})
        self.assertEqual((self.folder / "up.png").read_bytes(), (self.folder / "lying.png").read_bytes())

    def test_angle_in_stored_coordinates(self):
        names = self.write_all()
        upright = self.records("detect", names[0])[0]["faces"][0]["angle"]
        angles = [record["faces"][0]["angle"] for record in self.records("detect", "--stored-coordinates", *names)]
        # What turns the stored picture upright, and then the face; mirrored pictures turn the other way.
        turns = [upright, -upright, 180 + upright, 180 - upright, 90 - upright, 90 + upright, 270 - upright, 270 + upright]
        for angle, turn in zip(angles, turns):
            self.assertAlmostEqual((angle - turn + 180) % 360 - 180, 0, places=3)

    def test_jpeg_tags_of_both_byte_orders(self):
        jpeg = FACE.read_bytes()
        for value in (1, 3, 6, 8):
            for little in (True, False):
                (self.folder / "tagged.jpg").write_bytes(jpeg_with_exif(jpeg, exif_block(value, little)))
                record, = self.records("detect", *QUICK, "tagged.jpg")
                self.assertEqual(record["orientation"], value)
                self.assertEqual((record["width"], record["height"]), (288, 360) if value < 5 else (360, 288))
                ignored, = self.records("detect", *QUICK, "--ignore-orientation", "tagged.jpg")
                self.assertEqual((ignored["orientation"], ignored["width"]), (1, 288))

    def test_damaged_tags_count_as_upright(self):
        jpeg = FACE.read_bytes()
        whole = exif_block(6)
        blocks = [whole[:cut] for cut in range(len(whole) - 5)]
        blocks += [exif_block(0), exif_block(9), whole[:10] + b"\xff\xff" + whole[12:16] + b"\xff" * 4, b"\0" * 60000]
        names = []
        for number, block in enumerate(blocks):
            names.append(f"{number:02}.jpg")
            (self.folder / names[-1]).write_bytes(jpeg_with_exif(jpeg, block))
        for record in self.records("detect", *QUICK, *names):
            self.assertEqual((record["status"], record["orientation"]), ("ok", 1), record)

    def records(self, *arguments):
        return [json.loads(line) for line in self.run_program(*arguments).stdout.splitlines()]


if __name__ == "__main__":
    unittest.main()
