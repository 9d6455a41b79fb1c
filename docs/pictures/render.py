#!/usr/bin/env python3
"""Draws an exported model: a software rasteriser in plain Python, for the picture in the README.

    pvxdump MODEL.pvx --json --vertices --textures FOLDER | render.py SCENE.glb FOLDER OUT.png [WIDTH HEIGHT]

Geometry, normals, the split by shader, textures and the camera are what pvxdump read from the model file. Only the
colours of what has no texture come from the scene, by shader name, since a model file keeps none.
"""
import json
import math
import os
import struct
import sys
import zlib

SUN = (-0.52, 0.74, 0.42)
SKY, GROUND = (0.80, 0.86, 0.93), (0.60, 0.58, 0.55)
OVERSAMPLE = 2
SHADOW_SIZE = 900
SHADOW_HALF = 5.5  # metres around the origin


def sub(a, b):
    return (a[0] - b[0], a[1] - b[1], a[2] - b[2])


def dot(a, b):
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    n = math.sqrt(dot(a, a)) or 1.0
    return (a[0] / n, a[1] / n, a[2] / n)


def scene_colours(path):
    with open(path, "rb") as file:
        data = file.read()
    length = struct.unpack_from("<I", data, 12)[0]
    colours = {}
    for material in json.loads(data[20:20 + length]).get("materials", []):
        base = material.get("pbrMetallicRoughness", {})
        colours[material["name"]] = (base.get("baseColorFactor", [1, 1, 1, 1]), 1 - base.get("roughnessFactor", 1.0),
                                     max(material.get("emissiveFactor", [0])), bool(material.get("doubleSided")))
    return colours


class Texture:
    """A TGA of 32 bits with its rows bottom up, as pvxdump writes it."""

    def __init__(self, path):
        with open(path, "rb") as file:
            data = file.read()
        self.width, self.height = struct.unpack_from("<HH", data, 12)
        step = data[16] // 8
        self.pixels = [tuple(data[i:i + step]) for i in range(18 + data[0], 18 + data[0] + self.width * self.height * step, step)]
        self.cuts = step == 4 and any(p[3] < 128 for p in self.pixels)

    def at(self, u, v):
        return self.pixels[int(v * self.height) % self.height * self.width + int(u * self.width) % self.width]

    def colour(self, u, v):
        blue, green, red = self.at(u, v)[:3]
        return [(c / 255) ** 1.5 for c in (red, green, blue)] + [1]


class Look:
    """What a shader looks like."""

    def __init__(self, colour, gloss, glow, two_sided, texture):
        self.colour, self.gloss, self.glow, self.two_sided, self.texture = colour, gloss, glow, two_sided, texture

    def colour_at(self, uv):
        return self.texture.colour(*uv) if self.texture else self.colour

    def is_hole(self, uv):
        return self.texture is not None and self.texture.cuts and self.texture.at(*uv)[3] < 128


def model_looks(model, colours, folder):
    looks = {}
    for shader in model["shaders"]:
        name = next((c["texture"] for c in shader["channels"] if c["channel"] == 0), "")
        path = os.path.join(folder, name.replace("\\", "_") + ".tga")
        texture = Texture(path) if name and os.path.exists(path) else None
        colour, gloss, glow, _ = colours.get(shader["name"], ([1, 0, 1, 1], 0.4, 0, False))
        looks[shader["name"]] = Look(colour, gloss, glow, shader["twoSided"], texture)
    return looks


def mix(weights, values):
    return tuple(sum(w * v[c] for w, v in zip(weights, values)) for c in range(len(values[0])))


def model_triangles(model, looks):
    """Triangles as ((position, ...), (normal, ...), (texture coordinates, ...), look), with the winding of the file:
    outside is where the cross product of the edges points."""
    triangles = []
    for mesh in model["meshes"]:
        lists = [mesh["positions"], mesh["normals"], mesh["texcoords"] or [(0, 0)] * len(mesh["positions"])]
        for primitives in mesh["primitiveSets"]:
            indices = primitives["indices"]
            for i in range(0, len(indices), 3):
                corner = indices[i:i + 3]
                triangles.append(tuple(tuple(tuple(values[v]) for v in corner) for values in lists) + (looks[primitives["shader"]],))
    return triangles


