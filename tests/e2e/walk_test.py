"""Every item of the menus, each in all the ways there are to choose it, and the names of all that a user meets."""

from accessible import Atspi
from program import OUTLINE, REPORT, SHEET_TEXT, TIMELINE
from waiting import wait_until
from window_test_case import WindowTestCase, main, options

# The menus in their order: item, its key in the open menu, its shortcut. One without a key only tells something.
MENUS = {
    "File": (
        ("Open Volume…", "o", "Ctrl+O"),
        ("Save…", "s", "Ctrl+S"),
        ("Export…", "e", None),
        ("Save Picture…", "p", "Ctrl+Shift+S"),
        ("Close", "c", "Ctrl+W"),
        ("Quit", "q", "Ctrl+Q"),
    ),
    "Edit": (
        ("Copy", "c", "Ctrl+C"),
        ("Copy Name", "y", None),
        ("Copy Picture", "u", "Ctrl+Shift+C"),
        ("Select All", "a", "Ctrl+A"),
        ("Find…", "f", "Ctrl+F"),
        ("Find Next", "n", "Ctrl+G"),
        ("Find Previous", "p", "Ctrl+Shift+G"),
        ("Find File in Packages…", "k", "Ctrl+Shift+F"),
    ),
    "View": (
        ("Timeline", "t", None),
        ("Show Bill of Materials", "m", "Ctrl+B"),
        ("Expand All", "e", None),
        ("Collapse All", "a", None),
        ("Skip Configuration Data", "k", None),
        ("Newest Last", "n", None),
        ("Bigger Text", "b", "Ctrl++"),
        ("Smaller Text", "s", "Ctrl+-"),
    ),
    "Help": (
        ("Pelmarix Support", "s", None),
        ("About System Updates", "u", None),
        ("Update not checked", None, None),
        ("About Pelmarix", "a", None),
    ),
}

# What holds other things together, only decorates, is gripped by the mouse alone (a splitter's handle is "unknown"), or
# says nothing for the moment (a label, whose name is its text): a screen reader passes over it.
NAMELESS_ROLES = {
    "filler", "panel", "split pane", "separator", "scroll bar", "menu bar", "popup menu", "unknown", "image", "label",
}


def without_empty_cells(children):
    """The parts of a list but for its empty cells. The first cell of each row, which tells of all of it, stays."""
    columns = sum(child.role == "table column header" for child in children)
    cells = [child for child in children if child.role == "table cell"]
    empty = [cell for index, cell in enumerate(cells) if index % columns > 0 and not cell.name]
    return [child for child in children if not any(child is cell for cell in empty)]


def nameless_below(window):
    """What can be met in a window and says nothing of itself. Of a long list, the first rows say how the others are."""
    found = []

    def look_at(accessible, path):
        children = accessible.children
        if accessible.role in ("tree", "table"):
            children = without_empty_cells(children[:60])
        for child in children:
            if not child.is_("showing"):
                continue
            if child.role not in NAMELESS_ROLES and not child.name and not child.description:
                found.append(f"{path} > {child!r}")
            look_at(child, f"{path} > {child!r}")

    look_at(window, repr(window))
    return found


