"""The recipes for many machines: whatever dies on the way, the results are those of a single run."""

import base64
import json
import os
import pathlib
import shutil
import signal
import subprocess
import time
import unittest

from support import DATA, PROGRAM, QUICK, ProgramTest

RECIPES = pathlib.Path(__file__).resolve().parents[2] / "examples" / "scale"
CUT = ["cut", *QUICK, "--size", "30x40"]

# Stands in for ssh: HOST -- WORDS. What runs on beta is killed once two files are done there, and beta is gone.
# As sshd does, it tells the shell, which a job started without a terminal may lack.
SSH = """#!/bin/bash
export HOST=$1 SHELL=/bin/bash; shift; [ "$1" != -- ] || shift
[ $HOST = beta ] || exec bash -c "$*"
mkdir beta 2>/dev/null || exit 255
setsid bash -c "$*" &
until [ "$(cat beta/records 2>/dev/null | wc -l)" = 2 ] || ! kill -0 $!; do sleep 0.02; done
pkill -KILL --session $!
exit 255
"""

# The program; on beta it gets two lines of its list and then nothing more.
SLOW = """#!/bin/bash
[ "${HOST:-}" = beta ] || exec "$PORTRAITCUT_PROGRAM" "$@"
{ head -n 2; sleep 60; } | "$PORTRAITCUT_PROGRAM" "$@" | tee beta/records
"""

# The program, but a list with a certain name kills it.
FRAGILE = """#!/bin/bash
list=$(cat)
[[ $list != *poison* ]] || kill -KILL $$
"$PORTRAITCUT_PROGRAM" "$@" <<<"$list"
"""


@unittest.skipUnless(shutil.which("parallel"), "GNU Parallel is not installed")
class Shards(ProgramTest):

    def setUp(self):
        super().setUp()
        names = [f"in/{number} it's.jpg" for number in range(13)] + ["in/poison.jpg", "in/missing.jpg", "in/broken.jpg"]
        (self.folder / "in").mkdir()
        for number, name in enumerate(names):
            if "missing" not in name:
                shutil.copy(DATA / f"average_face_{number % 7 + 1}.jpg", self.folder / name)
        (self.folder / "in/broken.jpg").write_bytes(b"\xff\xd8\xff")
        self.names_in = names
        (self.folder / "list").write_text("\n".join(names))

    def script(self, name, text):
        path = self.folder / name
        path.write_text(text)
        path.chmod(0o755)
        return path

    def call(self, *options, program=PROGRAM, run="run", **more):
        command = [RECIPES / "run_shards.sh", *options, "list", run, program, *CUT, "-o", "out"]
        return subprocess.Popen(command, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, **more)

    def finish(self, process, expect):
        output, _ = process.communicate(timeout=240)
        self.assertEqual(process.returncode, expect, output.decode())

    def outputs(self):
        return {name: (self.folder / "out" / name).read_bytes() for name in self.names("out")}

    def assert_as_in_a_single_run(self):
        outputs, records = self.outputs(), (self.folder / "run/records.jsonl").read_bytes()
        shutil.rmtree(self.folder / "out")
        done = self.run_program(*CUT, "-o", "out", "--files-from", "-", expect=1,
                                input=(self.folder / "list").read_bytes())
        self.assertEqual(records, done.stdout)
        self.assertEqual(outputs, self.outputs())
        self.assertEqual((self.folder / "run/failed.txt").read_text().split(), ["in/missing.jpg", "in/broken.jpg"])
        self.assertEqual((self.folder / "run/missing.txt").read_text(), "")

    def test_host_that_dies_half_way(self):
        environment = {**os.environ, "PARALLEL_SSH": str(self.script("ssh", SSH))}
        process = self.call("-n", "4", "-S", "1/alpha,1/beta", program=self.script("slow", SLOW), env=environment)
        self.finish(process, expect=1)
        self.assertEqual(len((self.folder / "beta/records").read_text().splitlines()), 2)
        self.assert_as_in_a_single_run()

    def test_interrupted_call_goes_on(self):
        process = self.call("-n", "4", "-S", "2/:", start_new_session=True)
        limit = time.monotonic() + 180
        while not list(self.folder.glob("run/records/*.jsonl")):
            self.assertLess(time.monotonic(), limit)
            time.sleep(0.01)
        os.killpg(process.pid, signal.SIGKILL)
        process.communicate()
        self.finish(self.call("-n", "4", "-S", "2/:"), expect=1)
        self.assert_as_in_a_single_run()

    def test_deadly_file_is_found_with_shards_of_one(self):
        fragile = self.script("fragile", FRAGILE)
        self.finish(self.call("-n", "8", "-S", "2/:", program=fragile), expect=3)
        self.assertEqual((self.folder / "run/missing.txt").read_text().splitlines(), self.names_in[8:])
        self.assertEqual(len((self.folder / "run/records.jsonl").read_text().splitlines()), 8)
        shutil.copy(self.folder / "run/missing.txt", self.folder / "list")
        self.finish(self.call(program=fragile), expect=2)  # not the list that this run was begun with
        self.finish(self.call("-n", "1", "-S", "2/:", program=fragile, run="second"), expect=3)
        self.assertEqual((self.folder / "second/missing.txt").read_text(), "in/poison.jpg\n")


class Stream(ProgramTest):

    def test_splits_give_what_the_whole_gives(self):
        files = [DATA / f"average_face_{number}.jpg" for number in range(1, 8)]
        texts = [base64.b64encode(file.read_bytes()).decode() for file in files] + ["?"]
        lines = [json.dumps({"id": number, "image_base64": text}) + "\n" for number, text in enumerate(texts)]
        (self.folder / "whole").write_text("".join(lines))
        command = " ".join(["portraitcut", *CUT, "--stream"])
        job = f"""
          split -n r/3 whole split.
          for part in split.*; do filter.sh {command} < $part > done.$part & tasks="$tasks $!"; done
          for task in $tasks; do wait $task || exit 1; done
          sort done.* > merged
          {command} < whole | sort | cmp - merged"""
        path = f"{RECIPES}:{os.path.dirname(PROGRAM)}:{os.environ['PATH']}"
        done = subprocess.run(["sh", "-c", job], cwd=self.folder, env={**os.environ, "PATH": path}, timeout=180,
                              capture_output=True, check=False)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        statuses = [json.loads(line)["status"] for line in (self.folder / "merged").read_text().splitlines()]
        self.assertEqual(sorted(statuses), ["failed"] + ["ok"] * 7)


if __name__ == "__main__":
    unittest.main()
