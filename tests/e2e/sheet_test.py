"""The sheet with a bill of materials, filled by the real lister."""

import os
import re
import shutil
import subprocess
import unittest

import expectation
from program import NEWEST_LAST, SHEET_TEXT
from waiting import wait_until
from window_test_case import WindowTestCase, main, options

NOTHING = "No information available from a Bom file"

# What is lost each time shows in as few as these; where there is time, let it be 1000.
OPENINGS = int(os.environ.get("PELMARIX_SHEET_OPENINGS", "60"))


def listing(stem):
    """What the lister itself says of a receipt: the text as the sheet is to show it, and what it complains of."""
    path = f"/{os.path.relpath(stem, options.sample)}.bom"
    environment = {**os.environ, "PELMARIX_VOLUME": str(options.sample)}
    result = subprocess.run([options.lister, "-f", "-p", "fsT", path], env=environment, capture_output=True, check=False)
    text = result.stdout.decode() if result.returncode == 0 else ""
    return text or NOTHING, result.stderr.decode()


class Sheet(WindowTestCase):
    @classmethod
    def setUpClass(cls):
        cls.stems = [stem for _, _, stem in expectation.scan(options.sample)[0]]
        cls.expected = [listing(stem) for stem in cls.stems]

    def row_where(self, condition):
        return next(row for row, (text, complaint) in enumerate(self.expected) if condition(text, complaint))

    def expect_sheet(self, program, text):
        sheet = program.dialog()
        self.assertEqual(sheet.one("text", SHEET_TEXT).text, text)
        return sheet

    def open_by_button(self, program, row):
        program.select_receipt(row)
        program.button("Show Bill of Materials").press()
        return program.dialog()

    def close(self, program, sheet):
        sheet.one("push button", "Close").press()
        program.wait_for_no_dialog()

    def test_each_of_several_receipts_shows_what_the_lister_says_of_it(self):
        program = self.start(options.sample)
        complaints = ""
        rows = [*range(0, 60, 4), self.row_where(lambda text, _: len(text) > 30_000), len(self.stems) - 1]
        for row in rows:
            sheet = self.open_by_button(program, row)
            self.expect_sheet(program, self.expected[row][0])
            complaints += self.expected[row][1]
            self.close(program, sheet)
        self.assertGreater(len({self.expected[row][0] for row in rows}), 10)
        self.assert_leaves_well(program, complaints)

    def test_receipt_with_a_missing_broken_or_empty_bill_has_the_fixed_text(self):
        stems = [os.path.exists(f"{stem}.bom") for stem in self.stems]
        rows = {
            "missing": stems.index(False),
            "broken": next(row for row, there in enumerate(stems) if there and self.expected[row][1]),
            "no plain files": self.row_where(lambda text, complaint: text == NOTHING and not complaint),
        }
        for name, row in rows.items():
            with self.subTest(name):
                program = self.start(options.sample)
                sheet = self.open_by_button(program, row)
                self.expect_sheet(program, NOTHING)
                self.close(program, sheet)
                self.assert_leaves_well(program, self.expected[row][1])

    def test_without_a_selected_receipt_it_opens_empty(self):
        program = self.start(options.sample)
        self.assertEqual(program.selected_receipts(), [])
        program.button("Show Bill of Materials").press()
        sheet = self.expect_sheet(program, "")
        self.assertEqual(sheet.one("text", SHEET_TEXT).description, "No receipt is selected")
        self.close(program, sheet)
        self.assert_leaves_well(program)

    def test_without_any_receipt_it_opens_empty(self):
        volume = self.new_volume()
        volume.write_history([])
        program = self.start(volume)
        program.button("Show Bill of Materials").press()
        self.close(program, self.expect_sheet(program, ""))
        self.assert_leaves_well(program)

    def test_it_follows_the_receipts_when_they_are_turned_round(self):
        program = self.start(options.sample)
        row = self.row_where(lambda text, _: text != NOTHING)
        program.select_receipt(row)
        program.toggle(NEWEST_LAST)
        self.assertEqual(program.selected_receipts(), [row])
        program.button("Show Bill of Materials").press()
        text, complaint = self.expected[len(self.stems) - 1 - row]
        self.close(program, self.expect_sheet(program, text))
        self.assert_leaves_well(program, complaint)

    def test_return_space_double_click_shortcut_and_menu_open_it_and_escape_closes_it(self):
        program = self.start(options.sample)
        row = self.row_where(lambda text, complaint: text != NOTHING and not complaint)
        self.assertLess(row, 10)
        cell = program.receipt_cell(row)
        program.click(cell)
        wait_until(lambda: program.selected_receipts() == [row], "the row to be selected")
        self.assertEqual(program.dialogs(), [])
        for name, opens in {
            "Return": lambda: program.keys("Return"),
            "space": lambda: program.keys("space"),
            "double click": lambda: program.click(cell, times=2),
            "shortcut": lambda: program.keys("ctrl+b"),
            "menu": lambda: program.menu_item("View", "Show Bill of Materials").press(),
        }.items():
            with self.subTest(name):
                opens()
                sheet = self.expect_sheet(program, self.expected[row][0])
                program.keys("Escape", window=sheet)
                program.wait_for_no_dialog()
        self.assert_leaves_well(program)

    def test_double_click_of_another_button_opens_nothing(self):
        program = self.start(options.sample)
        for button in (2, 3):
            program.click(program.receipt_cell(1), times=2, button=button)
            program.click(program.receipt_cell(2 + button))
            wait_until(lambda: program.selected_receipts() == [2 + button], "another row to be selected")
            self.assertEqual(program.dialogs(), [])
        self.assert_leaves_well(program)

    def test_double_click_with_control_held_down_opens_the_row_that_it_hits(self):
        program = self.start(options.sample)
        row = self.row_where(lambda text, complaint: text != NOTHING and not complaint)
        self.assertLess(row, 10)
        for selected in ([row], [row + 1], list(range(len(self.stems)))):
            with self.subTest(selected=selected[:2]):
                program.select_receipt(selected[0])
                if len(selected) > 1:
                    program.click(program.receipt_cell(row + 1))
                    program.keys("ctrl+a")
                wait_until(lambda: program.selected_receipts() == selected, "the rows to be selected")
                program.activate(program.window)
                with program.held_down("ctrl"):
                    program.click(program.receipt_cell(row), times=2)
                self.close(program, self.expect_sheet(program, self.expected[row][0]))
        self.assert_leaves_well(program)

    def test_text_can_be_selected_and_copied(self):
        program = self.start(options.sample)
        row = self.row_where(lambda text, complaint: 0 < len(text) < 5000 and text != NOTHING and not complaint)
        sheet = self.open_by_button(program, row)
        program.keys("ctrl+a", "ctrl+c", "Escape", window=sheet)
        program.wait_for_no_dialog()
        # Pasted where text can be entered: into the name of a file to save, which is one line.
        program.button("Save…").press()
        panel = program.dialog()
        program.keys("ctrl+v", window=panel)
        field = panel.one("text", "File name:")
        expected = self.expected[row][0].strip().split()
        wait_until(
            lambda: field.text.replace("\u2028", " ").split() == expected, lambda: f"the text; there is {field.text!r}"
        )
        program.keys("Escape", window=panel)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)

    def test_it_says_whose_it_is_and_its_text_and_paths_leave_it_by_keys(self):
        program = self.start(options.sample)
        row = self.row_where(lambda text, complaint: text.count("\n") > 2 and not complaint)
        program.select_receipt(row)
        program.keys("ctrl+b")
        sheet = self.expect_sheet(program, self.expected[row][0])
        for cell in reversed(program.receipts()[row]):
            self.assertTrue(sheet.one("label", cell).is_("showing"))
        program.keys("alt+p", "ctrl+f", window=sheet)
        field = sheet.one("text", "Find")
        wait_until(lambda: field.is_("focused"), "the field of the search")
        paths = [line.split("\t")[0] for line in self.expected[row][0].splitlines()]

        def pasted():  # again and again, for a button takes a moment to act; a line's end is a sign in the field
            program.keys("ctrl+a", "ctrl+v", window=sheet)
            return re.split("[\n\u2028]", field.text.strip("\n\u2028"))

        wait_until(lambda: pasted() == paths, lambda: f"{paths}; there is {field.text!r}")
        program.keys("Escape", window=sheet)
        file = self.new_folder() / "listing.txt"
        program.keys("alt+s", window=sheet)
        wait_until(lambda: len(program.dialogs()) == 2, "the panel")
        panel = next(dialog for dialog in program.dialogs() if dialog.name != sheet.name)
        panel.one("text", "File name:").text = str(file)
        program.keys("Return", window=panel)
        program.wait_for_dialogs(1)
        self.assertEqual(file.read_text(encoding="utf-8"), self.expected[row][0])
        program.keys("ctrl+w", window=sheet)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)

    def test_many_openings_use_up_nothing(self):
        program = self.start(options.sample)
        rows = [row for row, (text, complaint) in enumerate(self.expected) if text != NOTHING and not complaint][:10]

        def open_and_close(number):
            sheet = self.open_by_button(program, rows[number % len(rows)])
            self.expect_sheet(program, self.expected[rows[number % len(rows)]][0])
            self.close(program, sheet)

        for number in range(20):  # fonts, styles and the like are loaded by the first ones
            open_and_close(number)
        files, memory = program.open_files(), program.memory()
        for number in range(OPENINGS):
            open_and_close(number)
            self.assertEqual(program.children(), set())
        self.assertEqual(program.open_files(), files)
        grown = program.memory() - memory
        print(f"{OPENINGS} openings: {files} descriptors, memory {memory >> 10} KiB and {grown >> 10} KiB more")
        self.assertLess(grown, 2 << 20)
        self.assert_leaves_well(program)

    @unittest.skipIf(os.path.exists("/usr/bin/lsbom"), "this system has a lister of its own, which is always found")
    def test_lister_that_cannot_be_started_shows_nothing(self):
        binary = shutil.copy(options.program, self.new_folder())
        program = self.start(options.sample, binary=binary)
        program.select_receipt(0)
        button = program.button("Show Bill of Materials")
        files = []
        for _ in range(4):
            button.press()
            # It stays down for a moment, as under a finger, and acts as it comes up.
            wait_until(lambda: not button.is_("pressed"), "the button to come up")
            self.assertEqual(program.windows("dialog", "alert"), [])
            files.append(program.open_files())
        self.assertEqual(program.selected_receipts(), [0])
        self.assertEqual(files[-1], files[0])  # at first, threads may still be starting
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
