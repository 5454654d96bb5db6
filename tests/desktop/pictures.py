"""Pictures to copy."""
import struct
import zlib


def png_of(width, height, rgb):
    """The PNG file of a picture; rgb has three bytes to the pixel, row by row from the top."""
    stride = 3 * width
    lines = b"".join(b"\0" + rgb[start:start + stride]
                     for start in range(0, height * stride, stride))
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines, 1))
            + chunk(b"IEND", b""))


def chunk(kind, data):
    checksum = zlib.crc32(kind + data)
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", checksum)


def noise_png(rng, width, height):
    """A picture that is like no other."""
    return png_of(width, height, rng.randbytes(3 * width * height))
