"""Many files: workers that die, interruption, logs and streams."""

import base64
import json
import os
import shutil
import signal
import subprocess
import time
import unittest

from support import DATA, FACE, PROGRAM, QUICK, ProgramTest

CUT = ["cut", *QUICK, "--size", "30x40"]


class Batch(ProgramTest):

    def make_inputs(self, count, folder="in"):
        (self.folder / folder).mkdir()
        for number in range(count):
            os.link(self.source, self.folder / folder / f"{number:03}.jpg")

    def setUp(self):
        super().setUp()
        self.source = self.folder / "face"
        shutil.copy(FACE, self.source)

    def log(self):
        return [json.loads(line) for line in (self.folder / "log").read_text().splitlines()]

    def start(self, *arguments, **options):
        process = subprocess.Popen([PROGRAM, *map(os.fspath, arguments)], cwd=self.folder, stderr=subprocess.PIPE,
                                   start_new_session=True, **options)
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        """Ends what a failed test left running, workers too."""
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
        process.communicate()

    def wait_for(self, condition):
        limit = time.monotonic() + 120
        while not condition():
            self.assertLess(time.monotonic(), limit)
            time.sleep(0.005)

    def children(self, process):
        with open(f"/proc/{process.pid}/task/{process.pid}/children", encoding="ascii") as children:
            return [int(child) for child in children.read().split()]

    def test_results_do_not_depend_on_the_number_of_workers(self):
        names = [DATA / f"average_face_{number}.jpg" for number in range(1, 5)]
        alone = self.run_program("features", *QUICK, "--jobs", "1", *names).stdout
        self.assertEqual(self.run_program("features", *QUICK, "--jobs", "3", *names).stdout, alone)

    def test_one_bad_file_costs_only_itself(self):
        self.make_inputs(3)
        (self.folder / "in/001.jpg").unlink()
        (self.folder / "in/001.jpg").write_bytes(FACE.read_bytes()[:700])
        done = self.run_program(*CUT, "in", "missing.jpg", "-o", "out", "--log", "log", expect=1)
        self.assertEqual(self.names("out"), ["000.jpg", "002.jpg"])
        self.assertIn(b"in/001.jpg: ", done.stderr)
        self.assertIn(b"missing.jpg: cannot open the file: No such file or directory", done.stderr)
        self.assertEqual(sorted(line["status"] for line in self.log()), ["failed", "failed", "ok", "ok"])

    def test_interruption_and_resume(self):
        self.make_inputs(100)
        process = self.start(*CUT, "in", "-o", "out", "--log", "log", "--jobs", "2")
        self.wait_for(lambda: (self.folder / "log").exists() and (self.folder / "log").stat().st_size > 2000)
        workers = self.children(process)
        self.assertEqual(len(workers), 2)
        process.send_signal(signal.SIGINT)
        _, errors = process.communicate(timeout=120)
        self.assertEqual(process.returncode, 130, errors)
        for worker in workers:
            self.assertFalse(os.path.exists(f"/proc/{worker}"))
        first = self.log()
        self.assertLess(len(first), 100)
        # No half file, and the log tells exactly what is there.
        self.assertEqual(self.names("out"), sorted(os.path.basename(line["input"]) for line in first))
        # Lost outputs are made again, as are files of a torn line and of other settings.
        (self.folder / "out" / os.path.basename(first[0]["input"])).unlink()
        with open(self.folder / "log", "a", encoding="ascii") as log:
            log.write('{"input":"in/099.j')
        self.run_program(*CUT, "in", "-o", "out", "--log", "log", expect=1)
        self.run_program(*CUT, "in", "-o", "out", "--log", "log", "--resume")
        self.assertEqual(len(self.names("out")), 100)
        lines = (self.folder / "log").read_text().splitlines()
        self.assertEqual(len(lines), 100 + 1 + 1)
        self.run_program(*CUT, "in", "-o", "out", "--log", "log", "--resume")
        self.assertEqual(len((self.folder / "log").read_text().splitlines()), len(lines))
        self.run_program(*CUT, "-q", "50", "in/000.jpg", "-o", "out/", "--log", "log", "--resume", expect=1)

    def test_second_signal_ends_at_once(self):
        os.mkfifo(self.folder / "never.jpg")
        process = self.start(*CUT, "never.jpg", "-o", "out/", "--log", "log")
        self.wait_for(lambda: self.children(process))
        worker, = self.children(process)
        process.send_signal(signal.SIGINT)
        process.send_signal(signal.SIGTERM)
        process.communicate(timeout=120)
        self.assertIn(process.returncode, (130, 143))  # either may be noticed first
        self.assertFalse(os.path.exists(f"/proc/{worker}"))

    def test_dead_worker_is_told_and_replaced(self):
        self.make_inputs(3)
        (self.folder / "in/001.jpg").unlink()
        os.mkfifo(self.folder / "in/001.jpg")
        process = self.start(*CUT, "in", "-o", "out", "--log", "log", "--jobs", "1")
        self.wait_for(lambda: (self.folder / "log").exists() and (self.folder / "log").stat().st_size > 0)
        time.sleep(0.05)
        victim, = self.children(process)
        os.kill(victim, signal.SIGKILL)
        _, errors = process.communicate(timeout=120)
        self.assertEqual(process.returncode, 1)
        self.assertIn(b"in/001.jpg: the worker died of signal 9 (Killed)", errors)
        self.assertEqual(self.names("out"), ["000.jpg", "002.jpg"])

    def test_files_that_take_too_long(self):
        self.make_inputs(3)
        for number in (1, 2):
            (self.folder / f"in/00{number}.jpg").unlink()
        os.mkfifo(self.folder / "in/001.jpg")
        (self.folder / "in/002.jpg").write_bytes(b"no picture")
        cut = ["cut", *QUICK, "in", "-o", "out", "--format", "png", "--size", "700x900", "--log", "log"]
        process = self.start(*cut, "--jobs", "2", "--file-timeout", "2")
        # One worker waits at the pipe; the other stops while it writes.
        self.wait_for(lambda: self.names("out") if (self.folder / "out").exists() else [])
        unfinished, = self.names("out")
        self.assertTrue(unfinished.startswith(".portraitcut-"), unfinished)
        os.kill(int(unfinished.split("-")[-1].split(".")[0]), signal.SIGSTOP)
        self.assertEqual(self.names("out"), [unfinished])
        _, errors = process.communicate(timeout=120)
        self.assertEqual(process.returncode, 1)
        reasons = {line["input"]: line["reason"] for line in self.log()}
        late = "took longer than 2 s and was given up (--file-timeout)"
        self.assertEqual(reasons, {"in/000.jpg": late, "in/001.jpg": late,
                                   "in/002.jpg": "neither a JPEG, a PNG nor a BMP file"})
        self.assertEqual(self.names("out"), [])
        (self.folder / "in/001.jpg").unlink()
        os.link(self.source, self.folder / "in/001.jpg")
        self.run_program(*cut, "--resume", expect=1)
        self.assertEqual(self.names("out"), ["000.png", "001.png"])

    def test_list_on_standard_input_is_answered_line_by_line(self):
        process = self.start("detect", *QUICK, "--files-from", "-", stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        for name in (b"face", b"missing", b"face"):
            process.stdin.write(name + b"\n")
            process.stdin.flush()
            record = json.loads(process.stdout.readline())
            self.assertEqual((record["input"].encode(), record["status"]), (name, "failed" if name == b"missing" else "ok"))
        _, errors = process.communicate(timeout=120)
        self.assertEqual(process.returncode, 1, errors)

    def test_lists_keep_order_and_folders(self):
        self.make_inputs(30)
        names = [f"in/{number:03}.jpg" for number in reversed(range(30))]
        text = "\0".join(names).encode()  # the last name without its end
        done = self.run_program(*CUT, "--files-from", "-", "-0", "-o", "out", "--jobs", "3", input=text)
        self.assertEqual([json.loads(line)["input"] for line in done.stdout.splitlines()], names)
        self.assertEqual(self.names("out"), sorted(names))

    def test_pictures_in_a_stream(self):
        picture = base64.b64encode(FACE.read_bytes()).decode()
        lines = [{"id": {"k": [1, "\u00e9"]}, "image_base64": picture}, {"id": 2, "image_base64": "?"}, {"id": 3}, [],
                 {"image_base64": ""}]
        text = "\n".join(map(json.dumps, lines)) + "\nno json\n" + "[" * 5000 + "\n"
        done = self.run_program(*CUT, "--stream", "--format", "png", expect=1, input=text.encode())
        records = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual([record["status"] for record in records], ["ok"] + ["failed"] * 6)
        self.assertEqual([record["id"] for record in records], [lines[0]["id"], 2, 3, None, None, None, None])
        self.run_program(*CUT, FACE, "-o", "file.png")
        portrait = base64.b64decode(records[0]["faces"][0]["portrait_base64"])
        self.assertEqual(portrait, (self.folder / "file.png").read_bytes())


if __name__ == "__main__":
    unittest.main()
