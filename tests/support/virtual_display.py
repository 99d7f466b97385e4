"""A virtual display for tests, which nobody else can use."""

import pathlib
import subprocess
import time

SCRIPT = pathlib.Path(__file__).resolve().parents[2] / "scripts/virtual_display.sh"
TIMEOUT = 60  # seconds; for a busy machine


def start_virtual_display(folder, output=subprocess.DEVNULL):
    """Starts it with its files in an empty folder. Returns the process, and what programs that are to use it need in
    their environment."""
    process = subprocess.Popen([SCRIPT, folder], stdin=subprocess.DEVNULL, stdout=output, stderr=output)
    display = pathlib.Path(folder, "display")
    end = time.monotonic() + TIMEOUT
    while not display.exists() or not display.read_text(encoding="ascii"):
        if process.poll() is not None or time.monotonic() > end:
            raise RuntimeError(f"the virtual display didn't start; it ended with {process.returncode}")
        time.sleep(0.01)
    number = display.read_text(encoding="ascii").strip()
    return process, {"DISPLAY": f":{number}", "XAUTHORITY": f"{folder}/authority"}
