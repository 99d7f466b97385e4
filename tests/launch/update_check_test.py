#!/usr/bin/env python3
"""update_check_test.py PROGRAM VERSION: the update check of the program itself, against a server on the loopback."""

import os
import signal
import sys
import tempfile
import time
import unittest

from led_program import DOWNLOADS, Home, Program, ServerTestCase, until

EXECUTABLE, VERSION = sys.argv[1:3]
REFERENCE_DATE = 978307200


def update_list(*entries):
    """Entries are (version, address), all of them Pelmarix's."""
    return ('<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array>' + "".join(
        f"<dict><key>AppName</key><string>Pelmarix</string><key>Version</key><string>{version}</string>"
        f"<key>URL</key><string>{address}</string></dict>" for version, address in entries) +
        "</array></plist>").encode()


def offer(version):
    return (f"An update to this app to version {version} is available."
            f"You are currently running Pelmarix version {VERSION}. "
            "Please choose whether to download this update now in your default browser.")


class UpdateCheckTest(ServerTestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = Home(folder.name)
        self.server.list = update_list((VERSION, DOWNLOADS))
        self.server.requests.clear()

    def start(self, path="list", server="good", **environment):
        address = "https://nowhere.example/" if server == "unknown" else self.server.address(server, path)
        program = Program(EXECUTABLE, self.home.folder, address, self.server.authority, self.display, **environment)
        self.addCleanup(program.process.kill)
        return program

    def launch(self, *arguments, **environment):
        program = self.start(*arguments, **environment)
        program.wait_for("window")
        return program

    def assert_ends_well(self, program):
        seconds, status, error = program.close()
        self.assertEqual((status, error), (0, ""))
        self.assertLess(seconds, 1)

    def test_the_first_launch_checks_and_stores_three_values(self):
        before = time.time() - REFERENCE_DATE
        program = self.launch()
        until(lambda: "Checked for update" in program.help_menu(), "the mark in the Help menu")
        self.assert_ends_well(program)
        self.assertEqual(self.server.requests, ["/list"])
        settings = self.home.settings()
        self.assertEqual(sorted(settings), ["dateLastUpdateCheck", "noUpdateCheck", "updateCheckInt"])
        self.assertEqual(settings["noUpdateCheck"], "false")
        self.assertEqual(float(settings["updateCheckInt"]), 43200)
        self.assertGreaterEqual(float(settings["dateLastUpdateCheck"]), before)
        self.assertLessEqual(float(settings["dateLastUpdateCheck"]), time.time() - REFERENCE_DATE)

    def test_a_second_launch_within_the_interval_asks_nothing(self):
        program = self.launch()
        until(lambda: self.server.requests, "the first launch's request")
        self.assert_ends_well(program)
        settings = self.home.settings()
        program = self.launch()
        self.assertIn("Update not checked", program.help_menu())
        self.assert_ends_well(program)
        self.assertEqual(self.server.requests, ["/list"])
        self.assertEqual(self.home.settings(), settings)

    def test_a_window_that_is_closed_at_once_makes_a_launch_too(self):
        program = self.start()
        _, status, error = program.close()  # as a rule before the window is painted
        self.assertEqual((status, error), (0, ""))
        settings = self.home.settings()
        self.assertEqual(sorted(settings), ["dateLastUpdateCheck", "noUpdateCheck", "updateCheckInt"])
        self.assertEqual(settings["noUpdateCheck"], "false")
        self.assertEqual(float(settings["updateCheckInt"]), 43200)

    def test_a_launch_after_the_interval_checks_again(self):
        self.home.write_settings(dateLastUpdateCheck=time.time() - REFERENCE_DATE - 3700, updateCheckInt=3600)
        program = self.launch()
        until(lambda: self.server.requests, "the request")
        self.assert_ends_well(program)
        self.assertEqual(float(self.home.settings()["updateCheckInt"]), 3600)

    def test_a_check_that_is_switched_off_asks_nothing(self):
        self.home.write_settings(noUpdateCheck="true")
        program = self.launch()
        self.assertEqual(program.help_menu()["Update not checked"], "off")
        self.assert_ends_well(program)
        self.assertEqual(self.server.requests, [])
        settings = self.home.settings()
        self.assertEqual(settings["noUpdateCheck"], "true")
        self.assertEqual(float(settings["updateCheckInt"]), 43200)
        self.assertNotIn("dateLastUpdateCheck", settings)

    def test_the_running_version_is_marked_and_not_offered(self):
        program = self.launch()
        until(lambda: program.help_menu().get("Checked for update") == "on", "the mark in the Help menu")
        self.assert_ends_well(program)

    def test_offers_come_one_after_the_other(self):
        self.server.list = update_list(("7.0", DOWNLOADS + "7"), ("6.0", DOWNLOADS + "6"))
        program = self.launch()
        self.assertEqual(program.wait_for("alert"), offer("7.0"))
        self.assertEqual(program.help_menu()["Checked for update"], "on")
        self.assertTrue(program.says_nothing_beginning("alert"))
        program.say("press Ignore")
        self.assertEqual(program.wait_for("alert"), offer("6.0"))
        program.say("press Ignore")
        self.assertEqual(program.help_menu()["Checked for update"], "on")
        self.assert_ends_well(program)

    def test_a_body_that_is_no_list_is_reported(self):
        program = self.launch("count/list")
        self.assertEqual(program.wait_for("alert"), "An error occurred:Error in update Property List.")
        program.say("press OK")
        self.assertIn("Update not checked", program.help_menu())
        self.assert_ends_well(program)

    def test_download_opens_the_address_in_the_browser(self):
        self.server.list = update_list(("7.0", DOWNLOADS + "%41.zip?a=%20&amp;b=1#a#b"))
        opened = os.path.join(self.home.folder, "opened")
        browser = os.path.join(self.home.folder, "xdg-open")
        with open(browser, "w", encoding="utf-8") as script:
            script.write(f'#!/bin/sh\nprintf "%s\\n" "$@" >"{opened}.part"\nmv "{opened}.part" "{opened}"\n')
        os.chmod(browser, 0o755)
        program = self.launch(PATH=self.home.folder + ":" + os.environ["PATH"])
        self.assertEqual(program.wait_for("alert"), offer("7.0"))
        program.say("press Download")
        until(lambda: os.path.exists(opened), "the browser's start")
        self.assert_ends_well(program)
        with open(opened, encoding="utf-8") as lines:
            self.assertEqual(lines.read(), DOWNLOADS + "%41.zip?a=%20&b=1#a#b\n")

    def test_download_of_what_is_no_address_stops_the_program(self):
        for address in ("https://[::1/", "https://host:99999/", "https://a b/"):
            with self.subTest(address):
                self.home.write_settings()
                self.server.list = update_list(("7.0", address + "?" + DOWNLOADS))
                program = self.launch()
                program.wait_for("alert")
                program.say("press Download")
                program.process.wait(60)
                self.assertEqual(program.close()[1:], (-signal.SIGABRT, ""))

    def test_the_program_can_be_left_whatever_the_check_is_doing(self):
        self.server.list = update_list(("7.0", DOWNLOADS))
        looks_up = {"PELMARIX_TEST_LOOKUP_BLOCKS": "1"}
        for doing, path, server, environment in (
                ("looking up a name", "", "unknown", looks_up), ("connecting", "list", "mute", {}),
                ("waiting for the answer", "silent", "good", {}), ("receiving", "stuck", "good", {}),
                ("showing an alert", "list", "good", {})):
            with self.subTest(doing):
                self.home.write_settings()
                self.server.requests.clear()
                program = self.launch(path, server, **environment)
                if doing == "showing an alert":
                    program.wait_for("alert")
                elif server == "good":
                    until(lambda: self.server.requests, "the request")
                else:
                    until(lambda: "dateLastUpdateCheck" in self.home.settings(), "the start of the check")
                self.assert_ends_well(program)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
