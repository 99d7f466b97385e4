"""Exporting the lists: what the files hold, read by another program's rules."""

import csv
import errno
import io
import os
import plistlib
from datetime import datetime

import expectation
from program import NEWEST_LAST
from waiting import wait_until
from window_test_case import WindowTestCase, main, options

HISTORY_TITLES = ["Group", "Kind", "Name", "Version", "Date"]
RECEIPT_TITLES = ["Date", "Package", "Path"]


def records(file):
    """The records of a file of comma-separated values."""
    text = file.read_bytes().decode()
    rows = list(csv.reader(io.StringIO(text, newline=""), strict=True))
    # As a second writer of the same rules has them, to the last byte.
    again = io.StringIO(newline="")
    csv.writer(again).writerows(rows)
    assert again.getvalue() == text, text
    return rows


def expected_history(volume):
    return [HISTORY_TITLES] + [
        [group.name, expectation.KINDS[item.kind], item.name, item.version, expectation.described(item.date)]
        for group in expectation.history(volume)
        for item in group.items
    ]


def expected_receipts(volume):
    return [RECEIPT_TITLES] + [
        [expectation.described(date), name, f"/{os.path.relpath(path, volume)}.plist"]
        for date, name, path in expectation.scan(volume)[0]
    ]


class Export(WindowTestCase):
    def setUp(self):
        self.folder = self.new_folder()

    def export(self, program, content, name):
        """Chooses by keyboard alone what to export and the name of the file."""
        program.keys("alt+f", "e")
        panel = program.dialog()
        self.assertEqual(panel.name, "Export")
        contents = panel.one("combo box", "Install history (*.csv)")
        program.type(str(self.folder / name), window=panel)
        if content != "Install history":
            while not contents.is_("focused"):
                program.keys("Tab", window=panel)
            program.keys("Down", window=panel)
            wait_until(lambda: contents.name == f"{content} (*.csv)", lambda: f"{content}; there is {contents!r}")
        save = panel.one("push button", "Save")
        while not save.is_("focused"):
            program.keys("Tab", window=panel)
        program.keys("space", window=panel)

    def exported(self, program, content, name):
        self.export(program, content, name)
        program.wait_for_no_dialog()
        return self.folder / name

    def test_files_hold_all_that_the_lists_show(self):
        program = self.start(options.sample)
        file = self.exported(program, "Install history", "history.csv")
        self.assertEqual(records(file), expected_history(options.sample))
        program.toggle(NEWEST_LAST)
        file = self.exported(program, "Receipts", "receipts.csv")
        titles, *rows = expected_receipts(options.sample)
        self.assertEqual(records(file), [titles, *reversed(rows)])
        self.assertEqual(sorted(os.listdir(self.folder)), ["history.csv", "receipts.csv"])
        self.assert_leaves_well(program)

    def test_odd_names_are_written_as_they_were_read(self):
        names = ['macOS Mojave, "the" one', "Security Update \u202e\u2028\r\n|\n|\r|", "=Security Update", ""]
        volume = self.new_volume()
        entries = [(name, "1,2\t3", datetime(1, 1, 1), "config-data") for name in names]
        volume.write_history(entries, plistlib.FMT_BINARY)
        volume.write_receipt("a,b", '19" screen', datetime(2020, 1, 1))
        program = self.start(volume)
        file = self.exported(program, "Install history", "history")
        self.assertEqual(records(file.with_suffix(".csv")), expected_history(volume.folder))
        file = self.exported(program, "Receipts", "receipts.csv")
        self.assertEqual(records(file), expected_receipts(volume.folder))
        self.assert_leaves_well(program)

    def test_lists_without_rows_are_their_titles(self):
        volume = self.new_volume()
        volume.write_history([])
        program = self.start(volume)
        self.assertEqual(records(self.exported(program, "Install history", "history.csv")), [HISTORY_TITLES])
        self.assertEqual(records(self.exported(program, "Receipts", "receipts.csv")), [RECEIPT_TITLES])
        self.assert_leaves_well(program)

    def test_full_disk_is_told_in_the_systems_own_words(self):
        full = self.folder / "full.csv"
        full.symlink_to("/dev/full")
        program = self.start(options.sample)
        self.export(program, "Receipts", "full.csv")
        question = program.alert()
        question.press(next(button for button in question.buttons if "Yes" in button))
        alert = program.alert()
        self.assertEqual(alert.texts, ["An error occurred in your last action:", os.strerror(errno.ENOSPC)])
        alert.press("OK")
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
