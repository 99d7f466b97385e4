"""What the program should show of a volume, worked out a second time: with Python's property lists, from the rules."""

import os
import pathlib
import plistlib
import unicodedata
from dataclasses import dataclass, field
from datetime import datetime, timedelta

from mac_volume import HISTORY, RECEIPTS, SYSTEM_VERSION

SYSTEM, SECURITY, SECURITY_DATA, CRITICAL, CONFIGURATION = range(5)
KINDS = ("system install or upgrade", "security update", "security data", "critical update", "configuration data")

SECURITY_DATA_NAMES = {
    "Gatekeeper Configuration Data",
    "MRTConfigData",
    "MRT Configuration Data",
    "XProtectPlistConfigData",
    "Incompatible Kernel Extension Configuration Data",
    "TCC Configuration Data",
}

# "macOS 10.14.1" is a marker too, which the shorter one stands for.
SYSTEM_MARKERS = (
    "OS X El Capitan U",
    "macOS Sierra U",
    "macOS 10.13",
    "macOS High Sierra ",
    "macOS Mojave",
    "macOS 10.14",
    "macOS 10.15",
    "Catalina",
)


def described(date):
    """A date as it stands in cells and lines; what is less than a second is cut off."""
    return date.replace(microsecond=0).isoformat(" ") + " +0000"


@dataclass
class Item:
    kind: int
    name: str
    version: str
    date: datetime

    @property
    def line(self):
        return f"{self.name}: {self.version} {described(self.date)}\n"

    @property
    def cells(self):
        return ("\t" if self.kind == CONFIGURATION else "") + self.name, described(self.date), self.version


@dataclass
class Group:
    name: str
    items: list = field(default_factory=list)


class Unreadable(Exception):
    """A file that is missing or doesn't hold what it should."""


def load(path):
    try:
        return plistlib.loads(pathlib.Path(path).read_bytes())
    except Exception as error:  # the library raises whatever its parsers do
        raise Unreadable from error


def kind_of(name, content_type):
    name = unicodedata.normalize("NFC", name)
    content_type = None if content_type is None else unicodedata.normalize("NFC", content_type)
    if name in SECURITY_DATA_NAMES:
        return SECURITY_DATA
    if "Security Update" in name:
        return SECURITY
    if any(marker in name for marker in SYSTEM_MARKERS):
        return SYSTEM
    return {"critical-update": CRITICAL, "config-data": CONFIGURATION}.get(content_type)


def history(volume):
    """The groups of the volume's install history."""
    entries = load(volume / HISTORY)
    if not isinstance(entries, list):
        raise Unreadable
    required = {"date": datetime, "displayName": str, "displayVersion": str}
    for entry in entries:
        if not isinstance(entry, dict) or not all(isinstance(entry.get(key), kind) for key, kind in required.items()):
            raise Unreadable
        if not isinstance(entry.get("contentType", ""), str):
            raise Unreadable
    if not entries:
        return []

    before_the_first, groups = Group("Listing 0"), []
    for entry in entries:
        name, version = entry["displayName"], entry["displayVersion"]
        kind = kind_of(name, entry.get("contentType"))
        if kind is None:
            continue
        if kind == SYSTEM:
            groups.append(Group(f"{name} {version}"))
        (groups or [before_the_first])[-1].items.append(Item(kind, name, version, entry["date"]))
    return groups or [before_the_first]


def outline(groups):
    """The rows with every group expanded: (is expandable, is set in, name, date, version)."""
    rows = []
    for group in groups:
        rows.append((bool(group.items), False, group.name, "", ""))
        rows += [(False, True, *item.cells) for item in group.items]
    return rows


def report(groups, skip=True, newest_last=False):
    """The text of the report view."""
    items = [item for group in groups for item in group.items]
    lines = [item.line for item in items if not (skip and item.kind == CONFIGURATION)]
    return "\n\n" + "".join(lines if newest_last else reversed(lines))


def _files_below(folder):
    """Depth first, and otherwise as the file system has them."""
    try:
        entries = list(os.scandir(folder))
    except OSError:
        return
    for entry in entries:
        yield entry
        if entry.is_dir(follow_symlinks=False):
            yield from _files_below(entry.path)


def scan(volume):
    """The readable receipts newest first, each as (date, identifier, path without extension), and how many files
    with the extension of a receipt can't be read."""
    found, unreadable = [], 0
    for entry in _files_below(volume / RECEIPTS):
        if not entry.name.endswith(".plist"):
            continue
        if not entry.is_file() or not os.access(entry.path, os.R_OK):
            unreadable += 1
            continue
        try:
            receipt = load(entry.path)
        except Unreadable:
            continue
        if not isinstance(receipt, dict):
            continue
        date, name = receipt.get("InstallDate"), receipt.get("PackageIdentifier")
        if isinstance(date, datetime) and isinstance(name, str):
            found.append((date, name, entry.path.removesuffix(".plist")))
    return sorted(found, key=lambda receipt: receipt[0], reverse=True), unreadable


def receipts(volume):
    """The rows of the table: (date, name)."""
    return [(described(date), name) for date, name, _ in scan(volume)[0]]


COUNTED = (
    ("system install", "system installs"),
    ("security update", "security updates"),
    ("entry of security data", "entries of security data"),
    ("critical update", "critical updates"),
    ("entry of configuration data", "entries of configuration data"),
    ("receipt", "receipts"),
)


def _days(dates):
    first, last = dates[0].date().isoformat(), dates[-1].date().isoformat()
    return first if first == last else f"{first} to {last}"


def timeline(groups, receipts, skip=True):
    """What is told of the timeline as a whole; of the receipts those of a scan."""
    entries = [(item.date, item.kind) for group in groups for item in group.items]
    entries = [entry for entry in entries if not (skip and entry[1] == CONFIGURATION)]
    entries = sorted(entries + [(date, len(KINDS)) for date, _, _ in receipts])
    if not entries:
        return "No entries."
    dates = [date for date, _ in entries]
    far = timedelta(days=5 * 365.25)
    allowed = range(1, max(1, len(dates) // 20) + 1 if len(dates) > 2 else 1)
    before = max((count for count in allowed if dates[count] - dates[count - 1] > far), default=0)
    after = max((count for count in allowed if dates[-count] - dates[-count - 1] > far), default=0)
    bulk = dates[before : len(dates) - after]

    numbers = [sum(kind == counted for _, kind in entries) for counted in range(len(COUNTED))]
    counts = [f"{number} {words[number > 1]}" for number, words in zip(numbers, COUNTED) if number]
    text = ("On " if bulk[0].date() == bulk[-1].date() else "From ") + _days(bulk) + ". " + ", ".join(counts) + "."
    if before:
        text += f" {before} of them long before that, {_days(dates[:before])}."
    if after:
        text += f" {after} of them long after that, {_days(dates[-after:])}."

    data = [date for date, kind in entries if kind == SECURITY_DATA and bulk[0] <= date <= bulk[-1]]
    gaps = list(zip(data, data[1:] + bulk[-1:]))
    if gaps:
        longest = max(gaps, key=lambda gap: gap[1] - gap[0])
        days = (longest[1] - longest[0]).days
        if days >= 30:
            text += f" Longest gap: {days} days without security data, {_days(longest)}."
    return text


def title(volume):
    version = load(volume / SYSTEM_VERSION)
    running = f"Version {version['ProductVersion']} (Build {version['ProductBuildVersion']})"
    return f"Pelmarix \u2013 currently running macOS {running}"
