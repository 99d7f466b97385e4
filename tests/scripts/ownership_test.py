"""What root's use of the packaging scripts leaves in the project belongs to the project's owner, who can replace it."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
OWNER = 65534 if os.geteuid() == 0 else os.geteuid()

# Makes what the packages would be, as far as the scripts look at it.
CMAKE = """
for argument; do case $argument in /*/build/package) folder=$argument;; esac; done
[ -n "$folder" ] || folder=$PWD/build/package
mkdir -p "$folder"
echo package >"$folder/pelmarix_1.deb"
"""


class Ownership(unittest.TestCase):
    def setUp(self):
        scratch = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.project = scratch / "project"
        for folder in ("packaging", "scripts"):
            shutil.copytree(PROJECT / folder, self.project / folder)
        self.commands = scratch / "commands"
        self.commands.mkdir()
        self.add_command("git", 'find * -name build -prune -o -type f -printf "%p\\\\0"')
        for path in (self.project, *self.project.rglob("*")):
            os.chown(path, OWNER, -1)

    def add_command(self, name, lines):
        file = self.commands / name
        file.write_text(f"#!/bin/sh\n{lines}\n", encoding="utf-8")
        file.chmod(0o755)

    def run_script(self, name):
        return subprocess.run(
            [self.project / "packaging" / name], stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
            env={"PATH": f"{self.commands}:{os.environ['PATH']}", "LANG": "C.UTF-8", "HOME": "/"},
        )

    def assert_all_is_the_owners(self):
        self.assertTrue((self.project / "build/package/pelmarix_1.deb").exists())
        others = [str(path) for path in self.project.rglob("*") if path.lstat().st_uid != OWNER]
        self.assertEqual(others, [])

    def test_after_two_builds(self):
        self.add_command("cmake", CMAKE)
        done = self.run_script("check_reproducible.sh")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assert_all_is_the_owners()

    def test_after_a_build_that_failed(self):
        self.add_command("cmake", CMAKE + "exit 1")
        done = self.run_script("check_deb.sh")
        self.assertEqual(done.returncode, 1)
        if os.geteuid() == 0:
            self.assert_all_is_the_owners()
        else:
            self.assertIn("Only root", done.stderr)


if __name__ == "__main__":
    unittest.main()
