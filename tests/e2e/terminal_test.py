"""The program and the terminal that it was started from: it writes nothing there, wherever it runs, and takes no options."""

import os

from waiting import wait_until
from window_test_case import WindowTestCase, main, options

# As a user starts it, who hasn't asked for the toolkit's warnings.
QUIET_TOOLKIT = {"QT_LOGGING_RULES": None}


class Terminal(WindowTestCase):
    def start_program(self, environment=None, **more):
        return self.start(options.sample, environment={**QUIET_TOOLKIT, **(environment or {})}, **more)

    def new_command(self, name, script):
        """A folder for PATH with one command in it."""
        folder = self.new_folder()
        command = folder / name
        command.write_text(f"#!/bin/sh\n{script}\n", encoding="utf-8")
        command.chmod(0o755)
        return str(folder)

    @staticmethod
    def look(program):
        """The title, and what lies where in the window."""
        parts = [(part.role, part.name, *part.extents) for part in program.window.find() if part.is_("showing")]
        left, top = parts[0][2:4]
        return program.title, [(role, name, x - left, y - top, *size) for role, name, x, y, *size in parts]

    def test_arguments_change_nothing(self):
        plain = self.start_program()
        plain.expanded_outline()  # by then all is in its place
        expected = self.look(plain)
        self.assert_leaves_well(plain)
        for arguments in (
            ("-platform", "offscreen"),
            ("-style", "windows"),
            ("-stylesheet", self.new_volume().write("style", b"QPushButton { padding: 40px }")),
            ("-qwindowtitle", "Other"),
            ("-qwindowgeometry", "700x500+3+3"),
            ("-reverse",),
            ("-display", ":9999"),
            ("--help",),
            ("--version",),
        ):
            with self.subTest(arguments):
                program = self.start_program(arguments=arguments)
                program.expanded_outline()
                self.assertEqual(self.look(program), expected)
                self.assert_leaves_well(program)

    def test_a_session_without_a_folder_of_its_own(self):
        for folder in (None, "", "/dev/null"):
            with self.subTest(folder):
                self.assert_leaves_well(self.start_program({"XDG_RUNTIME_DIR": folder}))

    def test_warnings_of_the_toolkit_come_where_they_are_asked_for(self):
        # Else an empty output would mean little in all the other tests.
        program = self.start(options.sample, environment={"XDG_RUNTIME_DIR": None})
        self.assertEqual(program.close(), 0)
        self.assertIn("XDG_RUNTIME_DIR not set", program.output)

    def test_a_session_without_a_bus(self):
        no_bus = {"DBUS_SESSION_BUS_ADDRESS": None, "XDG_RUNTIME_DIR": None}
        for desktop in (
            {"XDG_CURRENT_DESKTOP": "KDE", "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5"},
            {"XDG_CURRENT_DESKTOP": "GNOME"},
        ):
            with self.subTest(desktop):
                program = self.start_program({**desktop, **no_bus})
                # No bus, no screen reader: the window manager has to do.
                window = wait_until(lambda: [*program.windows_of_manager().values()], "the window")[0]
                self.desktop.run("wmctrl", "-i", "-c", window)
                self.assertEqual(program.wait_for_end(), 0)
                self.assert_left_well(program)

    def test_settings_of_the_toolkit_that_make_no_sense(self):
        for name, value in (
            ("XDG_SESSION_TYPE", "wayland"),
            ("QT_STYLE_OVERRIDE", "nonsense"),
            ("QT_QPA_PLATFORMTHEME", "nonsense"),
            ("QT_IM_MODULE", "nonsense"),
            ("LC_ALL", "nonsense"),
            ("LC_ALL", "C"),
        ):
            with self.subTest(f"{name}={value}"):
                self.assert_leaves_well(self.start_program({name: value}))

    def test_no_browser(self):
        program = self.start_program({"PATH": str(self.new_folder())})
        program.menu_item("Help", "Pelmarix Support").press()
        self.assert_leaves_well(program)

    def test_a_browser_that_talks(self):
        said = self.new_folder() / "said"
        script = f'echo "opening $1"; echo "no method available" >&2; echo "$*" >{said}.part; mv {said}.part {said}'
        program = self.start_program({"PATH": self.new_command("xdg-open", script) + ":" + os.environ["PATH"]})
        program.menu_item("Help", "Pelmarix Support").press()
        wait_until(said.exists, "the browser's start")
        self.assertRegex(said.read_text(encoding="utf-8"), r"^https://\S+\n$")
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
