"""The scene's file: buffers, nodes, animations."""
import json
import math
import struct

from mesh import cross, normals, sub, unit


FLOAT, SHORT, BYTE = 5126, 5123, 5121
VERTICES, INDICES = 34962, 34963
WIDTHS = {"SCALAR": 1, "VEC2": 2, "VEC3": 3, "VEC4": 4, "MAT4": 16}


class Glb:
    def __init__(self):
        self.data = bytearray()
        self.views = []
        self.accessors = []

    def view(self, raw, **members):
        self.data += b"\0" * (-len(self.data) % 4)
        self.views.append({"buffer": 0, "byteOffset": len(self.data), "byteLength": len(raw), **members})
        self.data += raw
        return len(self.views) - 1

    def accessor(self, values, kind, component, **members):
        form = {FLOAT: "f", SHORT: "H", BYTE: "B"}[component]
        flat = [x for v in values for x in v] if WIDTHS[kind] > 1 else values
        view = self.view(struct.pack("<%d%s" % (len(flat), form), *flat), **members)
        entry = {"bufferView": view, "componentType": component, "count": len(values), "type": kind}
        if kind == "VEC3" or not members:
            width = WIDTHS[kind]
            single = struct.unpack("<%df" % len(flat), struct.pack("<%df" % len(flat), *flat))
            entry["min"] = [min(single[c::width]) for c in range(width)]
            entry["max"] = [max(single[c::width]) for c in range(width)]
        self.accessors.append(entry)
        return len(self.accessors) - 1

    def mesh(self, mesh, bones=()):
        """`bones` are the names that the mesh's weights use, in the order of its skin."""
        primitives = []
        face_normals = normals(mesh)
        for material in sorted({f[0] for f in mesh.faces}):
            seen, vertices, indices = {}, [], []
            for (face_material, _, t, bind), ns in zip(mesh.faces, face_normals):
                if face_material != material:
                    continue
                for (p, uv), n in zip(t, ns):
                    key = (p, n, tuple(round(x, 5) for x in uv), influences(bind, p, bones))
                    if key not in seen:
                        seen[key] = len(vertices)
                        vertices.append(key)
                    indices.append(seen[key])
            primitives.append({"attributes": self.attributes(vertices, bones), "material": material,
                               "indices": self.accessor(indices, "SCALAR", SHORT, target=INDICES)})
        return {"name": mesh.name, "primitives": primitives}

    def attributes(self, vertices, bones):
        found = {name: self.accessor([v[i] for v in vertices], kind, FLOAT, target=VERTICES)
                 for i, (name, kind) in enumerate((("POSITION", "VEC3"), ("NORMAL", "VEC3"), ("TEXCOORD_0", "VEC2")))}
        if bones:
            found["JOINTS_0"] = self.accessor([v[3][0] for v in vertices], "VEC4", BYTE, target=VERTICES)
            found["WEIGHTS_0"] = self.accessor([v[3][1] for v in vertices], "VEC4", FLOAT, target=VERTICES)
        return found

    def animation(self, name, nodes, tracks):
        """`tracks`: (node, path, times, values), and "CUBICSPLINE" or "STEP" as a fifth for what isn't linear."""
        samplers, channels, inputs = [], [], {}
        for node, path, times, values, *interpolation in tracks:
            key = tuple(times)
            if key not in inputs:
                inputs[key] = self.accessor(list(times), "SCALAR", FLOAT)
            kind = "VEC4" if path == "rotation" else "VEC3"
            samplers.append({"input": inputs[key], "output": self.accessor([tuple(v) for v in values], kind, FLOAT),
                             "interpolation": (interpolation or ["LINEAR"])[0]})
            channels.append({"sampler": len(samplers) - 1, "target": {"node": nodes.index[node], "path": path}})
        return {"name": name, "samplers": samplers, "channels": channels}

    def write(self, path, document):
        self.data += b"\0" * (-len(self.data) % 4)
        document.update(bufferViews=self.views, accessors=self.accessors, buffers=[{"byteLength": len(self.data)}])
        text = json.dumps(document, separators=(",", ":")).encode()
        text += b" " * (-len(text) % 4)
        with open(path, "wb") as out:
            out.write(struct.pack("<4sII", b"glTF", 2, 12 + 8 + len(text) + 8 + len(self.data)))
            out.write(struct.pack("<I4s", len(text), b"JSON") + text)
            out.write(struct.pack("<I4s", len(self.data), b"BIN\0") + self.data)


def influences(bind, position, bones):
    """Four bones and four weights, which are whole sixteenths and so add up to 1 exactly."""
    if not bones:
        return None
    pairs = sorted(((round(w * 16), bones.index(b)) for b, w in bind(position)), reverse=True)
    pairs = [(w, b) for w, b in pairs if w > 0]
    first = 16 - sum(w for w, _ in pairs[1:])
    pairs = [(first, pairs[0][1])] + pairs[1:] + [(0, 0)] * (4 - len(pairs))
    return tuple(b for _, b in pairs), tuple(w / 16 for w, _ in pairs)


class Nodes:
    """The node list. Children are named when they are added under a parent that is there already."""

    def __init__(self):
        self.list = []
        self.index = {}
        self.parent = {}

    def add(self, name, parent=None, at=None, **members):
        node = {"name": name}
        if at:
            node["translation"] = list(at)
        node.update(members)
        self.index[name] = len(self.list)
        self.list.append(node)
        self.parent[name] = parent
        if parent:
            self.list[self.index[parent]].setdefault("children", []).append(self.index[name])


    def place(self, name):
        """Where a node stands in the scene, if nothing above it is turned."""
        place = (0.0, 0.0, 0.0)
        while name:
            node = self.list[self.index[name]]
            assert "scale" not in node and "rotation" not in node, name
            place = tuple(a + b for a, b in zip(place, node.get("translation", (0, 0, 0))))
            name = self.parent[name]
        return place


def turn(axis, degrees):
    """A rotation about "x", "y" or "z"."""
    half = math.radians(degrees) / 2
    return tuple(round(math.sin(half), 6) if axis == a else 0.0 for a in "xyz") + (round(math.cos(half), 6),)


def look_at(eye, target):
    """The rotation of a camera at `eye`, which looks along its own -Z."""
    back = unit(sub(eye, target))
    right = unit(cross((0.0, 1.0, 0.0), back))
    up = cross(back, right)
    w = math.sqrt(1 + right[0] + up[1] + back[2]) / 2
    return [round(x, 6) for x in ((up[2] - back[1]) / (4 * w), (back[0] - right[2]) / (4 * w), (right[1] - up[0]) / (4 * w), w)]
