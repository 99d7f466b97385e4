"""The sheet that finds a file among all packages, with the real lister."""

import functools
import os
import random
import re
import shutil
import subprocess
import time
import unicodedata
from datetime import datetime, timedelta

import expectation
from accessible import Atspi
from mac_volume import RECEIPTS
from program import SHEET_TEXT
from waiting import wait_until
from window_test_case import WindowTestCase, main, options

RANDOM_VOLUMES = int(os.environ.get("PELMARIX_RANDOM_VOLUMES", "4"))
MOMENTS = int(os.environ.get("PELMARIX_SEARCH_MOMENTS", "10"))


def folded(text):
    # Letter by letter: none becomes two.
    letters = unicodedata.normalize("NFD", text)
    letters = "".join(letter.casefold() if len(letter.casefold()) == 1 else letter for letter in letters)
    return unicodedata.normalize("NFC", letters).replace("\u00a0", " ")


def expression(sought):
    """What is typed, as a regular expression over folded paths."""
    sought = folded(sought)
    if sought.startswith("./"):
        sought = sought[1:]
    parts = {"*": "[^/]*", "?": "[^/]"}
    pattern = "".join(parts.get(character) or re.escape(character) for character in sought)
    return re.compile(("^" if sought.startswith("/") else "") + pattern, re.DOTALL)


def listing(folder, stem):
    """The lines of a receipt's listing; None where it has none."""
    path = f"/{os.path.relpath(stem, folder)}.bom"
    environment = {**os.environ, "PELMARIX_VOLUME": str(folder)}
    command = [options.lister, "-f", "-p", "fsT", path]
    result = subprocess.run(command, env=environment, capture_output=True, check=False)
    return result.stdout.decode().splitlines() if result.returncode == 0 else None


@functools.cache
def listings(folder):
    """Of each receipt, newest first: its name and the lines of its listing."""
    return [(name, listing(folder, stem)) for _, name, stem in expectation.scan(folder)[0]]


def expected_rows(folder, sought):
    matches = expression(sought).search
    rows = []
    for name, lines in listings(folder):
        for line in lines or []:
            path, size, modified = line.rsplit("\t", 2)
            path = path[1:] if path.startswith("./") else path
            if matches(folded(path)):
                rows.append((name, path, size, modified))
    return rows


class Search:
    """The sheet as a screen reader meets it."""

    def __init__(self, program):
        self.program = program
        program.keys("ctrl+shift+f")
        self.sheet = program.dialog()
        self.field = self.sheet.one("text", "File to find")
        self.stop = self.sheet.one("push button", "Stop")
        self.table = self.sheet.one("table", "Files found")

    def labels(self):
        return [label.name for label in self.sheet.find("label") if label.name]

    @property
    def status(self):
        return next((label for label in self.labels() if " of " in label), "")

    @property
    def missing(self):
        return next((label for label in self.labels() if "no list" in label), "")

    def rows(self):
        cells = [child.name for child in self.table.children if child.role == "table cell"]
        return list(zip(cells[0::4], cells[1::4], cells[2::4], cells[3::4], strict=True))

    def wait_for_end(self):
        def has_ended():
            count = re.match(r"(\d+) of (\d+) package", self.status)
            return count and count[1] == count[2] and not self.stop.is_("enabled")

        wait_until(has_ended, lambda: f"the end of the search; it says {self.labels()}")

    def find(self, text):
        self.field.text = text
        self.wait_for_end()


def packages(count):
    return f"{count} package" + ("" if count == 1 else "s")


