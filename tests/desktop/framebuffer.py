"""Reads what an X server without a screen shows, from the file that it keeps it in (Xvfb -fbdir).

    framebuffer.py FILE pixel X Y     prints the colour there, such as "247 243 236"
    framebuffer.py FILE save PNG      writes the whole screen as a picture
"""
import struct
import sys
import zlib


class Screen:
    """An X window dump of 32 bits a pixel, blue first, as the server writes it."""

    def __init__(self, path):
        with open(path, "rb") as file:
            self.data = file.read()
        header = struct.unpack(">25I", self.data[:100])
        self.width, self.height, self.pitch = header[4], header[5], header[12]
        if header[11] != 32:
            sys.exit("the screen is not one of 32 bits a pixel")
        self.start = header[0] + 12 * header[19]

    def row(self, y):
        line = self.data[self.start + y * self.pitch:][:4 * self.width]
        rgb = bytearray(3 * self.width)
        rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
        return bytes(rgb)

    def pixel(self, x, y):
        return tuple(self.row(y)[3 * x:3 * x + 3])

    def save(self, path):
        def chunk(kind, body):
            check = zlib.crc32(kind + body)
            return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", check)

        size = struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)
        rows = b"".join(b"\0" + self.row(y) for y in range(self.height))
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", size) +
                       chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def main():
    screen = Screen(sys.argv[1])
    if sys.argv[2] == "save":
        screen.save(sys.argv[3])
    else:
        print(*screen.pixel(int(sys.argv[3]), int(sys.argv[4])))


main()
