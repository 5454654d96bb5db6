#!/usr/bin/python3
"""What was captured is there after the program has ended, however it ended."""
from case import DesktopTest, main
from clients import Mousepad, copy_by_xclip


class SurvivalTest(DesktopTest):
    def test_a_history_is_there_after_a_restart(self):
        self.program.start()
        for number in range(5):
            self.copy(f"text {number}")
        self.program.end()
        self.program.start()
        self.assertEqual([f"text {number}" for number in (4, 3, 2, 1, 0)], self.program.texts())
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.choose("text 2")
            self.program.wait_for_line("Posted keyUp event", since=mark)
            self.assertEqual("text 2", editor.text_after_paste())

    def test_what_is_in_the_database_survives_a_kill(self):
        expected = []
        for number in range(6):
            self.program.start()
            text = f"copied just before kill {number}"
            self.copy(text)
            self.program.kill()
            expected.insert(0, text)
            self.program.end()
            self.assertEqual(expected, self.program.texts())
            self.assert_intact()
        mark = self.program.mark()
        self.program.start()
        self.open_window()
        self.program.wait_for_line("Total items: 6")

    def test_a_terminated_program_writes_what_it_has(self):
        for number in range(6):
            self.program.start()
            mark = self.program.mark()
            copy_by_xclip(self.desktop, f"copied just before the end {number}".encode())
            self.program.wait_for_line("New clipboard item: text", since=mark)
            self.assertEqual(0, self.program.end())
            self.assertEqual(f"copied just before the end {number}", self.program.texts()[0])

    def capture_many(self):
        """Has texts captured faster than they are written; returns them, the newest first."""
        owner = self.owner()
        texts = [f"one of many: {number} " + "and so on " * 20_000 + "end" for number in range(50)]
        for text in texts:
            mark = self.program.mark()
            owner.own_text(text)
            self.program.wait_for_line("New clipboard item: text", since=mark)
        return texts[::-1]

    def test_many_copies_in_a_row_are_all_kept(self):
        self.program.start()
        texts = self.capture_many()
        self.program.wait_for_text(texts[0])
        self.assertEqual(texts, self.program.texts())

    def test_the_end_right_behind_many_copies_loses_none(self):
        self.program.start()
        texts = self.capture_many()
        self.assertEqual(0, self.program.end())
        self.assertEqual(texts, self.program.texts())
        self.assert_intact()

    def test_the_end_right_behind_a_large_copy_loses_nothing(self):
        self.program.start()
        text = "much text that takes its time to be written; " * 500_000 + "end"
        mark = self.program.mark()
        copy_by_xclip(self.desktop, text.encode())
        self.program.wait_for_line("New clipboard item: text", since=mark, seconds=60)
        self.assertEqual(0, self.program.end())
        self.assertTrue([text] == self.program.texts(), "the large text is not in the store")
        self.assert_intact()


if __name__ == "__main__":
    main()
