#!/usr/bin/python3
"""Somebody pastes a great many entries, one behind the other."""
from case import DesktopTest, main
from clients import Mousepad
from made_entries import MadeEntries

COUNT = 500


class PasteRowTest(DesktopTest):
    def test_all_arrive_in_order_and_none_is_a_new_copy(self):
        texts = [f"entry {number:03} of the row\n" for number in range(COUNT)]
        self.program.write_settings({"history.limit": "1000"})
        self.program.start()
        self.program.end()
        MadeEntries(self.program).add(
            *({"contentTypeRaw": "text", "stringValue": text} for text in texts))
        self.program.start()
        before = self.program.rows("id, timestamp, stringValue")
        self.assertEqual(COUNT, len(before))
        with Mousepad(self.desktop, self.display) as editor:
            for number in range(COUNT):
                mark = self.choose(f"{number:03}")
                self.program.wait_for_line("Simulated Cmd+V paste completed", since=mark)
                self.wait_until_closed()
            self.assertEqual("".join(texts).splitlines(), editor.text_after_paste().splitlines())
        self.copy_after_paste("copied behind the row")
        after = self.program.rows("id, timestamp, stringValue")
        self.assertEqual("copied behind the row", after[0][2])
        self.assertEqual(before, after[1:])


if __name__ == "__main__":
    main()
