#!/usr/bin/env python3
"""Measures whether the update check holds the window up: the time from a launch to the first painting of the main
window, with the check switched on and off alternately.

    python3 bench/launch_time.py build/release/tests/pelmarix_under_test [LAUNCHES]
"""

import os
import statistics
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "launch"))

from led_program import Display, Home, Program, Server, until  # noqa: E402


def launch(executable, display, server, check):
    """Milliseconds until the window is painted."""
    with tempfile.TemporaryDirectory() as folder:
        home = Home(folder)
        home.write_settings(noUpdateCheck="false" if check else "true")
        server.requests.clear()
        program = Program(executable, folder, server.address("good", "list"), server.authority, display)
        program.wait_for("window")
        seconds = program.told_at - program.started
        if check:
            until(lambda: server.requests, "the request")
        _, status, error = program.close()
        if status != 0 or error or bool(server.requests) != check:
            sys.exit(f"the launch failed: status {status}, {error}")
        return seconds * 1000


def main():
    executable, launches = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 20
    times = {True: [], False: []}
    with Display() as display, tempfile.TemporaryDirectory() as folder:
        server = Server(folder)
        launch(executable, display, server, False)  # reads the program into memory
        for i in range(launches):
            for check in (i % 2 == 0, i % 2 == 1):
                times[check].append(launch(executable, display, server, check))
    for check, values in times.items():
        print(f"check {'on: ' if check else 'off:'} median {statistics.median(values):6.1f} ms, "
              f"quickest {min(values):6.1f} ms, slowest {max(values):6.1f} ms, {launches} launches")


if __name__ == "__main__":
    main()
