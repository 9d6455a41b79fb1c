#!/usr/bin/env python3
"""Makes Vanguard.glb, the sample's war wagon with its guard, beside this script, and the team's textures.

Plain Python without packages, and the same bytes on every machine: coordinates are rounded to what a file holds anyway,
nothing is drawn by lot. Metres, Y up, the wagon looks along +Z, so that its left side is +X.

The parts that a game moves are nodes of their own (turret, gun, wheels, banner), with their origin where they turn.
"""
import math
import os

import clips
import pictures
from figure import PLACE, all_bones, make_guard, make_halberd
from glb import FLOAT, Glb, Nodes, look_at, turn
from mesh import TAU, Mesh, dot, grid, sub

# Shared by every unit of the team, by its name; its layers lie beside it under their own.
TEAM_TEXTURE = "texture_share/vanguard_team"
TEXTURES = ["plate", "tread", "cloth", TEAM_TEXTURE]

# Name, base colour, and what else glTF says of it. The textures carry their own colour.
WHITE = (1.0, 1.0, 1.0)
MATERIALS = [
    ("Vanguard_Armour", WHITE, {"roughness": 0.6, "texture": "plate"}),
    ("Vanguard_Steel", (0.23, 0.24, 0.26), {"roughness": 0.35}),
    ("Vanguard_Rubber", WHITE, {"roughness": 0.95, "texture": "tread", "transform": {"scale": [10.0, 2.0], "offset": [0.0, 0.25]}}),
    ("Vanguard_Team", WHITE, {"roughness": 0.5, "texture": TEAM_TEXTURE}),
    ("Vanguard_Cloth", WHITE, {"roughness": 1.0, "doubleSided": True, "alphaMode": "BLEND", "texture": "cloth"}),
    ("Vanguard_Brass", (0.76, 0.58, 0.24), {"roughness": 0.25}),
    ("Vanguard_Lamp", (0.95, 0.90, 0.70), {"roughness": 0.2, "emissive": (1.0, 0.9, 0.6),
                                           "extras": {"host": {"selfIllum": 0.4, "tracks": {"selfIllum": clips.ALARM_LAMPS}}}}),
    ("Vanguard_Glass", (0.35, 0.55, 0.60, 0.45), {"roughness": 0.1, "alphaMode": "BLEND"}),
]
ARMOUR, STEEL, RUBBER, TEAM, CLOTH, BRASS, LAMP, GLASS = range(len(MATERIALS))
BY_NAME = {name.split("_")[1]: i for i, (name, _, _) in enumerate(MATERIALS)}


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
    """The pole and its yard, origin at the foot."""
    mesh = Mesh("Banner")
    mesh.lathe([(0.0, 0.05), (0.08, 0.05), (0.08, 0.028), (2.15, 0.022)], 10, STEEL, "y", smooth=[True, False, True])
    mesh.lathe([(2.13, 0.02), (2.17, 0.06), (2.22, 0.065), (2.27, 0.03), (2.42, 0.0)], 10, BRASS, "y", smooth=[True, True, True, False],
               caps=(True, False))
    mesh.lathe([(-0.56, 0.0), (-0.52, 0.035), (-0.48, 0.02), (0.48, 0.02), (0.52, 0.035), (0.56, 0.0)], 8, BRASS, "x", (0, 2.02, 0.03), True,
               caps=(False, False))
    return mesh


def make_cloth():
    """The cloth that hangs from the banner's yard, in the banner's place: one grid over a row of bones."""
    mesh = Mesh("Banner_Cloth")
    columns, rows = 12, 14
    group = mesh.new_group()

    def bind(p):
        place = max(0.0, min(3.0, (1.92 - p[1]) / 0.36))
        lower = int(min(place, 2.0))
        return [(clips.CLOTH_BONES[lower], 1 - (place - lower)), (clips.CLOTH_BONES[lower + 1], place - lower)]

    def point(i, j):
        u, v = i / columns, j / rows
        return (grid(-0.44 + 0.88 * u), grid(2.00 - 1.30 * v), grid(0.03 - v * (0.10 * math.sin(5.2 * u + 3.5 * v) + 0.16)))

    for j in range(rows):
        for i in range(columns):
            quad = [(i, j), (i, j + 1), (i + 1, j + 1), (i + 1, j)]
            corners = [(point(*c), (c[0] / columns, c[1] / rows)) for c in quad]
            for t in ((0, 1, 2), (0, 2, 3)):
                mesh.faces.append((CLOTH, group, tuple(corners[k] for k in t), bind))
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


