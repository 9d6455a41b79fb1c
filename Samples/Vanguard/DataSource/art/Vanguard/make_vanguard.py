#!/usr/bin/env python3
"""Makes Vanguard.glb, the sample's war wagon, beside this script.

Plain Python without packages, and the same bytes on every machine: coordinates are rounded to what a file holds anyway,
nothing is drawn by lot. Metres, Y up, the wagon looks along +Z, so that its left side is +X.

The parts that a game moves are nodes of their own (turret, gun, wheels, banner), with their origin where they turn.
"""
import json
import math
import os
import struct

TAU = 2 * math.pi

# Name, base colour, and what else glTF says of it.
MATERIALS = [
    ("Vanguard_Armour", (0.47, 0.45, 0.33), {"roughness": 0.6}),
    ("Vanguard_Steel", (0.23, 0.24, 0.26), {"roughness": 0.35}),
    ("Vanguard_Rubber", (0.10, 0.10, 0.11), {"roughness": 0.95}),
    ("Vanguard_Team", (0.62, 0.13, 0.11), {"roughness": 0.5}),
    ("Vanguard_Cloth", (0.70, 0.16, 0.13), {"roughness": 1.0, "doubleSided": True}),
    ("Vanguard_Brass", (0.76, 0.58, 0.24), {"roughness": 0.25}),
    ("Vanguard_Lamp", (0.95, 0.90, 0.70), {"roughness": 0.2, "emissive": (1.0, 0.9, 0.6)}),
    ("Vanguard_Glass", (0.35, 0.55, 0.60, 0.45), {"roughness": 0.1, "alphaMode": "BLEND"}),
]
ARMOUR, STEEL, RUBBER, TEAM, CLOTH, BRASS, LAMP, GLASS = range(len(MATERIALS))


def grid(value):
    """Rounded to 1/8192 m: what the processor's sine does in its last digits never reaches the file."""
    return round(value * 8192) / 8192


def sub(a, b):
    return tuple(x - y for x, y in zip(a, b))


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def unit(a):
    length = math.sqrt(dot(a, a))
    return tuple(x / length for x in a) if length else (0.0, 1.0, 0.0)


