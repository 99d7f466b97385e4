"""run_test.py PROGRAM SAMPLE: ./run in a copy of the project where all is installed and built."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

PROGRAM, SAMPLE = (pathlib.Path(argument).absolute() for argument in sys.argv[1:3])
PROJECT = pathlib.Path(__file__).resolve().parents[2]


class Run(unittest.TestCase):
    def setUp(self):
        scratch = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.project, self.caller, self.noted = scratch / "project", scratch / "caller", scratch / "noted"
        shutil.copytree(PROJECT / "scripts", self.project / "scripts")
        shutil.copy(PROJECT / "run", self.project)
        (self.project / "build").mkdir()
        (self.project / "build/build.ninja").touch()
        self.commands = scratch / "commands"
        self.add_script(self.commands / "ninja", ":")
        self.add_script(self.commands / "dpkg-query", "awk '{ print $2 \" installed\" }' scripts/packages")
        self.add_script(self.commands / "apt-get", "exit 1")
        (self.caller / "Mac").mkdir(parents=True)
        (self.caller / "sample").symlink_to(SAMPLE)

    def add_script(self, file, lines):
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(f"#!/bin/sh\n{lines}\n", encoding="utf-8")
        file.chmod(0o755)

    def run_it(self, program, **environment):
        """What ./run prints, started from the caller's folder."""
        note = f'echo "$PELMARIX_VOLUME" >{self.noted}; (cd "${{PELMARIX_VOLUME%%:*}}" && pwd -P) >>{self.noted}'
        self.add_script(self.project / "build/bin/pelmarix", f"{note}\n{program}")
        kept = {name: os.environ[name] for name in ("HOME", "ASAN_OPTIONS") if name in os.environ}
        started = subprocess.run(
            ["../project/run"], cwd=self.caller, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
            env={"PATH": f"{self.commands}:{os.environ['PATH']}", "LANG": "C.UTF-8", **kept, **environment},
        )
        self.assertEqual((started.returncode, started.stderr), (0, ""), started.stdout)
        return started.stdout

    def volume(self):
        return self.noted.read_text(encoding="utf-8").splitlines()

    def test_a_volume_is_looked_for_below_the_callers_folder(self):
        for value in ("Mac", "./Mac", "../caller/Mac", str(self.caller / "Mac"), "Mac:sample"):
            with self.subTest(value):
                self.run_it("", DISPLAY=":0", PELMARIX_VOLUME=value)
                self.assertEqual(self.volume()[1:], [str((self.caller / "Mac").resolve())])

    def test_without_a_volume_it_shows_the_sample(self):
        sample = self.project / "build/sample/volume"
        sample.mkdir(parents=True)
        self.assertEqual(self.run_it("", DISPLAY=":0"), f"Pelmarix looks at {sample}\n")
        self.assertEqual(self.volume()[0], str(sample))

    def test_without_a_display_it_takes_a_picture(self):
        said = self.run_it(f"exec {PROGRAM}", PELMARIX_VOLUME="sample")
        self.assertEqual(self.volume()[1:], [str(SAMPLE.resolve())])
        picture = self.project / "build/window.png"
        self.assertEqual(said, f"Pelmarix looks at sample\nA picture of the window: {picture}\n")
        self.assertEqual(picture.read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
        self.assertGreater(picture.stat().st_size, 20_000)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
