"""scripts/mutate in a project of a few lines."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts/mutate"

PROJECT = {
    ".gitignore": "/build\n",
    "CMakeLists.txt": """\
cmake_minimum_required(VERSION 3.25)
project(Sum CXX)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
enable_testing()
include_directories(.)
add_subdirectory(sum)
add_subdirectory(tests/sum)
""",
    "sum/CMakeLists.txt": "add_library(sum sum.cpp)\n",
    "sum/sum.h": "int larger(int a, int b);\nint sum(int a, int b);\n",
    "sum/sum.cpp": """\
#include "sum/sum.h"
// Neither a < b here nor the text is changed.
static_assert(sizeof(int) == 4, "not 3 < 4");
int larger(int a, int b) {
  if (a > b) return a;
  return b;
}
int sum(int a, int b) {
  while (false) {
  }
  return a + b;
}
""",
    "tests/sum/CMakeLists.txt": """\
add_executable(sum_test sum_test.cpp)
target_link_libraries(sum_test sum)
add_test(NAME sum COMMAND sum_test)
""",
    "tests/sum/sum_test.cpp": """\
#include "sum/sum.h"
int main() { return larger(2, 1) == 2 && sum(1, 2) == 3 ? 0 : 1; }
""",
    "scripts/mutate_unobservable": """\
sum/sum.cpp: if (a > b) return a; => if (a >= b) return a;  # of two equal numbers either is the larger one
""",
}


class Mutate(unittest.TestCase):
    def setUp(self):
        self.project = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        for name, text in PROJECT.items():
            self.write(name, text)
        shutil.copy(SCRIPT, self.project / "scripts")
        subprocess.run(["git", "init", "--quiet"], cwd=self.project, check=True)

    def write(self, name, text):
        file = self.project / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def mutate(self, *options):
        return subprocess.run(["scripts/mutate", "sum", *options], cwd=self.project, capture_output=True, text=True, check=False)

    def test_it_tells_what_became_of_each_mutant(self):
        done = self.mutate()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        survivors, table = done.stdout.split("\n\n")
        self.assertEqual(survivors, "sum/sum.cpp: return b; => return {};  # line 6")
        self.assertEqual([line.split() for line in table.splitlines()], [
            ["killed", "survived", "unobservable", "invalid"],
            ["sum", "6", "1", "1", "3", "85.7%"],
        ])
        self.assertEqual((self.project / "sum/sum.cpp").read_text(encoding="utf-8"), PROJECT["sum/sum.cpp"])

    def test_a_seed_makes_the_same_choice_each_time_and_another_one_another(self):
        first, again, other = (self.mutate("--count=1", f"--seed={seed}").stdout for seed in "112")
        self.assertEqual(first, again)
        self.assertNotEqual(first, other)

    def test_it_stops_where_a_test_fails_without_any_mutant(self):
        self.write("tests/sum/sum_test.cpp", "int main() { return 1; }\n")
        done = self.mutate()
        self.assertEqual(done.returncode, 1)
        self.assertIn("failed without any mutant", done.stderr)


if __name__ == "__main__":
    unittest.main()