class Mesh:
    """Triangles with a material and a smoothing group each; group 0 is hard on every side."""

    def __init__(self, name):
        self.name = name
        self.faces = []  # (material, group, ((position, uv), ...))
        self.groups = 0

    def new_group(self):
        self.groups += 1
        return self.groups

    def solid(self, polygons):
        """Adds a closed surface, turned inside out if its polygons look inwards."""
        triangles = []
        for material, group, corners in polygons:
            corners = [(tuple(grid(x) for x in p), uv) for p, uv in corners]
            for i in range(1, len(corners) - 1):
                triangle = (corners[0], corners[i], corners[i + 1])
                if len({p for p, _ in triangle}) == 3:
                    triangles.append((material, group, triangle))
        volume = sum(dot(t[0][0], cross(t[1][0], t[2][0])) for _, _, t in triangles)
        for material, group, t in triangles:
            self.faces.append((material, group, t if volume >= 0 else (t[0], t[2], t[1])))

    def loft(self, rings, material, smooth=False, caps=(True, True)):
        """The skin over rings of points. `smooth` may be a list with one entry a strip, `material` too.

        Strips that follow each other and are smooth share one group, so an edge between two strips is hard exactly
        where one of them is.
        """
        count = len(rings[0])
        strips = len(rings) - 1
        smooth = smooth if isinstance(smooth, list) else [smooth] * strips
        materials = material if isinstance(material, list) else [material] * strips
        polygons = []
        group = 0
        for j in range(strips):
            group = (group or self.new_group()) if smooth[j] else 0
            for i in range(count):
                k = (i + 1) % count
                u0, u1, v0, v1 = i / count, (i + 1) / count, j / strips, (j + 1) / strips
                polygons.append((materials[j], group, [(rings[j][i], (u0, v0)), (rings[j][k], (u1, v0)),
                                                       (rings[j + 1][k], (u1, v1)), (rings[j + 1][i], (u0, v1))]))
        for ring, wanted, strip in ((list(reversed(rings[0])), caps[0], 0), (rings[-1], caps[1], -1)):
            if wanted:
                polygons.append((materials[strip], 0, [(p, cap_uv(ring, p)) for p in ring]))
        self.solid(polygons)

    def box(self, centre, size, material, bevel=0.03):
        """A box whose edges along Z are cut off by `bevel`, and its two ends too."""
        x, y, z = (s / 2 for s in size)
        b = min(bevel, x * 0.8, y * 0.8, z * 0.8)

        def ring(at, inset):
            w, h = x - inset, y - inset
            outline = [(w, -h + b), (w, h - b), (w - b, h), (-w + b, h), (-w, h - b), (-w, -h + b), (-w + b, -h), (w - b, -h)]
            return [(centre[0] + p, centre[1] + q, centre[2] + at) for p, q in outline]

        self.loft([ring(-z, b), ring(-z + b, 0), ring(z - b, 0), ring(z, b)], material)

    def lathe(self, profile, segments, material, axis="x", origin=(0, 0, 0), smooth=True, wobble=None, caps=(True, True)):
        """Turns a profile of (along, radius) pairs about an axis. `wobble` scales the radius by (ring, segment)."""
        rings = []
        for r, (along, radius) in enumerate(profile):
            ring = []
            for i in range(segments):
                angle = TAU * i / segments
                scaled = radius * (wobble(r, i) if wobble else 1)
                p, q = scaled * math.cos(angle), scaled * math.sin(angle)
                x, y, z = {"x": (along, p, q), "y": (q, along, p), "z": (p, q, along)}[axis]
                ring.append((origin[0] + x, origin[1] + y, origin[2] + z))
            rings.append(ring)
        self.loft(rings, material, smooth, caps)

    def tube(self, path, radius, segments, material):
        """A pipe in a plane of constant x along the points of `path`; `radius` is one number or one a point."""
        rings = []
        for i, point in enumerate(path):
            forward = unit(sub(path[min(i + 1, len(path) - 1)], path[max(i - 1, 0)]))
            side = (1.0, 0.0, 0.0)
            up = cross(forward, side)
            r = radius[i] if isinstance(radius, list) else radius
            rings.append([tuple(point[c] + r * (math.cos(TAU * s / segments) * side[c] + math.sin(TAU * s / segments) * up[c])
                                for c in range(3)) for s in range(segments)])
        self.loft(rings, material, smooth=True)

    def bolts(self, centres, radius, height, material, axis="x", sides=6):
        for centre in centres:
            self.lathe([(0, radius), (height * 0.6, radius), (height, radius * 0.6)], sides, material, axis, centre, smooth=False,
                       caps=(False, True))


def cap_uv(ring, point):
    """Flat coordinates of a cap: the two axes in which its ring is widest, over 1 m."""
    spans = [max(p[c] for p in ring) - min(p[c] for p in ring) for c in range(3)]
    flat = spans.index(min(spans))
    a, b = [c for c in range(3) if c != flat]
    return (point[a] % 1.0 if spans[a] > 1 else point[a] + 0.5, point[b] % 1.0 if spans[b] > 1 else point[b] + 0.5)


def inset(outline, distance):
    """A convex outline of (z, y) pairs drawn in towards its middle."""
    cz = sum(p[0] for p in outline) / len(outline)
    cy = sum(p[1] for p in outline) / len(outline)
    out = []
    for z, y in outline:
        length = math.hypot(z - cz, y - cy)
        out.append((z - (z - cz) / length * distance, y - (y - cy) / length * distance))
    return out


