"""Files that are missing, broken or not to be read: which alerts come, in which order, and that the program goes on."""

import os
import plistlib
from datetime import datetime

import expectation
from mac_volume import HISTORY, RECEIPTS, SYSTEM_VERSION
from window_test_case import WindowTestCase, main

MESSAGE = "An error occurred in your last action:"
NO_HISTORY = [MESSAGE, "Couldn't read install history."]
NO_RECEIPT = [MESSAGE, "Couldn't read BoM PLists."]

DAY = datetime(2019, 3, 26, 10, 11, 12)
GOOD = {"displayName": "macOS Mojave", "displayVersion": "10.14", "date": DAY}


def without(key):
    return [GOOD, {other: value for other, value in GOOD.items() if other != key}]


def instead(key, value):
    return [GOOD, {**GOOD, key: value}]


class BrokenInput(WindowTestCase):
    def setUp(self):
        self.volume = self.new_volume()

    def expect_alerts(self, program, *expected):
        """The alerts come one by one, and nothing else of the program is there before the last one has gone."""
        for texts in expected:
            alert = program.alert()
            self.assertEqual((alert.texts, alert.buttons), (texts, ["OK"]))
            self.assertEqual([window.role for window in program.windows("alert", "frame", "dialog")], ["alert"])
            alert.press("OK")
        self.assertEqual(program.title, expectation.title(self.volume.folder))
        self.assertEqual(program.windows("alert"), [])

    def expect_no_history(self, program):
        self.assertEqual((program.outline(), program.report), ([], "\n\n"))

    def expect_history_of(self, program):
        groups = expectation.history(self.volume.folder)
        self.assertEqual(program.expanded_outline(), expectation.outline(groups))
        self.assertEqual(program.report, expectation.report(groups))

    def test_missing_history_is_told_and_the_receipts_are_shown(self):
        self.volume.write_receipt("a", "example.a", DAY)
        program = self.start(self.volume)
        self.expect_alerts(program, NO_HISTORY)
        self.expect_no_history(program)
        self.assertEqual(program.receipts(), [("2019-03-26 10:11:12 +0000", "example.a")])
        self.assert_leaves_well(program)

    def test_history_that_cannot_be_decoded_is_told_and_left_out_whole(self):
        whole = plistlib.dumps([GOOD] * 3)
        binary = plistlib.dumps([GOOD] * 3, fmt=plistlib.FMT_BINARY)
        contents = {
            "empty file": b"",
            "no property list": b"Installed: macOS Mojave\n",
            "cut XML": whole[: len(whole) // 2],
            "cut binary": binary[:-1],
            "one entry, not in an array": plistlib.dumps(GOOD),
            "array of strings": plistlib.dumps(["macOS Mojave"]),
            "without a name": plistlib.dumps(without("displayName")),
            "without a version": plistlib.dumps(without("displayVersion")),
            "without a date": plistlib.dumps(without("date")),
            "date as text": plistlib.dumps(instead("date", "2019-03-26T10:11:12Z")),
            "version as number": plistlib.dumps(instead("displayVersion", 10)),
            "content type as number": plistlib.dumps(instead("contentType", 1)),
            "keys in another case": plistlib.dumps([{key.lower(): value for key, value in GOOD.items()}]),
        }
        for name, history in contents.items():
            with self.subTest(name):
                self.volume.write(HISTORY, history)
                program = self.start(self.volume)
                self.expect_alerts(program, NO_HISTORY)
                self.expect_no_history(program)
                self.assert_leaves_well(program)

    def test_history_that_is_a_folder_or_a_pipe_is_told(self):
        path = self.volume.folder / HISTORY
        path.mkdir(parents=True)
        program = self.start(self.volume)
        self.expect_alerts(program, NO_HISTORY)
        self.assert_leaves_well(program)
        path.rmdir()
        os.mkfifo(path)
        program = self.start(self.volume)
        self.expect_alerts(program, NO_HISTORY)
        self.assert_leaves_well(program)

    def test_system_that_the_volume_does_not_tell_is_unknown(self):
        system_version = self.volume.folder / SYSTEM_VERSION
        self.volume.write_history([])
        for name, lose in {
            "no version": lambda: self.volume.write_plist(SYSTEM_VERSION, {"ProductBuildVersion": "18G103"}),
            "no property list": lambda: self.volume.write(SYSTEM_VERSION, b"10.14.6"),
            "no file": system_version.unlink,
        }.items():
            with self.subTest(name):
                lose()
                program = self.start(self.volume)
                self.assertEqual(program.title, "Pelmarix – currently running macOS Version unknown")
                self.assert_leaves_well(program)

    def test_empty_history_is_shown_without_a_word(self):
        self.volume.write_history([])
        program = self.start(self.volume)
        self.expect_alerts(program)
        self.expect_no_history(program)
        self.assert_leaves_well(program)

    def test_each_receipt_that_cannot_be_read_is_told_after_the_history(self):
        receipts = self.volume.folder / RECEIPTS
        (receipts / "folder.plist").mkdir()
        os.mkfifo(receipts / "pipe.plist")
        (receipts / "lost.plist").symlink_to("nowhere.plist")
        self.volume.write_receipt("folder.plist/inside", "example.inside", DAY)
        self.volume.write_receipt("beside", "example.beside", DAY.replace(year=2020))
        program = self.start(self.volume)
        self.expect_alerts(program, NO_HISTORY, NO_RECEIPT, NO_RECEIPT, NO_RECEIPT)
        self.assertEqual(
            program.receipts(),
            [("2020-03-26 10:11:12 +0000", "example.beside"), ("2019-03-26 10:11:12 +0000", "example.inside")],
        )
        self.assert_leaves_well(program)

    def test_files_that_are_no_receipts_are_left_out_without_a_word(self):
        self.volume.write_history([("macOS Mojave", "10.14", DAY)])
        self.volume.write(f"{RECEIPTS}/junk.plist", b"\0\1\2")
        self.volume.write_plist(f"{RECEIPTS}/nothing.plist", {})
        self.volume.write_plist(f"{RECEIPTS}/list.plist", ["PackageIdentifier"])
        self.volume.write_plist(f"{RECEIPTS}/undated.plist", {"PackageIdentifier": "example.undated"})
        self.volume.write_plist(f"{RECEIPTS}/text.plist", {"PackageIdentifier": "example.text", "InstallDate": "2019"})
        self.volume.write_receipt("good", "example.good", DAY)
        for other in ("upper.PLIST", "old.plist.bak", "plist"):
            (self.volume.folder / RECEIPTS / other).write_bytes(b"")
        program = self.start(self.volume)
        self.expect_alerts(program)
        self.assertEqual(program.receipts(), [("2019-03-26 10:11:12 +0000", "example.good")])
        self.expect_history_of(program)
        self.assert_leaves_well(program)

    def test_volume_without_anything_is_shown_empty(self):
        (self.volume.folder / RECEIPTS).rmdir()
        program = self.start(self.volume)
        self.expect_alerts(program, NO_HISTORY)
        self.expect_no_history(program)
        self.assertEqual(program.receipts(), [])
        self.assert_leaves_well(program)

    def test_alert_at_the_start_is_dismissed_with_the_keyboard(self):
        for key in ("Return", "space", "Escape", "alt+F4"):
            with self.subTest(key):
                program = self.start(self.volume)
                program.keys(key, window=program.alert().window)
                self.expect_no_history(program)
                self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
