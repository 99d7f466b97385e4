"""Lists bills of materials that other programs wrote, and compares with what is known of them from other sources."""

import os
import pathlib
import subprocess
import sys
import unittest

LSBOM = sys.argv.pop(1)
FOLDER = pathlib.Path(os.environ["PELMARIX_REAL_DATA"]) / "bom"


def listing(*arguments):
    return subprocess.run([LSBOM, *arguments], check=True, capture_output=True).stdout


def fields(*arguments):
    return [line.split("\t") for line in listing(*arguments).decode().splitlines()]


class RealData(unittest.TestCase):
    def test_prints_what_the_systems_lister_printed(self):
        expected = (FOLDER / "spssfix-3.0.lsbom.txt").read_bytes()
        self.assertEqual(listing(FOLDER / "spssfix-3.0.bom"), expected)

    def compare_with_payload(self, name):
        table = (FOLDER / f"{name}.payload.tsv").read_text().splitlines()[1:]
        payload = [row.split("\t") for row in table]
        payload.sort(key=lambda row: row[0].encode().split(b"/"))
        bom = FOLDER / f"{name}.bom"
        usual = fields(bom)
        columns = fields("-p", "fmugst", bom)
        self.assertEqual(len(usual), len(payload))
        for row, default, numbers in zip(payload, usual, columns):
            path, mode, user, group, size, time, checksum, target = row
            self.assertEqual(default[:3], [path, mode, f"{user}/{group}"])
            self.assertEqual(numbers, [path, mode, user, group, numbers[4], time])
            self.assertEqual(numbers[4] or "0", size)
            self.assertEqual(default[3:], [value for value in (numbers[4], checksum, target) if value])

    def test_agrees_with_the_payload_of_a_package_with_old_records(self):
        self.compare_with_payload("exiftool-9.47")

    def test_agrees_with_the_payload_of_a_package_with_a_link_and_programs(self):
        self.compare_with_payload("munkitools-app")

    def test_lists_a_file_whose_ids_are_not_in_the_order_of_names(self):
        entries = fields(FOLDER / "osquery-test.bom")
        paths = [entry[0] for entry in entries]
        self.assertEqual(len(paths), 247)
        self.assertEqual(paths, sorted(paths, key=lambda path: path.encode().split(b"/")))
        links = [entry for entry in entries if entry[1].startswith("12")]
        self.assertEqual(fields("-l", FOLDER / "osquery-test.bom"), links)
        self.assertEqual([(len(link), link[5]) for link in links], [(6, "osqueryd")])


unittest.main()