class Walk(WindowTestCase):
    def setUp(self):
        folder = self.new_folder()
        self.visited = folder / "visited"
        self.visited.touch()
        browser = folder / "browser"
        browser.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >>"{self.visited}"\n', encoding="utf-8")
        browser.chmod(0o755)
        self.environment = {"BROWSER": str(browser)}

    def start_program(self):
        return self.start(options.sample, environment=self.environment)

    def ways_to_choose(self, program, menu, item, letter, shortcut):
        """The ways by name, each a function that chooses the item."""

        def by_menu():
            program.keys(f"alt+{menu[0].lower()}")
            bar = program.window.one("menu bar")
            popup = next(title for title in bar.children if title.name == menu).one("popup menu")
            wait_until(lambda: popup.is_("showing"), f"the menu {menu} to open")
            program.keys(letter)

        ways = {"bus": lambda: program.menu_item(menu, item).press(), "keys of the menu": by_menu}
        if shortcut is not None:
            keys = shortcut.lower().replace("++", "+plus").replace("+-", "+minus")
            ways["shortcut"] = lambda: program.keys(keys)
        return ways

    def test_menus_have_their_items_in_order_with_their_shortcuts(self):
        program = self.start_program()
        found = {}
        for menu in program.window.one("menu bar").children:
            items = [child for child in menu.descendants() if child.role == "menu item"]
            found[menu.name] = [
                (item.name, Atspi.Action.get_key_binding(item.remote, 0) or None) for item in items
            ]
        # What has no shortcut tells the bus its key in the menu.
        expected = {
            menu: [
                (item, shortcut or (letter and f"Alt+{letter.upper()}"))
                for item, letter, shortcut in items
            ]
            for menu, items in MENUS.items()
        }
        found = {
            menu: [(item, binding and (binding if "Ctrl" in binding else binding.title())) for item, binding in items]
            for menu, items in found.items()
        }
        self.assertEqual(found, expected)
        self.assertEqual(list(found), list(MENUS))
        self.assert_leaves_well(program)

    def test_each_item_does_what_it_says_in_every_way_to_choose_it(self):
        program = self.start_program()
        for menu, items in MENUS.items():
            for item, letter, shortcut in items:
                if letter is None or item in ("Close", "Quit"):
                    continue
                name = "".join(part for part in item.lower().replace(" ", "_") if part.isalpha() or part == "_")
                check = getattr(self, f"check_{name}")
                for way, choose in self.ways_to_choose(program, menu, item, letter, shortcut).items():
                    with self.subTest(menu=menu, item=item, way=way):
                        check(program, choose)
        self.assert_leaves_well(program)

    def test_close_and_quit_end_the_program_in_every_way_to_choose_them(self):
        for item, letter, shortcut in MENUS["File"][-2:]:
            for way in ("bus", "keys of the menu", "shortcut"):
                with self.subTest(item=item, way=way):
                    program = self.start_program()
                    self.assertTrue(program.window)
                    self.ways_to_choose(program, "File", item, letter, shortcut)[way]()
                    self.assertEqual(program.wait_for_end(), 0)
                    self.assert_left_well(program)

    # The items, each with what is seen of it

    def check_open_volume(self, program, choose):
        choose()
        self.assertEqual(program.dialog().name, "Open Volume")
        self.leave_dialog(program)

    def check_save(self, program, choose):
        choose()
        self.leave_dialog(program)

    def check_export(self, program, choose):
        choose()
        self.assertEqual(program.dialog().name, "Export")
        self.leave_dialog(program)

    def check_save_picture(self, program, choose):
        choose()
        self.assertEqual(program.dialog().name, "Save Picture")
        self.leave_dialog(program)

    def leave_dialog(self, program):
        dialog = program.dialog()
        program.keys("Escape", window=dialog)
        program.wait_for_no_dialog()

    row_to_copy = 0

    def check_copy(self, program, choose):
        self.expect_copy(program, choose, lambda name: f"{name}\t\t")

    def check_copy_name(self, program, choose):
        self.expect_copy(program, choose, lambda name: name)

    def check_copy_picture(self, program, choose):
        program.part("tree", OUTLINE).focus()
        program.keys("Home", "ctrl+c")
        choose()
        program.keys("ctrl+f")
        field = self.find_field(program)
        program.keys("ctrl+a")
        program.type("a")
        program.keys("ctrl+v")  # there is no text any more
        program.type("b")
        wait_until(lambda: field.text.endswith("b"), "the text to be typed")
        self.assertEqual(field.text, "ab")
        self.end_search(program, field)

    def expect_copy(self, program, choose, copy_of_group):
        Walk.row_to_copy += 1  # another one each time, so that the clipboard has to change
        program.menu_item("View", "Collapse All").press()
        program.part("tree", OUTLINE).focus()
        program.keys("Home", *["Down"] * self.row_to_copy)
        expected = copy_of_group(program.outline()[self.row_to_copy][2])
        choose()
        program.keys("ctrl+f")
        field = self.find_field(program)
        program.keys("ctrl+a", "ctrl+v")
        wait_until(lambda: field.text.rstrip("\n ") == expected, lambda: f"{expected!r}; there is {field.text!r}")
        self.end_search(program, field)

    def check_select_all(self, program, choose):
        report = program.part("text", REPORT)
        report.focus()
        program.keys("ctrl+Home")
        wait_until(lambda: self.selection(report) == (0, 0), "nothing to be selected")
        choose()
        length = Atspi.Text.get_character_count(report.remote)
        wait_until(lambda: self.selection(report) == (0, length), lambda: f"all to be selected; {self.selection(report)}")
        program.keys("ctrl+Home")

    @staticmethod
    def selection(text):
        if Atspi.Text.get_n_selections(text.remote) == 0:
            return 0, 0
        found = Atspi.Text.get_selection(text.remote, 0)
        return found.start_offset, found.end_offset

    def find_field(self, program):
        field = program.part("text", "Find")
        wait_until(lambda: field.is_("showing") and field.is_("focused"), "the field of the search")
        return field

    def end_search(self, program, field):
        program.keys("Escape")
        wait_until(lambda: not field.is_("showing"), "the search to end")

    def check_find(self, program, choose):
        choose()
        self.end_search(program, self.find_field(program))

    def find_in_report(self, program):
        """Begins a search that has several places. Returns its field and the report."""
        report = program.part("text", REPORT)
        report.focus()
        program.keys("ctrl+Home", "ctrl+f")
        field = self.find_field(program)
        program.keys("ctrl+a")
        program.type("macOS")
        wait_until(lambda: self.selection(report)[1] > 0, "the first place to be found")
        return field, report

    def check_find_next(self, program, choose):
        field, report = self.find_in_report(program)
        first = self.selection(report)
        choose()
        wait_until(lambda: self.selection(report) > first, "the second place to be found")
        self.end_search(program, field)

    def check_find_previous(self, program, choose):
        field, report = self.find_in_report(program)
        first = self.selection(report)
        program.keys("ctrl+g")
        wait_until(lambda: self.selection(report) > first, "the second place to be found")
        choose()
        wait_until(lambda: self.selection(report) == first, "the first place to be found again")
        self.end_search(program, field)

    def check_find_file_in_packages(self, program, choose):
        choose()
        sheet = program.dialog()
        wait_until(lambda: sheet.one("text", "File to find").is_("focused"), "the field of the search")
        self.leave_dialog(program)

    def check_timeline(self, program, choose):
        item = program.menu_item("View", "Timeline")
        strip = program.part("chart", TIMELINE)
        for is_shown in (False, True):
            choose()
            wait_until(lambda: strip.is_("showing") == is_shown, "the timeline to go or to come")
            wait_until(lambda: item.is_("checked") == is_shown, "the menu's mark to change")

    def check_show_bill_of_materials(self, program, choose):
        program.select_receipt(0)
        choose()
        self.assertTrue(program.dialog().one("text", SHEET_TEXT).text)
        self.leave_dialog(program)

    def groups_are(self, program, state):
        return [cell.is_("expanded") for cell in program.group_cells()] == [state] * len(program.group_cells())

    def check_expand_all(self, program, choose):
        program.menu_item("View", "Collapse All").press()
        wait_until(lambda: self.groups_are(program, False), "the groups to collapse")
        choose()
        wait_until(lambda: self.groups_are(program, True), "the groups to expand")

    def check_collapse_all(self, program, choose):
        program.menu_item("View", "Expand All").press()
        wait_until(lambda: self.groups_are(program, True), "the groups to expand")
        choose()
        wait_until(lambda: self.groups_are(program, False), "the groups to collapse")

    def check_switch(self, program, box, item, choose):
        box, item = program.check_box(box), program.menu_item("View", item)
        before = box.is_("checked")
        report = program.report
        choose()
        wait_until(lambda: box.is_("checked") != before, "the check box to change")
        wait_until(lambda: item.is_("checked") != before, "the menu's mark to change")
        wait_until(lambda: program.report != report, "the report to change")

    def check_skip_configuration_data(self, program, choose):
        self.check_switch(program, "Skip configuration data", "Skip Configuration Data", choose)

    def check_newest_last(self, program, choose):
        self.check_switch(program, "Newest last", "Newest Last", choose)

    def check_bigger_text(self, program, choose):
        self.check_size(program, choose, 1)

    def check_smaller_text(self, program, choose):
        self.check_size(program, choose, -1)

    def check_size(self, program, choose, step):
        size = program.text_size + step
        choose()
        wait_until(lambda: program.text_size == size, f"{size} points")

    def check_page(self, choose, word):
        def pages():
            return self.visited.read_text(encoding="utf-8").split()

        before = pages()
        choose()
        wait_until(lambda: len(pages()) > len(before), "a page to be opened")
        self.assertRegex(pages()[-1], f"^https://.*{word}")

    def check_pelmarix_support(self, program, choose):
        self.check_page(choose, "support")

    def check_about_system_updates(self, program, choose):
        self.check_page(choose, "updates")

    def check_about_pelmarix(self, program, choose):
        choose()
        about = program.dialog()
        texts = [label.name for label in about.find("label")]
        self.assertRegex(texts[0], r"^Pelmarix \d+\.\d+\.\d+$")
        self.assertTrue(about.find("image"))
        program.keys("Tab", "Tab", window=about)  # to the label, then to the address in it
        self.check_page(lambda: program.keys("Return", window=about), "support")
        self.leave_dialog(program)

    # Names

    def test_nothing_that_a_user_meets_is_nameless(self):
        program = self.start_program()
        window = program.window
        self.assertEqual(nameless_below(window), [])
        program.menu_item("View", "Expand All").press()
        program.keys("ctrl+f")
        self.find_field(program)
        program.type("macOS")
        wait_until(lambda: program.part("text", "Find").text == "macOS", "the text to be typed")
        self.assertEqual(nameless_below(window), [])
        program.keys("Escape")

        program.select_receipt(0)
        program.keys("ctrl+b")
        sheet = program.dialog()
        self.assertTrue(sheet.name)
        program.keys("ctrl+f", window=sheet)
        field = sheet.one("text", "Find")
        wait_until(lambda: field.is_("showing") and field.is_("focused"), "the sheet's field of the search")
        program.type("a", window=sheet)
        wait_until(lambda: field.text == "a", "the text to be typed")
        self.assertEqual(nameless_below(sheet), [])
        program.keys("Escape", window=sheet)
        wait_until(lambda: not field.is_("showing"), "the search to end")
        self.leave_dialog(program)

        program.keys("ctrl+shift+f")
        search = program.dialog()
        self.assertEqual(nameless_below(search), [])
        program.type("Info.plist", window=search)
        wait_until(lambda: not search.one("push button", "Stop").is_("enabled"), "the end of the search")
        wait_until(lambda: search.one("push button", "Export…").is_("enabled"), "files to be found")
        self.assertEqual(nameless_below(search), [])
        # All of it is reached by the keyboard alone.
        program.keys("Return", window=search)
        wait_until(lambda: search.one("push button", "Show Bill of Materials").is_("enabled"), "a row to be selected")
        for name in ("Show Bill of Materials", "Export…", "Close"):
            program.keys("Tab", window=search)
            wait_until(lambda: search.one("push button", name).is_("focused"), f"{name} to be reached")
        self.leave_dialog(program)

        program.keys("ctrl+o")
        self.assertEqual(nameless_below(program.dialog()), [])
        self.leave_dialog(program)

        program.menu_item("Help", "About Pelmarix").press()
        about = program.dialog()
        self.assertTrue(about.name)
        self.assertEqual(nameless_below(about), [])
        self.leave_dialog(program)
        self.assert_leaves_well(program)

    def test_alert_is_not_nameless(self):
        volume = self.new_volume()
        program = self.start(volume)
        alert = program.alert()
        self.assertTrue(alert.texts)
        self.assertEqual(nameless_below(alert.window), [])
        alert.press("OK")
        self.assert_leaves_well(program)


if __name__ == "__main__":
    main()
