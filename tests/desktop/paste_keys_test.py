#!/usr/bin/python3
"""The paste command arrives whatever the person holds down, and whatever they write with."""
from case import main
from clients import Chromium, FeatherPad, Mousepad, XTerm, Xfce4Terminal
from input_method import Pinyin
from paste_case import CHOSEN, PasteCase


class PasteKeysTest(PasteCase):
    # Keys that are held

    def test_with_modifiers_still_held(self):
        for client_class in (Mousepad, FeatherPad, Chromium, XTerm, Xfce4Terminal):
            with (self.subTest(client_class.window_class),
                  client_class(self.desktop, self.display) as client):
                mark = self.choose_for(client)
                with self.display.holding("shift", "alt"):
                    self.wait_for_paste(mark)
                    self.assertTrue(self.display.is_held("shift"))
                    self.assertTrue(self.display.is_held("alt"))
                self.assertEqual(CHOSEN, client.text_after_paste())

    def test_with_control_still_held(self):
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.choose_for(editor)
            with self.display.holding("ctrl"):
                self.wait_for_paste(mark)
                self.assertTrue(self.display.is_held("ctrl"))
            self.assertEqual(CHOSEN, editor.text_after_paste())

    def test_with_a_modifier_let_go_in_between(self):
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.choose_for(editor)
            with self.display.holding("shift"):
                self.program.wait_for_line("Activating previous app", since=mark)
            self.wait_for_paste(mark)
            self.assertFalse(self.display.is_held("shift"))
            self.assertEqual(CHOSEN, editor.text_after_paste())

    def test_with_locks(self):
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.choose_for(editor)
            for lock in ("Caps_Lock", "Num_Lock"):
                self.display.press(lock)
                self.addCleanup(self.display.press, lock)
            self.wait_for_paste(mark)
            self.assertEqual(CHOSEN, editor.text_after_paste())

    # Layouts

    def set_layout(self, *layout):
        self.desktop.run("setxkbmap", "-option", "", "-layout", *layout)

    def check_layout(self, client_class, layout):
        """The layout becomes another when the query is written, so that the keys of the test go on
        to mean what they say."""
        self.addCleanup(self.set_layout, "us")
        with self.subTest(f"{client_class.window_class} with {layout}"):
            with client_class(self.desktop, self.display) as client:
                mark = self.choose_for(client)
                self.set_layout(layout)
                self.wait_for_paste(mark)
                self.set_layout("us")
                self.assertEqual(CHOSEN, client.text_after_paste())

    def test_with_a_layout_that_has_no_latin_letters(self):
        for client_class in (Mousepad, FeatherPad, Chromium, XTerm, Xfce4Terminal):
            self.check_layout(client_class, "ru")

    def test_with_a_layout_that_has_its_letters_elsewhere(self):
        for client_class in (Mousepad, FeatherPad, Xfce4Terminal):
            self.check_layout(client_class, "us(dvorak)")

    def test_with_a_chinese_layout(self):
        for client_class in (Mousepad, FeatherPad):
            self.check_layout(client_class, "cn")

    def test_with_the_second_layout_active(self):
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.program.mark()
            self.addCleanup(self.set_layout, "us")
            self.set_layout("us,ru", "-option", "grp:menu_toggle")
            self.open_window()
            self.display.type("quick")
            self.display.press("Menu")
            self.display.press("Return")
            self.wait_for_paste(mark)
            self.display.press("Menu")
            self.assertEqual(CHOSEN, editor.text_after_paste())

    def test_while_an_input_method_writes_chinese(self):
        with Pinyin(self.desktop) as pinyin:
            with FeatherPad(self.desktop, self.display, env=pinyin.env) as editor:
                pinyin.wait_until_active()
                mark = self.choose_for(editor)
                self.wait_for_paste(mark)
                self.assertEqual(CHOSEN, editor.text_after_paste())
                pinyin.wait_until_active()


if __name__ == "__main__":
    main()
