"""Makes volumes at random: any mixture of what a history and receipts can hold, and of how they can be broken."""

import plistlib
import string
import unicodedata
from datetime import datetime, timedelta

from mac_volume import HISTORY, RECEIPTS, SYSTEM_VERSION, MacVolume

SECURITY_DATA = (
    "Gatekeeper Configuration Data", "MRTConfigData", "MRT Configuration Data", "XProtectPlistConfigData",
    "Incompatible Kernel Extension Configuration Data", "Incompatible \u212aernel Extension Configuration Data",
    "TCC Configuration Data",
)  # fmt: skip
SYSTEMS = (
    "OS X El Capitan Update", "macOS Sierra Update", "macOS 10.13", "macOS High Sierra 10.13.6", "macOS Mojave",
    "macOS 10.14.1", "macOS 10.15.2 Update", "Install macOS Catalina", "My macOS Mojave Installer",
)  # fmt: skip
SECURITY = ("Security Update 2019-001", "Security Update for macOS Mojave", "A Security Update")
NEAR_MISSES = (
    "mrtconfigdata", "MRTConfigData ", " MRTConfigData", "security update", "Security  Update", "macOS Big Sur",
    "macOS High Sierra", "macOS High Sierra\u00a0", "OS X El Capitan", "macOS Sierra", "macOS Sierra U\u0308pdate",
    "macOS Sierra \u00dcpdate", "catalina", "macOS 10.16", "TCC Configuration Data\u0301", "Cata\u200dlina", "",
)  # fmt: skip
# Canonically equivalent spellings, other scripts, writing from right to left, signs outside the basic plane, controls
# that XML allows, and what looks like markup.
ODD_TEXT = (
    "\u00c5ngstr\u00f6m", "A\u030angstro\u0308m", "\u212bngstr\u00f6m", "\u1e69", "s\u0323\u0307", "s\u0307\u0323",
    "\u0f73", "\u6bce\u65e5\u30e1\u30e2", "\ud55c\uae00", "\u1112\u1161\u11ab", "\u05e9\u05dc\u05d5\u05dd",
    "\u202eabc\u202c", "\U0001f312", "\U0001f469\u200d\U0001f4bb", "\ufeffx", "\u00ad", "\ue000", "\ufffd", "a\tb",
    "<b>&amp;</b>", "]]>", "%1 %s \\n", "&File",
)  # fmt: skip
CONTENT_TYPES = (None, None, "config-data", "critical-update", "Config-Data", "config-data ", "", "\u212aonfig-data")


