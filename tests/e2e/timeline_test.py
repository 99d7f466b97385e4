"""The timeline: what is heard of it, where it leads, and the picture that is made of it."""

import re
import struct

import expectation
from accessible import Listener
from program import OUTLINE, SKIP, TIMELINE
from waiting import wait_until
from window_test_case import WindowTestCase, main, options


class Timeline(WindowTestCase):
    def setUp(self):
        self.program = self.start(options.sample)
        self.strip = self.program.part("chart", TIMELINE)
        self.items = [item for group in expectation.history(options.sample) for item in group.items]

    def of_kind(self, kind):
        """The entries of a kind in the order of time."""
        return sorted((item for item in self.items if item.kind == kind), key=lambda item: item.date)

    def selected_rows(self):
        """The names and dates of the selected rows of the outline."""
        cells = [cell for cell in self.program.part("tree", OUTLINE).children if cell.role == "table cell"]
        return [(name.name, date.name) for name, date in zip(cells[0::3], cells[1::3]) if name.is_("selected")]

    def test_is_described_in_words(self):
        self.assertTrue(self.strip.is_("showing"))
        words = self.strip.description
        kinds = (expectation.SYSTEM, expectation.SECURITY, expectation.SECURITY_DATA)
        for kind in kinds:
            self.assertIn(f"{len(self.of_kind(kind))} ", words)
        self.assertIn("days without security data", words)
        self.assertNotIn("configuration data", words)
        self.program.toggle(SKIP)
        wait_until(
            lambda: f"{len(self.of_kind(expectation.CONFIGURATION))} entries of configuration data"
            in self.strip.description,
            lambda: self.strip.description,
        )
        self.assert_leaves_well(self.program)

    def test_leads_to_entries_by_keyboard_and_tells_them(self):
        program, listener = self.program, Listener("state-changed:showing")

        def wait_to_hear(what):
            listener.wait_for(lambda told: told[0] == "notification" and what in told[1], what)

        program.keys("shift+Tab")
        wait_until(lambda: self.strip.is_("focused"), "the timeline to have the keyboard")
        install = self.of_kind(expectation.SYSTEM)[0]
        update = min(self.of_kind(expectation.SECURITY), key=lambda item: abs(item.date - install.date))
        for key, item in (("Right", install), ("Down", update)):
            name, date, version = item.cells
            program.keys(key)
            wait_until(lambda: self.selected_rows() == [(name, date)], lambda: f"{name}; there is {self.selected_rows()}")
            wait_to_hear(f"{name}, {expectation.KINDS[item.kind]}, {version}, {date}")
        self.assertTrue(self.strip.is_("focused"))

        # And back: from what is selected in the outline to the next one.
        program.keys("Tab", "Home", "Down")
        name, date, _ = self.items[0].cells
        wait_until(lambda: self.selected_rows() == [(name, date)], lambda: f"{name}; there is {self.selected_rows()}")
        program.press_until("alt+t", lambda: self.strip.is_("focused"), "the timeline to have the keyboard")
        program.keys("Down")
        name, date, _ = update.cells
        wait_until(lambda: self.selected_rows() == [(name, date)], lambda: f"{name}; there is {self.selected_rows()}")
        self.assert_leaves_well(program)

    def test_saves_a_picture_of_twice_its_size(self):
        program, file = self.program, self.new_folder() / "timeline"
        program.keys("ctrl+shift+s")
        panel = program.dialog()
        self.assertEqual(panel.name, "Save Picture")
        self.assertTrue(panel.one("combo box", "PNG pictures (*.png)"))
        program.type(str(file), window=panel)
        field = panel.one("text", "File name:")
        wait_until(lambda: field.text == str(file), "the name to be typed")
        program.keys("Return", window=panel)
        program.wait_for_no_dialog()
        data = wait_until(lambda: file.with_suffix(".png").exists() and file.with_suffix(".png").read_bytes(), "the file")
        self.assertTrue(data.startswith(b"\x89PNG\r\n\x1a\n"))
        _, _, width, height = self.strip.extents
        self.assertEqual(struct.unpack(">II", data[16:24]), (2 * width, 2 * height))
        self.assertTrue(re.search(rb"IEND.{4}\Z", data, re.DOTALL))
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
