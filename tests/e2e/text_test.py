"""The report and the sheet's text, as they are used with the mouse and read by a screen reader."""

from accessible import Atspi, Listener
from program import REPORT, SHEET_TEXT, TABLE
from waiting import wait_until
from window_test_case import WindowTestCase, desktop, main, options


class Text(WindowTestCase):
    def setUp(self):
        self.program = self.start(options.sample)
        self.report = self.program.part("text", REPORT)
        self.lines = self.program.report.split("\n")

    def point_of(self, offset):
        """The middle of a letter, on the screen."""
        box = Atspi.Text.get_character_extents(self.report.remote, offset, Atspi.CoordType.SCREEN)
        return str(box.x + box.width // 2), str(box.y + box.height // 2)

    def selection(self):
        found = Atspi.Text.get_selection(self.report.remote, 0)
        return found.start_offset, found.end_offset

    def test_a_screen_reader_reads_lines_words_and_letters_where_they_are(self):
        text = self.report.remote
        offset = 2 + len(self.lines[2]) + 1  # behind two empty lines: the second that isn't
        for boundary, expected in (
            (Atspi.TextBoundaryType.LINE_START, self.lines[3]),
            (Atspi.TextBoundaryType.WORD_START, self.lines[3].split()[0].rstrip(":")),
            (Atspi.TextBoundaryType.CHAR, self.lines[3][0]),
        ):
            found = Atspi.Text.get_text_at_offset(text, offset, boundary)
            self.assertEqual((found.content, found.start_offset), (expected, offset))
        left, top, width, height = self.report.extents
        x, y = map(int, self.point_of(offset))
        self.assertTrue(left < x < left + width and top < y < top + height)
        self.assertIn(
            Atspi.Text.get_offset_at_point(text, x, y, Atspi.CoordType.SCREEN), (offset, offset + 1)
        )
        self.assert_leaves_well(self.program)

    def test_a_screen_reader_hears_of_the_caret_and_of_what_is_selected(self):
        kinds = ("text-caret-moved", "text-selection-changed", "text-changed")
        listener = Listener(*kinds, told=lambda event: (event.type, event.detail1))

        def is_(kind, detail=None):
            return lambda told: told[0].startswith(f"object:{kind}") and detail in (None, told[1])

        def moves_until_heard():
            self.program.keys("ctrl+Home", "Right")
            return listener.has_heard(is_("text-caret-moved", 1))

        self.program.press_until("alt+p", lambda: self.report.is_("focused"), "the report to have the keyboard")
        # It takes the program a while to know that somebody listens.
        wait_until(moves_until_heard, lambda: f"the caret at 1; heard {listener.heard}")
        self.program.keys("Down", "Right")
        listener.wait_for(is_("text-caret-moved", 3), "the caret at 3")
        self.program.keys("shift+Right")
        listener.wait_for(is_("text-selection-changed"), "a selection")
        self.program.toggle("Newest last")
        listener.wait_for(is_("text-changed:insert"), "another text")
        self.assertTrue(listener.has_heard(is_("text-changed:delete")), listener.heard)
        self.assert_leaves_well(self.program)

    def test_what_the_mouse_selects_is_pasted_by_the_middle_button(self):
        program = self.program
        program.keys("alt+p", "ctrl+Home")
        word = self.lines[2].split()[0]
        desktop.run("xdotool", "mousemove", *self.point_of(3))
        desktop.run("xdotool", "click", "--repeat", "2", "--delay", "40", "1")
        wait_until(lambda: self.selection() == (2, 2 + len(word)), lambda: f"{word} to be selected: {self.selection()}")
        program.keys("ctrl+f")
        field = program.part("text", "Find")
        wait_until(lambda: field.is_("focused"), "the field of the search")
        program.keys("BackSpace")
        left, top, width, height = field.extents
        desktop.run("xdotool", "mousemove", str(left + width // 3), str(top + height // 2), "click", "2")
        wait_until(lambda: field.text == word, lambda: f"{word!r}; there is {field.text!r}")
        program.keys("Escape")
        self.assert_leaves_well(program)

    def test_what_is_selected_is_dragged_into_another_field(self):
        program = self.program
        program.keys("ctrl+f")
        field = program.part("text", "Find")
        wait_until(lambda: field.is_("focused"), "the field of the search")
        Atspi.Text.set_selection(self.report.remote, 0, 2, 8)
        left, top, width, height = field.extents
        desktop.run("xdotool", "mousemove", *self.point_of(4), "mousedown", "1")
        for step in (1, 2, 3):
            x, y = str(left + width // 3 + step), str(top + height // 2)
            desktop.run("xdotool", "mousemove", x, y)
        desktop.run("xdotool", "mouseup", "1")
        wait_until(lambda: field.text == self.lines[2][:6], lambda: f"what was dragged; there is {field.text!r}")
        program.keys("Escape")
        self.assert_leaves_well(program)

    def test_all_parts_are_searched_one_after_the_other_by_keys(self):
        program = self.program
        dates = [date for date, _ in program.receipts()]
        month = next(date[:8] for date in dates if f" {date[:8]}" in program.report)
        program.keys("alt+i", "ctrl+f")
        field = program.part("text", "Find")
        wait_until(lambda: field.is_("focused"), "the field of the search")
        program.type(month)
        program.keys("alt+a")

        def outcome():
            return next((label.name for label in program.window.find("label") if " in all" in label.name), "")

        def goes_on_to(part, keys):
            before = outcome()
            program.keys(keys)
            wait_until(lambda: outcome() not in ("", before), lambda: f"another outcome than {before!r}")
            return outcome().startswith(f"{part}: ")

        wait_until(lambda: outcome().startswith("Install history: 1 of "), lambda: f"a match; there is {outcome()!r}")
        for part, keys in (("Receipts", "F3"), ("Report", "F3"), ("Receipts", "shift+F3")):
            wait_until(lambda part=part, keys=keys: goes_on_to(part, keys), f"the search to come to {part}")
        found = [dates[row] for row in program.selected_receipts()]
        self.assertEqual([date[:8] for date in found], [month])
        receipts = program.part("table", TABLE)
        program.press_until("Escape", lambda: receipts.is_("focused"), "the receipts to have the keyboard")
        self.assert_leaves_well(program)

    def test_the_sheet_is_scrolled_to_what_is_asked_for(self):
        program = self.program
        program.select_receipt(0)
        program.keys("ctrl+b")
        sheet = program.dialog()
        text = sheet.one("text", SHEET_TEXT)
        end = Atspi.Text.get_character_count(text.remote)
        self.assertEqual(len(text.text), end)
        program.keys("ctrl+End", window=sheet)
        wait_until(lambda: Atspi.Text.get_caret_offset(text.remote) == end, "the caret at the end")
        program.keys("Escape", window=sheet)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
