"""The volumes of a Mac: its system and its data in two folders, shown as one."""

import subprocess

import expectation
from program import SHEET_TEXT
from window_test_case import WindowTestCase, main, options


class TwoVolumes(WindowTestCase):
    @classmethod
    def setUpClass(cls):
        folder = cls.desktop.folder("Mac")
        subprocess.run([options.sample.with_name("pelmarix-sample"), "--two-volumes", folder], check=True)
        cls.system, cls.data = folder / "Macintosh HD", folder / "Macintosh HD - Data"
        cls.groups = expectation.history(options.sample)

    def assert_shows_the_whole_mac(self, program):
        self.assertEqual(program.title, expectation.title(options.sample))
        self.assertEqual(program.expanded_outline(), expectation.outline(self.groups))
        self.assertEqual(program.report, expectation.report(self.groups))
        self.assertEqual(program.receipts(), expectation.receipts(options.sample))
        program.select_receipt(0)
        program.keys("ctrl+b")
        self.assertIn("./", program.dialog().one("text", SHEET_TEXT).text)
        program.keys("Escape", window=program.dialog())
        program.wait_for_no_dialog()

    def test_two_folders_show_history_receipts_title_and_sheet_as_one(self):
        for folders in ((self.system, self.data), (self.data, self.system)):
            with self.subTest(folders=folders):
                program = self.start(":".join(map(str, folders)))
                self.assert_shows_the_whole_mac(program)
                self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