class FileSearch(WindowTestCase):
    def expect_found(self, search, folder, sought):
        """Looks for a text, and finds what is found without the program."""
        search.find(sought)
        rows = expected_rows(folder, sought)
        wait_until(lambda: search.status.endswith(f", {len(rows)} file" + ("" if len(rows) == 1 else "s")),
                   lambda: f"{len(rows)} files for {sought!r}; it says {search.status}")
        self.assertEqual(search.rows(), rows, sought)
        missing = sum(lines is None for _, lines in listings(folder))
        expected = f"{packages(missing)} ha{'s' if missing == 1 else 've'} no list" if missing else ""
        self.assertEqual(search.missing, expected)
        return rows

    def expect_end_of_listers(self, program):
        wait_until(lambda: not program.children(), lambda: f"the end of {program.children()}")

    def binary_with_lister(self, script):
        """The program with a lister of its own, which is a script; "$LSBOM" in it is the real one."""
        folder = self.new_folder()
        lister = folder / "lsbom"
        lister.write_text(f"#!/bin/bash\nLSBOM='{options.lister}'\n{script}\n", encoding="utf-8")
        lister.chmod(0o755)
        return shutil.copy(options.program, folder)

    def test_it_finds_files_in_all_packages(self):
        program = self.start(options.sample)
        search = Search(program)
        self.assertEqual(search.status, "")
        found = [
            len(self.expect_found(search, options.sample, sought))
            for sought in ("XProtect", "XProtect*/*/Info", "xPROTECT*/CONTENTS/info", "no such file", "/?pplications/* ")
        ]
        self.assertGreater(found[0], found[1])
        self.assertEqual(found[1], found[2])
        self.assertEqual(found[3], 0)
        self.assertGreater(min(found[:3] + found[4:]), 0)
        program.keys("Escape", window=search.sheet)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)

    def test_a_file_opens_its_packages_bill_at_its_line(self):
        program = self.start(options.sample)
        search = Search(program)
        rows = self.expect_found(search, options.sample, "Table 2.dat")
        program.keys("Return", "Down", "Return", window=search.sheet)
        self.expect_bill(program, *rows[1])
        cell = next(child for child in search.table.children if child.name == rows[0][1])
        program.activate(search.sheet)
        program.click(cell, times=2)
        self.expect_bill(program, *rows[0])
        program.keys("ctrl+w", window=search.sheet)
        program.wait_for_no_dialog()
        self.assert_leaves_well(program)

    def expect_bill(self, program, name, path, size, modified):
        """Waits for the bill of materials with this line selected, and closes it."""
        program.wait_for_dialogs(2)
        bill = next(dialog for dialog in program.dialogs() if dialog.name == "Bill of Materials")
        text = bill.one("text", SHEET_TEXT)
        self.assertTrue(bill.find("label", name))
        self.assertIn(f".{path}\t{size}\t{modified}", dict(listings(options.sample))[name])
        selected = Atspi.Text.get_selection(text.remote, 0)
        self.assertEqual(text.text[selected.start_offset : selected.end_offset], f".{path}\t{size}\t{modified}")
        _, top, _, height = text.extents
        line = Atspi.Text.get_character_extents(text.remote, selected.start_offset, Atspi.CoordType.SCREEN)
        self.assertTrue(top <= line.y and line.y + line.height <= top + height, (line.y, line.height, top, height))
        program.keys("Escape", window=bill)
        program.wait_for_dialogs(1)

    def test_it_tells_how_far_it_is_and_stops(self):
        folder = self.new_folder()
        os.mkfifo(folder / "gate")
        # The tenth package has the rest wait.
        stem = os.path.relpath(expectation.scan(options.sample)[0][9][2], options.sample)
        script = f'[[ "$4" == "/{stem}.bom" ]] && read -r < "{folder}/gate"\nexec "$LSBOM" "$@"'
        program = self.start(options.sample, binary=self.binary_with_lister(script))
        search = Search(program)
        search.field.text = "a"
        wait_until(lambda: search.status.startswith(f"{len(listings(options.sample)) - 1} of "), lambda: search.status)
        self.assertTrue(search.stop.is_("enabled"))
        expected = [row for row in expected_rows(options.sample, "a") if row[0] in dict(listings(options.sample)[:9])]
        self.assertEqual(search.rows()[: len(expected)], expected)
        self.assertEqual(len(program.children()), 1)
        search.stop.press()
        self.expect_end_of_listers(program)
        wait_until(lambda: not search.stop.is_("enabled"), "the button to be disabled")
        self.assertEqual(
            [row[1] for row in search.rows()],
            [row[1] for row in expected_rows(options.sample, "a") if row[0] != listings(options.sample)[9][0]],
        )
        self.assertEqual(program.close(), 0)
        self.assertEqual(program.left_behind(), set())

    def test_it_goes_on_where_a_package_has_no_list(self):
        volume = self.new_volume()
        volume.write_history([])
        for number in range(8):
            path = f"{number}"
            volume.write_receipt(path, f"com.example.{number}", datetime(2020, 1, 9 - number))
            shutil.copy(self.a_bill(), volume.folder / RECEIPTS / f"{path}.bom")
        stem = volume.folder / RECEIPTS
        for number in (1, 2, 3):
            (stem / f"{number}.bom").unlink()
        os.mkfifo(stem / "1.bom")
        (stem / "2.bom").mkdir()
        script = """
            case "$4" in
                */4.bom) kill -KILL $$ ;;
                */5.bom) printf './caf\\351\\t1\\tdate\\n'; exit 0 ;;
                */6.bom) "$LSBOM" "$@"; exit 3 ;;
            esac
            exec "$LSBOM" "$@"
            """
        program = self.start(volume, binary=self.binary_with_lister(script))
        search = Search(program)
        search.find("/")
        wait_until(lambda: search.missing == "6 packages have no list", lambda: search.labels())
        self.assertEqual({row[0] for row in search.rows()}, {"com.example.0", "com.example.7"})
        (label,) = search.sheet.find("label", search.missing)
        names = ", ".join(f"com.example.{number}" for number in range(1, 7))
        self.assertEqual(Atspi.Accessible.get_description(label.remote), names)
        self.assert_leaves_well(program)

    def a_bill(self):
        return next(
            f"{stem}.bom" for _, _, stem in expectation.scan(options.sample)[0] if listing(options.sample, stem)
        )

    def test_without_a_lister_no_package_has_a_list(self):
        if os.path.exists("/usr/bin/lsbom"):
            self.skipTest("this system has a lister of its own, which is always found")
        program = self.start(options.sample, binary=shutil.copy(options.program, self.new_folder()))
        search = Search(program)
        search.find("a")
        self.assertEqual(search.missing, f"{len(listings(options.sample))} packages have no list")
        self.assert_leaves_well(program)

    def test_closing_leaves_no_lister_behind_whenever_it_comes(self):
        moments = random.Random(16)
        longest = 0.0
        for number in range(MOMENTS):
            program = self.start(options.sample)
            search = Search(program)
            search.field.text = moments.choice(("a", "plist", "no such file", "*"))
            time.sleep(moments.uniform(0, 0.5))  # any moment will do
            begin = time.monotonic()
            if number % 3 == 0:
                search.sheet.one("push button", "Close").press()
                self.expect_end_of_listers(program)
            self.assertEqual(program.close(), 0)
            longest = max(longest, time.monotonic() - begin)
            self.assert_left_well(program)
        print(f"{MOMENTS} closings, the longest in {longest:.2f} s", flush=True)

    def test_it_finds_in_volumes_made_at_random_what_is_found_without_it(self):
        for seed in range(RANDOM_VOLUMES):
            with self.subTest(seed=seed):
                source = random.Random(seed)
                volume = self.new_volume()
                volume.write_history([])
                paths = self.write_random_packages(source, volume)
                program = self.start(volume)
                search = Search(program)
                for _ in range(6):
                    self.expect_found(search, volume.folder, self.random_sought(source, paths))
                self.assertEqual(program.close(), 0)

    def write_random_packages(self, source, volume):
        parts = (
            "Library", "a b", ".hidden", "caf\u00e9", "cafe\u0301", "CAF\u00c9", "\u65e5\u672c", "x*y", "q?", "A", "a",
            "Stra\u00dfe", "STRASSE", "\u212a", "b" * 60, "a\\b", "1.0.dylib", "\u0130", "\U0001f312", "x\u00a0y",
        )  # fmt: skip
        paths = []
        for number in range(source.randrange(1, 12)):
            name = f"{number}"
            volume.write_receipt(name, f"com.example.{source.choice(parts)}", datetime(2020, 1, 1) + timedelta(number))
            if source.random() < 0.1:
                continue
            count = source.randrange(30)
            chosen = {"./" + "/".join(source.choices(parts, k=source.randrange(1, 5))) for _ in range(count)}
            # None of them is a folder of another one.
            files = [path for path in chosen if not any(other.startswith(path + "/") for other in chosen)]
            subprocess.run([options.write_bom, volume.folder / RECEIPTS / f"{name}.bom", "0", *files], check=True)
            paths += files
        return paths or ["./nothing"]

    def random_sought(self, source, paths):
        path = source.choice(paths)[1:]
        begin = source.choice((0, source.randrange(len(path))))
        sought = path[begin : source.randrange(begin, len(path)) + 1]
        sought = source.choice((str, str.upper, str.lower))(sought)
        sought = unicodedata.normalize(source.choice(("NFC", "NFD")), sought)
        for sign in "*?":
            if source.random() < 0.4:
                place = source.randrange(len(sought) + 1)
                sought = sought[:place] + sign + sought[place + source.randrange(2) :]
        return sought


if __name__ == "__main__":
    main()
