"""Runs lsbom as the shell and other programs do."""

import os
import pathlib
import resource
import signal
import socket
import subprocess
import sys
import tempfile
import unittest

LSBOM, WRITE_BOM = sys.argv[1:3]
del sys.argv[1:3]
INSTRUMENTED = "--instrumented" in sys.argv
if INSTRUMENTED:
    sys.argv.remove("--instrumented")

USAGE = "usage: lsbom [-bcdflmsx] [--arch architecture] [-p letters] bom ...\n"


TIME_OUT = 60  # seconds: far more than any of the listings takes
has_full_device = unittest.skipUnless(os.path.exists("/dev/full"), "this system has no device that is always full")
CANNOT_BE_LOADED = 127  # of the system's loader, where a program has no memory for its libraries


def run(*arguments, volume=None, **options):
    environment = {name: value for name, value in os.environ.items() if name != "PELMARIX_VOLUME"}
    if volume is not None:
        if sys.platform == "darwin":
            raise unittest.SkipTest("on macOS the volume is always the machine's own")
        environment["PELMARIX_VOLUME"] = str(volume)
    options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options}
    return subprocess.run(
        [LSBOM, *map(str, arguments)], env=environment, check=False, text=True, timeout=TIME_OUT, **options
    )


def outcome(result):
    return result.returncode, result.stdout, result.stderr


