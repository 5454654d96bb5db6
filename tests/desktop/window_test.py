#!/usr/bin/python3
"""The window opens and closes by the keys that people press, whatever program has the focus."""
import subprocess

from case import HOT_KEY, OTHER_HOT_KEY, OTHER_HOT_KEY_SETTINGS, DesktopTest, main
from clients import Mousepad


class WindowTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()

    def start_with_settings(self, settings):
        self.program.end()
        self.program.write_settings(settings)
        self.program.start()

    def test_the_hot_key_opens_and_closes(self):
        mark = self.program.mark()
        self.open_window()
        self.program.wait_for_line("Hotkey triggered", since=mark)
        self.program.wait_for_line("Total items: 0", since=mark)
        self.display.press(HOT_KEY)
        self.wait_until_closed()

    def test_the_hot_key_works_while_an_editor_has_the_focus(self):
        with Mousepad(self.desktop, self.display):
            mark = self.program.mark()
            self.open_window()
            self.program.wait_for_line("Recorded previous app: ", since=mark)

    def test_the_hot_key_works_with_num_lock_and_caps_lock(self):
        for locks in (["Num_Lock"], ["Caps_Lock"], ["Num_Lock", "Caps_Lock"]):
            with self.subTest(locks=locks):
                for lock in locks:
                    self.display.press(lock)
                try:
                    self.open_window()
                    self.display.press(HOT_KEY)
                    self.wait_until_closed()
                finally:
                    for lock in locks:
                        self.display.press(lock)

    def test_another_hot_key_from_the_settings_file(self):
        self.start_with_settings(OTHER_HOT_KEY_SETTINGS)
        self.display.press(OTHER_HOT_KEY)
        self.wait_for_history_window()

    def test_the_language_from_the_settings_file(self):
        self.start_with_settings({"AppLanguage": "chinese"})
        self.display.press(HOT_KEY)
        self.display.wait_for_window(title="剪贴板历史")

    def test_the_language_of_the_system_if_that_is_wanted(self):
        self.program.end()
        self.program.env.update(LANGUAGE="fr:zh_TW:en_US")
        self.program.start()
        self.open_window()  # A new installation is in English.
        self.start_with_settings({"AppLanguage": "system"})
        self.display.press(HOT_KEY)
        self.display.wait_for_window(title="剪贴板历史")

    def test_the_window_is_made_anew_each_time(self):
        self.copy("an entry")
        self.open_window()
        self.display.type("zzz")
        self.display.press(HOT_KEY)
        self.wait_until_closed()
        mark = self.choose("")  # Would choose nothing if the search were still there.
        self.program.wait_for_line("Item copied to clipboard", since=mark)

    def test_escape_empties_the_search_and_then_closes(self):
        self.copy("an entry")
        self.open_window()
        self.display.type("zzz")
        self.display.press("Escape")
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard")
        self.wait_until_closed()
        self.open_window()
        self.display.press("Escape")
        self.wait_until_closed()

    def test_it_opens_again_where_it_stood(self):
        first = self.display.place(self.open_window())
        self.display.press("Escape")
        self.wait_until_closed()
        self.assertEqual(first, self.display.place(self.open_window()))

    def test_a_click_inside_leaves_it_open(self):
        window = self.open_window()
        x, y, width, _ = self.display.place(window)
        self.display.click(x + width // 2, y + 140)
        self.display.type("still here")
        self.assertIsNotNone(self.display.find_window(title="Clipboard History"))

    def test_a_click_outside_closes(self):
        window = self.open_window()
        x, y, _, _ = self.display.place(window)
        self.display.click(max(0, x - 50), max(0, y - 50))
        self.wait_until_closed()

    def test_another_window_that_takes_the_focus_closes(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.open_window()
            self.display.activate(editor.window)
            self.wait_until_closed()

    def test_a_new_copy_appears_in_the_open_window(self):
        self.open_window()
        self.copy("fresh from another program")
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard")

    def test_a_second_start_hands_over_and_ends(self):
        mark = self.program.mark()
        second = subprocess.run([self.program.path], env=self.program.env, timeout=10,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=False)
        self.assertEqual(0, second.returncode)
        self.wait_for_history_window()
        self.program.wait_for_line("Showing clipboard history window...", since=mark)
        self.assertNotIn(b"fully initialized", second.stdout)
        self.assert_alive()


if __name__ == "__main__":
    main()
