"""Saving the report: every byte of the file, what is told when it can't be written, and what is left behind."""

import errno
import os
import plistlib
import re
import resource
import signal
import stat
from datetime import datetime, timezone

import expectation
from program import NEWEST_LAST, SKIP
from waiting import wait_until
from window_test_case import WindowTestCase, main, options

MESSAGE = "An error occurred in your last action:"
KEYS = {"fontSize", "noUpdateCheck", "updateCheckInt", "dateLastUpdateCheck"}


def now():
    return datetime.now(timezone.utc).replace(tzinfo=None)


class Saving(WindowTestCase):
    @classmethod
    def setUpClass(cls):
        cls.groups = expectation.history(options.sample)

    def setUp(self):
        self.folder = self.new_folder()

    def save_as(self, program, name):
        """Opens the panel, types a name and presses Return. Returns the moments between which Save was pressed."""
        before = now()
        program.button("Save…").press()
        panel = program.dialog()
        after = now()
        panel.one("text", "File name:").text = str(name)
        program.keys("Return", window=panel)
        return before, after

    def expect_file(self, file, report, before, after):
        lead = "Checked by Pelmarix at: "
        text = file.read_bytes().decode()
        self.assertEqual(text[: len(report)], report)
        last = re.fullmatch(re.escape(lead) + r"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d) \+0000\n", text[len(report) :])
        self.assertIsNotNone(last, text[len(report) :])
        stamp = datetime.fromisoformat(last[1])
        self.assertTrue(before.replace(microsecond=0) <= stamp <= after, (before, stamp, after))

    def saved(self, program, name):
        """Saves, and waits until the panel has gone."""
        moments = self.save_as(program, self.folder / name)
        program.wait_for_no_dialog()
        return moments

    def test_file_holds_the_report_and_the_stamp_byte_for_byte(self):
        program = self.start(options.sample)
        moments = self.saved(program, "report.txt")
        self.expect_file(self.folder / "report.txt", expectation.report(self.groups), *moments)
        self.assertEqual(os.listdir(self.folder), ["report.txt"])
        self.assert_leaves_well(program)

    def test_file_holds_what_the_options_show(self):
        program = self.start(options.sample)
        program.toggle(SKIP)
        program.toggle(NEWEST_LAST)
        moments = self.saved(program, "all.text")
        self.expect_file(self.folder / "all.text", expectation.report(self.groups, False, True), *moments)
        self.assert_leaves_well(program)

    def test_odd_characters_are_written_as_they_were_read(self):
        names = ["macOS Mojave \u2028\u2029 \u00a0\ufdd0\r|\r\n|", "Security Update e\u0301 \U0001f312 \ufeff\u202e"]
        volume = self.new_volume()
        volume.write_history([(name, "1\t2", datetime(1, 1, 1)) for name in names], plistlib.FMT_BINARY)
        groups = expectation.history(volume.folder)
        program = self.start(volume)
        moments = self.saved(program, "odd.txt")
        self.expect_file(self.folder / "odd.txt", expectation.report(groups), *moments)
        program.button("Bigger text").press()  # which reads the report back from its view
        wait_until(lambda: program.text_size == 13, "the text to grow")
        moments = self.saved(program, "bigger.txt")
        self.expect_file(self.folder / "bigger.txt", expectation.report(groups), *moments)
        self.assert_leaves_well(program)

    def test_report_without_entries_is_two_empty_lines_and_the_stamp(self):
        volume = self.new_volume()
        volume.write_history([])
        program = self.start(volume)
        moments = self.saved(program, "empty.txt")
        self.expect_file(self.folder / "empty.txt", "\n\n", *moments)
        self.assert_leaves_well(program)

    def test_existing_file_is_replaced_in_place_once_that_is_confirmed(self):
        file = self.folder / "there.txt"
        file.write_bytes(b"before" * 100_000)
        inode = file.stat().st_ino
        program = self.start(options.sample)
        moments = self.save_as(program, file)
        question = program.alert()
        self.assertEqual(file.stat().st_size, 600_000)
        question.press(next(button for button in question.buttons if "Yes" in button))
        program.wait_for_no_dialog()
        self.expect_file(file, expectation.report(self.groups), *moments)
        self.assertEqual(file.stat().st_ino, inode)
        self.assert_leaves_well(program)

    def test_name_without_a_type_gets_one(self):
        program = self.start(options.sample)
        moments = self.saved(program, "plain")
        self.expect_file(self.folder / "plain.text", expectation.report(self.groups), *moments)
        self.assert_leaves_well(program)

    def expect_alert(self, program, number):
        alert = program.alert()
        self.assertEqual((alert.texts, alert.buttons), ([MESSAGE, os.strerror(number)], ["OK"]))
        alert.press("OK")
        self.assertEqual(program.report, expectation.report(self.groups))
        program.wait_for_no_dialog()

    def test_full_disk_is_told_in_the_systems_own_words(self):
        full = self.folder / "full.txt"
        full.symlink_to("/dev/full")
        program = self.start(options.sample)
        self.save_as(program, full)
        question = program.alert()
        question.press(next(button for button in question.buttons if "Yes" in button))
        self.expect_alert(program, errno.ENOSPC)
        self.assert_leaves_well(program)

    def test_missing_folder_is_told_in_the_systems_own_words(self):
        program = self.start(options.sample)
        self.save_as(program, self.folder / "missing" / "report.txt")
        self.expect_alert(program, errno.ENOENT)
        self.assert_leaves_well(program)

    def test_name_that_is_too_long_is_told_in_the_systems_own_words(self):
        program = self.start(options.sample)
        for way in ("Return", "Save"):
            with self.subTest(way):
                program.button("Save…").press()
                panel = program.dialog()
                panel.one("text", "File name:").text = "x" * 300
                if way == "Return":
                    program.keys("Return", window=panel)
                else:
                    panel.one("push button", "Save").press()
                self.expect_alert(program, errno.ENAMETOOLONG)
        self.assert_leaves_well(program)

    def test_name_with_quotes_and_a_tilde_is_what_it_says(self):
        home = self.new_home()
        program = self.start(options.sample, home)
        moments = self.save_as(program, '~/my "best" report')
        program.wait_for_no_dialog()
        file = home.folder / 'my "best" report.text'
        self.expect_file(file, expectation.report(self.groups), *moments)
        file.unlink()
        self.assert_leaves_well(program)

    def test_panel_that_is_open_comes_to_the_front_when_save_is_chosen_again(self):
        program = self.start(options.sample)
        program.keys("ctrl+s")
        panel = program.dialog()
        program.activate(program.window)
        program.keys("ctrl+s")
        wait_until(lambda: panel.is_("active"), "the panel to be active")
        self.assertEqual(len(program.dialogs()), 1)
        program.keys("Escape", window=panel)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)

    def test_write_that_stops_half_way_is_told(self):
        # The limit comes with a signal, which would end the program.
        program = self.start(options.sample, preexec=lambda: signal.signal(signal.SIGXFSZ, signal.SIG_IGN))
        resource.prlimit(program.pid, resource.RLIMIT_FSIZE, (8192, 8192))
        self.save_as(program, self.folder / "half.txt")
        self.expect_alert(program, errno.EFBIG)
        self.assertLessEqual((self.folder / "half.txt").stat().st_size, 8192)
        self.assert_leaves_well(program)

    def test_cancelling_writes_and_shows_nothing(self):
        for way in ("Cancel", "Escape"):
            with self.subTest(way):
                program = self.start(options.sample)
                program.button("Save…").press()
                panel = program.dialog()
                self.assertEqual(panel.one("text", "File name:").text, "")
                panel.one("text", "File name:").text = str(self.folder / "never.txt")
                if way == "Cancel":
                    panel.one("push button", "Cancel").press()
                else:
                    program.keys("Escape", window=panel)
                program.wait_for_no_dialog()
                self.assertEqual(program.windows("alert"), [])
                self.assert_leaves_well(program)
                self.assertEqual(os.listdir(self.folder), [])

    def test_window_stays_usable_while_the_panel_is_open(self):
        program = self.start(options.sample)
        program.button("Save…").press()
        panel = program.dialog()
        program.toggle(SKIP)
        self.assertEqual(program.report, expectation.report(self.groups, skip=False))
        file = self.folder / "early.txt"
        panel.one("text", "File name:").text = str(file)
        program.keys("Return", window=panel)
        program.wait_for_no_dialog()
        # What is saved was composed when Save was pressed.
        self.assertTrue(file.read_text(encoding="utf-8").startswith(expectation.report(self.groups) + "Checked"))
        self.assert_leaves_well(program)

    def test_nothing_but_the_four_settings_is_ever_stored(self):
        home = self.new_home(settings=None)
        program = self.start(options.sample, home)
        program.button("Bigger text").press()
        wait_until(lambda: program.text_size == 13, "the text to grow")
        program.toggle(NEWEST_LAST)
        program.click(program.group_cells()[0], times=2)
        self.saved(program, "report.txt")
        program.button("Save…").press()
        program.keys("Escape", window=program.dialog())
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)
        self.assertEqual(set(home.settings), KEYS)
        for folder in (home.settings_file.parent, home.settings_file.parent.parent):
            self.assertEqual(stat.S_IMODE(folder.stat().st_mode), 0o700, folder)


if __name__ == "__main__":
    main()
