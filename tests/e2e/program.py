"""The program under test: one start of it, and its window as a person would read and use it."""

import configparser
import contextlib
import copy
import functools
import os
import pathlib
import signal
import subprocess

import processes
from accessible import Atspi, GLib, applications
from waiting import wait_until

TIMELINE = "Timeline"
OUTLINE = "Install history"
TABLE = "Receipts"
REPORT = "Report"
SKIP = "Skip configuration data"
NEWEST_LAST = "Newest last"
SHEET_TEXT = "Bill of materials"

# The program looks for an update at each start unless told not to, which only the tests of that need.
QUIET = {"noUpdateCheck": "true"}

# The program keeps the toolkit's warnings to itself unless asked for them: the tests ask, for each means a fault.
LOUD = {"QT_LOGGING_TO_CONSOLE": "1", "QT_LOGGING_RULES": "*.warning=true;*.critical=true"}

SETTINGS = "pelmarix/pelmarix.ini"  # below the folder for configuration


class Home:
    """A home folder, with the program's settings where they belong."""

    def __init__(self, folder, settings=QUIET):
        self.folder = folder
        folder.mkdir()
        if settings is not None:
            self.settings_file.parent.mkdir(parents=True)
            lines = "".join(f"{key}={value}\n" for key, value in settings.items())
            self.settings_file.write_text(f"[General]\n{lines}", encoding="utf-8")

    @property
    def settings_file(self):
        return self.folder / ".config" / SETTINGS

    @property
    def settings(self):
        """All that stands in the settings file, each key with its section in front unless that is the general one."""
        parser = configparser.RawConfigParser()
        parser.optionxform = str
        parser.read(self.settings_file, encoding="utf-8")
        return {
            key if section == "General" else f"{section}/{key}": value
            for section in parser.sections()
            for key, value in parser.items(section)
        }

    @property
    def files(self):
        """The files and folders in it, by their paths, but for the settings file and the folders on the way to it, and for the
        cache that the system's font library makes where the system has none that is up to date."""
        fonts = self.folder / ".cache/fontconfig"
        expected = {self.settings_file, *self.settings_file.parents, fonts, fonts.parent}
        return sorted(
            str(path.relative_to(self.folder))
            for path in self.folder.rglob("*")
            if path not in expected and fonts not in path.parents
        )


class Alert:
    """A message that waits for its answer."""

    def __init__(self, window):
        self.window = window
        self.texts = [label.name for label in window.find("label") if label.name]
        self.buttons = [button.name.replace("&", "") for button in window.find("push button")]

    def press(self, name):
        next(button for button in self.window.find("push button") if button.name.replace("&", "") == name).press()
        wait_until(lambda: not is_shown(self.window), "the alert to go")


def is_shown(window):
    try:
        return window.is_("showing")
    except GLib.Error:  # it is no more
        return False


class _Orphan:
    """A process that this one has become the parent of, as subprocess has its own."""

    def __init__(self, pid):
        self.pid = pid
        self.returncode = None

    def poll(self):
        if self.returncode is None:
            try:
                ended, status = os.waitpid(self.pid, os.WNOHANG)
            except ChildProcessError:  # its own parent is just ending
                return None
            self.returncode = os.waitstatus_to_exitcode(status) if ended else None
        return self.returncode

    def wait(self):
        return wait_until(lambda: self.poll() is not None, f"the end of {self.pid}")

    def send_signal(self, number):
        os.kill(self.pid, number)


