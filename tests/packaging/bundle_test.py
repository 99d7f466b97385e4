"""Lays the macOS bundle out and looks whether everything is where macOS and the program expect it.

Usage: bundle_test.py CMAKE STAND_IN VERSION IDENTIFIER INFO_PLIST

STAND_IN is the program in it, INFO_PLIST the file of that name that is built into the program elsewhere.
"""

import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

CMAKE, STAND_IN, VERSION, IDENTIFIER, INFO_PLIST = sys.argv[1:]

# What makes an icon of its sizes exists on macOS only. This one puts the sizes one behind the other.
ICONUTIL = """#!/bin/sh
[ "$1 $2 $3" = "--convert icns --output" ] && cat "$5"/*.png >"$4"
"""

SIZES = {f"icon_{size}x{size}{scale}.png": size * factor
         for size in (16, 32, 128, 256, 512) for scale, factor in (("", 1), ("@2x", 2))}


def size_of(png):
    """Width and height, which stand at the beginning of the first chunk."""
    return struct.unpack(">II", png.read_bytes()[16:24])


class Bundle(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.build = pathlib.Path(folder.name) / "build"
        tools = pathlib.Path(folder.name) / "tools"
        tools.mkdir()
        (tools / "iconutil").write_text(ICONUTIL, encoding="utf-8")
        (tools / "iconutil").chmod(0o755)
        environment = {**os.environ, "PATH": f"{tools}:{os.environ['PATH']}"}

        def cmake(*arguments):
            finished = subprocess.run([CMAKE, *arguments], env=environment, capture_output=True, text=True)
            if finished.returncode != 0:
                raise AssertionError(finished.stdout + finished.stderr)

        source = pathlib.Path(__file__).parent / "bundle"
        cmake("-S", source, "-B", cls.build, "-G", "Ninja", "-D", "CMAKE_SYSTEM_NAME=Darwin", "-D", "CMAKE_OSX_SYSROOT=",
              "-D", f"CMAKE_CXX_COMPILER={CMAKE}", "-D", "CMAKE_CXX_COMPILER_FORCED=ON",
              "-D", f"PELMARIX_VERSION={VERSION}", "-D", f"STAND_IN={STAND_IN}")
        cmake("--build", cls.build)
        cmake("--install", cls.build, "--prefix", folder.name)
        cls.bundle = pathlib.Path(folder.name) / "Pelmarix.app"
        program = subprocess.run([cls.bundle / "Contents/MacOS/Pelmarix"], capture_output=True, text=True, check=True)
        cls.info = dict(line.split("=", 1) for line in program.stdout.splitlines())

    def test_holds_the_program_its_icon_and_its_description_and_no_lister(self):
        files = {str(path.relative_to(self.bundle)) for path in self.bundle.rglob("*") if not path.is_dir()}
        self.assertEqual(files, {"Contents/Info.plist", f"Contents/MacOS/{self.info['CFBundleExecutable']}",
                                 f"Contents/Resources/{self.info['CFBundleIconFile']}.icns"})

    def test_tells_the_program_its_version(self):
        self.assertEqual(self.info["CFBundleShortVersionString"], VERSION)
        self.assertEqual(self.info["CFBundleVersion"], VERSION)

    def test_has_the_identifier_of_the_preferences(self):
        self.assertEqual(self.info["CFBundleIdentifier"], IDENTIFIER)

    def test_is_an_application_for_fine_screens_and_dark_desktops(self):
        self.assertEqual(self.info["CFBundleName"], "Pelmarix")
        self.assertEqual(self.info["CFBundlePackageType"], "APPL")
        self.assertEqual(self.info["NSPrincipalClass"], "NSApplication")
        self.assertEqual(self.info["NSHighResolutionCapable"], "yes")
        self.assertNotIn("NSRequiresAquaSystemAppearance", self.info)  # it keeps windows light

    def test_says_what_the_program_says_on_other_systems(self):
        self.assertEqual((self.bundle / "Contents/Info.plist").read_bytes(), pathlib.Path(INFO_PLIST).read_bytes())

    def test_has_the_icon_in_every_size(self):
        (iconset,) = self.build.rglob("Pelmarix.iconset")
        sizes = {png.name: size_of(png) for png in iconset.iterdir()}
        self.assertEqual(sizes, {name: (size, size) for name, size in SIZES.items()})
        icon = self.bundle / "Contents/Resources/Pelmarix.icns"
        self.assertEqual(icon.stat().st_size, sum(png.stat().st_size for png in iconset.iterdir()))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