def make_hull():
    mesh = Mesh("Hull")
    side = [(-2.55, 0.55), (-2.80, 1.05), (-2.62, 1.42), (0.55, 1.42), (1.55, 1.24), (2.72, 0.92), (2.88, 0.74), (2.35, 0.46)]

    def ring(x, distance):
        return [(x, y, z) for z, y in inset(side, distance)]

    mesh.loft([ring(-0.95, 0.14), ring(-0.82, 0), ring(0.82, 0), ring(0.95, 0.14)], ARMOUR)
    # The upper works: lofted upwards, sloped on all sides.
    def deck(y, front, rear, half, cut):
        return [(half, y, rear + cut), (half, y, front - cut), (half - cut, y, front), (-half + cut, y, front), (-half, y, front - cut),
                (-half, y, rear + cut), (-half + cut, y, rear), (half - cut, y, rear)]

    mesh.loft([deck(1.30, 1.10, -2.60, 1.28, 0.22), deck(1.46, 1.15, -2.66, 1.36, 0.24), deck(1.78, 0.72, -2.40, 1.10, 0.20),
               deck(1.84, 0.64, -2.32, 1.02, 0.20)], ARMOUR)
    # Team plates: thin slabs on the slopes' upper deck.
    mesh.box((0.72, 1.85, -0.75), (0.34, 0.05, 2.6), TEAM, 0.015)
    mesh.box((-0.72, 1.85, -0.75), (0.34, 0.05, 2.6), TEAM, 0.015)
    # A ram at the bow.
    mesh.loft([[(x, y, 2.62) for x, y in ((0.78, 0.62), (0.78, 0.98), (-0.78, 0.98), (-0.78, 0.62))],
               [(x, y, 3.02) for x, y in ((0.55, 0.60), (0.55, 0.80), (-0.55, 0.80), (-0.55, 0.60))],
               [(x, y, 3.24) for x, y in ((0.16, 0.63), (0.16, 0.70), (-0.16, 0.70), (-0.16, 0.63))]], STEEL)
    mesh.bolts([(x, 1.02 + 0.045 * k, 2.30 - 0.17 * k) for x in (-0.6, 0.6) for k in range(3)], 0.045, 0.16, BRASS, "y")
    # The engine's grilles at the stern.
    for i in range(7):
        mesh.box((-0.54 + i * 0.18, 1.22, -2.70), (0.10, 0.26, 0.16), STEEL, 0.02)
    # Driver's visor and tow hooks.
    mesh.box((0.0, 1.36, 1.02), (0.86, 0.12, 0.34), STEEL, 0.03)
    mesh.box((0.0, 1.37, 1.19), (0.66, 0.05, 0.03), GLASS, 0.008)
    for x in (-0.5, 0.5):
        mesh.tube([(x, 0.60 + 0.10 * math.sin(TAU * k / 16), -2.62 - 0.13 * math.cos(TAU * k / 16)) for k in range(-4, 13, 2)], 0.03, 6, STEEL)
    # Lamps.
    for x in (-0.74, 0.74):
        mesh.lathe([(-0.16, 0.03), (-0.10, 0.10), (0.02, 0.12), (0.05, 0.12)], 12, BRASS, "z", (x, 1.26, 1.75), [True, True, False],
                   caps=(True, False))
        mesh.lathe([(0.03, 0.105), (0.06, 0.075), (0.07, 0.0)], 12, LAMP, "z", (x, 1.26, 1.75), True, caps=(True, False))
    return mesh


def make_fender():
    """The left side's skirt with its three ribs and a stowage box; the right side is the same one, mirrored."""
    mesh = Mesh("Fender")
    steps = 18
    rings = []
    for i in range(steps + 1):
        z = -2.55 + 4.95 * i / steps
        lift = 0.30 * math.cos(math.pi * (z + 0.08) / 5.2) - 0.12
        rings.append([(0.92, 1.18 + lift, z), (1.42, 1.16 + lift, z), (1.60, 1.02 + lift, z), (1.64, 0.78 + lift, z), (1.59, 0.78 + lift, z),
                      (1.55, 1.00 + lift, z), (1.40, 1.11 + lift, z), (0.92, 1.13 + lift, z)])
    mesh.loft(rings, ARMOUR, smooth=True)
    for i in (3, 9, 15):
        z = -2.55 + 4.95 * i / steps
        lift = 0.30 * math.cos(math.pi * (z + 0.08) / 5.2) - 0.12
        mesh.box((1.635, 0.93 + lift, z), (0.07, 0.40, 0.12), STEEL, 0.02)
        mesh.bolts([(1.66, 0.82 + lift, z), (1.66, 1.04 + lift, z)], 0.03, 0.04, BRASS)
    mesh.box((1.40, 1.40, -1.15), (0.36, 0.24, 0.90), STEEL, 0.04)
    for z in (-1.42, -0.88):
        mesh.box((1.40, 1.40, z), (0.39, 0.27, 0.06), BRASS, 0.02)
    # Team coloured shield on the skirt.
    mesh.loft([[(1.60, y, z) for y, z in ((0.78, 0.55), (1.02, 0.36), (1.26, 0.36), (1.26, 1.04), (1.02, 1.04), (0.78, 0.85))],
               [(1.69, y, z) for y, z in ((0.82, 0.57), (1.03, 0.40), (1.22, 0.40), (1.22, 1.00), (1.03, 1.00), (0.82, 0.83))]], TEAM)
    return mesh


