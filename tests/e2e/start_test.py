"""The program starts on the sample volume and shows what its files hold."""

import expectation
from window_test_case import WindowTestCase, main, options


class Start(WindowTestCase):
    @classmethod
    def setUpClass(cls):
        cls.groups = expectation.history(options.sample)

    def setUp(self):
        self.program = self.start(options.sample)

    def test_title_tells_the_version_of_the_volumes_system(self):
        self.assertEqual(self.program.title, expectation.title(options.sample))
        self.assertRegex(self.program.title, r"^Pelmarix – currently running macOS Version 10\.15\.7 \(Build \w+\)$")

    def test_outline_groups_the_history_by_system_install(self):
        self.assertGreater(len(self.groups), 5)
        self.assertEqual(self.program.expanded_outline(), expectation.outline(self.groups))

    def test_receipts_are_listed_newest_first(self):
        expected = expectation.receipts(options.sample)
        self.assertEqual(len(expected), 300)
        self.assertEqual(self.program.receipts(), expected)

    def test_report_has_a_line_for_each_entry_but_configuration_data_newest_first(self):
        self.assertEqual(self.program.report, expectation.report(self.groups))

    def test_options_start_with_configuration_data_skipped_and_newest_first(self):
        self.assertTrue(self.program.check_box("Skip configuration data").is_("checked"))
        self.assertFalse(self.program.check_box("Newest last").is_("checked"))

    def tearDown(self):
        self.assert_leaves_well(self.program)


if __name__ == "__main__":
    main()