class CommandLine(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)

    def write(self, name, count, *more_paths):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run([WRITE_BOM, path, str(count), *more_paths], check=True)
        return path

    def test_lists_a_file(self):
        listing = (
            ".\t40755\t0/80\n"
            "./Applications\t40755\t0/80\n"
            "./Applications/Überblick 1.app\t40755\t0/80\n"
            "./Applications/Überblick 1.app/Contents\t40755\t0/80\n"
            "./Applications/Überblick 1.app/Contents/MacOS\t40755\t0/80\n"
            "./Applications/Überblick 1.app/Contents/MacOS/Überblick\t100755\t0/80\t10000\t731399552\n"
        )
        self.assertEqual(outcome(run(self.write("a.bom", 6))), (0, listing, ""))

    def test_lists_plain_files_by_name_size_and_time_from_a_path_with_blanks(self):
        bom = self.write("My Folder/a b\tc.bom", 6)
        line = "./Applications/Überblick 1.app/Contents/MacOS/Überblick\t10000\tThu Sep 27 04:03:32 2018\n"
        self.assertEqual(outcome(run("-f", "-p", "fsT", bom)), (0, line, ""))

    def test_prints_bytes_that_are_not_utf_8_in_octal(self):
        bom = self.write("a.bom", 0, b"./caf\xe9 \xe2\x82/\\351", "./café €")
        self.assertEqual(run("-fs", bom).stdout, "./café €\n./caf\\351 \\342\\202/\\351\n")
        self.assertEqual(run("-fpF", bom).stdout, '"./café €"\n"./caf\\351 \\342\\202/\\\\351"\n')

    def test_refuses_paths_that_no_system_opens(self):
        self.assertEqual(run("-fs", self.write("a.bom", 0, "n" * 4096)).stdout, "n" * 4096 + "\n")
        bom = self.write("b.bom", 5, "n" * 4097)
        status, output, errors = outcome(run("-fs", bom))
        self.assertEqual((status, output), (1, ""))
        self.assertRegex(errors, f"^lsbom: {bom}: a path is longer than 4096 bytes")

    def test_prints_nothing_for_an_empty_list(self):
        self.assertEqual(outcome(run(self.write("a.bom", 0))), (0, "", ""))

    def test_prints_nothing_where_nothing_is_chosen(self):
        self.assertEqual(outcome(run("-f", self.write("a.bom", 2))), (0, "", ""))

    def test_lists_several_files_one_after_the_other(self):
        one, two = self.write("1.bom", 3), self.write("2.bom", 2)
        self.assertEqual(run("-s", one, two, one).stdout, run("-s", one).stdout + ".\n./Applications\n" + run("-s", one).stdout)

    def test_goes_on_behind_a_file_that_it_cannot_list(self):
        good, missing = self.write("1.bom", 1), self.folder / "2.bom"
        message = f"lsbom: {missing}: No such file or directory\n"
        self.assertEqual(outcome(run("-s", good, missing, good)), (1, ".\n.\n", message))

    def test_says_what_is_wrong_with_a_file(self):
        other = self.folder / "other"
        other.write_text("<plist version=\"1.0\"><dict/></plist>\n")
        message = f'lsbom: {other}: not a bill of materials: it does not begin with "BOMStore" (at byte 0)\n'
        self.assertEqual(outcome(run(other)), (1, "", message))
        self.assertEqual(outcome(run(self.folder)), (1, "", f"lsbom: {self.folder}: Is a directory\n"))

    def test_prints_nothing_of_a_file_that_is_damaged_at_its_end(self):
        bom = self.write("a.bom", 5000)
        content = bom.read_bytes()
        bom.write_bytes(content[:-1])
        message = f"lsbom: {bom}: the block index reaches past the end of the file (at byte "
        status, output, errors = outcome(run(bom))
        self.assertEqual((status, output, errors[: len(message)]), (1, "", message))

    def test_refuses_files_that_no_bill_of_materials_can_be(self):
        huge = self.folder / "huge"
        with huge.open("wb") as file:
            file.write(b"BOMStore")
            file.truncate((256 << 20) + 1)
        self.assertEqual(outcome(run(huge)), (1, "", f"lsbom: {huge}: File too large\n"))

    def test_explains_its_use_to_who_misuses_it(self):
        bom = self.write("a.bom", 3)
        self.assertEqual(outcome(run()), (64, "", "lsbom: no bill of materials is named\n" + USAGE))
        self.assertEqual(outcome(run("-z", bom)), (64, "", "lsbom: unknown option -z\n" + USAGE))
        self.assertEqual(outcome(run("-p", "ff", bom)), (64, "", "lsbom: column f is named twice\n" + USAGE))

    def test_reads_a_file_that_is_its_standard_input(self):
        bom = self.write("a.bom", 3)
        with bom.open("rb") as file:
            self.assertEqual(outcome(run("/dev/stdin", stdin=file)), outcome(run(bom)))

    def test_refuses_whatever_is_no_regular_file(self):
        bom = self.folder / "x.bom"

        def refuses(words, path=bom):
            self.assertEqual(outcome(run("-f", "-p", "fsT", path)), (1, "", f"lsbom: {path}: {words}\n"))

        os.mkfifo(bom)
        refuses("Invalid argument")
        bom.unlink()
        bom.mkdir()
        refuses("Is a directory")
        bom.rmdir()
        with socket.socket(socket.AF_UNIX) as listener:
            listener.bind(str(bom))
            refuses("No such device or address")
        bom.unlink()
        for target, words in [
            ("missing", "No such file or directory"),
            ("x.bom", "Too many levels of symbolic links"),
            ("/dev/zero", "Invalid argument"),
        ]:
            bom.symlink_to(target)
            refuses(words)
            bom.unlink()
        refuses("Invalid argument", "/dev/zero")
        refuses("Not a directory", "/dev/null/x.bom")

    def test_refuses_a_pipe_that_nobody_writes_to(self):
        reader, writer = os.pipe()
        self.addCleanup(os.close, reader)
        self.addCleanup(os.close, writer)
        result = run("/dev/stdin", stdin=reader)
        self.assertEqual(outcome(result), (1, "", "lsbom: /dev/stdin: Invalid argument\n"))

    def test_prints_ids_where_the_file_of_names_is_a_pipe(self):
        bom = self.write("a.bom", 6)
        accounts = self.folder / "Volume/etc"
        accounts.mkdir(parents=True)
        os.mkfifo(accounts / "passwd")
        os.mkfifo(accounts / "group")
        self.assertEqual(outcome(run("-fp?", bom, volume=self.folder / "Volume")), (0, "0/80\n", ""))

    def run_in_memory(self, size, *arguments):
        if INSTRUMENTED:
            self.skipTest("the program takes more memory than its own")
        if sys.platform == "darwin":
            self.skipTest("macOS sets a program's memory no limit")
        return outcome(run(*arguments, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (size, size))))

    def test_refuses_a_huge_file_by_its_first_bytes(self):
        huge = self.folder / "huge.bom"
        with huge.open("wb") as file:
            file.truncate(256 << 20)
        message = f'lsbom: {huge}: not a bill of materials: it does not begin with "BOMStore" (at byte 0)\n'
        self.assertEqual(self.run_in_memory(100 << 20, huge), (1, "", message))

    def test_says_so_when_there_is_too_little_memory_for_a_huge_file(self):
        huge = self.folder / "huge.bom"
        with huge.open("wb") as file:
            file.write(b"BOMStore")
            file.truncate(256 << 20)
        self.assertEqual(self.run_in_memory(100 << 20, huge), (1, "", "lsbom: out of memory\n"))

    def test_lists_all_or_says_so_under_any_limit_of_memory(self):
        # At the end come the longest lines that there are.
        long_paths = (b"./z/" + b"\xff" * 4000 + b"%d" % number for number in range(20))
        for bom in (self.write("a.bom", 20000), self.write("b.bom", 1, *long_paths), self.write("c.bom", 5000, b"./z" * 1000)):
            listing = run("-fpfFsTUG", bom).stdout
            self.assertNotEqual(listing, "")
            size = 1 << 20
            while self.run_in_memory(size, "-fpfFsTUG", bom)[0] == CANNOT_BE_LOADED:
                size += 16 << 10
            smallest = size
            while (result := self.run_in_memory(size, "-fpfFsTUG", bom)) != (0, listing, ""):
                self.assertEqual(result, (1, "", "lsbom: out of memory\n"), f"in {size} bytes")
                size += 16 << 10
            self.assertGreater(size, smallest)

    @has_full_device
    def test_notices_a_full_disk(self):
        for count in (1, 30000):
            with open("/dev/full", "wb") as full:
                result = run(self.write("a.bom", count), stdout=full)
            self.assertEqual(
                (result.returncode, result.stderr), (1, "lsbom: standard output: No space left on device\n")
            )

    @has_full_device
    def test_stops_at_the_first_error_of_the_output(self):
        bom = self.write("a.bom", 1)
        with open("/dev/full", "wb") as full:
            result = run(bom, self.folder / "missing", stdout=full)
        self.assertEqual((result.returncode, result.stderr), (1, "lsbom: standard output: No space left on device\n"))

    def test_notices_that_there_is_no_output(self):
        result = run(self.write("a.bom", 1), stdout=None, preexec_fn=lambda: os.close(1))
        self.assertEqual((result.returncode, result.stderr), (1, "lsbom: standard output: Bad file descriptor\n"))

    def run_into_closed_pipe(self, **options):
        reader, writer = os.pipe()
        os.close(reader)
        try:
            return run(self.write("a.bom", 30000), stdout=writer, **options)
        finally:
            os.close(writer)

    def test_ends_by_the_signal_where_nobody_reads_its_output(self):
        result = self.run_into_closed_pipe()
        self.assertEqual((result.returncode, result.stderr), (-signal.SIGPIPE, ""))

    def test_says_that_nobody_reads_its_output_where_the_signal_is_ignored(self):
        result = self.run_into_closed_pipe(restore_signals=False)
        self.assertEqual((result.returncode, result.stderr), (1, "lsbom: standard output: Broken pipe\n"))

    def test_finds_absolute_names_below_the_volume(self):
        self.write("Volume/System/Library/Receipts/a.bom", 2)
        for volume in (self.folder / "Volume", f"{self.folder}/Volume/"):
            result = run("-s", "/System/Library/Receipts/a.bom", volume=volume)
            self.assertEqual(outcome(result), (0, ".\n./Applications\n", ""))

    def test_finds_absolute_names_in_the_first_of_two_volumes_that_has_them(self):
        self.write("System/only.bom", 1)
        self.write("Data/both.bom", 1)
        self.write("System/both.bom", 2)
        volume = f"{self.folder}/Data:{self.folder}/System"
        self.assertEqual(outcome(run("-s", "/only.bom", volume=volume)), (0, ".\n", ""))
        self.assertEqual(outcome(run("-s", "/both.bom", volume=volume)), (0, ".\n", ""))

    def test_takes_absolute_names_as_they_are_where_the_volume_lacks_them(self):
        bom = self.write("a.bom", 1)
        self.assertEqual(outcome(run("-s", bom, volume=self.folder / "Volume")), (0, ".\n", ""))
        self.assertEqual(outcome(run("-s", bom, volume="")), (0, ".\n", ""))

    def test_takes_relative_names_as_they_are(self):
        self.write("Volume/a.bom", 2)
        self.write("a.bom", 1)
        self.assertEqual(outcome(run("-s", "a.bom", volume=self.folder / "Volume", cwd=self.folder)), (0, ".\n", ""))

    def test_looks_for_no_relative_name_beside_the_volume(self):
        self.write("a.bom", 1)
        self.write("Volumea.bom", 2)
        self.assertEqual(outcome(run("-s", "a.bom", volume=self.folder / "Volume", cwd=self.folder)), (0, ".\n", ""))

    def test_names_a_file_as_it_was_given(self):
        broken = self.folder / "Volume/broken.bom"
        broken.parent.mkdir()
        broken.write_bytes(b"BOMStore")
        message = "lsbom: /broken.bom: the file ends inside its header (at byte 0)\n"
        self.assertEqual(outcome(run("/broken.bom", volume=self.folder / "Volume")), (1, "", message))

    def test_takes_names_of_users_and_groups_from_the_volume(self):
        bom = self.write("a.bom", 6)
        accounts = self.folder / "Volume/etc"
        accounts.mkdir(parents=True)
        (accounts / "passwd").write_text("# System accounts\nroot:*:0:0:System Administrator:/var/root:/bin/sh\n")
        (accounts / "group").write_text("wheel:*:0:root\nadmin:*:80:root\n")
        self.assertEqual(run("-fpUG?", bom, volume=self.folder / "Volume").stdout, "root\tadmin\troot/admin\n")

    def test_prints_ids_where_the_volume_names_nobody(self):
        self.assertEqual(run("-fpUG?", self.write("a.bom", 6), volume=self.folder / "Volume").stdout, "0\t80\t0/80\n")

    def test_takes_names_from_this_machine_where_there_is_no_volume(self):
        self.assertEqual(run("-dp", "U", self.write("a.bom", 1)).stdout, "root\n")


unittest.main()