class View:
    """A camera as the file has it; the system's axes are left-handed, Y up."""

    def __init__(self, camera, width, height):
        self.eye = tuple(camera["position"])
        self.forward = unit(sub(tuple(camera["target"]), self.eye))
        self.right = unit(cross((0, 1, 0), self.forward))
        self.up = cross(self.forward, self.right)
        self.scale = height / 2 / math.tan(camera["fov"] / 2)
        self.cx, self.cy = width / 2, height / 2

    def project(self, p):
        d = sub(p, self.eye)
        z = dot(d, self.forward)
        return (self.cx + dot(d, self.right) / z * self.scale, self.cy - dot(d, self.up) / z * self.scale, 1 / z)

    def ray(self, x, y):
        a, b = (x - self.cx) / self.scale, (self.cy - y) / self.scale
        return tuple(self.forward[c] + a * self.right[c] + b * self.up[c] for c in range(3))


def raster(points, width, height, visit):
    """Calls visit(offset, w0, w1, w2) for every pixel whose middle the triangle covers."""
    (x0, y0, _), (x1, y1, _), (x2, y2, _) = points
    area = (x1 - x0) * (y2 - y0) - (x2 - x0) * (y1 - y0)
    if area == 0:
        return
    low, high = max(0, int(min(y0, y1, y2))), min(height - 1, int(max(y0, y1, y2)) + 1)
    left, right = max(0, int(min(x0, x1, x2))), min(width - 1, int(max(x0, x1, x2)) + 1)
    for y in range(low, high + 1):
        py = y + 0.5
        for x in range(left, right + 1):
            px = x + 0.5
            w0 = ((x1 - px) * (y2 - py) - (x2 - px) * (y1 - py)) / area
            if w0 < 0:
                continue
            w1 = ((x2 - px) * (y0 - py) - (x0 - px) * (y2 - py)) / area
            if w1 < 0 or w0 + w1 > 1:
                continue
            visit(y * width + x, w0, w1, 1 - w0 - w1)


class Shadow:
    def __init__(self, triangles):
        self.sun = unit(SUN)
        self.right = unit(cross((0, 1, 0), self.sun))
        self.up = cross(self.sun, self.right)
        self.depth = [-1e9] * (SHADOW_SIZE * SHADOW_SIZE)
        for positions, _, uvs, look in triangles:
            points = [self.project(p) for p in positions]

            def visit(offset, *weights):
                z = sum(w * p[2] for w, p in zip(weights, points))
                if z > self.depth[offset] and not look.is_hole(mix(weights, uvs)):
                    self.depth[offset] = z

            raster(points, SHADOW_SIZE, SHADOW_SIZE, visit)

    def project(self, p):
        k = SHADOW_SIZE / 2 / SHADOW_HALF
        return ((dot(p, self.right) + SHADOW_HALF) * k, (dot(p, self.up) + SHADOW_HALF) * k, dot(p, self.sun))

    def lit(self, p, spread):
        """The share of the sun that reaches a point, 0..1."""
        x, y, z = self.project(p)
        hits = 0
        for dx, dy in ((0, 0), (1.3, 0.4), (-1.1, 0.7), (0.4, -1.3), (-0.5, 1.4)):
            px, py = int(x + dx * spread), int(y + dy * spread)
            if 0 <= px < SHADOW_SIZE and 0 <= py < SHADOW_SIZE and self.depth[py * SHADOW_SIZE + px] > z + 0.04:
                hits += 1
        return 1 - hits / 5


