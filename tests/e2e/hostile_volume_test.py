"""A volume made to harm: files of holes, of hundreds of megabytes, that are no files, that stand for far more than they are."""

import os
import pathlib
import plistlib
import resource
import socket
import struct
import subprocess
from datetime import datetime

import expectation
from mac_volume import HISTORY, RECEIPTS
from program import NEWEST_LAST, SHEET_TEXT, SKIP
from window_test_case import WindowTestCase, main, options

MESSAGE = "An error occurred in your last action:"
NO_HISTORY = [MESSAGE, "Couldn't read install history."]
NO_RECEIPT = [MESSAGE, "Couldn't read BoM PLists."]
NOTHING = "No information available from a Bom file"

DAY = datetime(2019, 3, 26, 10, 11, 12)
MOJAVE = {"displayName": "macOS Mojave", "displayVersion": "10.14", "date": DAY}

MACHINE = 2 << 30  # bytes: what the program may map at the most
PEAK = 1 << 30  # bytes: what it may take of that


def limit_memory():
    if not options.instrumented:
        resource.setrlimit(resource.RLIMIT_AS, (MACHINE, MACHINE))


class HostileVolume(WindowTestCase):
    def setUp(self):
        self.volume = self.new_volume()
        self.receipts = self.volume.folder / RECEIPTS
        self.write_receipts_that_cannot_be_read()
        self.bills = {}  # what the sheet is to show of each receipt, by its identifier
        self.write_bills_that_are_none()
        self.write_bill_with_other_bytes_than_utf_8()

    def write_receipts_that_cannot_be_read(self):
        """Each of them is told by an alert."""
        self.write_holes("holes.plist", 300 << 20, b"<plist>")
        os.mkfifo(self.receipts / "pipe.plist")
        (self.receipts / "folder.plist").mkdir()
        (self.receipts / "loop.plist").symlink_to("loop.plist")
        self.make_socket("socket.plist")
        self.unreadable = 5
        # One that can be read and is no receipt: a table of ten million objects, all of it a hole.
        objects = 10_000_000
        self.write_holes("table.plist", 9 + objects, b"bplist00\x09")
        with (self.receipts / "table.plist").open("ab") as file:
            file.write(bytes(6) + bytes([1, 4]) + struct.pack(">QQQ", objects, 0, 9))

    def write_bills_that_are_none(self):
        def bill(name):
            self.volume.write_receipt(f"bill-{name}", f"example.{name}", DAY)
            self.bills[f"example.{name}"] = NOTHING
            return self.receipts / f"bill-{name}.bom"

        os.mkfifo(bill("pipe"))
        bill("folder").mkdir()
        bill("loop").symlink_to("bill-loop.bom")
        bill("tty").symlink_to("/dev/tty")
        bill("endless").symlink_to("/dev/zero")
        self.make_socket(bill("socket").name)
        if os.geteuid() == 0:
            os.mknod(bill("device"), 0o020600, os.makedev(1, 5))
        self.write_holes(bill("holes").name, 300 << 20, b"BOMStore")
        self.write_holes(bill("smallholes").name, 200 << 20, b"BOMStore\0\0\0\1")

    def write_bill_with_other_bytes_than_utf_8(self):
        """A name in it, and the name of its file."""
        sample = next(stem for _, _, stem in expectation.scan(options.sample)[0] if len(self.listing(f"{stem}.bom")) > 5000)
        name = next(
            name
            for line in self.listing(f"{sample}.bom").splitlines()
            if (name := os.path.basename(line.partition("\t")[0])).isascii() and len(name) > 8
        )
        contents = pathlib.Path(f"{sample}.bom").read_bytes()
        stem = self.receipts / os.fsdecode(b"caf\xe9")
        pathlib.Path(f"{stem}.plist").write_bytes(plistlib.dumps({"PackageIdentifier": "example.bytes", "InstallDate": DAY}))
        bom = pathlib.Path(f"{stem}.bom")
        bom.write_bytes(contents.replace(name.encode() + b"\0", b"\xff" + name.encode()[1:] + b"\0"))
        self.bills["example.bytes"] = self.listing(bom)
        self.assertIn("/\\377" + name[1:] + "\t", self.bills["example.bytes"])

    def listing(self, bom):
        result = subprocess.run([options.lister, "-f", "-p", "fsT", bom], capture_output=True, check=False)
        return result.stdout.decode()

    def write_holes(self, name, size, beginning):
        with (self.receipts / name).open("wb") as file:
            file.write(beginning)
            file.truncate(size)

    def make_socket(self, name):
        # Its path is too long for the system, so it is bound from within the folder.
        before = os.getcwd()
        os.chdir(self.receipts)
        try:
            with socket.socket(socket.AF_UNIX) as listener:
                listener.bind(name)
        finally:
            os.chdir(before)

    def start_on(self, history, *alerts):
        self.volume.write(HISTORY, history)
        program = self.start(self.volume, preexec=limit_memory)
        for texts in [*alerts, *[NO_RECEIPT] * self.unreadable]:
            alert = program.alert()
            self.assertEqual(alert.texts, texts)
            alert.press("OK")
        self.assertEqual(program.title, expectation.title(self.volume.folder))
        return program

    def use(self, program, report):
        """Does what can be done, and looks at what comes of it."""
        self.assertEqual(program.report, report)
        for name in (SKIP, NEWEST_LAST, SKIP, NEWEST_LAST):
            program.toggle(name)
        self.assertEqual(program.report, report)
        program.button("Bigger text").press()
        program.menu_item("View", "Expand All").press()
        rows = [name for _, name in program.receipts()]
        self.assertEqual(sorted(rows), sorted(self.bills))
        for row, name in enumerate(rows):
            with self.subTest(name):
                program.select_receipt(row)
                program.button("Show Bill of Materials").press()
                sheet = program.dialog()
                self.assertEqual(sheet.one("text", SHEET_TEXT).text, self.bills[name])
                sheet.one("push button", "Close").press()
                program.wait_for_no_dialog()

    def expect_good_end(self, program):
        if not options.instrumented:
            self.assertLess(program.peak_memory(), PEAK)
        self.assertEqual(program.close(), 0)
        # The lister says on standard error what it can't list; the program itself says nothing.
        self.assertEqual([line for line in program.output.splitlines() if not line.startswith("lsbom: /")], [])
        self.assertEqual(program.home.files, [])

    def test_with_a_history_of_250_megabytes_of_opening_brackets(self):
        program = self.start_on(b"<" * 250_000_000, NO_HISTORY)
        self.use(program, "\n\n")
        self.expect_good_end(program)

    def test_with_a_history_that_names_one_large_text_ten_thousand_times(self):
        entry = {**MOJAVE, "displayName": "Security Update " + "x" * 1_000_000}
        program = self.start_on(plistlib.dumps([MOJAVE] + [entry] * 10_000, fmt=plistlib.FMT_BINARY), NO_HISTORY)
        self.use(program, "\n\n")
        self.expect_good_end(program)

    def test_with_a_history_that_names_one_text_ten_thousand_times(self):
        entry = {**MOJAVE, "displayName": "Security Update " + "x" * 100}
        program = self.start_on(plistlib.dumps([MOJAVE] + [entry] * 10_000, fmt=plistlib.FMT_BINARY))
        self.use(program, expectation.report(expectation.history(self.volume.folder)))
        self.expect_good_end(program)

    def test_with_a_history_of_as_many_values_as_its_bytes_can_hold(self):
        program = self.start_on(b"<array>" + b"<key/>" * 40_000_000 + b"</array>", NO_HISTORY)
        self.use(program, "\n\n")
        self.expect_good_end(program)


if __name__ == "__main__":
    main()
