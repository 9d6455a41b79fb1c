"""The guard, a skinned figure, and its halberd. It stands in the scene's own place, so that its bones need no rotation."""
from mesh import TAU, Mesh

import math

PLACE = (2.75, 0.0, 2.85)

# Bone, the one it hangs on, and where it stands, from the guard's own place. Those of the left side have a right one.
BONES = [
    ("Guard_Root", None, (0.0, 0.0, 0.0)),
    ("Guard_Pelvis", "Guard_Root", (0.0, 1.0, 0.0)),
    ("Guard_Spine", "Guard_Pelvis", (0.0, 1.16, 0.0)),
    ("Guard_Head", "Guard_Spine", (0.0, 1.58, 0.0)),
    ("Guard_Arm_L", "Guard_Spine", (0.25, 1.48, 0.0)),
    ("Guard_Forearm_L", "Guard_Arm_L", (0.31, 1.19, 0.0)),
    ("Guard_Hand_L", "Guard_Forearm_L", (0.33, 0.93, 0.02)),
    ("Guard_Thigh_L", "Guard_Pelvis", (0.12, 0.94, 0.0)),
    ("Guard_Shin_L", "Guard_Thigh_L", (0.13, 0.52, 0.0)),
    ("Guard_Foot_L", "Guard_Shin_L", (0.13, 0.10, -0.02)),
]


def other_side(name):
    return name[:-1] + "R" if name and name.endswith("_L") else name


def all_bones():
    """Parents ahead of their children."""
    mirrored = [(other_side(n), other_side(p), (-at[0], at[1], at[2])) for n, p, at in BONES if n.endswith("_L")]
    return BONES + mirrored


def chain(first, joints, blend=0.10):
    """Weights along a limb that goes down: each joint hands over to the next bone at its height."""
    def bind(position):
        weights = [[first, 1.0]]
        for bone, height in joints:
            share = min(1.0, max(0.0, (height + blend / 2 - (position[1] - PLACE[1])) / blend))
            weights.append([bone, weights[-1][1] * share])
            weights[-2][1] *= 1 - share
        return weights

    return bind


def rigid(bone):
    return lambda position: [(bone, 1.0)]


def at(x, y, z):
    return (PLACE[0] + x, PLACE[1] + y, PLACE[2] + z)


def rings(profile, x=0.0, z=0.0, count=14):
    """Ellipses on top of each other; of (height, half width, half depth)."""
    return [[at(x + rx * math.sin(TAU * i / count), y, z + rz * math.cos(TAU * i / count)) for i in range(count)]
            for y, rx, rz in profile]


