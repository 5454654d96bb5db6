"""Contents that are made to cost much."""
import collections
import os

from pictures import png_of

LARGE_BYTES = 300_000_000
LARGE_LINE = b"a line that comes again and again, so many times that it hurts\n"
NESTED = 100_000

Content = collections.namedtuple("Content", "name what target data")


def xml_bomb(kind, before, after):
    entities = b"".join(b'<!ENTITY a%d "%s">\n' % (level, b"&a%d;" % (level - 1) * 10)
                        for level in range(1, 12))
    return (b'<?xml version="1.0"?>\n<!DOCTYPE ' + kind + b' [\n<!ENTITY a0 "a">\n' + entities
            + b"]>\n" + before + b"&a11;" + after)


def huge_picture():
    side = 16_000
    return png_of(side, side, bytes(3 * side * side))


def half_a_picture():
    whole = png_of(2000, 2000, os.urandom(3 * 2000 * 2000))
    return whole[:len(whole) // 2]


CONTENTS = (
    Content("xml_bomb", "an XML bomb as HTML", "text/html",
            lambda: xml_bomb(b"html", b"<html><body><p>", b"</p></body></html>")),
    Content("svg_bomb", "an XML bomb as a picture", "image/svg+xml",
            lambda: xml_bomb(b"svg", b"<svg><text>", b"</text></svg>")),
    Content("elements", "HTML of 100,000 nested elements", "text/html",
            lambda: b"<div>" * NESTED + b"deep" + b"</div>" * NESTED),
    Content("tables", "HTML of 100,000 nested tables", "text/html",
            lambda: b"<table><tr><td>" * NESTED + b"deep"),
    Content("groups", "RTF of 100,000 nested groups", "text/rtf",
            lambda: b"{\\rtf1 " + b"{\\b " * NESTED + b"deep" + b"}" * NESTED + b"}"),
    Content("huge_picture", "a small file that is a huge picture", "image/png", huge_picture),
    Content("half_a_picture", "a picture that is cut off", "image/png", half_a_picture),
)


def large_text_file(desktop):
    """The path of a file of 300 MB; made once on a desktop."""
    path = desktop.path("large.txt")
    if not os.path.exists(path):
        with open(path, "wb") as file:
            file.write(LARGE_LINE * (LARGE_BYTES // len(LARGE_LINE)))
    return path