def make_wheel():
    """Its axle is the X axis, its outer side looks to +X."""
    mesh = Mesh("Wheel")
    segments = 20
    tread = lambda ring, i: 1.05 if ring in (3, 4) and i % 2 else 1.0
    mesh.lathe([(-0.15, 0.30), (-0.18, 0.40), (-0.17, 0.49), (-0.12, 0.53), (0.12, 0.53), (0.17, 0.49), (0.18, 0.40), (0.15, 0.30)],
               segments, RUBBER, smooth=[True, True, False, False, False, True, True], wobble=tread)
    mesh.lathe([(0.10, 0.31), (0.17, 0.31), (0.17, 0.27), (0.10, 0.22), (0.12, 0.12), (0.20, 0.11), (0.24, 0.07)], segments // 2, STEEL,
               smooth=[False, False, True, True, False, False])
    mesh.bolts([(0.11, 0.17 * math.cos(TAU * i / 6), 0.17 * math.sin(TAU * i / 6)) for i in range(6)], 0.028, 0.05, BRASS, sides=4)
    return mesh


def make_turret():
    """Origin in the middle of its ring."""
    mesh = Mesh("Turret")
    mesh.lathe([(0.0, 0.86), (0.10, 0.86), (0.10, 0.80), (0.16, 0.80)], 24, STEEL, "y", smooth=[True, False, True])
    # The body: longer behind than before, smooth all round, with a hard rim where the top is set on.
    def ring(y, radius, back):
        points = []
        for i in range(24):
            a = TAU * i / 24
            x, z = radius * math.sin(a), radius * math.cos(a)
            points.append((x * 0.96, y, z * (1.0 if z > 0 else back)))
        return points

    mesh.loft([ring(0.14, 0.84, 1.25), ring(0.30, 0.90, 1.32), ring(0.46, 0.84, 1.30), ring(0.58, 0.70, 1.25), ring(0.62, 0.70, 1.25),
               ring(0.68, 0.58, 1.2), ring(0.71, 0.36, 1.1), ring(0.72, 0.10, 1.0)],
              [ARMOUR, ARMOUR, ARMOUR, TEAM, TEAM, ARMOUR, ARMOUR], [True, True, True, False, True, True, True])
    # The mantlet in front, where the gun sits.
    mesh.loft([[(x, y, 0.58) for x, y in ((0.46, 0.14), (0.46, 0.56), (-0.46, 0.56), (-0.46, 0.14))],
               [(x, y, 0.98) for x, y in ((0.38, 0.18), (0.38, 0.50), (-0.38, 0.50), (-0.38, 0.18))]], ARMOUR)
    mesh.bolts([(x, y, 0.96) for x in (-0.31, 0.31) for y in (0.23, 0.45)], 0.035, 0.05, BRASS, "z")
    # Hatch with its handle, periscope with its glass.
    mesh.lathe([(0.64, 0.30), (0.78, 0.28), (0.82, 0.22), (0.83, 0.04)], 18, STEEL, "y", (0.30, 0.0, -0.30), [True, False, True])
    mesh.tube([(0.30, 0.80 + 0.09 * math.sin(math.pi * k / 8), -0.30 + 0.12 * math.cos(math.pi * k / 8)) for k in range(9)], 0.02, 6, BRASS)
    mesh.box((-0.34, 0.78, 0.16), (0.20, 0.22, 0.20), STEEL, 0.03)
    mesh.box((-0.34, 0.80, 0.265), (0.14, 0.10, 0.02), GLASS, 0.008)
    mesh.bolts([(0.86 * 0.93 * math.sin(a), 0.10, 0.86 * 0.93 * math.cos(a)) for a in (TAU * i / 12 for i in range(12))], 0.03, 0.035, BRASS, "y")
    return mesh


