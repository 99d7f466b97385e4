"""Every include of the program keeps to the arrows of docs/architecture.md.

Usage: includes_test.py SOURCE_FOLDER
"""
import pathlib
import re
import sys
import unittest

# For each folder those that it may include, beside itself.
CORE_BELOW_MODELS = {"base", "plist", "platform"}
QT_SERVICES_BELOW = {"base", "plist", "platform", "posix"}
QT_WIDGETS_BELOW = QT_SERVICES_BELOW | {"qt/services"}
BELOW = {
    "base": set(),
    "plist": {"base"},
    "platform": {"base"},
    "history": CORE_BELOW_MODELS,
    "receipts": CORE_BELOW_MODELS,
    "ui": CORE_BELOW_MODELS | {"history", "receipts"},
    "app": CORE_BELOW_MODELS,
    "posix": {"base", "platform"},
    "lsbom": {"base", "platform", "posix"},
    "sample": {"base"},
    "qt/services": QT_SERVICES_BELOW,
    "qt/widgets": QT_WIDGETS_BELOW,
    "qt/window": QT_WIDGETS_BELOW | {"qt/widgets", "history", "receipts", "ui", "app"},
    "qt/open": {"base", "posix", "qt/services", "qt/widgets"},
}

STANDARD_HEADER = re.compile(r"[a-z_]+")  # <vector>, and neither <unistd.h> nor <QString>
# What stands in angle brackets beside the standard library, and the only folders that may name it.
POSIX_HEADER = re.compile(r"(sys/)?[a-z]+\.h")
QT_HEADER = re.compile(r"Q[A-Za-z]+|xcb/xcb\.h")  # the toolkit, and the display server that it talks to
# The program has one thread; only what talks with a server has another.
THREAD_HEADER = re.compile(r"atomic|barrier|condition_variable|future|latch|mutex|pthread\.h|semaphore|shared_mutex|"
                           r"stop_token|thread|QThread\w*|QtConcurrent\w*|Q\w*Mutex\w*|QSemaphore|QAtomic\w*")
WITH_A_THREAD = {"qt/services"}
GENERATED_BY_QT = re.compile(r"ui_[a-z_]+\.h")

SOURCE_NAME = re.compile(r".*\.(h|cpp)(\.in)?")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def folder_of(path):
    """The folder that a file belongs to, of qt/ the one inside it."""
    parts = pathlib.PurePosixPath(path).parts
    return "/".join(parts[:2] if parts[0] == "qt" else parts[:1])


def may_include(path, bracket, header):
    folder = folder_of(path)
    is_qt = folder.startswith("qt/")
    if bracket == "<":
        if THREAD_HEADER.fullmatch(header):
            return folder in WITH_A_THREAD
        if STANDARD_HEADER.fullmatch(header):
            return True
        if folder == "posix":
            return bool(POSIX_HEADER.fullmatch(header))
        return is_qt and bool(QT_HEADER.fullmatch(header))
    if is_qt and GENERATED_BY_QT.fullmatch(header):
        return True
    return folder_of(header) in BELOW[folder] | {folder}


def violations(path, text):
    return [f"{path} includes {header}"
            for bracket, header in INCLUDE.findall(text) if not may_include(path, bracket, header)]


class TheRule(unittest.TestCase):
    def test_lets_a_folder_include_itself_and_what_stands_below_it(self):
        self.assertEqual([], violations("ui/report.cpp", '#include "ui/report.h"\n#include "history/history.h"\n'))
        self.assertEqual([], violations("qt/widgets/a.cpp", '#include "qt/services/text_conversion.h"\n'))

    def test_refuses_what_stands_above_or_beside(self):
        for path, header in [("platform/task.h", "plist/value.h"), ("plist/value.h", "platform/text.h"),
                             ("ui/report.cpp", "app/app_delegate.h"), ("app/app_delegate.h", "ui/report.h"),
                             ("history/loader.cpp", "receipts/bom.h"), ("receipts/scan.cpp", "posix/volume.h"),
                             ("ui/report.cpp", "qt/widgets/find_bar.h"), ("lsbom/tree.h", "plist/value.h"),
                             ("qt/services/a.h", "qt/widgets/b.h"), ("qt/widgets/a.h", "qt/window/b.h"),
                             ("qt/widgets/a.h", "ui/b.h"), ("base/date.h", "platform/text.h")]:
            with self.subTest(path=path, header=header):
                self.assertEqual([f"{path} includes {header}"], violations(path, f'#include "{header}"\n'))

    def test_keeps_the_systems_headers_in_their_folders(self):
        self.assertEqual([], violations("posix/a.cpp", "#include <sys/stat.h>\n#include <fcntl.h>\n#include <vector>\n"))
        self.assertEqual([], violations("qt/window/a.cpp", "#include <QWidget>\n"))
        for path, header in [("base/a.h", "unistd.h"), ("lsbom/a.cpp", "sys/stat.h"), ("qt/window/a.cpp", "fcntl.h"),
                             ("posix/a.cpp", "QString"), ("history/a.cpp", "QString")]:
            with self.subTest(path=path, header=header):
                self.assertEqual([f"{path} includes {header}"], violations(path, f"  # include <{header}>\n"))

    def test_keeps_threads_where_the_network_is(self):
        self.assertEqual([], violations("qt/services/a.cpp", "#include <QThread>\n#include <mutex>\n"))
        for path, header in [("plist/a.cpp", "thread"), ("base/a.h", "atomic"), ("posix/a.cpp", "pthread.h"),
                             ("lsbom/a.cpp", "future"), ("qt/window/a.cpp", "QThreadPool")]:
            with self.subTest(path=path, header=header):
                self.assertEqual([f"{path} includes {header}"], violations(path, f"#include <{header}>\n"))


# Whatever they include, nobody includes them.
OUTSIDE = {"bench", "build", "fuzz", "tests"}


class TheProgram(unittest.TestCase):
    def test_has_a_rule_for_each_of_its_folders(self):
        folders = {folder_of(path.relative_to(SOURCES)) for top in SOURCES.iterdir() if top.name not in OUTSIDE
                   for path in top.rglob("*.cpp")}
        self.assertEqual(set(BELOW), folders)

    def test_keeps_to_the_rule(self):
        found = []
        for folder in BELOW:
            files = sorted(path for path in (SOURCES / folder).rglob("*") if SOURCE_NAME.fullmatch(path.name))
            self.assertTrue(files, f"{folder}/ has no sources")
            for path in files:
                found += violations(str(path.relative_to(SOURCES)), path.read_text(encoding="utf-8"))
        self.assertEqual([], found)


if __name__ == "__main__":
    SOURCES = pathlib.Path(sys.argv.pop())
    unittest.main()