class RandomVolume:
    """Writes a volume into a folder. Its history can be a broken one by chance, or is so in any case.

    `alerts` is then how many alerts its history and receipts are to give.
    """

    def __init__(self, random, folder, is_broken):
        self.random = random
        self.volume = MacVolume(folder)
        self.write_version()
        self.alerts = self.write_history(is_broken)
        self.alerts += self.write_receipts()

    def form(self):
        return self.random.choice((plistlib.FMT_XML, plistlib.FMT_BINARY))

    def text(self):
        random = self.random
        kind = random.random()
        if kind < 0.5:
            text = random.choice(ODD_TEXT)
        elif kind < 0.8:
            text = "".join(random.choices(string.printable[:95], k=random.randrange(30)))
        else:
            text = " ".join(random.choices(ODD_TEXT, k=3))
        return unicodedata.normalize(random.choice(("NFC", "NFD")), text) if random.random() < 0.3 else text

    def version(self):
        random = self.random
        return random.choice(("", "10.14", f"{random.randrange(20)}.{random.randrange(20)}", self.text()))

    def date(self, form):
        random = self.random
        first, last = datetime(1, 1, 1), datetime(9999, 12, 31, 23, 59, 59)
        span = int((last - first).total_seconds())
        date = random.choice(
            (
                first,
                last,
                datetime(2000, 12, 31, 23, 59, 59),
                datetime(2001, 1, 1),
                datetime(2016, 2, 29, 12),
                first + timedelta(seconds=random.randrange(span)),
                datetime(2015, 1, 1) + timedelta(seconds=random.randrange(200_000_000)),
                datetime(2015, 1, 1) + timedelta(seconds=random.randrange(200_000_000)),
            )
        )
        if form == plistlib.FMT_BINARY and date.year < 9999 and random.random() < 0.5:
            # What the number of the file can tell apart: microseconds for dates of our time, less far away from it.
            distance = abs(date.year - 2001)
            step = 1 if distance < 100 else 1000
            date += timedelta(microseconds=random.randrange(1, 1_000_000 // step) * step)
        return date

    def name(self):
        random = self.random
        name = random.choice(random.choice((SECURITY_DATA, SYSTEMS, SECURITY, NEAR_MISSES, ODD_TEXT, ODD_TEXT)))
        if random.random() < 0.25:
            name = random.choice((f"{name} {self.text()}", f"{self.text()} {name}", unicodedata.normalize("NFD", name)))
        return name

    def entry(self, form):
        random = self.random
        entry = {"date": self.date(form), "displayName": self.name(), "displayVersion": self.version()}
        content_type = random.choice(CONTENT_TYPES)
        if content_type is not None:
            entry["contentType"] = content_type
        if random.random() < 0.6:
            entry["processName"] = self.text()
            entry["packageIdentifiers"] = [self.text() for _ in range(random.randrange(3))]
        if random.random() < 0.1:
            entry.update(DisplayName=1, Date="never", extra={"nested": [1.5, True, b"\0\xff", {}]})
        return entry

    def broken(self, value, form, required):
        """The bytes of a file in which something is wrong, which the whole file has to be refused for."""
        random = self.random
        contents = plistlib.dumps(value, fmt=form)
        way = random.randrange(4)
        if way == 0:
            return contents[: random.randrange(len(contents) // 2)]
        if way == 1:
            return contents[:-1] if form == plistlib.FMT_BINARY else contents.replace(b"</dict>", b"", 1)
        victim = random.choice(value) if isinstance(value, list) else value
        key = random.choice(required)
        if way == 2:
            del victim[key]
        else:
            victim[key] = random.choice((1, True, 2.5, ["x"], {}, b"x"))
        return plistlib.dumps(value, fmt=form)

    def write_version(self):
        random = self.random
        number = f"10.{random.randrange(9, 16)}.{random.randrange(9)}"
        version = {"ProductVersion": number, "ProductBuildVersion": f"19H{random.randrange(2000)}"}
        self.volume.write_plist(SYSTEM_VERSION, version, self.form())

    def write_history(self, is_broken):
        random = self.random
        form = self.form()
        count = random.choice((0, 1, 2, 5, 20, 60))
        entries = [self.entry(form) for _ in range(count)]
        kind = random.random() * (0.15 if is_broken else 1.0)
        if kind < 0.04:
            return 1  # there is none
        if kind < 0.12 and entries:
            self.volume.write(HISTORY, self.broken(entries, form, ("date", "displayName", "displayVersion")))
            return 1
        if kind < 0.15:
            self.volume.write_plist(HISTORY, random.choice(({"entries": entries}, "text", 1, True)), form)
            return 1
        self.volume.write_plist(HISTORY, entries, form)
        return 0

    def receipt_path(self, number):
        random = self.random
        folder = random.choice(("", "", "sub/", "sub/deeper/", ".hidden/", "folder.bundle/", "\u00dcber/"))
        stem = random.choice(("com.example.%d", "with blank %d", ".%d", "\u6bce\u65e5%d", "%d.plist")) % number
        return f"{RECEIPTS}/{folder}{stem}"

    def write_receipts(self):
        random = self.random
        alerts = 0
        if random.random() < 0.05:
            (self.volume.folder / RECEIPTS).rmdir()
            return 0
        for number in range(random.choice((0, 1, 5, 25))):
            form = self.form()
            path = self.receipt_path(number)
            receipt = {"PackageIdentifier": self.text(), "InstallDate": self.date(form), "InstallPrefixPath": "/"}
            kind = random.random()
            if kind < 0.03:
                (self.volume.folder / f"{path}.plist").mkdir(parents=True)
                alerts += 1
            elif kind < 0.15:
                self.volume.write(f"{path}.plist", self.broken(receipt, form, ("PackageIdentifier", "InstallDate")))
            elif kind < 0.2:
                self.volume.write_plist(f"{path}{random.choice(('.PLIST', '.plist.bak', '', '.xml'))}", receipt, form)
            else:
                self.volume.write_plist(f"{path}.plist", receipt, form)
        return alerts