def shade(p, n, uv, look, view, shadow):
    (red, green, blue, _), gloss, glow = look.colour_at(uv), look.gloss, look.glow
    to_eye = unit(sub(view.eye, p))
    diffuse = max(0.0, dot(n, shadow.sun))
    diffuse *= shadow.lit(p, 1.2) if diffuse > 0 else 0
    half = unit(tuple(a + b for a, b in zip(shadow.sun, to_eye)))
    shine = (max(0.0, dot(n, half)) ** (8 + 60 * gloss)) * gloss * 0.7 * (1 if diffuse > 0 else 0)
    hemisphere = 0.5 + 0.5 * n[1]
    # What is low and looks down gets less of the sky.
    closed = min(1.0, 0.55 + 0.3 * max(0.0, p[1]))
    rim = (1 - max(0.0, dot(n, to_eye))) ** 3 * 0.12
    out = []
    for colour, sky, ground in zip((red, green, blue), SKY, GROUND):
        ambient = (sky * hemisphere + ground * 0.5 * (1 - hemisphere)) * 0.55 * closed
        out.append(colour * (ambient + 1.05 * diffuse + glow) + shine + rim * sky)
    return out


def backdrop(view, x, y, shadow):
    d = view.ray(x, y)
    t = min(1.0, max(0.0, 0.5 + d[1] * 1.2))
    sky = [0.93 * (1 - t) + s * t * 0.92 for s in SKY]
    if d[1] >= -1e-4:
        return sky
    s = -view.eye[1] / d[1]
    p = tuple(view.eye[c] + d[c] * s for c in range(3))
    far = math.hypot(p[0], p[2])
    fade = min(1.0, max(0.0, (far - 4) / 9))
    light = 0.42 + 0.58 * shadow.lit((p[0], 0.0, p[2]), 3.0)
    close = 0.72 + 0.28 * min(1.0, max(abs(p[0]) / 2.2, abs(p[2]) / 3.4) ** 4)
    return [(g * 1.32 * light * close) * (1 - fade) + k * fade for g, k in zip(GROUND, sky)]


def draw(model, looks, width, height):
    triangles = model_triangles(model, looks)
    shadow = Shadow(triangles)
    view = View(model["cameras"][0], width, height)
    nearest = [0.0] * (width * height)
    owner = [None] * (width * height)
    for number, (positions, _, uvs, look) in enumerate(triangles):
        normal = cross(sub(positions[1], positions[0]), sub(positions[2], positions[0]))
        if not look.two_sided and dot(normal, sub(positions[0], view.eye)) >= 0:
            continue
        points = [view.project(p) for p in positions]

        def visit(offset, *weights):
            z = sum(w * p[2] for w, p in zip(weights, points))
            if z <= nearest[offset]:
                return
            straight = tuple(w * p[2] / z for w, p in zip(weights, points))
            if not look.is_hole(mix(straight, uvs)):
                nearest[offset] = z
                owner[offset] = (number, straight)

        raster(points, width, height, visit)
    pixels = []
    for y in range(height):
        for x in range(width):
            hit = owner[y * width + x]
            if hit is None:
                pixels.append(backdrop(view, x + 0.5, y + 0.5, shadow))
                continue
            number, weights = hit
            positions, normals, uvs, look = triangles[number]
            p, n = mix(weights, positions), unit(mix(weights, normals))
            if look.two_sided and dot(n, sub(view.eye, p)) < 0:
                n = (-n[0], -n[1], -n[2])
            pixels.append(shade(p, n, mix(weights, uvs), look, view, shadow))
    return pixels


def write_png(path, pixels, width, height, by):
    """Averages blocks of by * by pixels; colours are linear until here."""
    rows = bytearray()
    for y in range(0, height, by):
        rows.append(0)
        for x in range(0, width, by):
            block = [pixels[(y + j) * width + x + i] for j in range(by) for i in range(by)]
            for c in range(3):
                mean = sum(min(1.0, p[c]) for p in block) / len(block)
                rows.append(round(255 * mean ** (1 / 1.5)))
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    with open(path, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width // by, height // by, 8, 2, 0, 0, 0)) +
                  chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b""))


def main():
    if len(sys.argv) not in (4, 6):
        sys.exit(__doc__.strip())
    width, height = (int(x) * OVERSAMPLE for x in (sys.argv[4:6] or (840, 520)))
    model = json.load(sys.stdin)
    if not model.get("cameras"):
        sys.exit("render.py: the model has no camera to look through")
    looks = model_looks(model, scene_colours(sys.argv[1]), sys.argv[2])
    write_png(sys.argv[3], draw(model, looks, width, height), width, height, OVERSAMPLE)


if __name__ == "__main__":
    main()
