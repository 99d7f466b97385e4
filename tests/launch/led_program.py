"""Starts the program under test and leads it; see remote_control.cpp for what is said between the two."""

import configparser
import os
import queue
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "support"))
from https_server import Server  # noqa: E402,F401
from virtual_display import start_virtual_display  # noqa: E402

# What an address in the list begins with to be offered.
DOWNLOADS = "https://file-hosting.downloads.pelmarix.example/"
# For everything that takes a moment on an idle machine and must not fail on a busy one.
TIMEOUT = 60


class Program:
    """One run, in a home folder that stays."""

    def __init__(self, executable, home, update_list, authority, display, **environment):
        own = {"HOME": home, "XDG_CONFIG_HOME": os.path.join(home, "config"), "PATH": os.environ["PATH"],
               "PELMARIX_VOLUME": os.path.join(home, "volume"), "PELMARIX_TEST_UPDATE_LIST": update_list,
               "PELMARIX_TEST_AUTHORITY": authority, "QT_QPA_PLATFORM": "xcb", **display,
               "LC_ALL": "C.UTF-8", "XDG_RUNTIME_DIR": home,
               "DBUS_SESSION_BUS_ADDRESS": "disabled:",
               # It keeps the toolkit's warnings to itself unless asked for them, and each means a fault.
               "QT_LOGGING_TO_CONSOLE": "1", "QT_LOGGING_RULES": "*.warning=true;*.critical=true"}
        inherited = ("ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS")
        own.update({name: os.environ[name] for name in inherited if name in os.environ})
        own.update(environment)
        self.started = time.monotonic()
        self.process = subprocess.Popen([executable], env=own, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True, bufsize=1)
        self.lines = queue.Queue()
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()

    def _read(self):
        for line in self.process.stdout:
            self.lines.put((time.monotonic(), line.rstrip("\n")))

    def wait_for(self, start):
        """The next line that begins so; returns the rest of it. Other lines in between are passed over."""
        end = time.monotonic() + TIMEOUT
        while True:
            self.told_at, line = self.lines.get(timeout=max(0.0, end - time.monotonic()))
            if line.startswith(start):
                return line[len(start):].strip()

    def says_nothing_beginning(self, start):
        while not self.lines.empty():
            if self.lines.get()[1].startswith(start):
                return False
        return True

    def say(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def help_menu(self):
        """The items and whether they are checked; the window must be up."""
        self.say("menu")
        items = {}
        while "About Pelmarix" not in items:
            title, _, state = self.wait_for("menu").rpartition(", ")
            items[title] = state
        return items

    def close(self):
        """Closes the windows. Returns (seconds until the process had ended, exit status, standard error)."""
        start = time.monotonic()
        self.process.stdin.close()
        status = self.process.wait(TIMEOUT)
        seconds = time.monotonic() - start
        self.reader.join()
        error = self.process.stderr.read()
        self.process.stdout.close()
        self.process.stderr.close()
        return seconds, status, error


class Home:
    """A user's home folder with settings of its own, and a Mac volume on which nothing has been installed."""

    def __init__(self, folder):
        self.folder = folder
        receipts = os.path.join(folder, "volume", "Library", "Receipts")
        os.makedirs(receipts)
        os.makedirs(os.path.join(folder, "volume", "System", "Library", "Receipts"))
        with open(os.path.join(receipts, "InstallHistory.plist"), "w", encoding="utf-8") as history:
            history.write('<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array/></plist>')
        self.settings_file = os.path.join(folder, "config", "pelmarix", "pelmarix.ini")

    def write_settings(self, **values):
        os.makedirs(os.path.dirname(self.settings_file), exist_ok=True)
        with open(self.settings_file, "w", encoding="utf-8") as settings:
            settings.write("[General]\n" + "".join(f"{key}={value}\n" for key, value in values.items()))

    def settings(self):
        parser = configparser.ConfigParser()
        parser.optionxform = str
        parser.read(self.settings_file, encoding="utf-8")
        return dict(parser["General"]) if parser.has_section("General") else {}


class Display:
    """A virtual display of its own, without a window manager, as a context; gives what its programs need in their
    environment."""

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory()
        self.process, environment = start_virtual_display(self.folder.name)
        return environment

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()
        self.folder.cleanup()


class ServerTestCase(unittest.TestCase):
    """Has a server and a display for all its tests."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.server = Server(cls.folder.name)
        cls.virtual_display = Display()
        cls.display = cls.virtual_display.__enter__()

    @classmethod
    def tearDownClass(cls):
        cls.virtual_display.__exit__()
        cls.folder.cleanup()


def until(condition, what):
    """Returns when the condition holds; fails when it never does."""
    end = time.monotonic() + TIMEOUT
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f"never happened: {what}")
        time.sleep(0.005)
