"""The program used with the keyboard alone."""

import expectation
from program import SHEET_TEXT
from waiting import wait_until
from window_test_case import WindowTestCase, main, options

# In the order in which Tab reaches them.
STOPS = (
    ("tree", "Install history"),
    ("table", "Receipts"),
    ("push button", "Show Bill of Materials"),
    ("check box", "Skip configuration data"),
    ("check box", "Newest last"),
    ("push button", "Smaller text"),
    ("push button", "Bigger text"),
    ("push button", "Save…"),
    ("text", "Report"),
)


class Keyboard(WindowTestCase):
    def setUp(self):
        self.groups = expectation.history(options.sample)
        self.program = self.start(options.sample)

    def expect_focus(self, role, name):
        part = self.program.part(role, name)

        def has_focus():
            return part.is_("focused") or any(child.is_("focused") for child in self.cells_of(part))

        wait_until(has_focus, f"{name} to have the keyboard")

    @staticmethod
    def cells_of(part):
        return part.children if part.role in ("tree", "table") else []

    def test_tab_reaches_every_part_in_the_order_in_which_it_is_read(self):
        self.expect_focus(*STOPS[0])
        for stop in (*STOPS[1:], STOPS[0]):
            self.program.keys("Tab")
            self.expect_focus(*stop)
        for stop in reversed(STOPS):
            self.program.keys("shift+Tab")
            self.expect_focus(*stop)
        self.assert_leaves_well(self.program)

    def test_keys_do_all_that_there_is_to_do(self):
        program, groups = self.program, self.groups
        rows, entries = program.outline(), expectation.outline(groups[:1])
        program.keys("Home", "Right")
        wait_until(lambda: program.outline() == entries + rows[1:], "the first group to expand")
        program.keys("Return")
        wait_until(lambda: program.outline() == rows, "the first group to collapse")

        program.keys("Tab", "Down")
        wait_until(lambda: program.selected_receipts() == [1], "the second receipt to be selected")
        program.keys("Return")
        sheet = program.dialog()
        first_text = sheet.one("text", SHEET_TEXT).text
        program.keys("Escape", window=sheet)
        program.wait_for_no_dialog()
        program.keys("Tab")
        self.expect_focus("push button", "Show Bill of Materials")
        program.keys("space")
        sheet = program.dialog()
        self.assertEqual(sheet.one("text", SHEET_TEXT).text, first_text)
        program.keys("Tab", "Tab", window=sheet)
        close = sheet.one("push button", "Close")
        wait_until(lambda: close.is_("focused"), "Close to have the keyboard")
        program.keys("space", window=sheet)
        program.wait_for_no_dialog()

        program.keys("Tab", "space")
        wait_until(lambda: program.report == expectation.report(groups, skip=False), "the report with all entries")
        program.keys("Tab", "space")
        wait_until(lambda: program.report == expectation.report(groups, False, True), "the report with the newest last")
        self.assertEqual(program.receipts(), expectation.receipts(options.sample)[::-1])
        for keys, size in ((("Tab", "space"), 11), (("Tab", "space"), 12), (("ctrl+plus",), 13)):
            program.keys(*keys)
            wait_until(lambda: program.text_size == size, f"{size} points")

        file = self.new_folder() / "keys.txt"
        program.keys("ctrl+s")
        panel = program.dialog()
        program.type(str(file), window=panel)
        field = panel.one("text", "File name:")
        wait_until(lambda: field.text == str(file), "the name to be typed")
        program.keys("Return", window=panel)
        program.wait_for_no_dialog()
        text = file.read_text(encoding="utf-8")
        self.assertTrue(text.startswith(expectation.report(groups, False, True) + "Checked by Pelmarix at: "))

        program.keys("ctrl+w")
        self.assertEqual(program.wait_for_end(), 0)
        self.assert_left_well(program)

    def test_menus_open_and_work_with_keys(self):
        self.program.keys("alt+v")
        self.program.keys("n")
        wait_until(lambda: self.program.check_box("Newest last").is_("checked"), "the newest to be last")
        self.assertEqual(self.program.report, expectation.report(self.groups, True, True))
        self.assert_leaves_well(self.program)

    def test_underlined_letters_lead_to_the_parts_of_the_window(self):
        for keys, stop in (("alt+p", STOPS[-1]), ("alt+r", STOPS[1]), ("alt+i", STOPS[0])):
            self.program.keys(keys)
            self.expect_focus(*stop)
        self.assert_leaves_well(self.program)

    def test_copied_rows_are_lines_of_cells_with_tabs_between(self):
        program = self.program
        program.keys("Tab", "Down", "Up", "ctrl+c", "ctrl+s")
        panel = program.dialog()
        program.keys("ctrl+v", window=panel)
        field = panel.one("text", "File name:")
        expected = "\t".join(expectation.receipts(options.sample)[0])
        wait_until(lambda: field.text.strip() == expected, lambda: f"{expected!r}; there is {field.text!r}")
        program.keys("Escape", window=panel)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
