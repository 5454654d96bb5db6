"""The common ground of the tests that choose an older entry by a search, and see where it goes."""
from case import DesktopTest

CHOSEN = "the chosen quick fox"
LATER = "something copied later"


class PasteCase(DesktopTest):
    settings = {}

    def setUp(self):
        super().setUp()
        self.program.write_settings(self.settings)
        self.program.start()
        self.copy(CHOSEN)
        self.copy(LATER)

    def choose_for(self, client):
        """Returns the place that the output had come to before."""
        client.focus()
        return self.choose("quick")

    def wait_for_paste(self, mark):
        self.program.wait_for_line("Simulated Cmd+V paste completed", since=mark)
        self.wait_until_closed()

    def paste_into(self, client):
        """Returns what arrived."""
        self.wait_for_paste(self.choose_for(client))
        return client.text_after_paste()
