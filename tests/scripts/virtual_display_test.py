"""A virtual display is only for those who can read its cookie."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from virtual_display import start_virtual_display  # noqa: E402


class VirtualDisplay(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.process, self.environment = start_virtual_display(self.folder)
        self.addCleanup(self.process.wait)
        self.addCleanup(self.process.terminate)

    def can_be_used(self, **changes):
        environment = {"PATH": os.environ["PATH"], **self.environment, **changes}
        client = subprocess.run(["xdotool", "getdisplaygeometry"], env=environment, capture_output=True, check=False)
        return client.returncode == 0

    def test_it_can_be_used_with_the_cookie(self):
        self.assertTrue(self.can_be_used())

    def test_it_can_not_be_used_without_the_cookie(self):
        self.assertFalse(self.can_be_used(XAUTHORITY="/dev/null"))

    def test_another_cookie_does_not_do(self):
        other = self.enterContext(tempfile.TemporaryDirectory())
        process, environment = start_virtual_display(other)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        self.assertFalse(self.can_be_used(XAUTHORITY=environment["XAUTHORITY"]))

    def test_nobody_else_can_read_the_cookie(self):
        self.assertEqual(os.stat(self.environment["XAUTHORITY"]).st_mode & 0o777, 0o600)


if __name__ == "__main__":
    unittest.main()
