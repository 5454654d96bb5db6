"""The common ground of the tests that end a session: what was captured in a hurry is on disk."""
from case import DesktopTest
from clients import copy_by_xclip


class SessionEndCase(DesktopTest):
    def capture_many(self, desktop=None):
        """Has texts captured faster than they are written; returns them, the newest first.
        desktop has the environment in which they are copied."""
        texts = [f"one of many: {number} " + "and so on " * 50_000 + "end" for number in range(20)]
        for text in texts:
            mark = self.program.mark()
            copy_by_xclip(desktop or self.desktop, text.encode())
            self.program.wait_for_line("New clipboard item: text", since=mark)
        return texts[::-1]

    def assert_all_is_on_disk(self, texts):
        self.assertTrue(texts == self.program.texts(),
                        f"{len(self.program.texts())} of {len(texts)} texts are in the store")
        self.assert_intact()
