"""Runs pelmarix-sample and reads what it made with Python's own property-list library and with lsbom."""

import datetime
import pathlib
import plistlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = sys.argv.pop(1)
LISTER = sys.argv.pop(1)


def run(*arguments):
    return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, check=False)


def files_of(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def load(path):
    with path.open("rb") as file:
        return plistlib.load(file)


class SampleVolume(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.volume = pathlib.Path(scratch.name) / "Sample Mac"

    def make(self, *options):
        result = run(*options, self.volume)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))

    def test_install_history_reads_as_the_system_writes_it(self):
        self.make()
        history = load(self.volume / "Library/Receipts/InstallHistory.plist")
        self.assertEqual(len(history), 400)
        for entry in history:
            self.assertIsInstance(entry["date"], datetime.datetime)
            self.assertTrue(entry["displayName"])
            self.assertIsInstance(entry["displayVersion"], str)
            self.assertEqual([type(name) for name in entry["packageIdentifiers"]], [str])
            self.assertIn(entry.get("contentType"), (None, "config-data", "critical-update"))
        names = {entry["displayName"] for entry in history}
        self.assertLessEqual({"Draw & Paint <Studio>", "毎日メモ", "Night Sky 🌒", "macOS Mojave"}, names)

    def test_receipts_read_in_both_forms(self):
        self.make()
        forms = {"xml": 0, "binary": 0}
        identifiers = set()
        for path in self.volume.glob("System/Library/Receipts/**/*.plist"):
            forms["binary" if path.read_bytes().startswith(b"bplist00") else "xml"] += 1
            receipt = load(path)
            self.assertTrue(2015 <= receipt["InstallDate"].year <= 2021)
            identifiers.add(receipt["PackageIdentifier"])
        self.assertEqual(len(identifiers), 300)
        self.assertGreater(forms["xml"], 50)
        self.assertGreater(forms["binary"], 50)

    def test_most_receipts_have_a_bill_of_materials_and_some_have_none(self):
        self.make()
        receipts = self.volume / "System/Library/Receipts"
        stems = {path.with_suffix("") for path in receipts.glob("**/*.plist")}
        boms = {path.with_suffix("") for path in receipts.glob("**/*.bom")}
        self.assertLess(boms, stems)
        self.assertEqual(len(stems - boms), 30)

    def test_bills_of_materials_list_but_for_a_broken_one_and_some_without_plain_files(self):
        self.make()
        failed, empty, lines = 0, 0, []
        for bom in self.volume.glob("System/Library/Receipts/**/*.bom"):
            listing = subprocess.run([LISTER, "-f", "-p", "fsT", bom], capture_output=True, text=True, check=False)
            failed += listing.returncode != 0
            empty += listing.returncode == 0 and listing.stdout == ""
            lines.append(listing.stdout.count("\n"))
        self.assertEqual((failed, empty), (1, 6))
        self.assertGreater(max(lines), 1000)

    def test_links_programs_and_odd_names_occur_in_bills_of_materials(self):
        self.make()
        receipts = self.volume / "System/Library/Receipts"
        bom = max(receipts.glob("com.example.draw-and-paint.*.bom"))
        listing = subprocess.run([LISTER, bom], capture_output=True, text=True, check=True).stdout
        self.assertIn("/Versions/Current\t120755\t0/80\t1\t", listing)
        self.assertIn("/MacOS/draw-and-paint\t100755\t0/80\t", listing)
        self.assertIn("/はじめに.html\t100644\t0/0\t", listing)
        self.assertIn("/Columns\tand\ttabs.txt\t100644\t", listing)

    def test_system_version_is_the_last_catalina(self):
        self.make()
        version = load(self.volume / "System/Library/CoreServices/SystemVersion.plist")
        self.assertEqual((version["ProductVersion"], version["ProductBuildVersion"]), ("10.15.7", "19H15"))

    def test_sizes_are_as_asked_for(self):
        self.make("--entries", "1000", "--receipts", "500")
        self.assertEqual(len(load(self.volume / "Library/Receipts/InstallHistory.plist")), 1000)
        self.assertEqual(len(list(self.volume.glob("System/Library/Receipts/**/*.plist"))), 500)

    def test_two_volumes_have_together_what_one_has(self):
        self.make()
        whole = files_of(self.volume)
        scratch = self.volume.with_name("two")
        for _ in range(2):  # the second time it replaces the first
            self.assertEqual(run("--two-volumes", scratch).returncode, 0)
        system, data = scratch / "Macintosh HD", scratch / "Macintosh HD - Data"
        self.assertEqual(sorted(scratch.iterdir()), [system, data])
        marker = pathlib.Path("This is a sample.txt")
        history = pathlib.Path("Library/Receipts/InstallHistory.plist")
        self.assertEqual(set(files_of(data)), {marker, history})
        self.assertNotIn(history, files_of(system))
        self.assertTrue((system / "Library").is_dir())
        self.assertEqual(files_of(system) | files_of(data), whole)

    def test_neither_of_two_volumes_is_made_where_one_is_no_sample(self):
        (self.volume / "Macintosh HD - Data").mkdir(parents=True)
        (self.volume / "Macintosh HD - Data" / "mine").write_text("mine")
        result = run("--two-volumes", self.volume)
        self.assertEqual(result.returncode, 1)
        self.assertIn("Macintosh HD - Data holds something that is no sample", result.stderr)
        self.assertEqual(files_of(self.volume), {pathlib.Path("Macintosh HD - Data/mine"): b"mine"})

    def test_every_run_makes_the_same_bytes(self):
        self.make()
        first = files_of(self.volume)
        self.make()
        self.assertEqual(files_of(self.volume), first)

    def test_a_smaller_sample_leaves_nothing_of_the_larger_one_before(self):
        self.make("--receipts", "3")
        small = files_of(self.volume)
        self.make()
        self.make("--receipts", "3")
        self.assertEqual(files_of(self.volume), small)

    def test_a_folder_that_is_no_sample_is_left_as_it_is(self):
        self.volume.mkdir()
        (self.volume / "Library").mkdir()
        (self.volume / "Library" / "mine").write_text("mine")
        result = run(self.volume)
        self.assertEqual(result.returncode, 1)
        self.assertIn("holds something that is no sample", result.stderr)
        self.assertEqual(files_of(self.volume), {pathlib.Path("Library/mine"): b"mine"})

    def test_an_empty_folder_is_filled(self):
        self.volume.mkdir()
        self.make("--entries", "1", "--receipts", "0")
        self.assertEqual(len(load(self.volume / "Library/Receipts/InstallHistory.plist")), 1)

    def test_a_file_in_the_place_of_the_folder_is_an_error(self):
        self.volume.write_text("mine")
        result = run(self.volume)
        self.assertEqual(result.returncode, 1)
        self.assertIn("is not a folder", result.stderr)

    def test_wrong_arguments_are_told_with_the_usage(self):
        for arguments, reason in (
            ([], "one folder is needed"),
            (["one", "two"], "one folder is needed"),
            (["--small", "one"], "unknown option --small"),
            (["--entries"], "--entries needs a number"),
            (["--receipts", "-1", "one"], "--receipts needs a number"),
            (["--entries", "7x", "one"], "--entries needs a number"),
            (["--entries", "10000001", "one"], "--entries needs a number"),
        ):
            with self.subTest(arguments=arguments):
                result = run(*arguments)
                self.assertEqual(result.returncode, 64)
                self.assertIn(reason, result.stderr)
                self.assertIn("usage: pelmarix-sample", result.stderr)


if __name__ == "__main__":
    unittest.main()
