"""Completions for shells and the manual page."""

import os
import pathlib
import re
import shutil
import subprocess
import unittest

from support import PROGRAM, ProgramTest

APP = pathlib.Path(__file__).parents[2] / "apps" / "portraitcut"


class Shell(ProgramTest):

    def complete(self, *words):
        """What bash offers for the last of the words."""
        script = f'. "{APP}/completion.bash"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _portraitcut; ' \
                 'printf "%s\\n" "${COMPREPLY[@]}"'
        path = os.path.dirname(PROGRAM) + ":" + os.environ["PATH"]
        done = subprocess.run(["bash", "-c", script, "bash", "portraitcut", *words], cwd=self.folder, check=True,
                              capture_output=True, text=True, env={**os.environ, "PATH": path})
        return done.stdout.split("\n")[:-1]

    def test_completion(self):
        (self.folder / "my photo.jpg").touch()
        self.assertEqual(self.complete("de"), ["detect"])
        self.assertEqual(self.complete("cut", "--st"), ["--stream", "--stored-coordinates"])
        self.assertEqual(self.complete("cut", "--pad", "m"), ["mirror"])
        self.assertEqual(self.complete("detect", "-r", ""), ["my photo.jpg"])
        self.assertEqual(self.complete("cut", "--size", ""), [""])

    @unittest.skipUnless(shutil.which("fish"), "fish is not installed")
    def test_completion_for_fish(self):
        lines = ["de", "cut --stored", "cut --pad m"]
        script = f'source {APP}/completion.fish; for line in $argv; complete -C "portraitcut $line"; end'
        path = os.path.dirname(PROGRAM) + ":" + os.environ["PATH"]
        done = subprocess.run(["fish", "--no-config", "-c", script, *lines], check=True, capture_output=True, text=True,
                              env={**os.environ, "PATH": path})
        offered = [line.split("\t")[0] for line in done.stdout.splitlines()]
        self.assertEqual(offered, ["detect", "--stored-coordinates", "mirror"])

    def test_manual_names_every_option(self):
        page = (APP / "portraitcut.1").read_text().replace("\\-", "-")
        for command in ("cut", "detect", "features", "eyes", "annotate", "check"):
            text = self.run_program(command, "--help").stdout.decode()
            options = set(re.findall(r"^ +(?:-\w,)?(--[a-z-]+)", text, re.MULTILINE)) - {"--help"}
            self.assertGreater(len(options), 10)
            self.assertEqual([option for option in sorted(options) if option not in page], [])

    def test_manual_renders_without_warnings(self):
        if not shutil.which("groff"):
            self.skipTest("no groff")
        done = subprocess.run(["groff", "-t", "-man", "-ww", "-Tutf8", "-z", APP / "portraitcut.1"], capture_output=True,
                              check=True)
        self.assertEqual(done.stderr, b"")


if __name__ == "__main__":
    unittest.main()
