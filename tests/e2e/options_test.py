"""The two options, toggled in every order: what the report and the receipts are after each."""

from datetime import datetime, timedelta

import expectation
from program import NEWEST_LAST, SKIP
from waiting import wait_until
from window_test_case import WindowTestCase, main

# Every sequence of four toggles occurs in it.
TOGGLES = "0000100110101111000"

MENU_ITEMS = {SKIP: "Skip Configuration Data", NEWEST_LAST: "Newest Last"}

ENTRIES = (
    ("macOS High Sierra 10.13.6 Update", "10.13.6", None),
    ("TCC Configuration Data", "17.0", "config-data"),
    ("Chinese Word List Update", "4.1", "config-data"),
    ("macOS Mojave", "10.14", None),
    ("Security Update 2019-001", "10.14.3", None),
    ("Disk Firmware Correction", "", "critical-update"),
    ("CoreSuggestions Configuration Data", "870", "config-data"),
    ("Draw & Paint", "2.0", None),
    ("Wordlist <Übung>", "1", "config-data"),
)


class Options(WindowTestCase):
    def setUp(self):
        self.volume = self.new_volume()
        day = datetime(2019, 1, 1, 12, 30)
        dates = [day + timedelta(days=number) for number in range(len(ENTRIES))]
        self.volume.write_history(
            [(*entry[:2], date, *filter(None, entry[2:])) for entry, date in zip(ENTRIES, dates)]
        )
        for number, date in enumerate(dates):
            self.volume.write_receipt(f"r{number}", f"example.r{number}", date)
        self.groups = expectation.history(self.volume.folder)
        self.rows = expectation.receipts(self.volume.folder)
        self.program = self.start(self.volume)
        self.outline = self.program.expanded_outline()
        self.chosen = {SKIP: True, NEWEST_LAST: False}

    def expect_what_the_options_say(self, after):
        skip, newest_last = self.chosen[SKIP], self.chosen[NEWEST_LAST]
        self.assertEqual(self.program.report, expectation.report(self.groups, skip, newest_last), after)
        self.assertEqual(self.program.receipts(), self.rows[::-1] if newest_last else self.rows, after)
        for option, chosen in self.chosen.items():
            self.assertEqual(self.program.check_box(option).is_("checked"), chosen, after)
            self.assertEqual(self.program.menu_item("View", MENU_ITEMS[option]).is_("checked"), chosen, after)

    def walk(self, toggle):
        self.expect_what_the_options_say("at the start")
        for number, digit in enumerate(TOGGLES, 1):
            option = (SKIP, NEWEST_LAST)[int(digit)]
            toggle(option)
            self.chosen[option] = not self.chosen[option]
            self.expect_what_the_options_say(TOGGLES[:number])
        self.assertEqual(self.program.outline(), self.outline)
        self.assert_leaves_well(self.program)

    def press_menu_item(self, option):
        self.program.menu_item("View", MENU_ITEMS[option]).press()
        box = self.program.check_box(option)
        wait_until(lambda: box.is_("checked") != self.chosen[option], f"{option} to change")

    def test_check_boxes_in_every_order(self):
        self.walk(self.program.toggle)

    def test_menu_items_in_every_order(self):
        self.walk(self.press_menu_item)

    def test_groups_stay_collapsed_or_expanded_as_they_were(self):
        rows = self.outline[:1] + self.outline[1 + len(self.groups[0].items) :]
        self.program.click(self.program.group_cells()[0], times=2)
        wait_until(lambda: self.program.outline() == rows, "the first group to collapse")
        for option in (SKIP, NEWEST_LAST):
            self.program.toggle(option)
            self.assertEqual(self.program.outline(), rows)
        self.assert_leaves_well(self.program)


if __name__ == "__main__":
    main()
