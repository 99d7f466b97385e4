"""What runs below this process, as /proc tells it, and ending all of it."""

import ctypes
import os
import pathlib
import signal

from waiting import wait_until

PR_SET_CHILD_SUBREAPER = 36


def adopt_orphans():
    """Makes this process the parent of every process below it whose own parent ends, so that none is lost."""
    if ctypes.CDLL(None, use_errno=True).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        raise OSError(ctypes.get_errno(), "prctl")


def _parents():
    parents = {}
    for folder in pathlib.Path("/proc").iterdir():
        if folder.name.isdigit():
            try:
                stat = (folder / "stat").read_text(encoding="utf-8", errors="replace")
            except OSError:  # it ended meanwhile
                continue
            parents[int(folder.name)] = int(stat.rpartition(")")[2].split()[1])
    return parents


def descendants(of):
    """The ids of the processes below a process, those that have ended but were not waited for included."""
    parents = _parents()
    found = {of}
    grown = True
    while grown:
        more = {child for child, parent in parents.items() if parent in found} - found
        found |= more
        grown = bool(more)
    return found - {of}


def with_variable(name, value):
    """The ids of the processes that were started with this variable in their environment and still run."""
    wanted = os.fsencode(f"{name}={value}")
    found = set()
    for folder in pathlib.Path("/proc").iterdir():
        if folder.name.isdigit():
            try:
                environment = (folder / "environ").read_bytes()
            except OSError:  # it ended meanwhile, or belongs to somebody else
                continue
            if wanted in environment.split(b"\0"):
                found.add(int(folder.name))
    return found


def command_of(pid):
    try:
        return pathlib.Path(f"/proc/{pid}/cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace").strip()
    except OSError:
        return ""


def _reap():
    """Takes leave of the children that ended. Those of a Popen keep their status for it."""
    while True:
        try:
            if os.waitpid(-1, os.WNOHANG)[0] == 0:
                return
        except ChildProcessError:
            return


def end_all_below():
    """Ends every process that this one started, directly or not: politely first, for some remove their files."""
    me = os.getpid()

    def all_gone():
        _reap()
        return not descendants(me)

    for number, seconds in ((signal.SIGTERM, 5.0), (signal.SIGKILL, 5.0)):
        for pid in descendants(me):
            try:
                os.kill(pid, number)
            except ProcessLookupError:
                pass
        try:
            wait_until(all_gone, "processes that don't end", seconds)
            return
        except TimeoutError:
            if number == signal.SIGKILL:
                raise
