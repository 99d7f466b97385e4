"""The size of the report's text: its steps, its bounds, and that it is kept."""

from program import QUIET
from waiting import wait_until
from window_test_case import WindowTestCase, main, options


class TextSize(WindowTestCase):
    def start_with(self, stored):
        self.home = self.new_home({**QUIET, "fontSize": stored})
        return self.start(options.sample, self.home)

    def expect_size(self, program, size):
        wait_until(lambda: program.text_size == size, lambda: f"{size} points; it has {program.text_size}")

    def test_three_steps_up_are_there_again_at_the_next_start(self):
        home = self.new_home()
        program = self.start(options.sample, home)
        report = program.report
        self.expect_size(program, 12)
        for size in (13, 14, 15):
            program.button("Bigger text").press()
            self.expect_size(program, size)
        self.assertEqual(program.report, report)
        self.assertEqual(float(home.settings["fontSize"]), 15)
        self.assert_leaves_well(program)

        program = self.start(options.sample, home)
        self.expect_size(program, 15)
        program.button("Smaller text").press()
        self.expect_size(program, 14)
        self.assert_leaves_well(program)
        self.assertEqual(float(home.settings["fontSize"]), 14)

    def test_shortcuts_and_menu_items_change_it_too(self):
        program = self.start(options.sample)
        for keys, size in (("ctrl+plus", 13), ("ctrl+equal", 14), ("ctrl+minus", 13)):
            program.keys(keys)
            self.expect_size(program, size)
        for item, size in (("Bigger Text", 14), ("Smaller Text", 13)):
            program.menu_item("View", item).press()
            self.expect_size(program, size)
        self.assert_leaves_well(program)

    def test_it_stays_within_its_bounds(self):
        for stored, button, kept, back, after in (
            ("24", "Bigger text", 24, "Smaller text", 23),
            ("4", "Smaller text", 4, "Bigger text", 5),
        ):
            with self.subTest(stored):
                program = self.start_with(stored)
                self.expect_size(program, kept)
                program.button(button).press()
                program.button(back).press()  # the first press was of no effect if this one counts from there
                self.expect_size(program, after)
                self.assertEqual(float(self.home.settings["fontSize"]), after)
                self.assert_leaves_well(program)

    def test_a_stored_size_above_the_bound_is_used_until_the_next_change(self):
        for button, size in (("Bigger text", 24), ("Smaller text", 29)):
            with self.subTest(button):
                program = self.start_with("30")
                self.expect_size(program, 30)
                program.button(button).press()
                self.expect_size(program, size)
                self.assertEqual(float(self.home.settings["fontSize"]), size)
                self.assert_leaves_well(program)

    def test_a_stored_value_that_is_no_size_counts_as_twelve(self):
        for stored in ("3.5", "-1", "0", "big", '""', "nan"):
            with self.subTest(stored):
                program = self.start_with(stored)
                self.expect_size(program, 12)
                self.assert_leaves_well(program)

    def test_the_smallest_size_is_used_as_it_is_stored(self):
        program = self.start_with("4")
        self.expect_size(program, 4)
        self.assert_leaves_well(program)

    def test_settings_that_stay_locked_are_no_obstacle(self):
        home = self.new_home()
        lock = home.settings_file.with_suffix(".ini.lock")
        lock.mkdir()
        program = self.start(options.sample, home)
        program.button("Bigger text").press()
        self.expect_size(program, 13)
        self.assertEqual(program.close(), 0)
        self.assertEqual(home.settings, QUIET)
        lock.rmdir()
        self.assert_left_well(program)

    def test_broken_settings_are_no_obstacle(self):
        home = self.new_home()
        home.settings_file.write_bytes(b"[General\n\0\xff\xfe=\n;;[]]\nnoUpdateCheck=true")
        program = self.start(options.sample, home)
        self.expect_size(program, 12)
        program.button("Bigger text").press()
        self.expect_size(program, 13)
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
