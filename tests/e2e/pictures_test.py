"""The pictures of the documentation show the program as it is: each is taken anew and compared with the one that is kept.

They depend on the machine's fonts, so they are taken of the installed package in a clean system (packaging/check_deb.sh).
With PELMARIX_TAKE_PICTURES set that replaces them: PELMARIX_TAKE_PICTURES=1 packaging/check_deb.sh
"""

import os
import pathlib
import shutil

from program import SHEET_TEXT, SKIP
from waiting import wait_until
from window_test_case import WindowTestCase, desktop, main, options

IMAGES = pathlib.Path(__file__).resolve().parents[2] / "docs/images"

# Fewer pixels than this may differ: one line of text has more.
TOLERANCE = 200

# A desktop with dark colours, as Qt reads it from its settings.
DARK = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}
DARK_COLOURS = """\
[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252

[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=252,252,252
ForegroundInactive=161,169,177
ForegroundLink=29,153,243
ForegroundVisited=155,89,182

[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252

[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252

[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
"""


class Pictures(WindowTestCase):
    def take_picture(self, window, file):
        """What a window shows, once nothing moves any more. Its frame stays out: it is the window manager's."""
        left, top, width, height = window.extents
        area = f"{width}x{height}+{left}+{top}"
        before = None

        def is_still():
            nonlocal before
            last = before
            plain = ("-strip", "-define", "png:exclude-chunks=date,time")
            desktop.run("import", "-window", "root", "-crop", area, "+repage", *plain, str(file))
            before = file.read_bytes()
            return before == last

        wait_until(is_still, "a picture that stands still")

    def expect_picture(self, window, name):
        taken = self.new_folder() / name
        self.take_picture(window, taken)
        kept = IMAGES / name
        if "PELMARIX_TAKE_PICTURES" in os.environ:
            shutil.copy(taken, kept)
            return
        compared = desktop.run("compare", "-metric", "AE", "-fuzz", "8%", str(taken), str(kept), "null:", check=False)
        different = float(compared.stderr.split()[0]) if compared.returncode in (0, 1) else float("inf")
        if different >= TOLERANCE:
            shutil.copy(taken, options.pictures / name)
            self.fail(
                f"docs/images/{name} no longer shows the program as it is: {different:g} pixels differ from"
                f" {options.pictures / name}. If the program is right: PELMARIX_TAKE_PICTURES=1 packaging/check_deb.sh"
            )

    def start_shown(self, home=None, environment=None):
        program = self.start(options.sample, home, environment=environment)
        self.assertTrue(program.window)
        # All that there is, so that the timeline shows when much came at a time.
        program.toggle(SKIP)
        program.select_receipt(0)
        desktop.run("xdotool", "mousemove", "0", "0")
        return program

    def test_light(self):
        program = self.start_shown()
        self.expect_picture(program.window, "main-light.png")
        self.assert_leaves_well(program)

    def test_dark(self):
        home = self.new_home()
        (home.folder / ".config/kdeglobals").write_text(DARK_COLOURS, encoding="utf-8")
        program = self.start_shown(home, DARK)
        self.expect_picture(program.window, "main-dark.png")
        self.assertEqual(program.close(), 0)

    def test_sheet(self):
        program = self.start_shown()
        program.keys("ctrl+b")
        sheet = program.dialog()
        self.assertTrue(sheet.one("text", SHEET_TEXT).text)
        self.expect_picture(sheet, "sheet.png")
        program.keys("Escape", window=sheet)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
