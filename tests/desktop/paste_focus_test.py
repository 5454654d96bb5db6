#!/usr/bin/python3
"""The paste command reaches the window that the person came from, or none."""
import contextlib

from activation_watch import ActivationWatch
from bystander import Bystander
from case import OTHER_HOT_KEY, OTHER_HOT_KEY_SETTINGS, main
from clients import Mousepad, read_by_xclip
from paste_case import CHOSEN, PasteCase
from waiting import wait_until

NOT_IN_FRONT = "The paste target is not in front; the entry stays on the clipboard"


class PasteFocusCase(PasteCase):
    def open_window_over(self, editor):
        """Returns the place that the output has come to before."""
        editor.focus()
        mark = self.program.mark()
        self.open_window()
        return mark

    @contextlib.contextmanager
    def behind_activation_of(self, editor):
        """To be entered with the window open. Chooses the entry; the block has all the time that it
        needs between the activation of the editor and the keys."""
        with ActivationWatch(self.desktop.env["DISPLAY"]) as watch:
            self.display.type("quick")
            self.display.press("Return")
            watch.wait_for(editor.window)
        with self.program.held_up():
            self.display.wait_until_active(editor.window)
            yield

    def assert_pasted(self, editor, mark):
        self.wait_for_paste(mark)
        self.assertEqual(CHOSEN, editor.text_after_paste())

    def assert_not_pasted(self, mark, bystander):
        self.program.wait_for_line(NOT_IN_FRONT, since=mark)
        wait_until(lambda: read_by_xclip(self.desktop) == CHOSEN.encode(), "the clipboard")
        self.assertIsNone(self.program.find_line("Posted keyDown event", since=mark))
        self.assertEqual([], bystander.keys())


class PasteFocusTest(PasteFocusCase):
    def test_into_the_window_that_was_in_front(self):
        with Mousepad(self.desktop, self.display) as editor:
            with Bystander(self.display) as bystander:
                self.assert_pasted(editor, self.choose_for(editor))
                self.assertEqual([], bystander.keys())

    def test_another_window_takes_the_focus_in_between(self):
        with Mousepad(self.desktop, self.display) as editor:
            with Bystander(self.display) as bystander:
                mark = self.open_window_over(editor)
                with self.behind_activation_of(editor):
                    bystander.take_focus()
                self.assert_not_pasted(mark, bystander)
                # The person can still do it.
                editor.focus()
                self.display.press("ctrl+v")
                self.assertEqual(CHOSEN, editor.text_after_paste())

    def test_the_target_is_minimised_in_between(self):
        with Mousepad(self.desktop, self.display) as editor:
            with Bystander(self.display) as bystander:
                mark = self.open_window_over(editor)
                self.display.minimise(editor.window)
                wait_until(lambda: not self.display.is_viewable(editor.window), "no editor")
                with self.behind_activation_of(editor):
                    pass
                self.assert_pasted(editor, mark)
                self.assertEqual([], bystander.keys())


class LostFocusTest(PasteFocusCase):
    def test_a_new_window_takes_the_focus_in_between(self):
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.open_window_over(editor)
            with contextlib.ExitStack() as stack:
                with self.behind_activation_of(editor):
                    bystander = stack.enter_context(Bystander(self.display))
                    bystander.take_focus()
                self.assert_not_pasted(mark, bystander)

    def test_the_target_is_closed_in_between(self):
        with Bystander(self.display) as bystander:
            with Mousepad(self.desktop, self.display) as editor:
                mark = self.choose_for(editor)
                editor.process.kill()
                self.assert_not_pasted(mark, bystander)


class OtherHotKey:
    """For window managers that keep Alt+Space for the menu of the window."""

    hot_key = OTHER_HOT_KEY
    settings = OTHER_HOT_KEY_SETTINGS


class Xfwm4Test(OtherHotKey, PasteFocusTest):
    desktop_options = {"wm": "xfwm4"}


class MetacityTest(OtherHotKey, PasteFocusTest):
    desktop_options = {"wm": "metacity"}


if __name__ == "__main__":
    main()
