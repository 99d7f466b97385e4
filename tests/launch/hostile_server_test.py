#!/usr/bin/env python3
"""hostile_server_test.py PROGRAM: an update server that wants to harm. Whatever it answers, nothing that a user feels
changes: the window answers, the memory stays, nothing is said."""

import struct
import sys
import tempfile
import unittest

from led_program import DOWNLOADS, Home, Program, ServerTestCase, until

EXECUTABLE = sys.argv[1]
# Milliseconds of the processor that the main thread may work on end. The time on the clock, which is longer on a busy
# machine, is printed.
LONGEST_WORK = 100
MORE_MEMORY = 64 << 20


def sharing_list(places, keys):
    """A binary property list that names one dictionary of so many keys in so many places."""
    objects = [b"\xaf\x12" + struct.pack(">I", places) + b"\1" * places,
               b"\xdf\x12" + struct.pack(">I", keys) + b"\2" + b"\3" * (keys - 1) + b"\3" * keys,
               b"\x57AppName", b"\x51x"]
    contents, offsets = b"bplist00", []
    for part in objects:
        offsets.append(len(contents))
        contents += part
    table = b"".join(struct.pack(">I", offset) for offset in offsets)
    return contents + table + struct.pack(">6xBBQQQ", 4, 1, len(objects), 0, len(contents))


class HostileServerTest(ServerTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.usual_memory, _ = cls.run_with("waited/list")

    @classmethod
    def run_with(cls, path, end=None):
        """The most memory that the program took while the server answered so, and the longest work of its main thread."""
        cls.server.requests.clear()
        cls.server.left.clear()
        with tempfile.TemporaryDirectory() as folder:
            program = Program(EXECUTABLE, Home(folder).folder, cls.server.address("good", path), cls.server.authority,
                              cls.display)
            try:
                program.wait_for("window")
                program.say("work")  # from here on
                program.wait_for("work")
                until(lambda: cls.server.left if end is None else end(), "the end of the answer")
                program.help_menu()
                program.say("work")
                work, clock = (float(text) for text in program.wait_for("work").split())
                with open(f"/proc/{program.process.pid}/status", encoding="ascii") as status:
                    memory = next(1024 * int(line.split()[1]) for line in status if line.startswith("VmHWM"))
                _, ended, error = program.close()
            finally:
                program.process.kill()
            said = [line for _, line in program.lines.queue if line.startswith("alert")]
            print(f"{path}: {memory >> 20} MiB, {work:.0f} ms of work on end ({clock:.0f} ms on the clock)")
            if (ended, error, said) != (0, "", []):
                raise AssertionError(f"{path}: status {ended}, {error!r}, {said}")
        return memory, work

    def expect_nothing_felt(self, path, end=None):
        with self.subTest(path):
            memory, work = self.run_with(path, end)
            self.assertLess(memory - self.usual_memory, MORE_MEMORY)
            self.assertLess(work, LONGEST_WORK)

    def test_answers_without_end(self):
        for part in ("status", "hints", "headers", "header", "body", "chunks", "extensions", "trailers"):
            self.expect_nothing_felt("endless/" + part)

    def test_a_drip(self):
        self.expect_nothing_felt("endless/drip", lambda: self.server.drops > 50)

    def test_a_redirect_to_a_huge_address(self):
        self.expect_nothing_felt("to-huge")

    def test_packed_bombs(self):
        self.expect_nothing_felt("gzip-bomb")

    def test_answers_that_are_cut(self):
        for path in ("cut/5", "cut/30", "cut/90", "short", "gzip-cut"):
            self.expect_nothing_felt(path)

    def test_shared_dictionaries(self):
        for places, keys in ((120_000, 60_000), (8_000_000, 4_000_000), (16_000_000, 10)):
            self.server.list = sharing_list(places, keys)
            self.expect_nothing_felt("waited/list")

    def test_lists_of_many_small_values(self):
        for value in (b"<true/>", b"<dict><key>AppName</key><string/></dict>"):
            self.server.list = b"<array><dict><key>AppName</key><string>x</string></dict>"
            self.server.list += value * (16_000_000 // len(value)) + b"</array>"
            self.expect_nothing_felt("waited/list")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
