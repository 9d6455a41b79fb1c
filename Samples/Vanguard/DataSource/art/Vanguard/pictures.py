"""The sample's textures, drawn pixel by pixel in whole numbers, so that every machine draws the same."""
import struct
import zlib


class Picture:
    """Rows from the top down; a pixel is (red, green, blue, alpha), 0 to 255."""

    def __init__(self, width, height, paint):
        self.width, self.height = width, height
        self.rows = [[tuple(max(0, min(255, int(c))) for c in paint(x, y)) for x in range(width)] for y in range(height)]

    def png(self, alpha):
        """Packed without compression: what a library makes of the same pixels depends on its version."""
        width = 4 if alpha else 3
        raw = b"".join(b"\0" + bytes(c for pixel in row for c in pixel[:width]) for row in self.rows)
        blocks = [raw[i:i + 65535] for i in range(0, len(raw), 65535)]
        data = b"\x78\x01"
        for i, block in enumerate(blocks):
            data += struct.pack("<BHH", i == len(blocks) - 1, len(block), len(block) ^ 0xFFFF) + block
        data += struct.pack(">I", zlib.adler32(raw))
        header = struct.pack(">IIBBBBB", self.width, self.height, 8, 6 if alpha else 2, 0, 0, 0)
        chunks = ((b"IHDR", header), (b"IDAT", data), (b"IEND", b""))
        return b"\x89PNG\r\n\x1a\n" + b"".join(
            struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body)) for kind, body in chunks)

    def tga(self):
        """32 bits a pixel, rows bottom up, not packed: the one form that every tool of the road reads."""
        header = struct.pack("<BBBHHBHHHHBB", 0, 0, 2, 0, 0, 0, 0, 0, self.width, self.height, 32, 8)
        return header + bytes(c for row in reversed(self.rows) for r, g, b, a in row for c in (b, g, r, a))


def noise(x, y, salt=0):
    """0 to 255, the same for the same place."""
    n = (x * 374761393 + y * 668265263 + salt * 1274126177) & 0xFFFFFFFF
    n = ((n ^ (n >> 13)) * 1274126177) & 0xFFFFFFFF
    return (n ^ (n >> 16)) & 255


def shaded(colour, brightness, alpha=255):
    return tuple(c * brightness // 256 for c in colour) + (alpha,)


def grain(x, y, depth, salt=0):
    """256 and a little more or less, in blots of two pixels and in single ones."""
    return 256 - depth + (noise(x // 2, y // 2, salt) * depth + noise(x, y, salt + 1) * depth) // 255


def plate():
    """Riveted armour, to be laid side by side: four plates of different size, worn bright along their upper edges."""
    size = 64
    colour = (150, 142, 104)
    seams = [(0, 0, 40, 28), (40, 0, 64, 36), (0, 28, 40, 64), (40, 36, 64, 64)]

    def paint(x, y):
        left, top, right, bottom = next(s for s in seams if s[0] <= x < s[2] and s[1] <= y < s[3])
        dx, dy = min(x - left, right - 1 - x), min(y - top, bottom - 1 - y)
        light = grain(x, y, 22) + (noise(left, top, 7) - 128) // 12
        if dx == 0 or dy == 0:
            light = 188
        elif y - top == 1 or x - left == 1:
            light += 18
        elif (dx in (4, 5) and dy in (4, 5)):
            light += 30 if y - top in (4, bottom - 1 - top - 5) else -44
        streak = noise(x, 0, 3) > 214 and noise(x, (y - top) // 6, 5) > 120
        return shaded(colour, light - (30 if streak else 0))

    return Picture(size, size, paint)


def tread():
    """A rubber tread's chevrons, to be laid around a wheel."""
    def paint(x, y):
        along = (x + abs(y - 16)) % 32
        light = 300 if along < 14 else 120
        if along in (0, 13):
            light = 380 if along == 0 else 80
        return shaded((44, 44, 47), light * grain(x, y, 40) // 256)

    return Picture(32, 32, paint)


def cloth():
    """The banner: a tower on a field with a border, its lower end in rags that the alpha cuts out."""
    size = 64
    tower = ("..#.##.##.#..", "..#########..", "...#######...", "...###.###...", "...###.###...", "...#######...", "...#######...",
             "...###.###...", "..####.####..", ".#####.#####.", ".####...####.", "#####...#####")

    def paint(x, y):
        weave = 216 + 20 * ((x + y) % 2) + noise(x // 3, y // 3) // 10
        rag = 60 - noise(x // 3, 0, 11) // 18 - (3 if x % 7 == 0 else 0)
        alpha = 255 if y < rag else 0
        col, row = (x - 12) // 3, (y - 12) // 3
        on_tower = 0 <= col < 13 and 0 <= row < 12 and tower[row][col] == "#"
        border = min(x, size - 1 - x) in (4, 5) or y in (4, 5)
        return shaded((226, 190, 96) if on_tower or border else (158, 36, 32), weave, alpha)

    return Picture(size, size, paint)


TEAM_SIZE = 128


def in_stripe(x, y):
    return (x + y) % 64 < 22


def in_trim(x, y):
    return min(x, y, TEAM_SIZE - 1 - x, TEAM_SIZE - 1 - y) < 6


def team():
    """Paint of the team: it comes in the colours of a team at run time, by the layers beside it."""
    def paint(x, y):
        light = grain(x, y, 30) - (70 if (x + y) % 64 in (0, 22) else 0)
        colour = (206, 170, 84) if in_trim(x, y) else (232, 222, 204) if in_stripe(x, y) else (176, 44, 38)
        return shaded(colour, light, 255 - noise(x // 2, y // 2, 21) // 6)

    return Picture(TEAM_SIZE, TEAM_SIZE, paint)


def team_layers():
    """What of the team's paint takes which colour, told by alpha; where badge and banner go; and the dirt."""
    def layer(strength):
        return Picture(TEAM_SIZE, TEAM_SIZE, lambda x, y: (255, 255, 255, strength(x, y)))

    def place(left, top):
        return Picture(TEAM_SIZE, TEAM_SIZE, lambda x, y: (255, 0, 255, 255) if (x, y) == (left, top) else (0, 0, 0, 255))

    def dirt(x, y):
        strength = max(0, noise(x // 4, y // 4, 31) + noise(x // 2, y // 2, 32) + y - 330)
        return shaded((92, 74, 52), grain(x, y, 60, 33), min(255, strength * 2))

    # The files' rows run bottom up, and so a mark is looked for: this is the place's lowest row.
    return {
        "primary": layer(lambda x, y: 0 if in_trim(x, y) or in_stripe(x, y) else 255),
        "secondary": layer(lambda x, y: 255 if in_stripe(x, y) and not in_trim(x, y) else 0),
        "trim": layer(lambda x, y: 255 if in_trim(x, y) else 0),
        "dirt": Picture(TEAM_SIZE, TEAM_SIZE, dirt),
        "badge": place(32, 95),
        "banner": place(32, 111),
    }
