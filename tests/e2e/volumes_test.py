"""The volumes of a Mac: its system and its data in two folders, shown as one, and the ways to open them."""

import os
import pty
import shutil
import subprocess
import unittest

import expectation
from mac_volume import RECEIPTS
from program import SHEET_TEXT
from waiting import wait_until
from window_test_case import WindowTestCase, main, options

NO_VOLUME = {"PELMARIX_VOLUME": None}
OPEN = options.program.absolute().with_name("pelmarix-open")
MOUNTING = ("unshare", "--mount") if os.getuid() == 0 else ("unshare", "--user", "--map-root-user", "--mount")

can_mount = unittest.skipUnless(
    subprocess.run([*MOUNTING, "mount", "-t", "tmpfs", "none", "/mnt"], capture_output=True, check=False).returncode == 0,
    "nothing can be mounted here",
)


class Volumes(WindowTestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = cls.desktop.folder("Mac")
        subprocess.run([options.sample.with_name("pelmarix-sample"), "--two-volumes", cls.folder], check=True)
        cls.system, cls.data = cls.folder / "Macintosh HD", cls.folder / "Macintosh HD - Data"
        cls.groups = expectation.history(options.sample)

    def assert_shows_the_whole_mac(self, program):
        self.assertEqual(program.title, expectation.title(options.sample))
        self.assertEqual(program.expanded_outline(), expectation.outline(self.groups))
        self.assertEqual(program.report, expectation.report(self.groups))
        self.assertEqual(program.receipts(), expectation.receipts(options.sample))
        program.select_receipt(0)
        program.button("Show Bill of Materials").press()
        self.assertIn("./", program.dialog().one("text", SHEET_TEXT).text)
        program.keys("Escape", window=program.dialog())
        program.wait_for_no_dialog()


class OneMac(Volumes):
    def test_two_folders_show_history_receipts_title_and_sheet_as_one(self):
        for folders in ((self.system, self.data), (self.data, self.system)):
            with self.subTest(folders=folders):
                program = self.start(":".join(map(str, folders)))
                self.assert_shows_the_whole_mac(program)
                self.assert_leaves_well(program)

    def test_volume_may_vanish_while_it_is_shown(self):
        mac = self.new_folder() / "Mac"
        shutil.copytree(options.sample, mac)
        program = self.start(mac)
        program.select_receipt(0)
        shutil.rmtree(mac)
        program.keys("ctrl+b")
        alert = program.alert()
        self.assertEqual(
            alert.texts, ["The Mac's volume isn't there any more. What was read from it is still shown."]
        )
        alert.press("OK")
        sheet = program.dialog()
        self.assertEqual(sheet.one("text", SHEET_TEXT).text, "No information available from a Bom file")
        program.keys("Escape", window=sheet)
        program.wait_for_no_dialog()
        receipts = expectation.receipts(options.sample)
        self.assertEqual(program.receipts(), receipts)
        bom = f"/{RECEIPTS}/{receipts[0][1]}.bom"
        self.assert_leaves_well(program, f"lsbom: {bom}: No such file or directory\n")


class Command(Volumes):
    def open(self, *folders, **more):
        return self.start("", binary=OPEN, environment=NO_VOLUME, arguments=folders, **more)

    def test_opens_the_two_volumes_of_a_mac(self):
        program = self.open(self.system, self.data)
        self.assert_shows_the_whole_mac(program)
        self.assert_leaves_well(program)

    def test_opens_a_folder_whatever_its_name(self):
        folder = os.fsencode(self.new_folder()) + b"/a b:c\nd\xff"
        os.symlink(options.sample, folder)
        program = self.open(folder)
        self.assertEqual(program.title, expectation.title(options.sample))
        self.assert_leaves_well(program)

    def test_starts_the_program_as_it_is_where_no_folder_is_named(self):
        program = self.start(options.sample, binary=OPEN)
        self.assertEqual(program.title, expectation.title(options.sample))
        self.assert_leaves_well(program)

    def test_tells_in_a_window_what_cannot_be_opened(self):
        odd = self.new_folder() / "a:b"
        odd.mkdir()
        for folders, sentence in (
            ((options.program,), f"{options.program} is a file. If it is the image of a disk, mount it and open the "
                                 "folder where it is mounted."),
            ((f"file://{self.data}",), f"file://{self.data} is an address. Only a folder of this machine can be opened."),
            ((self.system, odd), f"{odd} has a colon in its path. It can only be opened alone."),
            ((self.system, "/no\nwhere"), "/no␊where doesn't exist."),
        ):
            with self.subTest(sentence=sentence):
                program = self.open(*folders)
                alert = program.alert()
                self.assertEqual(alert.texts, [sentence])
                alert.press("OK")
                self.assertEqual(program.wait_for_end(), 1)
                self.assert_left_well(program, f"pelmarix-open: {sentence}\n")

    def at_terminal(self, command, folder):
        """How the command ends that is started from a terminal, and what it writes there."""
        reader, terminal = pty.openpty()
        environment = {**self.desktop.environment, "QT_QPA_PLATFORM": "a window would end it"}
        status = subprocess.run([command, folder], env=environment, stderr=terminal, timeout=30, check=False).returncode
        os.close(terminal)
        written = os.read(reader, 1000).decode()
        os.close(reader)
        return status, written

    def test_tells_it_at_the_terminal_where_there_is_one(self):
        self.assertEqual(self.at_terminal(OPEN, "/nowhere"), (1, "pelmarix-open: /nowhere doesn't exist.\r\n"))

    def test_tells_that_the_program_is_missing(self):
        alone = shutil.copy(OPEN, self.new_folder())
        self.assertEqual(
            self.at_terminal(alone, self.data),
            (1, "pelmarix-open: Pelmarix can't be started: No such file or directory.\r\n"),
        )


class OpenVolume(Volumes):
    def start_from_menu(self, wrapper=None):
        """As the desktop's menu starts the program, up to the empty window."""
        program = self.start("", binary=wrapper or OPEN, environment=NO_VOLUME)
        program.alert().press("OK")
        self.assertEqual(program.receipts(), [])
        return program

    def offered(self, dialog):
        """What the dialog lists, by name, and what it proposes beside the selected one."""
        names = [cell.name for cell in dialog.one("tree").children if cell.role == "table cell"][0::2]
        return names, dialog.one("combo box").name

    def choose_folder(self, program, dialog, folder):
        dialog.one("push button", "Choose Folder…").press()
        panel = wait_until(lambda: next((one for one in program.dialogs() if one.name == "Choose Folder"), None), "the panel")
        panel.one("text").text = str(folder)
        next(button for button in panel.find("push button") if button.name.replace("&", "") == "Choose").press()
        wait_until(lambda: len(program.dialogs()) == 1, "the panel to go")

    def open_chosen(self, program, dialog):
        dialog.one("push button", "Open").press()
        again = self.enterContext(program.started_again())
        self.assertEqual(program.wait_for_end(), 0)  # an empty window makes way
        return again

    def test_leads_from_the_desktops_menu_to_a_packages_files(self):
        program = self.start_from_menu()
        program.menu_item("File", "Open Volume…").press()
        dialog = program.dialog()
        self.choose_folder(program, dialog, self.system)
        again = self.open_chosen(program, dialog)
        self.assert_shows_the_whole_mac(again)
        self.assert_leaves_well(again)

    @can_mount
    def test_offers_what_is_mounted_and_proposes_the_other_volume(self):
        mounts = self.new_folder()
        mounter = mounts / "mounter"
        commands = [f'mount --bind "{folder}" "{mounts}/{folder.name}"' for folder in (self.system, self.data)]
        mounter.write_text("\n".join(("#!/bin/sh -e", *commands, f'exec "{OPEN}"')), encoding="utf-8")
        wrapper = mounts / "wrapper"
        wrapper.write_text(f'#!/bin/sh\nexec {" ".join(MOUNTING)} "{mounter}"\n', encoding="utf-8")
        for file in (mounter, wrapper):
            file.chmod(0o755)
        for folder in (self.system, self.data):
            (mounts / folder.name).mkdir()

        program = self.start_from_menu(wrapper)
        program.keys("ctrl+o")
        dialog = program.dialog()
        names = [self.system.name, self.data.name]
        self.assertEqual(self.offered(dialog), (names, f"{names[1]} ({mounts}/{names[1]})"))
        program.keys("Down", window=dialog)
        wait_until(lambda: self.offered(dialog)[1] == f"{names[0]} ({mounts}/{names[0]})", "the system to be proposed")
        program.keys("Return", window=dialog)
        again = self.enterContext(program.started_again())
        self.assertEqual(program.wait_for_end(), 0)
        self.assert_shows_the_whole_mac(again)
        self.assert_leaves_well(again)

    def test_leaves_a_window_with_something_in_it_open_beside_the_new_one(self):
        program = self.start(options.sample)
        program.keys("ctrl+o")
        dialog = program.dialog()
        self.choose_folder(program, dialog, self.system)
        dialog.one("push button", "Open").press()
        again = self.enterContext(program.started_again())
        self.assertEqual(again.receipts(), expectation.receipts(options.sample))
        self.assertEqual(again.close(), 0)
        self.assertEqual(program.receipts(), expectation.receipts(options.sample))
        self.assert_leaves_well(program)

    def test_tells_what_is_wrong_with_a_folder_and_loses_nothing(self):
        gone = self.new_folder() / "gone"
        gone.mkdir()
        program = self.start(options.sample)
        program.keys("ctrl+o")
        dialog = program.dialog()
        self.choose_folder(program, dialog, gone)
        gone.rmdir()
        dialog.one("push button", "Open").press()
        alert = program.alert()
        self.assertEqual(alert.texts, [f"{gone} doesn't exist."])
        alert.press("OK")
        self.assertEqual(self.offered(dialog)[0][-1], "gone")
        program.keys("Escape", window=dialog)
        program.wait_for_no_dialog()
        self.assertEqual(program.receipts(), expectation.receipts(options.sample))
        self.assert_leaves_well(program)

    def test_lets_the_window_close_behind_the_choice_and_behind_a_message(self):
        program = self.start(options.sample)
        program.keys("ctrl+o")
        self.assertTrue(program.dialog())
        self.assert_leaves_well(program)

        gone = self.new_folder() / "gone"
        gone.mkdir()
        program = self.start(options.sample)
        program.keys("ctrl+o")
        dialog = program.dialog()
        self.choose_folder(program, dialog, gone)
        gone.rmdir()
        dialog.one("push button", "Open").press()
        self.assertTrue(program.alert())
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
