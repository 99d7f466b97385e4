"""Closing the main window ends the program, whatever is open over it."""

from program import NEWEST_LAST
from window_test_case import WindowTestCase, main, options


class Leaving(WindowTestCase):
    def start_program(self):
        return self.start(options.sample)

    def expect_end(self, program):
        self.assertEqual(program.wait_for_end(), 0)
        self.assert_left_well(program)

    def test_by_the_window_manager(self):
        self.assert_leaves_well(self.start_program())

    def test_by_keys(self):
        for keys in ("alt+F4", "ctrl+w", "ctrl+q"):
            with self.subTest(keys):
                program = self.start_program()
                program.keys(keys)
                self.expect_end(program)

    def test_by_menu_items(self):
        for item in ("Close", "Quit"):
            with self.subTest(item):
                program = self.start_program()
                program.menu_item("File", item).press()
                self.expect_end(program)

    def test_over_a_sheet(self):
        program = self.start_program()
        program.button("Show Bill of Materials").press()
        program.dialog()
        self.assert_leaves_well(program)

    def test_over_a_save_panel(self):
        program = self.start_program()
        program.menu_item("File", "Save…").press()
        program.dialog()
        self.assert_leaves_well(program)

    def test_over_an_alert(self):
        program = self.start_program()
        program.button("Save…").press()
        panel = program.dialog()
        panel.one("text", "File name:").text = "/nowhere/report.txt"
        program.keys("Return", window=panel)
        program.alert()
        self.assert_leaves_well(program)

    def test_right_after_the_window_is_there(self):
        for _ in range(10):
            self.assert_leaves_well(self.start_program())

    def test_of_one_start_leaves_another_alone(self):
        program, other = self.start_program(), self.start_program()
        self.assertEqual(program.title, other.title)
        self.assert_leaves_well(program)
        other.toggle(NEWEST_LAST)
        self.assert_leaves_well(other)


if __name__ == "__main__":
    main()
