"""A word processor on one document, driven as a person would: by keys."""
import os

from clients import Client


class Writer(Client):
    """LibreOffice on GTK 3, with a profile of its own."""

    window_class = "libreoffice-writer"

    def __init__(self, desktop, display, document_html):
        super().__init__(desktop, display)
        self.profile = desktop.path(f"writer-{os.urandom(4).hex()}")
        os.makedirs(self.profile)
        self.document_path = os.path.join(self.profile, "document.html")
        with open(self.document_path, "w", encoding="utf-8") as file:
            file.write('<meta charset="utf-8">' + document_html)

    def env(self):
        return dict(super().env(), SAL_USE_VCLPLUGIN="gtk3")

    def command(self):
        return ["soffice", "--norestore", "--nologo", "--nofirststartwizard", "--writer",
                f"-env:UserInstallation=file://{self.profile}", self.document_path]
