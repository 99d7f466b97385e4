"""What the window says of what it shows: its status bar, and the places where there is nothing."""

import expectation
from program import OUTLINE, TABLE
from waiting import wait_until
from window_test_case import WindowTestCase, main, options


class Status(WindowTestCase):
    @staticmethod
    def texts(program):
        bar = program.part("status bar", "Status")
        return {label.name for label in bar.find("label")}

    def wait_for_text(self, program, text):
        wait_until(lambda: text in self.texts(program), lambda: f"{text!r}; there is {self.texts(program)}")

    def test_status_bar_tells_what_is_shown_and_what_was_done(self):
        program = self.start(options.sample)
        groups = expectation.history(options.sample)
        receipts = expectation.receipts(options.sample)
        entries = sum(len(group.items) for group in groups)
        self.wait_for_text(program, f"{len(groups)} groups, {entries} entries, {len(receipts)} receipts")
        self.wait_for_text(program, str(options.sample))

        program.keys("Tab", "Home")
        self.wait_for_text(program, receipts[0][1])
        program.keys("ctrl+a")
        self.wait_for_text(program, f"{len(receipts)} of {len(receipts)} selected")
        item = groups[-1].items[0]
        program.keys("shift+Tab", "Home", *["Down"] * len(groups))
        self.wait_for_text(program, f"{item.name}: {expectation.KINDS[item.kind]}, {item.version}")

        file = self.new_folder() / "report.text"
        program.keys("ctrl+s")
        panel = program.dialog()
        program.type(str(file), window=panel)
        program.keys("Return", window=panel)
        program.wait_for_no_dialog()
        self.wait_for_text(program, f"Saved {file}")
        self.assert_leaves_well(program)

    def test_empty_places_say_why_and_lead_to_another_volume_by_keyboard(self):
        volume = self.new_volume()
        program = self.start(volume)
        program.alert().press("OK")
        outline, table = program.part("tree", OUTLINE), program.part("table", TABLE)
        self.assertEqual(outline.description, f"There is no folder {volume.folder}/Library/Receipts.")
        receipts = f"{volume.folder}/System/Library/Receipts"
        self.assertEqual(table.description, f"There are no receipts in {receipts}.")
        self.wait_for_text(program, "0 groups, 0 entries, 0 receipts")
        buttons = [button for button in program.window.find("push button", "Open Volume…") if button.is_("showing")]
        self.assertEqual(len(buttons), 2)
        for button, keys in zip(buttons, (["Tab"], ["Tab", "Tab"]), strict=True):
            program.keys(*keys)
            wait_until(lambda button=button: button.is_("focused"), "the button to have the focus")
            program.keys("space")
            dialog = program.dialog()
            self.assertEqual(dialog.name, "Open Volume")
            program.keys("Escape", window=dialog)
            program.wait_for_no_dialog()
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