def material(name, colour, traits):
    entry = {"name": name, "pbrMetallicRoughness": {"baseColorFactor": list(colour) + [1.0] * (4 - len(colour)),
                                                     "metallicFactor": 0.0, "roughnessFactor": traits["roughness"]}}
    if "texture" in traits:
        texture = {"index": TEXTURES.index(traits["texture"])}
        if "transform" in traits:
            texture["extensions"] = {"KHR_texture_transform": traits["transform"]}
        entry["pbrMetallicRoughness"]["baseColorTexture"] = texture
    if "emissive" in traits:
        entry["emissiveFactor"] = list(traits["emissive"])
    for key in ("doubleSided", "alphaMode", "extras"):
        if key in traits:
            entry[key] = traits[key]
    return entry


def image(glb, name):
    """Inside the file, but for the team's, which is a file of its own so that other units can use it."""
    if name == TEAM_TEXTURE:
        return {"name": "vanguard_team", "uri": name + ".tga"}
    png = getattr(pictures, name)().png(alpha=name == "cloth")
    return {"name": "vanguard_" + name, "mimeType": "image/png", "bufferView": glb.view(png)}


def write_team_textures(folder):
    os.makedirs(os.path.join(folder, os.path.dirname(TEAM_TEXTURE)), exist_ok=True)
    files = {"": pictures.team(), **{"_default_" + name: layer for name, layer in pictures.team_layers().items()}}
    for suffix, picture in files.items():
        with open(os.path.join(folder, TEAM_TEXTURE + suffix + ".tga"), "wb") as out:
            out.write(picture.tga())


class Scene:
    """Nodes, and the meshes and skins that they refer to."""

    def __init__(self):
        self.glb = Glb()
        self.nodes = Nodes()
        self.meshes = []
        self.skins = []
        self.faces = {}

    def mesh(self, mesh, bones=()):
        mesh.box_map(ARMOUR, 1.7)
        mesh.box_map(TEAM, 1.4)
        self.meshes.append(self.glb.mesh(mesh, bones))
        self.faces[len(self.meshes) - 1] = len(mesh.faces)
        return len(self.meshes) - 1

    def skin(self, bones, mesh_place):
        """The mesh is modelled around `mesh_place`, and no bone is turned."""
        matrices = []
        for bone in bones:
            at = self.nodes.place(bone)
            matrices.append((1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0) + tuple(round(m - b, 6) for m, b in zip(mesh_place, at)) + (1,))
        self.skins.append({"inverseBindMatrices": self.glb.accessor(matrices, "MAT4", FLOAT),
                           "joints": [self.nodes.index[b] for b in bones]})
        return len(self.skins) - 1


GUN_AT, GUN_REST = (0.0, 0.34, 0.92), -3


def add_wagon(scene):
    nodes = scene.nodes
    hull, fender, wheel, turret, gun, banner, exhaust = (
        scene.mesh(make()) for make in (make_hull, make_fender, make_wheel, make_turret, make_gun, make_banner, make_exhaust))
    mirrored = [-1.0, 1.0, 1.0]
    nodes.add("Hull", "Vanguard", mesh=hull)
    nodes.add("Fender_L", "Hull", mesh=fender)
    nodes.add("Fender_R", "Hull", mesh=fender, scale=mirrored)
    for number, z in enumerate((1.92, 0.70, -0.66, -1.90), 1):
        nodes.add("Wheel_L%d" % number, "Hull", (1.22, 0.53, z), mesh=wheel)
        nodes.add("Wheel_R%d" % number, "Hull", (-1.22, 0.53, z), mesh=wheel, scale=mirrored)
    nodes.add("Turret", "Hull", (0.0, 1.84, -0.62), mesh=turret)
    nodes.add("Gun", "Turret", GUN_AT, mesh=gun, rotation=list(turn("x", GUN_REST)))
    nodes.add("Muzzle", "Gun", (0.0, 0.0, 2.68))
    nodes.add("Banner", "Hull", (-0.55, 1.80, -2.20), mesh=banner)
    for side, x in (("L", 0.92), ("R", -0.92)):
        nodes.add("Exhaust_" + side, "Hull", (x, 1.84, -1.75), mesh=exhaust, **({} if side == "L" else {"scale": mirrored}))
        nodes.add("Smoke_" + side, "Exhaust_" + side, (0.0, 0.48, -0.42))