class Program:
    """Starts the program on a Mac's volume. Used as a context, it ends the program if that is still running. A variable
    of the environment that is None isn't set."""

    def __init__(self, desktop, binary, volume, home, environment=None, preexec=None, arguments=()):
        self.desktop = desktop
        self.home = home
        self._output = home.folder.with_name(home.folder.name + ".output")
        self.temporary_folder = desktop.folder(home.folder.name + ".tmp")
        self.environment = desktop.environment_with_home(home.folder)
        self.environment.update(
            TMPDIR=str(self.temporary_folder),
            QT_ACCESSIBILITY="1",
            QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
            PELMARIX_VOLUME=str(volume),
            **LOUD,
        )
        self.environment.update(environment or {})
        self.environment = {name: value for name, value in self.environment.items() if value is not None}
        with self._output.open("ab") as output:
            self.process = subprocess.Popen(
                [pathlib.Path(binary).absolute(), *arguments],
                env=self.environment,
                cwd=home.folder,
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=output,
                preexec_fn=preexec,
            )
        self._application = None

    def started_again(self):
        """Waits for the program that this one starts on another volume."""
        others = wait_until(
            lambda: processes.with_variable("TMPDIR", self.temporary_folder) - {self.pid} - self.children(),
            "the program to be started again",
        )
        again = copy.copy(self)
        again.process = _Orphan(others.pop())
        again._application = None
        vars(again).pop("window", None)
        return again

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    @property
    def pid(self):
        return self.process.pid

    @property
    def output(self):
        """What it wrote to standard output and standard error, in all starts with the same home."""
        return self._output.read_text(encoding="utf-8", errors="replace")

    # Windows

    def windows_of_manager(self):
        """The windows as the window manager lists them: their ids by their titles."""
        # It fails where there is no window at all.
        lines = self.desktop.run("wmctrl", "-l", "-p", check=False).stdout.splitlines()
        fields = (line.split(None, 4) for line in lines)
        return {field[4]: field[0] for field in fields if len(field) == 5 and int(field[2]) == self.pid}

    def _find_application(self):
        self.assert_is_running()
        for application in applications():
            try:
                if application.pid == self.pid:
                    return application
            except GLib.Error:  # another program that is ending
                continue
        return None

    @property
    def application(self):
        if self._application is None:
            self._application = wait_until(self._find_application, "the program on the accessibility bus")
        return self._application

    def assert_is_running(self):
        if self.process.poll() is not None:
            raise AssertionError(f"the program ended with {self.process.returncode}; it wrote: {self.output}")

    def windows(self, *roles):
        self.assert_is_running()
        try:
            return [window for window in self.application.children if window.role in roles and is_shown(window)]
        except GLib.Error:
            self.assert_is_running()
            return []

    def _wait_for_window(self, *roles):
        return wait_until(
            lambda: next(iter(self.windows(*roles)), None),
            lambda: f"a window {roles}; there is {self.application.children}",
        )

    def alert(self):
        """Waits for an alert."""
        return Alert(self._wait_for_window("alert"))

    @functools.cached_property
    def window(self):
        """Waits for the main window. It is one and the same until the program ends."""
        return self._wait_for_window("frame")

    @functools.cache
    def part(self, role, name):
        """A part of the main window, where it stays too."""
        return self.window.one(role, name)

    def dialog(self):
        """Waits for a sheet or a panel."""
        return self._wait_for_window("dialog", "file chooser")

    def dialogs(self):
        return self.windows("dialog", "file chooser")

    def wait_for_dialogs(self, count):
        wait_until(lambda: len(self.dialogs()) == count, lambda: f"{count} dialogs; there are {self.dialogs()}")

    def wait_for_no_dialog(self):
        self.wait_for_dialogs(0)

    # What the main window shows

    @property
    def title(self):
        return self.window.name

    def outline(self):
        """The rows of the outline as they stand: (is expandable, is set in, name, date, version)."""
        cells = self._cells(self.part("tree", OUTLINE))
        names = cells[0::3]
        left = min((cell.extents[0] for cell in names), default=0)
        return [
            (name.is_("expandable"), name.extents[0] > left, name.name, date.name, version.name)
            for name, date, version in zip(names, cells[1::3], cells[2::3], strict=True)
        ]

    def expanded_outline(self):
        """The rows of the outline with every group expanded."""
        self.menu_item("View", "Expand All").press()
        wait_until(lambda: all(cell.is_("expanded") for cell in self.group_cells()), "the outline to expand")
        return self.outline()

    def receipts(self):
        """The rows of the table: (date, name)."""
        cells = self._cells(self.part("table", TABLE))
        return [(date.name, name.name) for date, name in zip(cells[0::2], cells[1::2], strict=True)]

    @property
    def report(self):
        return self.part("text", REPORT).text

    @property
    def text_size(self):
        """The size of the report's text in points."""
        view = self.part("text", REPORT)
        return float(Atspi.Text.get_attribute_run(view.remote, 0, True)[0]["size"])

    def check_box(self, name):
        return self.part("check box", name)

    def button(self, name):
        return self.part("push button", name)

    @staticmethod
    def _cells(view):
        return [child for child in view.children if child.role == "table cell"]

    def group_cells(self):
        """The cells with the names of the rows that can be expanded."""
        return [cell for cell in self._cells(self.part("tree", OUTLINE))[0::3] if cell.is_("expandable")]

    def receipt_cell(self, row):
        return self._cells(self.part("table", TABLE))[2 * row + 1]

    def menu_item(self, menu, item):
        """An item of the menu bar, by the texts of menu and item."""
        bar = self.window.one("menu bar")
        menus = [child for child in bar.children if child.name == menu]
        items = [child for child in menus[0].descendants() if child.name == item]
        if len(items) != 1:
            raise LookupError(f"{len(items)} items {item!r} in {menus!r}")
        return items[0]

    # Using it

    def select_receipt(self, row):
        table = self.part("table", TABLE).remote
        for selected in self.selected_receipts():
            Atspi.Table.remove_row_selection(table, selected)
        Atspi.Table.add_row_selection(table, row)
        wait_until(lambda: self.selected_receipts() == [row], f"row {row} to be selected")

    def selected_receipts(self):
        return list(Atspi.Table.get_selected_rows(self.part("table", TABLE).remote))

    def toggle(self, check_box):
        """Toggles a check box and waits until it has changed."""
        box = self.check_box(check_box)
        before = box.is_("checked")
        box.toggle()
        wait_until(lambda: box.is_("checked") != before, f"{check_box} to change")

    def keys(self, *keys, window=None):
        """Presses keys, once the window (the main one, where none is given) has the keyboard."""
        self.activate(window or self.window)
        self.desktop.run("xdotool", "key", "--clearmodifiers", *keys)

    def press_until(self, keys, holds, what):
        """Presses keys that lead somewhere, again where they don't: on a machine that has much else to do, a key is lost now
        and then."""

        def is_there():
            if not holds():
                self.keys(keys)
            return holds()

        wait_until(is_there, what)

    def activate(self, window):
        """Sees that the keyboard belongs to a window."""

        def is_active():
            if not window.is_("active"):
                identifier = self.windows_of_manager().get(window.name)
                if identifier is not None:
                    self.desktop.run("wmctrl", "-i", "-a", identifier, check=False)
            return window.is_("active")

        wait_until(is_active, f"{window!r} to be active")

    def type(self, text, window=None):
        self.activate(window or self.window)
        self.desktop.run("xdotool", "type", "--clearmodifiers", "--delay", "2", text)

    def click(self, accessible, times=1, button=1):
        """Clicks into the middle of something that is visible. Buttons are 1 (left), 2 (middle), 3 (right)."""
        left, top, width, height = accessible.extents
        # Without waiting for the move, which isn't seen where the mouse is there already.
        move = ("mousemove", str(left + min(width, 60) // 2), str(top + height // 2))
        self.desktop.run("xdotool", *move, "click", "--repeat", str(times), "--delay", "40", str(button))

    @contextlib.contextmanager
    def held_down(self, key):
        self.desktop.run("xdotool", "keydown", key)
        try:
            yield
        finally:
            self.desktop.run("xdotool", "keyup", key)

    def close(self):
        """Closes the main window as a task bar does, whatever is in front of it, and returns the exit status."""
        title = self.title
        window = wait_until(lambda: self.windows_of_manager().get(title), "the window to be managed")
        self.desktop.run("wmctrl", "-i", "-c", window)
        return self.wait_for_end()

    def wait_for_end(self):
        wait_until(lambda: self.process.poll() is not None, "the program to end")
        return self.process.returncode

    # What it uses

    def children(self):
        return processes.descendants(self.pid)

    def left_behind(self):
        """What it started, directly or not, and what still runs, whoever has become its parent."""
        return {processes.command_of(pid) for pid in processes.with_variable("TMPDIR", self.temporary_folder)}

    def open_files(self):
        """How many descriptors it has open."""
        return len(os.listdir(f"/proc/{self.pid}/fd"))

    def peak_memory(self):
        """The most memory that it has had at any moment, in bytes, what it shares with others included."""
        status = pathlib.Path(f"/proc/{self.pid}/status").read_text(encoding="utf-8")
        return 1024 * next(int(line.split()[1]) for line in status.splitlines() if line.startswith("VmHWM"))

    def memory(self):
        """The memory that it has written to, in bytes: what it only reads it may share, now and then, with others."""
        rollup = pathlib.Path(f"/proc/{self.pid}/smaps_rollup").read_text(encoding="utf-8")
        return 1024 * next(int(line.split()[1]) for line in rollup.splitlines() if line.startswith("Private_Dirty"))
