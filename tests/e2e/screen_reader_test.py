"""What a screen reader tells of the window beyond the names of its parts."""

import expectation
from accessible import Listener
from program import OUTLINE, TABLE
from waiting import wait_until
from window_test_case import WindowTestCase, main, options

# The parts as they are seen, from the top to the bottom.
PARTS = [
    ("menu bar", ""),
    ("chart", "Timeline"),
    ("label", "Install history"),
    ("tree", "Install history"),
    ("label", "Receipts"),
    ("push button", "Show Bill of Materials"),
    ("table", "Receipts"),
    ("label", "Report"),
    ("check box", "Skip configuration data"),
    ("check box", "Newest last"),
    ("push button", "Smaller text"),
    ("push button", "Bigger text"),
    ("push button", "Save…"),
    ("text", "Report"),
]


class ScreenReader(WindowTestCase):
    def setUp(self):
        self.program = self.start(options.sample)

    def test_comes_to_the_parts_in_the_order_in_which_they_are_seen(self):
        def is_part(accessible):
            return accessible.is_("showing") and accessible.role not in ("filler", "split pane", "unknown")

        def parts_below(accessible):
            for child in accessible.children:
                if is_part(child):
                    yield child.role, child.name
                else:
                    yield from parts_below(child)

        self.assertEqual(list(parts_below(self.program.window))[: len(PARTS)], PARTS)
        self.assert_leaves_well(self.program)

    def test_hears_a_row_whole_with_its_first_cell(self):
        program, groups = self.program, expectation.history(options.sample)
        expected = []
        for group in groups:
            count = len(group.items)
            expected.append((group.name, "1 entry" if count == 1 else f"{count} entries"))
            for item in group.items:
                name, date, version = item.cells
                expected.append((name, f"{expectation.KINDS[item.kind]}, {version}, {date}"))
        program.expanded_outline()
        cells = self.cells(OUTLINE, "tree")
        self.assertEqual([(cell.name, cell.description) for cell in cells[0::3]], expected)
        self.assertEqual({cell.description for cell in cells[1::3] + cells[2::3]}, {""})

        cells = self.cells(TABLE, "table")
        self.assertEqual(
            [(cell.name, cell.description) for cell in cells[0::2]], expectation.receipts(options.sample)
        )
        self.assertEqual({cell.description for cell in cells[1::2]}, {""})
        self.assert_leaves_well(program)

    def test_hears_what_was_found_and_that_nothing_was_without_losing_the_focus(self):
        program, groups = self.program, expectation.history(options.sample)
        listener = Listener("state-changed:showing", "state-changed:focused")

        def wait_to_hear(what):
            listener.wait_for(lambda told: told == ("notification", what), what)

        program.keys("ctrl+f")
        field = program.part("text", "Find")
        wait_until(lambda: field.is_("focused"), "the field of the search")
        listener.heard.clear()
        item = next(item for item in groups[0].items if item.kind == expectation.SECURITY_DATA)
        name, date, version = item.cells
        program.type(f"{date}")
        wait_to_hear(f"{name}, security data, {version}, {date}. Install history: 1 of 1")
        program.type("?")
        wait_to_hear("Not found in Install history")
        self.assertNotIn("table cell", {role for role, _ in listener.heard})  # to which the focus would have gone
        self.assertTrue(field.is_("focused"))
        self.assert_leaves_well(program)

    def test_hears_the_row_that_a_key_goes_to(self):
        program, listener = self.program, Listener("state-changed:focused")

        def wait_to_hear(name):
            listener.wait_for(lambda told: told == ("table cell", name), name)

        program.keys("alt+i", "Home", "Down")
        wait_to_hear(expectation.history(options.sample)[1].name)
        program.keys("alt+r", "Home", "Down")
        wait_to_hear(expectation.receipts(options.sample)[1][0])
        self.assert_leaves_well(program)

    def cells(self, name, role):
        return [child for child in self.program.part(role, name).children if child.role == "table cell"]


if __name__ == "__main__":
    main()