def add_cloth(scene):
    parent, y = "Banner", 2.00
    for bone in clips.CLOTH_BONES:
        scene.nodes.add(bone, parent, (0.0, y, 0.03) if parent == "Banner" else (0.0, -0.36, 0.0))
        parent = bone
    skin = scene.skin(clips.CLOTH_BONES, scene.nodes.place("Banner"))
    # Cloth is drawn after everything solid, is left out at low detail, and isn't there to be clicked at.
    scene.nodes.add("Banner_Cloth", "Vanguard", mesh=scene.mesh(make_cloth(), clips.CLOTH_BONES), skin=skin,
                    extras={"RenderPriority": 10, "MeshMinDetail": "Medium", "No_Child_Selection": True})


def add_guard(scene):
    places = {}
    scene.nodes.add("Guard_Place", "Vanguard", PLACE)
    for bone, parent, at in all_bones():
        places[bone] = at
        above = places[parent] if parent else (0.0, 0.0, 0.0)
        scene.nodes.add(bone, parent or "Guard_Place", tuple(round(c - p, 6) for c, p in zip(at, above)))
    bones = list(places)
    scene.nodes.add("Guard", "Vanguard", mesh=scene.mesh(make_guard(BY_NAME), bones), skin=scene.skin(bones, (0.0, 0.0, 0.0)))
    scene.nodes.add("Halberd", "Guard_Hand_R", (0.0, -0.03, 0.07), mesh=scene.mesh(make_halberd(BY_NAME)))
    scene.nodes.add("Halberd_Tip", "Halberd", (0.0, 1.66, 0.0))
    scene.nodes.add("Guard_Eyes", "Guard_Head", (0.0, 0.105, 0.15))


def build(folder):
    scene = Scene()
    scene.nodes.add("Vanguard")
    add_wagon(scene)
    add_cloth(scene)
    add_guard(scene)
    eye = (6.9, 3.3, 8.0)
    scene.nodes.add("Camera_Show", "Vanguard", eye, camera=0, rotation=look_at(eye, clips.FOCUS))
    away = sub(eye, clips.FOCUS)
    animations = {"March": clips.march(), "Aim": clips.aim(GUN_AT, GUN_REST), "Flyby": clips.flyby(), "Alarm": clips.alarm()}
    document = {
        "asset": {"version": "2.0", "generator": "make_vanguard.py"},
        "extensionsUsed": ["KHR_texture_transform"],
        "scene": 0,
        "scenes": [{"name": "Vanguard", "nodes": [0], "extras": {"Project": "Vanguard", "Unit": "war wagon"}}],
        "nodes": scene.nodes.list,
        "meshes": scene.meshes,
        "skins": scene.skins,
        "animations": [scene.glb.animation(name, scene.nodes, tracks) for name, tracks in animations.items()],
        "materials": [material(*m) for m in MATERIALS],
        "textures": [{"source": i, "sampler": 0} for i in range(len(TEXTURES))],
        "samplers": [{"magFilter": 9729, "minFilter": 9987, "wrapS": 10497, "wrapT": 10497}],
        "images": [image(scene.glb, name) for name in TEXTURES],
        "cameras": [{"name": "Show", "type": "perspective",
                     "perspective": {"yfov": 0.6, "aspectRatio": 1.5, "znear": 0.1, "zfar": 100.0},
                     "extras": {"host": {"clip": [0.1, 100.0], "targetDistance": round(math.sqrt(dot(away, away)), 4)}}}],
    }
    path = os.path.join(folder, "Vanguard.glb")
    scene.glb.write(path, document)
    write_team_textures(folder)
    placed = sum(scene.faces[n["mesh"]] for n in scene.nodes.list if "mesh" in n)
    print("%s: %d bytes, %d nodes, %d triangles placed, clips %s" % (os.path.basename(path), os.path.getsize(path), len(scene.nodes.list),
                                                                    placed, ", ".join(animations)))


build(os.path.dirname(os.path.abspath(__file__)))
