"""Writes the files of a Mac's volume that the program reads."""

import pathlib
import plistlib

HISTORY = "Library/Receipts/InstallHistory.plist"
RECEIPTS = "System/Library/Receipts"
SYSTEM_VERSION = "System/Library/CoreServices/SystemVersion.plist"


class MacVolume:
    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.write_plist(SYSTEM_VERSION, {"ProductVersion": "10.14.6", "ProductBuildVersion": "18G103"})
        (self.folder / RECEIPTS).mkdir(parents=True, exist_ok=True)

    def write(self, path, contents):
        file = self.folder / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(contents)
        return file

    def write_plist(self, path, value, form=plistlib.FMT_XML):
        return self.write(path, plistlib.dumps(value, fmt=form))

    def write_history(self, entries, form=plistlib.FMT_XML):
        """Each entry: name, version, date and, where there is one, content type."""
        keys = ("displayName", "displayVersion", "date", "contentType")
        return self.write_plist(HISTORY, [dict(zip(keys, entry)) for entry in entries], form)

    def write_receipt(self, path, identifier, date, form=plistlib.FMT_XML):
        """`path` is below the receipts folder, without the extension."""
        value = {"PackageIdentifier": identifier, "InstallDate": date}
        return self.write_plist(f"{RECEIPTS}/{path}.plist", value, form)
