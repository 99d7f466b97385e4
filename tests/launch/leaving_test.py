#!/usr/bin/env python3
"""leaving_test.py PROGRAM [LAUNCHES]: closes the program at random moments of a running update check. Every run must
end within a second, with status 0 and without a word on standard error."""

import random
import sys
import tempfile
import time

from led_program import DOWNLOADS, Display, Home, Program, Server


def main():
    executable, launches = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 20
    chance = random.Random(launches)
    slowest = failed = 0
    with Display() as display, tempfile.TemporaryDirectory() as folder:
        server = Server(folder)
        server.list = (b'<plist version="1.0"><array><dict><key>AppName</key><string>Pelmarix</string>'
                       b"<key>Version</key><string>7.0</string><key>URL</key><string>" + DOWNLOADS.encode() +
                       b"</string></dict></array></plist>")
        for i in range(launches):
            with tempfile.TemporaryDirectory() as home_folder:
                path = chance.choice(("list", "redirect/3", "drip/10/20", "chunks", "bytes/20000000", "silent"))
                program = Program(executable, Home(home_folder).folder, server.address("good", path),
                                  server.authority, display)
                program.wait_for("window")
                time.sleep(chance.uniform(0, 0.3))
                seconds, status, error = program.close()
            slowest = max(slowest, seconds)
            if seconds > 1 or status != 0 or error:
                failed += 1
                print(f"launch {i}, {path}: {seconds:.3f} s, status {status}, {error!r}")
    print(f"{launches} launches, {len(server.requests)} requests, the slowest ended in {slowest:.3f} s")
    print(f"{launches - failed} passed, {failed} failed")
    return 1 if failed or not server.requests else 0


if __name__ == "__main__":
    sys.exit(main())