def make_guard(materials):
    mesh = Mesh("Guard")
    armour, steel, team, brass, lamp = (materials[n] for n in ("Armour", "Steel", "Team", "Brass", "Lamp"))
    body = chain("Guard_Head", [("Guard_Spine", 1.56), ("Guard_Pelvis", 1.14)], 0.12)
    mesh.bind = body
    mesh.loft(rings([(0.88, 0.15, 0.115), (0.97, 0.175, 0.135), (1.06, 0.155, 0.12), (1.09, 0.155, 0.12), (1.13, 0.145, 0.11),
                     (1.27, 0.185, 0.135), (1.40, 0.215, 0.15), (1.49, 0.17, 0.12), (1.54, 0.075, 0.075)]),
              [steel, steel, brass, armour, armour, armour, armour, steel], True)
    mesh.loft(rings([(1.28, 0.10, 0.03), (1.33, 0.15, 0.06), (1.44, 0.14, 0.06), (1.47, 0.10, 0.03)], z=0.10), team, [False, True, False])
    # The skirt's plates hang on the pelvis, the pack on the back.
    mesh.bind = rigid("Guard_Pelvis")
    for i in range(6):
        angle = TAU * (i + 0.5) / 6
        mesh.box(at(0.165 * math.sin(angle), 0.86, 0.13 * math.cos(angle)), (0.11, 0.20, 0.06), armour if i % 2 else team, 0.02)
    mesh.bind = rigid("Guard_Spine")
    mesh.box(at(0.0, 1.33, -0.17), (0.24, 0.28, 0.12), steel, 0.03)
    for x in (-0.07, 0.07):
        mesh.lathe([(0.0, 0.035), (0.22, 0.03), (0.24, 0.02)], 8, brass, "y", at(x, 1.40, -0.20), [True, False])
    mesh.bind = rigid("Guard_Head")
    mesh.loft(rings([(1.53, 0.075, 0.075), (1.58, 0.10, 0.115), (1.66, 0.115, 0.13), (1.74, 0.112, 0.125), (1.81, 0.085, 0.10),
                     (1.85, 0.03, 0.04)], z=0.01), [steel, armour, armour, armour, armour], True)
    mesh.box(at(0.0, 1.685, 0.125), (0.17, 0.035, 0.05), lamp, 0.01)
    mesh.box(at(0.0, 1.62, 0.13), (0.05, 0.10, 0.05), steel, 0.015)
    mesh.box(at(0.0, 1.86, -0.01), (0.03, 0.10, 0.24), brass, 0.012)
    for side, sign in (("L", 1), ("R", -1)):
        bone = lambda name: "Guard_%s_%s" % (name, side)
        mesh.bind = chain("Guard_Spine", [(bone("Arm"), 1.50), (bone("Forearm"), 1.19), (bone("Hand"), 0.93)])
        mesh.tube([at(sign * x, y, 0.0) for x, y in ((0.22, 1.50), (0.26, 1.42), (0.29, 1.30), (0.305, 1.22), (0.31, 1.16), (0.32, 1.06),
                                                     (0.33, 0.95))],
                  [0.05, 0.068, 0.066, 0.05, 0.056, 0.06, 0.042], 10, steel)
        mesh.loft(rings([(0.97, 0.05, 0.05), (1.00, 0.066, 0.066), (1.13, 0.075, 0.075), (1.16, 0.06, 0.06)], x=sign * 0.322, count=10), armour,
                  [False, True, False])
        mesh.bind = rigid(bone("Arm"))
        mesh.loft(rings([(1.39, 0.10, 0.115), (1.42, 0.115, 0.13), (1.50, 0.11, 0.125), (1.56, 0.07, 0.085), (1.58, 0.02, 0.03)],
                        x=sign * 0.275, count=12), [brass, team, team, team], True)
        mesh.bind = rigid(bone("Hand"))
        mesh.box(at(sign * 0.332, 0.90, 0.015), (0.085, 0.12, 0.10), steel, 0.025)
        mesh.bind = chain("Guard_Pelvis", [(bone("Thigh"), 0.94), (bone("Shin"), 0.52), (bone("Foot"), 0.10)])
        mesh.tube([at(sign * x, y, 0.0) for x, y in ((0.105, 0.96), (0.12, 0.86), (0.125, 0.70), (0.13, 0.57), (0.13, 0.52), (0.13, 0.46),
                                                     (0.13, 0.30), (0.13, 0.12))],
                  [0.09, 0.10, 0.092, 0.07, 0.068, 0.07, 0.076, 0.055], 12, steel)
        mesh.bind = chain(bone("Shin"), [])
        mesh.loft(rings([(0.14, 0.07, 0.075), (0.18, 0.085, 0.095), (0.38, 0.095, 0.10), (0.46, 0.075, 0.085)], x=sign * 0.13, z=0.012, count=12),
                  armour, [False, True, True])
        mesh.box(at(sign * 0.13, 0.53, 0.075), (0.10, 0.12, 0.06), brass, 0.03)
        mesh.bind = rigid(bone("Foot"))
        mesh.box(at(sign * 0.13, 0.055, 0.05), (0.13, 0.11, 0.30), steel, 0.035)
    return mesh


def make_halberd(materials):
    """A rigid mesh; its origin is where the hand holds it."""
    mesh = Mesh("Halberd")
    steel, brass, cloth = materials["Steel"], materials["Brass"], materials["Team"]
    mesh.lathe([(-0.88, 0.0), (-0.84, 0.03), (-0.78, 0.022), (1.15, 0.02), (1.15, 0.034), (1.22, 0.034), (1.22, 0.02), (1.30, 0.02)], 8, brass,
               "y", smooth=[True, True, False, False, True, False, True], caps=(False, False))
    mesh.loft([[(x, 1.24, z) for x, z in ((0.016, 0.03), (0.016, -0.03), (-0.016, -0.03), (-0.016, 0.03))],
               [(x, 1.40, z) for x, z in ((0.014, 0.035), (0.014, -0.035), (-0.014, -0.035), (-0.014, 0.035))],
               [(x, 1.66, z) for x, z in ((0.002, 0.003), (0.002, -0.003), (-0.002, -0.003), (-0.002, 0.003))]], steel)
    mesh.loft([[(x, y, 0.02) for x, y in ((0.014, 1.20), (0.014, 1.32), (-0.014, 1.32), (-0.014, 1.20))],
               [(x, y, 0.16) for x, y in ((0.006, 1.14), (0.006, 1.38), (-0.006, 1.38), (-0.006, 1.14))],
               [(x, y, 0.22) for x, y in ((0.001, 1.08), (0.001, 1.46), (-0.001, 1.46), (-0.001, 1.08))]], steel)
    mesh.loft([[(x, y, -0.02) for x, y in ((0.012, 1.22), (0.012, 1.31), (-0.012, 1.31), (-0.012, 1.22))],
               [(x, y, -0.19) for x, y in ((0.002, 1.17), (0.002, 1.19), (-0.002, 1.19), (-0.002, 1.17))]], steel)
    mesh.lathe([(1.06, 0.024), (1.08, 0.05), (1.13, 0.045), (1.15, 0.024)], 8, cloth, "y", smooth=True)
    return mesh
