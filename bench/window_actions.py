"""Measures how long the window of the program is busy with each action of its user, on a volume of any size.

    python3 bench/window_actions.py --program build/release/bin/pelmarix --sample LARGE_VOLUME

Each action is done with the keyboard in the real window, on a virtual display. What is measured is the time for which
the window's own thread computes until all of it is done, painting included. Time in which that thread waits, as for
the lister, is not counted, and neither is what other programs of a busy machine take.
"""

import argparse
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "tests" / "e2e"))

from desktop import Desktop  # noqa: E402

PLEASANT = 0.1  # seconds
IDLE = 0.4  # the cursor blinks and buttons spring back later than this, or take next to nothing


class Thread:
    """The thread that a program's window lives on: its first."""

    def __init__(self, pid):
        self._schedule = pathlib.Path(f"/proc/{pid}/task/{pid}/schedstat")

    def busy(self):
        """Seconds for which it has run."""
        return int(self._schedule.read_text(encoding="ascii").split()[0]) / 1e9

    def wait_until_idle(self):
        """Waits until it has had next to nothing to do for some time. Returns busy()."""
        busy, since = self.busy(), time.monotonic()
        while time.monotonic() - since < IDLE:
            time.sleep(0.02)
            now = self.busy()
            if now - busy > 0.001:
                since = time.monotonic()
            busy = now
        return busy


class Measurement:
    def __init__(self, program):
        self.program = program
        self.thread = Thread(program.pid)

    def action(self, name, *keys, do=None, until=None):
        before = self.thread.wait_until_idle()
        if do:
            do()
        else:
            self.program.desktop.run("xdotool", "key", "--clearmodifiers", *keys)
        if until:
            until()
        seconds = self.thread.wait_until_idle() - before
        mark = "   over 100 ms" if seconds > PLEASANT else ""
        print(f"{name:58} {1000 * seconds:8.1f} ms{mark}", flush=True)


def measure(desktop, options):
    # Only now, for the accessibility library connects to the desktop that is there when it is first used.
    from accessible import Accessible
    from program import Home, Program

    home = Home(desktop.scratch / "measured")
    with Program(desktop, options.program, options.sample, home) as program:
        thread = Thread(program.pid)
        program.activate(program.window)
        print(f"{'start until all is on screen':58} {1000 * thread.wait_until_idle():8.1f} ms")
        # Behind the three headings; all cells of a large outline would take minutes to ask for.
        first_group = Accessible(program.part("tree", "Install history").remote.get_child_at_index(3))
        measured = Measurement(program)
        action = measured.action

        action("outline: one row down", "Down")
        action("outline: expand a group", "Right")
        action("outline: collapse it", "Left")
        action("outline: page down", "Next")
        action("outline: to the end", "End")
        action("outline: to the beginning", "Home")
        action("outline: type the beginning of a name", do=lambda: program.type("macos c"))
        action("View: expand all", "alt+v", "e")
        action("outline, expanded: to the end", "End")
        action("outline, expanded: page up", "Prior")
        action("outline, expanded: to the beginning", "Home")
        action("outline, expanded: type the beginning of a late name", do=lambda: program.type("zzz"))
        action("outline, expanded: select all", "ctrl+a")
        action("outline, expanded: copy all", "ctrl+c")
        action("find: open", "ctrl+f")
        action("find: what no row of the outline has", do=lambda: program.type("~"))
        action("find: another letter of it", do=lambda: program.type("y"))
        action("find: it again", "Return")
        action("find: close", "Escape")
        action("outline, expanded: one row selected", "Home")
        action("outline, expanded: double click on a group", do=lambda: program.click(first_group, 2))
        action("View: collapse all", "alt+v", "a")

        program.keys("Tab")
        action("receipts: one row down", "Down")
        action("receipts: page down", "Next")
        action("receipts: to the end", "ctrl+End")
        action("receipts: to the beginning", "ctrl+Home")
        action("receipts: select all", "ctrl+a")
        action("receipts: copy all", "ctrl+c")
        action("find: open", "ctrl+f")
        action("find: what no receipt has", do=lambda: program.type("~"))
        action("find: close", "Escape")
        action("receipts: one row selected", "Down")

        program.keys("shift+Tab", "shift+Tab")  # round to the last part of the window
        action("report: page down", "Next")
        action("report: to the end", "ctrl+End")
        action("report: to the beginning", "ctrl+Home")
        action("report: select all", "ctrl+a")
        action("report: copy all", "ctrl+c")
        action("report: bigger text", "ctrl+plus")
        action("report: smaller text", "ctrl+minus")
        action("find: open", "ctrl+f")
        action("find: what is not in the report", do=lambda: program.type("q"))
        action("find: close", "Escape")
        action("View: configuration data in the report (new text)", "alt+v", "k")
        action("View: newest last (new text)", "alt+v", "n")
        action("View: newest first (new text)", "alt+v", "n")

        file = desktop.scratch / "measured.txt"
        action("save: open the panel", "ctrl+s", until=program.dialog)
        panel = program.dialog()
        panel.one("text", "File name:").text = str(file)

        def save():
            program.keys("Return", window=panel)

        action("save: write the file", do=save, until=program.wait_for_no_dialog)
        window = program.windows_of_manager()[program.title]

        def resize():
            desktop.run("wmctrl", "-i", "-r", window, "-e", "0,20,20,800,500")

        action("window: smaller", do=resize)

        if options.receipt is not None:
            program.select_receipt(options.receipt)
            action("sheet: open (new text)", "ctrl+b", until=program.dialog)
            action("sheet: to the end", "ctrl+End")
            action("sheet: select all", "ctrl+a")
            action("sheet: copy all", "ctrl+c")
            action("sheet: to the beginning", "ctrl+Home")
            action("find: open", "ctrl+f")
            action("find: what is not in the sheet", do=lambda: program.desktop.run("xdotool", "type", "~"))
            action("find: close", "Escape")
            action("sheet: close", "Escape", until=program.wait_for_no_dialog)
        print(f"memory of its own: {program.memory() >> 20} MiB")
        program.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", required=True, type=pathlib.Path)
    parser.add_argument("--sample", required=True, type=pathlib.Path, help="the volume to look at")
    parser.add_argument("--receipt", type=int, help="the row of the receipt whose bill of materials is opened")
    options = parser.parse_args()
    with Desktop() as desktop:
        measure(desktop, options)


if __name__ == "__main__":
    main()
