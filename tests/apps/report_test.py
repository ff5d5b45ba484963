"""Reports, framing, checks and the command line itself."""

import csv
import io
import json
import struct
import unittest

from support import DATA, FACE, FACES, QUICK, ProgramTest, bmp_rows


class Reports(ProgramTest):

    def record(self, *arguments, expect=0):
        return json.loads(self.run_program(*arguments, expect=expect).stdout)

    def test_csv_tells_the_same_as_json(self):
        odd = self.folder / 'odd, "name"\n.jpg'
        odd.write_bytes(FACE.read_bytes())
        for command in ("detect", "features", "eyes"):
            faces = self.record(command, odd)["faces"]
            text = self.run_program(command, "--csv", odd).stdout.decode()
            rows = list(csv.DictReader(io.StringIO(text, newline="")))
            self.assertTrue(all(row["input"] == str(odd) for row in rows))
            if command == "features":
                told = [(row["name"], int(row["x"]), int(row["y"])) for row in rows]
                self.assertEqual(told, [(p["name"], p["x"], p["y"]) for p in faces[0]["points"]])
                self.assertEqual([int(row["point"]) for row in rows], list(range(40)))
            elif command == "detect":
                self.assertEqual([float(rows[0][key]) for key in ("xc", "yc", "w", "angle")],
                                 [faces[0][key] for key in ("xc", "yc", "w", "angle")])
            else:
                self.assertEqual([int(rows[0]["eye_left_x"]), int(rows[0]["eye_right_y"])],
                                 [faces[0]["eyes"][0]["x"], faces[0]["eyes"][1]["y"]])

    def test_faces_by_size(self):
        faces = self.record("detect", FACES)["faces"]
        self.assertEqual([face["w"] for face in faces], sorted((face["w"] for face in faces), reverse=True))
        with open(DATA / "average_faces.csv", encoding="ascii") as table:
            known = [row for row in csv.DictReader(table) if row["file"] == "average_faces.png"]
        self.assertEqual(len(faces), len(known))
        third = self.record("cut", "--json", FACES, "-o", "x.png", "--face", "3", "--size", "20x20", "--framing", "face")["faces"]
        self.assertEqual([face["xc"] for face in third], [faces[2]["xc"]])
        self.run_program("cut", FACES, "-o", "y.png", "--face", "99", expect=1)
        large = self.record("detect", FACES, "--min-face", str(faces[1]["w"]))["faces"]
        self.assertEqual(len(large), 2)

    def test_no_face(self):
        grey = b"BM" + struct.pack("<IIIIiiHHIIiiII", 54 + 48 * 64, 0, 54, 40, 16, 64, 1, 24, 0, 48 * 64, 0, 0, 0, 0)
        (self.folder / "grey.bmp").write_bytes(grey + b"\x80" * (48 * 64))
        (self.folder / "none.bmp").write_bytes(struct.pack("<2sI", b"BM", 6))
        record = self.record("detect", "grey.bmp", expect=1)
        self.assertEqual((record["code"], record["status"]), (-6, "failed"))  # 16 pixels wide
        self.run_program("detect", "none.bmp", expect=1)
        wide = struct.pack("<IIIIiiHHIIiiII", 54 + 192 * 64, 0, 54, 40, 64, 64, 1, 24, 0, 192 * 64, 0, 0, 0, 0)
        (self.folder / "wide.bmp").write_bytes(b"BM" + wide + b"\x80" * (192 * 64))
        self.assertEqual(self.record("detect", "wide.bmp")["faces"], [])
        done = self.run_program("cut", "wide.bmp", "-o", "x.png", expect=1)
        self.assertIn(b"no face found", done.stderr)

    def test_passports_pass_their_check(self):
        for preset, size in (("icao", (413, 531)), ("us", (600, 600))):
            cut = ["cut", FACE, "--preset", preset, "-o", f"{preset}.jpg"]
            if preset == "us":  # too wide for the picture
                self.assertIn(b"reach beyond", self.run_program(*cut, expect=1).stderr)
            self.run_program(*cut, "--pad", "mirror")
            record = self.record("check", "--standard", preset, "--json", f"{preset}.jpg")
            self.assertEqual((record["passed"], record["width"], record["height"]), (True, *size))
            self.assertEqual((self.folder / f"{preset}.jpg").read_bytes()[13:18], struct.pack(">BHH", 1, 300, 300))
        text = self.run_program("check", FACE, "icao.jpg", expect=1).stdout.decode()
        self.assertIn("icao.jpg: pass", text)
        self.assertIn("FAIL  head_height", text)

    def test_padding(self):
        common = ["cut", *QUICK, FACE, "--size", "60x60", "--face-scale", "0.3", "--format", "bmp"]
        corners = {}
        for rule in ("shrink", "fill", "edge", "mirror"):
            self.run_program(*common, "--pad", rule, "--fill-colour", "#ff8000", "-o", f"{rule}.bmp")
            corners[rule] = bmp_rows((self.folder / f"{rule}.bmp").read_bytes())[0][0]
        self.assertEqual(corners["fill"], (255, 128, 0))
        self.assertEqual(len(set(corners.values())), 4)
        self.run_program(*common, "--pad", "refuse", "-o", "refuse.bmp", expect=1)
        shrunk = self.record(*common, "--pad", "shrink", "--json", "-o", "again.bmp")["faces"][0]
        self.assertFalse(shrunk["frame_as_asked"])

    def test_density(self):
        for ending, place, value in (("png", b"pHYs", struct.pack(">IIB", 11811, 11811, 1)),
                                     ("bmp", b"", struct.pack("<II", 11811, 11811))):
            self.run_program("cut", *QUICK, FACE, "-o", f"x.{ending}", "--size", "20x20mm", "--dpi", "300")
            self.assertIn(place + value, (self.folder / f"x.{ending}").read_bytes())
            self.run_program("detect", *QUICK, f"x.{ending}")

    def test_annotated_picture(self):
        self.run_program("annotate", *QUICK, FACE, "-o", "drawn.bmp")
        rows = bmp_rows((self.folder / "drawn.bmp").read_bytes())
        self.assertEqual((len(rows[0]), len(rows)), (288, 360))
        colours = {pixel for row in rows for pixel in row}
        self.assertLessEqual({(60, 220, 80), (250, 210, 40)}, colours)

    def test_wrong_use(self):
        for arguments in ([], ["cut"], ["cut", FACE], ["cut", FACE, "-o", "x.jpg", "--size", "0x5"], ["nonsense"],
                          ["cut", FACE, "-o", "x.jpg", "--size", "10x10cm"], ["detect"], ["detect", "-j", "0", FACE],
                          ["cut", FACE, "-o", "x.jpg", "--preset", "uk"], ["cut", FACE, FACE, "-o", "-"],
                          ["cut", FACE, "-o", "x.jpg", "--face", "0"], ["cut", FACE, "-o", "x", "--fill-colour", "red"],
                          ["cut", FACE, "-o", "-", "--json"], ["detect", "--resume", FACE], ["detect", "-q", FACE],
                          ["cut", FACE, "-o", "x.jpg", "--face-scale", "nan"], ["annotate", "--stream"]):
            self.assertTrue(self.run_program(*arguments, expect=2).stderr)
        self.assertEqual(self.names(), [])
        self.assertIn(b"Examples:", self.run_program("--help").stdout)
        self.assertRegex(self.run_program("--version").stdout, rb"^portraitcut \d+\.\d+\.\d+\n$")


if __name__ == "__main__":
    unittest.main()