def make_gun():
    """Origin in the trunnion, barrel along +Z."""
    mesh = Mesh("Gun")
    mesh.lathe([(-0.10, 0.16), (0.10, 0.20), (0.26, 0.17), (0.34, 0.115), (0.95, 0.100), (0.95, 0.125), (1.35, 0.125), (1.35, 0.085),
                (2.30, 0.070), (2.30, 0.115), (2.62, 0.115), (2.66, 0.095), (2.66, 0.055), (2.40, 0.050)], 20,
               [ARMOUR] * 3 + [STEEL, BRASS, BRASS, BRASS, STEEL, STEEL, STEEL, STEEL, STEEL, STEEL], "z",
               smooth=[True, True, True, True, False, True, False, True, False, True, True, False, True])
    for x in (-0.13, 0.13):
        mesh.box((x, 0.0, 2.46), (0.05, 0.10, 0.12), STEEL, 0.015)
    mesh.lathe([(0.0, 0.035), (0.75, 0.03), (0.80, 0.02)], 10, STEEL, "z", (0.26, 0.02, 0.1), [True, False])
    return mesh


def make_banner():
    """Origin at the foot of the pole. The cloth hangs from the yard and is one grid, to be given bones later."""
    mesh = Mesh("Banner")
    mesh.lathe([(0.0, 0.05), (0.08, 0.05), (0.08, 0.028), (2.15, 0.022)], 10, STEEL, "y", smooth=[True, False, True])
    mesh.lathe([(2.13, 0.02), (2.17, 0.06), (2.22, 0.065), (2.27, 0.03), (2.42, 0.0)], 10, BRASS, "y", smooth=[True, True, True, False],
               caps=(True, False))
    mesh.lathe([(-0.56, 0.0), (-0.52, 0.035), (-0.48, 0.02), (0.48, 0.02), (0.52, 0.035), (0.56, 0.0)], 8, BRASS, "x", (0, 2.02, 0.03), True,
               caps=(False, False))
    columns, rows = 12, 14
    group = mesh.new_group()

    def point(i, j):
        u, v = i / columns, j / rows
        tail = 0.16 * (1 - abs(2 * u - 1)) if j == rows else 0.0  # swallow-tailed
        return (grid(-0.44 + 0.88 * u), grid(2.00 - 1.30 * v + tail), grid(0.03 - v * (0.10 * math.sin(5.2 * u + 3.5 * v) + 0.16)))

    for j in range(rows):
        for i in range(columns):
            quad = [(i, j), (i, j + 1), (i + 1, j + 1), (i + 1, j)]
            corners = [(point(*c), (c[0] / columns, c[1] / rows)) for c in quad]
            for t in ((0, 1, 2), (0, 2, 3)):
                mesh.faces.append((CLOTH, group, tuple(corners[k] for k in t)))
    return mesh


def make_exhaust():
    """The left stack, origin where it leaves the deck."""
    mesh = Mesh("Exhaust")
    bend = [(0, 0.16 * math.sin(math.pi / 2 * k / 6), -0.16 * (1 - math.cos(math.pi / 2 * k / 6))) for k in range(7)]
    path = [(0, -0.30, 0.0), (0, -0.12, 0.0)] + [(0, 0.30 + p[1], p[2]) for p in bend] + [(0, 0.48, -0.42)]
    mesh.tube(path, [0.075] * (len(path) - 1) + [0.095], 12, STEEL)
    mesh.lathe([(-0.06, 0.13), (0.0, 0.13), (0.04, 0.09), (0.22, 0.09), (0.26, 0.12), (0.30, 0.12)], 12, BRASS, "y",
               smooth=[True, False, True, False, True])
    return mesh


