"""A desktop of one's own: a virtual display with a window manager, a session bus and an accessibility bus.

Everything is private to it: folders, settings, display number. Leaving it ends every process that was started inside
and removes its folder. It is meant for one use in a process, because the accessibility library connects only once.
"""

import os
import pathlib
import select
import shutil
import signal
import subprocess
import sys
import tempfile

import processes
from waiting import wait_until

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
from virtual_display import start_virtual_display  # noqa: E402

OPENBOX_SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew></focus>
  <desktops><number>1</number><popupTime>0</popupTime></desktops>
  <keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
  </mouse>
</openbox_config>
"""


class Desktop:
    """Use it as a context. `environment` is for what runs on it; `scratch` is a folder that goes away with it."""

    def __enter__(self):
        processes.adopt_orphans()
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="pelmarix-e2e-"))
        for number in (signal.SIGTERM, signal.SIGHUP):
            signal.signal(number, lambda *_: sys.exit(1))
        try:
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        try:
            processes.end_all_below()
        finally:
            shutil.rmtree(self.scratch)

    def folder(self, name):
        path = self.scratch / name
        path.mkdir(mode=0o700, parents=True, exist_ok=True)
        return path

    def environment_with_home(self, home):
        """An environment in which all of a program's own files belong below `home`, but for temporary ones."""
        environment = dict(self.environment)
        environment.update(
            HOME=str(home),
            XDG_CONFIG_HOME=f"{home}/.config",
            XDG_DATA_HOME=f"{home}/.local/share",
            XDG_CACHE_HOME=f"{home}/.cache",
            XDG_STATE_HOME=f"{home}/.local/state",
        )
        return environment

    def screenshot(self, file):
        """Writes a picture of the whole screen; returns whether that worked."""
        shot = self.run("import", "-window", "root", str(file), check=False)
        return shot.returncode == 0

    def run(self, *command, check=True):
        return subprocess.run(
            command,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            check=check,
            timeout=60,
        )

    def _start(self):
        self._log = (self.scratch / "desktop.log").open("wb")
        self.environment = {
            "PATH": os.environ.get("PATH", os.defpath),
            "LANG": "C.UTF-8",
            "TMPDIR": str(self.folder("tmp")),
            "XDG_RUNTIME_DIR": str(self.folder("run")),
            "GSETTINGS_BACKEND": "memory",
            "NO_AT_BRIDGE": "1",
        }
        # What the sanitizers are told, where the program is built with them.
        self.environment.update({name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")})
        self.environment = self.environment_with_home(self.folder("home"))
        self.environment.update(start_virtual_display(self.folder("display"), self._log)[1])
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._first_line(
            lambda fd: ["dbus-daemon", "--session", "--nofork", "--nopidfile", f"--print-address={fd}",
                        f"--address=unix:path={self.scratch}/bus"]
        )
        settings = self.scratch / "openbox.xml"
        settings.write_text(OPENBOX_SETTINGS, encoding="utf-8")
        self._spawn(["openbox", "--sm-disable", "--config-file", str(settings)])
        wait_until(lambda: self.run("xdotool", "get_num_desktops", check=False).returncode == 0, "a window manager")
        # The first key of a virtual keyboard makes every program read the layout anew, and one that is doing so takes no
        # notice of what is held down: that key is pressed before there is a program.
        self.run("xdotool", "key", "Shift_L")
        # The accessibility library of this process looks there.
        for name in ("DISPLAY", "XAUTHORITY", "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "GSETTINGS_BACKEND"):
            os.environ[name] = self.environment[name]

    def _spawn(self, command, **options):
        return subprocess.Popen(
            command, env=self.environment, stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log, **options
        )

    def _first_line(self, command_for):
        """Starts a program that tells something on a descriptor once it is ready, and returns that."""
        read_end, write_end = os.pipe()
        try:
            command = command_for(write_end)
            process = self._spawn(command, pass_fds=[write_end])
        finally:
            os.close(write_end)
        with open(read_end, encoding="utf-8") as pipe:
            wait_until(lambda: select.select([pipe], [], [], 0)[0], f"{command[0]} to be ready")
            line = pipe.readline().strip()
        if not line:
            raise RuntimeError(f"{command[0]} ended with {process.wait()}: {self.log()}")
        return line

    def log(self):
        return (self.scratch / "desktop.log").read_text(encoding="utf-8", errors="replace")
