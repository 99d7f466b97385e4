"""Reads the built programs and fails unless each is hardened as packaging/hardening.cmake wants it.

Usage: hardening_test.py READELF PROGRAM...
"""

import re
import subprocess
import sys
import unittest

READELF, *PROGRAMS = sys.argv[1:]

# They write as much as they are given, whatever room there is.
UNBOUNDED = {"gets", "strcpy", "stpcpy", "strcat", "sprintf", "vsprintf", "scanf", "sscanf", "fscanf"}


def readelf(option, program):
    output = subprocess.run([READELF, "--wide", option, program], capture_output=True, text=True, check=True)
    return output.stdout


def imports(program):
    """The names of the functions, also of those that the C library has one of for each version of the language."""
    return {re.sub(r"^__isoc\d+_", "", name) for name in re.findall(r" UND (\w+)", readelf("--dyn-syms", program))}


class Hardening(unittest.TestCase):
    def test_is_loaded_at_an_address_that_cannot_be_foretold(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertRegex(readelf("--file-header", program), r"Type:\s+DYN")
                self.assertRegex(readelf("--dynamic", program), r"\(FLAGS_1\).*\bPIE\b")

    def test_resolves_all_its_imports_at_start_and_lets_nobody_change_them(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertIn("GNU_RELRO", readelf("--program-headers", program))
                self.assertRegex(readelf("--dynamic", program), r"\(FLAGS\).*\bBIND_NOW\b")

    def test_has_a_stack_that_is_not_executed(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertRegex(readelf("--program-headers", program), r"GNU_STACK( +0x[0-9a-f]+){5} RW +0x")

    def test_has_no_memory_that_is_both_written_and_executed(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertNotRegex(readelf("--program-headers", program), r"LOAD( +0x[0-9a-f]+){5} RWE")

    def test_notices_when_its_stack_was_overwritten(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertIn("__stack_chk_fail", imports(program))

    def test_checks_the_room_of_buffers_whose_size_is_known(self):
        # Not every program has a call that writes into one.
        checked = {name for program in PROGRAMS for name in imports(program) if name.endswith("_chk")}
        self.assertTrue(checked, "not one call is fortified")

    def test_makes_no_unbounded_call(self):
        for program in PROGRAMS:
            with self.subTest(program=program):
                self.assertFalse(imports(program) & UNBOUNDED)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