def normals(mesh):
    """Per face three normals: of its own group at its corners, or of the face alone in group 0."""
    flat = [unit(cross(sub(t[1][0], t[0][0]), sub(t[2][0], t[0][0]))) for _, _, t in mesh.faces]
    sums = {}
    for (_, group, t), n in zip(mesh.faces, flat):
        if group:
            for p, _ in t:
                s = sums.setdefault((p, group), [0.0, 0.0, 0.0])
                for c in range(3):
                    s[c] += n[c]
    rounded = lambda n: tuple(round(x, 6) + 0.0 for x in unit(n))
    return [tuple(rounded(sums[(p, group)]) if group else rounded(n) for p, _ in t) for (_, group, t), n in zip(mesh.faces, flat)]


class Glb:
    def __init__(self):
        self.data = bytearray()
        self.views = []
        self.accessors = []

    def accessor(self, values, kind, component, target):
        form = {5126: "f", 5123: "H"}[component]
        width = {"SCALAR": 1, "VEC2": 2, "VEC3": 3}[kind]
        self.data += b"\0" * (-len(self.data) % 4)
        flat = [x for v in values for x in v] if width > 1 else values
        raw = struct.pack("<%d%s" % (len(flat), form), *flat)
        self.views.append({"buffer": 0, "byteOffset": len(self.data), "byteLength": len(raw), "target": target})
        self.data += raw
        entry = {"bufferView": len(self.views) - 1, "componentType": component, "count": len(values), "type": kind}
        if kind == "VEC3":
            single = [struct.unpack("<3f", struct.pack("<3f", *v)) for v in values]
            entry["min"] = [min(v[c] for v in single) for c in range(3)]
            entry["max"] = [max(v[c] for v in single) for c in range(3)]
        self.accessors.append(entry)
        return len(self.accessors) - 1

    def mesh(self, mesh):
        primitives = []
        face_normals = normals(mesh)
        for material in sorted({f[0] for f in mesh.faces}):
            seen, vertices, indices = {}, [], []
            for (face_material, _, t), ns in zip(mesh.faces, face_normals):
                if face_material != material:
                    continue
                for (p, uv), n in zip(t, ns):
                    key = (p, n, tuple(round(x, 5) for x in uv))
                    if key not in seen:
                        seen[key] = len(vertices)
                        vertices.append(key)
                    indices.append(seen[key])
            attributes = {name: self.accessor([v[i] for v in vertices], kind, 5126, 34962)
                          for i, (name, kind) in enumerate((("POSITION", "VEC3"), ("NORMAL", "VEC3"), ("TEXCOORD_0", "VEC2")))}
            primitives.append({"attributes": attributes, "indices": self.accessor(indices, "SCALAR", 5123, 34963), "material": material})
        return {"name": mesh.name, "primitives": primitives}

    def write(self, path, document):
        self.data += b"\0" * (-len(self.data) % 4)
        document.update(bufferViews=self.views, accessors=self.accessors, buffers=[{"byteLength": len(self.data)}])
        text = json.dumps(document, separators=(",", ":")).encode()
        text += b" " * (-len(text) % 4)
        with open(path, "wb") as out:
            out.write(struct.pack("<4sII", b"glTF", 2, 12 + 8 + len(text) + 8 + len(self.data)))
            out.write(struct.pack("<I4s", len(text), b"JSON") + text)
            out.write(struct.pack("<I4s", len(self.data), b"BIN\0") + self.data)


def material(name, colour, traits):
    entry = {"name": name, "pbrMetallicRoughness": {"baseColorFactor": list(colour) + [1.0] * (4 - len(colour)),
                                                     "metallicFactor": 0.0, "roughnessFactor": traits["roughness"]}}
    if "emissive" in traits:
        entry["emissiveFactor"] = list(traits["emissive"])
    for key in ("doubleSided", "alphaMode"):
        if key in traits:
            entry[key] = traits[key]
    return entry


def look_at(eye, target):
    """The rotation of a camera at `eye`, which looks along its own -Z."""
    back = unit(sub(eye, target))
    right = unit(cross((0.0, 1.0, 0.0), back))
    up = cross(back, right)
    w = math.sqrt(1 + right[0] + up[1] + back[2]) / 2
    return [round(x, 6) for x in ((up[2] - back[1]) / (4 * w), (back[0] - right[2]) / (4 * w), (right[1] - up[0]) / (4 * w), w)]


