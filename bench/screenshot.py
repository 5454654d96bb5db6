"""Pictures like those that people take of a large screen: mostly text on plain ground, and one
photograph. As PNG they have about 3.5 MB, and each is another."""
import os
import random

WIDTH, HEIGHT = 3840, 2160
GLYPH_WIDTH, GLYPH_HEIGHT = 10, 20
PHOTOGRAPH_WIDTH, PHOTOGRAPH_HEIGHT = 1700, 1360
GROUND, INK = b"\xf4\xf4\xf2", b"\x22\x26\x2e"


def glyphs(rng, count=80):
    """Shapes of letters, as lists of lines of pixels."""
    shapes = [[GROUND * GLYPH_WIDTH] * GLYPH_HEIGHT] * 12  # So many of a hundred are blanks.
    for _ in range(count):
        lines = []
        for line in range(GLYPH_HEIGHT):
            has_ink = 4 <= line < 16
            lines.append(b"".join(INK if has_ink and rng.random() < 0.3 else GROUND
                                  for _ in range(GLYPH_WIDTH)))
        shapes.append(lines)
    return shapes


def text_lines(rng):
    shapes = glyphs(rng)
    lines = []
    while len(lines) < HEIGHT:
        length = rng.randint(0, WIDTH // GLYPH_WIDTH)
        row = [rng.choice(shapes) for _ in range(length)]
        rest = GROUND * (WIDTH - length * GLYPH_WIDTH)
        lines += [b"".join(shape[line] for shape in row) + rest for line in range(GLYPH_HEIGHT)]
    return lines[:HEIGHT]


def photograph_line(rng, line):
    """Soft colours with the noise of a camera."""
    noise = rng.randbytes(3 * PHOTOGRAPH_WIDTH)
    return bytes(64 + (pixel // 12 + line // 16) % 128 + noise[pixel] % 8
                 for pixel in range(3 * PHOTOGRAPH_WIDTH))


def write(desktop, number):
    """Writes one as a file of the desktop; returns its path."""
    rng = random.Random(number)
    lines = text_lines(rng)
    end = 3 * PHOTOGRAPH_WIDTH
    for line in range(PHOTOGRAPH_HEIGHT):
        lines[line] = photograph_line(rng, line) + lines[line][end:]
    path = desktop.path(f"screenshot-{number}.png")
    desktop.run("convert", "-size", f"{WIDTH}x{HEIGHT}", "-depth", "8", "rgb:-", path,
                input=b"".join(lines), stdin=None)
    return os.path.abspath(path)
