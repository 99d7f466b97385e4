"""The program used with the keyboard alone."""

import expectation
from program import OUTLINE, SHEET_TEXT
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
    ("chart", "Timeline"),
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
        for name in ("Find…", "Copy Paths", "Save…", "Close"):
            program.keys("Tab", window=sheet)
            button = sheet.one("push button", name)
            wait_until(lambda button=button: button.is_("focused"), f"{name} to have the keyboard")
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

    def test_home_end_and_page_keys_go_through_both_lists(self):
        program, tree = self.program, self.program.part("tree", OUTLINE)
        program.expanded_outline()

        def has_selected(row):
            cells = [cell for cell in tree.children if cell.role == "table cell"][0::3]
            return [cell.is_("selected") for cell in cells].index(True) == row % len(cells)

        program.keys("End")
        wait_until(lambda: has_selected(-1), "the last entry to be selected")
        program.keys("Home")
        wait_until(lambda: has_selected(0), "the first group to be selected")
        program.keys("Page_Down")
        wait_until(lambda: not has_selected(0), "the next page")
        program.keys("Page_Up")
        wait_until(lambda: has_selected(0), "the first page")

        last = len(program.receipts()) - 1
        program.keys("Tab", "End")
        wait_until(lambda: program.selected_receipts() == [last], "the last receipt to be selected")
        program.keys("Page_Up")
        wait_until(lambda: 0 < program.selected_receipts()[0] < last, "the page before")
        program.keys("Home")
        wait_until(lambda: program.selected_receipts() == [0], "the first receipt to be selected")
        program.keys("Page_Down")
        wait_until(lambda: 0 < program.selected_receipts()[0] < last, "the page behind")
        self.assert_leaves_well(program)

    def test_context_menus_open_and_work_with_keys(self):
        program = self.program
        names = [group.name for group in self.groups]
        program.keys("Home")
        program.keys("Menu", "y")
        self.expect_clipboard(names[0])
        program.keys("Down")
        program.keys("shift+F10", "y")
        self.expect_clipboard(names[1])
        for key, letter, state in (("Menu", "a", False), ("shift+F10", "e", True)):
            program.keys(key, letter)
            wait_until(
                lambda: {cell.is_("expanded") for cell in program.group_cells()} == {state}, f"{letter} to be chosen"
            )

        receipts = program.receipts()
        program.keys("Tab", "End")
        program.keys("shift+F10", "y")
        self.expect_clipboard(receipts[-1][1])
        program.keys("Menu", "m")
        sheet = program.dialog()
        program.keys("Escape", window=sheet)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)

    def test_context_menu_opens_with_the_right_button_for_the_row_under_it(self):
        program = self.program
        program.click(program.receipt_cell(2), button=3)
        wait_until(lambda: program.selected_receipts() == [2], "the receipt to be selected")
        program.keys("y")
        self.expect_clipboard(program.receipts()[2][1])
        self.assert_leaves_well(program)

    def expect_clipboard(self, text):
        """Pastes into the line for finding, and goes back to where the focus was."""
        program = self.program
        program.keys("ctrl+f")
        field = program.part("text", "Find")
        wait_until(lambda: field.is_("focused"), "the line for finding")
        program.keys("ctrl+a", "ctrl+v")
        wait_until(lambda: field.text == text, lambda: f"{text!r}; there is {field.text!r}")
        program.keys("Escape")
        wait_until(lambda: not field.is_("showing"), "the search to end")

    def test_menus_open_and_work_with_keys(self):
        self.program.keys("alt+v")
        self.program.keys("n")
        wait_until(lambda: self.program.check_box("Newest last").is_("checked"), "the newest to be last")
        self.assertEqual(self.program.report, expectation.report(self.groups, True, True))
        self.assert_leaves_well(self.program)

    def test_underlined_letters_lead_to_the_parts_of_the_window(self):
        for keys, stop in (("alt+t", STOPS[-1]), ("alt+p", STOPS[-2]), ("alt+r", STOPS[1]), ("alt+i", STOPS[0])):
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
