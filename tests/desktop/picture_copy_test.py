#!/usr/bin/python3
"""A picture that is copied becomes an entry with the same pixels."""
import base64
import os
import random

from case import DesktopTest, main
from clients import Chromium, copy_by_xclip
from image_viewer import LXImage
from pictures import noise_png

WIDTH, HEIGHT = 48, 32


class PictureCopyTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.write_settings({"image.storage.format": "png"})
        self.program.start()
        self.picture = noise_png(random.Random(self._testMethodName), WIDTH, HEIGHT)
        self.picture_path = os.path.join(self.program.data, "a picture.png")
        with open(self.picture_path, "wb") as file:
            file.write(self.picture)

    def pixels(self, path):
        return self.desktop.run("convert", path, "-alpha", "off", "-depth", "8", "rgb:-")

    def assert_entry_of(self, picture_path):
        name, text, html = self.program.wait_for_row(
            lambda file_name, *_: file_name is not None, "a picture",
            "imageFileName, stringValue, htmlRepresentation")
        self.assertEqual(self.pixels(picture_path),
                         self.pixels(os.path.join(self.program.images_path, name)))
        self.assertEqual([("image",)], self.program.rows("contentTypeRaw"))
        self.assertEqual((None, None), (text, html))
        self.program.wait_for_line("Detected: Image remote=false")

    def check_format(self, name):
        path = os.path.join(self.program.data, "picture." + name)
        self.desktop.run("convert", self.picture_path, path)
        with open(path, "rb") as file:
            copy_by_xclip(self.desktop, file.read(), "image/" + name)
        self.assert_entry_of(path)

    def test_from_a_browser(self):
        source = "data:image/png;base64," + base64.b64encode(self.picture).decode()
        body = f'<img src="{source}" style="display: block; width: 200px; height: 200px">'
        with Chromium(self.desktop, self.display, body) as browser:
            browser.copy_from_menu(100, 100, "y")
            self.assert_entry_of(self.picture_path)

    def test_from_a_viewer(self):
        with LXImage(self.desktop, self.display, self.picture_path) as viewer:
            viewer.copy_picture()
            self.assert_entry_of(self.picture_path)

    def test_a_png(self):
        self.check_format("png")

    def test_a_jpeg(self):
        self.check_format("jpeg")

    def test_a_bmp(self):
        self.check_format("bmp")

    def test_a_tiff(self):
        self.check_format("tiff")

    def test_a_webp(self):
        self.check_format("webp")


if __name__ == "__main__":
    main()
