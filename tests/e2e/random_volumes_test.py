"""Volumes made at random: what the program shows of each has to be what a second reading of the same files gives.

PELMARIX_RANDOM_VOLUMES says how many, PELMARIX_RANDOM_SEED makes the same ones again.
"""

import collections
import os
import random
import shutil
import time

import expectation
from program import SKIP, TIMELINE
from random_volume import RandomVolume
from waiting import wait_until
from window_test_case import WindowTestCase, main

COUNT = int(os.environ.get("PELMARIX_RANDOM_VOLUMES", "25"))
SEED = int(os.environ.get("PELMARIX_RANDOM_SEED", time.time_ns() % 1_000_000))

# So many programs start while one is being read.
AT_ONCE = 3


class RandomVolumes(WindowTestCase):
    def make(self, number):
        made = RandomVolume(random.Random(f"{SEED}/{number}"), self.new_folder(), is_broken=number % 8 == 7)
        return number, made, self.start(made.volume)

    def compare(self, made, program):
        folder = made.volume.folder
        try:
            groups, history_alerts = expectation.history(folder), 0
        except expectation.Unreadable:
            groups, history_alerts = [], 1
        receipts, unreadable = expectation.scan(folder)
        # Making a volume and reading it must agree on what is broken in it.
        self.assertEqual(history_alerts + unreadable, made.alerts)

        texts = ["Couldn't read install history."] * history_alerts + ["Couldn't read BoM PLists."] * unreadable
        for text in texts:
            alert = program.alert()
            self.assertEqual(alert.texts, ["An error occurred in your last action:", text])
            alert.press("OK")
        self.assertEqual(program.title, expectation.title(folder))
        self.assertEqual(program.windows("alert"), [])
        self.assertEqual(program.report, expectation.report(groups))
        self.assertEqual(program.expanded_outline(), expectation.outline(groups))
        self.assertEqual(program.receipts(), expectation.receipts(folder))
        if groups or receipts:
            self.compare_timeline(program, groups, receipts)
        self.seen["groups"] += len(groups)
        self.seen["entries"] += sum(len(group.items) for group in groups)
        self.seen["receipts"] += len(receipts)
        self.seen["alerts"] += len(texts)

    def compare_timeline(self, program, groups, receipts):
        timeline = program.part("chart", TIMELINE)
        self.assertEqual(timeline.description, expectation.timeline(groups, receipts))
        program.toggle(SKIP)
        words = expectation.timeline(groups, receipts, skip=False)
        wait_until(lambda: timeline.description == words, lambda: f"{words}; there is {timeline.description}")
        self.seen["gaps"] += "Longest gap" in words
        self.seen["outliers"] += " long " in words

    def test_they_are_shown_as_an_independent_reading_has_them(self):
        print(f"{COUNT} volumes with PELMARIX_RANDOM_SEED={SEED}")
        self.seen = collections.Counter()
        started = collections.deque()
        next_number = 0
        while started or next_number < COUNT:
            while len(started) < AT_ONCE and next_number < COUNT:
                started.append(self.make(next_number))
                next_number += 1
            number, made, program = started.popleft()
            with self.subTest(volume=number, seed=SEED):
                self.compare(made, program)
                self.assert_leaves_well(program)
            shutil.rmtree(made.volume.folder)
        print(", ".join(f"{count} {name}" for name, count in self.seen.items()))
        if COUNT >= 25:  # fewer may by chance be all alike
            for name in ("groups", "entries", "receipts", "alerts", "gaps", "outliers"):
                self.assertGreater(self.seen[name], 0, name)


if __name__ == "__main__":
    main()
