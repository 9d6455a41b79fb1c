"""Surfaces of triangles, put together from lofts, lathes, pipes and boxes."""
import math

TAU = 2 * math.pi


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
    """Triangles with a material and a smoothing group each; group 0 is hard on every side.

    While `bind` is set, what is added hangs on bones: it gives (bone, weight) pairs for a position.
    """

    def __init__(self, name):
        self.name = name
        self.faces = []  # (material, group, ((position, uv), ...), bind)
        self.groups = 0
        self.bind = None

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
            self.faces.append((material, group, t if volume >= 0 else (t[0], t[2], t[1]), self.bind))

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

    def box_map(self, material, metres):
        """Lays a texture of that size straight onto the faces of a material, each from the side that it looks to."""
        def mapped(t):
            n = [abs(x) for x in face_normal(t)]
            axis = n.index(max(n))
            a, b = ((2, 1), (0, 2), (0, 1))[axis]
            return tuple((p, (p[a] / metres, -p[b] / metres)) for p, _ in t)

        self.faces = [(m, g, mapped(t) if m == material else t, bind) for m, g, t, bind in self.faces]

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


def face_normal(t):
    return unit(cross(sub(t[1][0], t[0][0]), sub(t[2][0], t[0][0])))


def normals(mesh):
    """Per face three normals: of its own group at its corners, or of the face alone in group 0."""
    flat = [face_normal(t) for _, _, t, _ in mesh.faces]
    sums = {}
    for (_, group, t, _), n in zip(mesh.faces, flat):
        if group:
            for p, _ in t:
                s = sums.setdefault((p, group), [0.0, 0.0, 0.0])
                for c in range(3):
                    s[c] += n[c]
    rounded = lambda n: tuple(round(x, 6) + 0.0 for x in unit(n))
    return [tuple(rounded(sums[(p, group)]) if group else rounded(n) for p, _ in t) for (_, group, t, _), n in zip(mesh.faces, flat)]