class Nodes:
    """The node list. Children are named when they are added under a parent that is there already."""

    def __init__(self):
        self.list = []
        self.index = {}

    def add(self, name, parent=None, at=None, **members):
        node = {"name": name}
        if at:
            node["translation"] = list(at)
        node.update(members)
        self.index[name] = len(self.list)
        self.list.append(node)
        if parent:
            self.list[self.index[parent]].setdefault("children", []).append(self.index[name])


def build():
    glb = Glb()
    makers = [make_hull, make_fender, make_wheel, make_turret, make_gun, make_banner, make_exhaust]
    parts = [maker() for maker in makers]
    meshes = [glb.mesh(part) for part in parts]
    hull, fender, wheel, turret, gun, banner, exhaust = range(len(parts))
    mirrored = [-1.0, 1.0, 1.0]

    nodes = Nodes()
    nodes.add("Vanguard")
    nodes.add("Hull", "Vanguard", mesh=hull)
    nodes.add("Fender_L", "Hull", mesh=fender)
    nodes.add("Fender_R", "Hull", mesh=fender, scale=mirrored)
    for number, z in enumerate((1.92, 0.70, -0.66, -1.90), 1):
        nodes.add("Wheel_L%d" % number, "Hull", (1.22, 0.53, z), mesh=wheel)
        nodes.add("Wheel_R%d" % number, "Hull", (-1.22, 0.53, z), mesh=wheel, scale=mirrored)
    nodes.add("Turret", "Hull", (0.0, 1.84, -0.62), mesh=turret)
    nodes.add("Gun", "Turret", (0.0, 0.34, 0.92), mesh=gun, rotation=[round(-math.sin(math.radians(3)), 6), 0.0, 0.0, round(math.cos(math.radians(3)), 6)])
    nodes.add("Muzzle", "Gun", (0.0, 0.0, 2.68))
    # Cloth is drawn after everything solid, is left out at low detail, and isn't there to be clicked at.
    nodes.add("Banner", "Hull", (-0.55, 1.80, -2.20), mesh=banner,
              extras={"RenderPriority": 10, "MeshMinDetail": "Medium", "No_Child_Selection": True})
    for side, x in (("L", 0.62), ("R", -0.62)):
        nodes.add("Exhaust_" + side, "Hull", (x + (0.3 if x > 0 else 0.0), 1.84, -1.75), mesh=exhaust,
                  **({} if side == "L" else {"scale": mirrored}))
        nodes.add("Smoke_" + side, "Exhaust_" + side, (0.0, 0.48, -0.42))
    nodes.list[nodes.index["Exhaust_R"]]["translation"][0] = -0.92
    eye, target = (5.6, 3.6, 7.2), (0.0, 1.35, 0.1)
    nodes.add("Camera_Show", "Vanguard", eye, camera=0, rotation=look_at(eye, target))

    distance = math.sqrt(dot(sub(eye, target), sub(eye, target)))
    document = {
        "asset": {"version": "2.0", "generator": "make_vanguard.py"},
        "scene": 0,
        "scenes": [{"name": "Vanguard", "nodes": [0], "extras": {"Project": "Vanguard", "Unit": "war wagon"}}],
        "nodes": nodes.list,
        "meshes": meshes,
        "materials": [material(*m) for m in MATERIALS],
        "cameras": [{"name": "Show", "type": "perspective",
                     "perspective": {"yfov": 0.6, "aspectRatio": 1.5, "znear": 0.1, "zfar": 100.0},
                     "extras": {"host": {"clip": [0.1, 100.0], "targetDistance": round(distance, 4)}}}],
    }
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "Vanguard.glb")
    glb.write(path, document)
    faces = {part.name: len(part.faces) for part in parts}
    placed = sum(faces[meshes[n["mesh"]]["name"]] for n in nodes.list if "mesh" in n)
    print("%s: %d bytes, %d nodes, %d triangles placed (%s)" % (os.path.basename(path), os.path.getsize(path), len(nodes.list), placed,
                                                               ", ".join("%s %d" % f for f in faces.items())))


build()
