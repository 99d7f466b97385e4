"""The frame of the tests of the window: each file of tests is run as a program of its own, on a desktop of its own."""

import argparse
import atexit
import itertools
import os
import pathlib
import sys
import unittest

from desktop import Desktop

# The accessibility library connects when it is first used, so the desktop must be there before it is imported.
desktop = Desktop()
desktop.__enter__()
atexit.register(desktop.__exit__)

from mac_volume import MacVolume  # noqa: E402
from program import QUIET, Home, Program  # noqa: E402
from waiting import wait_until  # noqa: E402

_arguments = argparse.ArgumentParser(description="Tests the window of the program through the accessibility bus.")
_arguments.add_argument("--program", required=True, type=pathlib.Path, help="the program")
_arguments.add_argument("--lister", required=True, type=pathlib.Path, help="the lister of bills of materials beside it")
_arguments.add_argument("--sample", required=True, type=pathlib.Path, help="a sample volume")
_arguments.add_argument("--write-bom", type=pathlib.Path, help="a program that writes bills of materials")
_arguments.add_argument("--pictures", default=".", type=pathlib.Path, help="where a failed test leaves a picture")
_arguments.add_argument("--instrumented", action="store_true", help="the program takes more memory than its own")
options, sys.argv[1:] = _arguments.parse_known_args()

_numbers = itertools.count(1)


def without_words_of_toolkit(output):
    """Leaves out what the toolkit says where its own save panel is looked at through the accessibility bus."""
    return "".join(line for line in output.splitlines(keepends=True) if not line.startswith("QAccessible"))


class WindowTestCase(unittest.TestCase):
    """Gives the tests volumes, home folders and starts of the program, and takes them back."""

    desktop = desktop

    def new_folder(self):
        return desktop.folder(f"test{next(_numbers)}")

    def new_volume(self):
        return MacVolume(self.new_folder())

    def new_home(self, settings=QUIET):
        return Home(desktop.scratch / f"home{next(_numbers)}", settings)

    def start(self, volume, home=None, binary=None, **options_of_start):
        """Starts the program on a volume, a MacVolume or a folder. It ends with the test."""
        folder = volume.folder if isinstance(volume, MacVolume) else volume
        program = Program(desktop, binary or options.program, folder, home or self.new_home(), **options_of_start)
        self.enterContext(program)
        return program

    def assert_leaves_well(self, program, output=""):
        """Closes the window. The program ends without an error, a word, a process or a file left behind."""
        self.assertEqual(program.close(), 0)
        self.assert_left_well(program, output)

    def assert_left_well(self, program, output=""):
        self.assertEqual(without_words_of_toolkit(program.output), output)
        # The command that opened a page may be just ending.
        wait_until(lambda: not program.left_behind(), lambda: f"the end of {program.left_behind()}", 5.0)
        self.assertEqual(program.home.files, [])
        self.assertEqual(sorted(os.listdir(program.temporary_folder)), [])


class _PicturingResult(unittest.TextTestResult):
    """Takes a picture of the screen the moment a test fails."""

    def _take_picture(self, test):
        file = options.pictures.absolute() / f"{test.id().removeprefix('__main__.')}.png"
        if desktop.screenshot(file):
            self.stream.writeln(f"\nA picture of the screen as {test} failed: {file}")

    def addFailure(self, test, err):
        self._take_picture(test)
        super().addFailure(test, err)

    def addError(self, test, err):
        self._take_picture(test)
        super().addError(test, err)


def main():
    unittest.main(testRunner=unittest.TextTestRunner(resultclass=_PicturingResult, verbosity=2))
