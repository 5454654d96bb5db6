#!/usr/bin/python3
"""Of the forms of an entry each program takes the one that it can show: styles where there are any,
else the plain text, and a picture in the format that it knows."""
import os
import random

from case import DesktopTest, main
from clients import (Chromium, FeatherPad, Mousepad, XTerm, Xfce4Terminal, copy_by_xclip,
                     read_by_xclip)
from made_entries import MadeEntries
from pictures import noise_png
from png_taker import PngTaker
from waiting import wait_until

PLAIN = "Plain and bold words, Grüße 你好"
FORMS = {
    "UTF8_STRING": PLAIN.encode(),
    "text/html": "Plain and <b>bold</b> words, Grüße 你好".encode(),
    "text/rtf": rb"{\rtf1\ansi Plain and {\b bold} words, Gr\'fc\'dfe \u20320?\u22909?}",
}
WIDTH, HEIGHT = 48, 32

PICTURE_FIELD = """<div id="field" contenteditable style="height: 300px"></div><script>
document.addEventListener("paste", async (event) => {
    const file = event.clipboardData.files[0];
    const picture = await createImageBitmap(file);
    document.title = `got:${file.type} ${picture.width} x ${picture.height}`;
});
document.getElementById("field").focus();
</script>"""


class PasteStyledTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.write_settings({"image.storage.format": "jpeg"})
        self.program.start()

    def paste_newest(self, client):
        client.focus()
        mark = self.choose("")
        self.program.wait_for_line("Simulated Cmd+V paste completed", since=mark)
        self.wait_until_closed()

    # Styled text

    def paste_styled(self, client):
        self.owner().own(FORMS)
        self.program.wait_for_text(PLAIN)
        self.paste_newest(client)
        return client.text_after_paste()

    def test_styles_into_a_page(self):
        with Chromium(self.desktop, self.display, Chromium.STYLED_FIELD) as browser:
            self.assertEqual("Plain and <b>bold</b> words, Grüße 你好", self.paste_styled(browser))

    def test_no_styles_into_a_field_that_has_none(self):
        for editor in (Mousepad, FeatherPad, XTerm, Xfce4Terminal):
            with self.subTest(editor.window_class), editor(self.desktop, self.display) as client:
                self.assertEqual(PLAIN, self.paste_styled(client))

    def test_nothing_of_an_entry_of_a_kind_that_nothing_is_written_for(self):
        self.program.end()
        MadeEntries(self.program).add({"contentTypeRaw": "mixed", "stringValue": PLAIN})
        self.program.start()
        with Mousepad(self.desktop, self.display) as editor:
            self.paste_newest(editor)
            self.display.type("x")
            self.assertEqual("x", editor.text_after_paste())

    # Pictures

    def copy_picture(self):
        """Returns the path of the picture that was stored."""
        picture = noise_png(random.Random(self._testMethodName), WIDTH, HEIGHT)
        copy_by_xclip(self.desktop, picture, "image/png")
        name, = self.program.wait_for_row(lambda name: name is not None, "a picture",
                                          "imageFileName")
        path = os.path.join(self.program.images_path, name)
        self.assertEqual("JPEG", self.desktop.run("identify", "-format", "%m", path).decode())
        return path

    def pixels(self, *source, **options):
        return self.desktop.run("convert", *source, "-alpha", "off", "-depth", "8", "rgb:-",
                                **options)

    def test_a_picture_into_a_program_that_takes_another_format(self):
        path = self.copy_picture()
        with PngTaker(self.desktop, self.display) as taker:
            self.paste_newest(taker)
            self.assertEqual(self.pixels(path),
                             self.pixels("png:-", input=taker.picture_after_paste(), stdin=None))

    def test_a_picture_into_a_page(self):
        self.copy_picture()
        with Chromium(self.desktop, self.display, PICTURE_FIELD) as browser:
            self.paste_newest(browser)
            self.assertEqual(f"image/png {WIDTH} x {HEIGHT}", browser.text_after_paste())

    def test_nothing_of_a_picture_into_a_text_editor(self):
        self.copy_picture()
        with Mousepad(self.desktop, self.display) as editor:
            self.paste_newest(editor)
            wait_until(lambda: read_by_xclip(self.desktop, "image/jpeg"), "the picture")
            self.display.type("x")
            self.assertEqual("x", editor.text_after_paste())


if __name__ == "__main__":
    main()
