#!/usr/bin/env python3
"""Makes what stands in for missing assets, beside itself, at both levels of data. Same script, same bytes; with --check
it only compares.

  art/ebps/missingmodel.pvx, .obm     an octahedron of 2 units, in the colour of what is missing
  art/shaders/missingshader.qsh       that colour, lit or not; a shader without textures is the same at both levels
  art/textures/missingtexture.tga     a chequered picture, which both levels read
"""

import os
import struct
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
PINK = 0xFFFF00FF
BLACK = 0xFF000000
WHITE = 0xFFFFFFFF
CHANNEL_COUNT = 6
DIFFUSE, SELF_ILLUMINATION, OPACITY = 0, 3, 4


def u8(value):
    return struct.pack("<B", value)


def u32(*values):
    return struct.pack("<%dI" % len(values), *values)


def i32(value):
    return struct.pack("<i", value)


def floats(*values):
    return struct.pack("<%df" % len(values), *values)


def text(value):
    return u32(len(value)) + value.encode()


def chunk(kind, ident, version, payload, name=""):
    stored = name.encode() + b"\0" if name else b""
    return (kind + ident).encode() + u32(version, len(payload), len(stored)) + stored + payload


def data(ident, version, payload, name=""):
    return chunk("DATA", ident, version, payload, name)


def folder(ident, version, children, name=""):
    return chunk("FOLD", ident, version, b"".join(children), name)


def file_header():
    return b"Vorlo Chunky\r\n\x1a\0" + u32(1, 1)


def channel(index):
    colour = {DIFFUSE: PINK, SELF_ILLUMINATION: PINK, OPACITY: WHITE}.get(index, BLACK)
    identity = floats(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1)
    plain_colour = 0
    return data("CHAN", 3, u32(index) + i32(plain_colour) + u32(colour) + text("") + u32(0, 0, 0) + identity * 2)


def shader(name):
    two_sided = 1
    info = i32(1) + i32(0) + floats(0) + i32(0) + u8(two_sided)
    return folder("SHDR", 1, [data("INFO", 1, info)] + [channel(i) for i in range(CHANNEL_COUNT)], name)


def octahedron():
    """Eight faces of three vertices each, standing on the ground: positions, normals, texture coordinates."""
    positions, normals, coordinates = [], [], []
    third = 3.0 ** -0.5
    for x in (1, -1):
        for y in (1, -1):
            for z in (1, -1):
                positions += [(x, 1, 0), (0, 1 + y, 0), (0, 1, z)]
                normals += [(x * third, y * third, z * third)] * 3
                coordinates += [(0, 1), (0.5, 0), (1, 1)]
    return [b"".join(floats(*value) for value in array) for array in (positions, normals, coordinates)]


VERTEX_COUNT = 24


def bounds(version):
    return data("BVOL", version, u8(1) + floats(0, 1, 0, 1, 1, 1, 1, 0, 0, 0, 1, 0, 0, 0, 1))


def mesh(name, final):
    polygon_count = VERTEX_COUNT // 3
    components = 0x25
    indices = u32(VERTEX_COUNT) + struct.pack("<%dH" % VERTEX_COUNT, *range(VERTEX_COUNT))
    indices += struct.pack("<HH", 0, VERTEX_COUNT)
    payload = i32(0) + u8(1) + u32(polygon_count, 0) + u32(0) + u32(VERTEX_COUNT, components)
    payload += b"".join(octahedron())
    if final:
        payload += u32(0)
    payload += u32(1) + text(name) + indices
    if final:
        payload += u32(0) + u32(0, 0, 0)
    return folder("MSLC", 1, [data("DATA", 2, payload), bounds(2)], name)


def model(name, final):
    table = u32(1) + text(name) + text("") + i32(-1)
    group = folder("MSGR", 1, [mesh(name, final), data("DATA", 1, table), bounds(1 if final else 2)])
    return file_header() + folder("QPVX", 3 if final else 1, [shader(name), group], name)


def shader_file(name):
    return file_header() + folder("SHRF", 1, [shader(name)], name)


def picture():
    side, square = 16, 4
    rows = [[PINK if (x // square + y // square) % 2 == 0 else BLACK for x in range(side)] for y in range(side)]
    plain, alpha_bits = 2, 8
    header = struct.pack("<BBBHHBHHHHBB", 0, 0, plain, 0, 0, 0, 0, 0, side, side, 32, alpha_bits)
    return header + b"".join(u32(*row) for row in rows)


FILES = {
    "art/ebps/missingmodel.pvx": model("missingmodel", False),
    "art/ebps/missingmodel.obm": model("missingmodel", True),
    "art/shaders/missingshader.qsh": shader_file("art/shaders/missingshader"),
    "art/textures/missingtexture.tga": picture(),
}


def place(path):
    return os.path.join(HERE, *path.split("/"))


def write():
    for path, content in FILES.items():
        os.makedirs(os.path.dirname(place(path)), exist_ok=True)
        with open(place(path), "wb") as file:
            file.write(content)


def check():
    for path, content in FILES.items():
        with open(place(path), "rb") as file:
            if file.read() != content:
                sys.exit(path + " isn't what make_toolsdata.py makes; run it")


if __name__ == "__main__":
    check() if sys.argv[1:] == ["--check"] else write()
