"""What moves, clip by clip. A second has thirty frames; the clips that are walked or waved end as they begin."""
import math

from figure import all_bones
from glb import look_at, turn

CLOTH_BONES = ["Banner_Bone%d" % i for i in range(1, 5)]
WHEELS = ["Wheel_%s%d" % (side, n) for side in "LR" for n in range(1, 5)]
FOCUS = (0.9, 1.2, 0.9)


def wave(times, period, low, high, phase=0.0):
    """A swing from low to high and back."""
    return [(low + high) / 2 + (high - low) / 2 * math.sin(2 * math.pi * (t / period + phase)) for t in times]


def rotation(node, axis, times, degrees):
    return (node, "rotation", times, [turn(axis, d) for d in degrees])


def local_place(bone):
    places = {name: (parent, at) for name, parent, at in all_bones()}
    parent, at = places[bone]
    return tuple(round(a - b, 6) for a, b in zip(at, places[parent][1]))


def spline(times, points):
    """The elements of a spline through points, each with the tangent between its neighbours."""
    values = []
    for i, point in enumerate(points):
        before, after = max(i - 1, 0), min(i + 1, len(points) - 1)
        tangent = tuple(round((b - a) / (times[after] - times[before]), 6) for a, b in zip(points[before], points[after]))
        values += [tangent, point, tangent]
    return values


def banner(seconds, period, strength):
    times = [round(seconds * i / 16, 6) for i in range(17)]
    return [rotation(bone, "x", times, wave(times, period, 2 - strength, 4 + strength, -0.14 * i)) for i, bone in enumerate(CLOTH_BONES)]


def march():
    times = [i / 8 for i in range(9)]
    tracks = [rotation(wheel, "x", (0.0, 0.5, 1.0), (0, 90, 180)) for wheel in WHEELS]
    for side, phase in (("L", 0.0), ("R", 0.5)):
        tracks += [rotation("Guard_Thigh_" + side, "x", times, wave(times, 1.0, -30, 24, phase)),
                   rotation("Guard_Shin_" + side, "x", times, wave(times, 1.0, 4, 46, phase + 0.25)),
                   rotation("Guard_Foot_" + side, "x", times, wave(times, 1.0, -12, 12, phase + 0.1))]
    tracks += [rotation("Guard_Arm_L", "x", times, wave(times, 1.0, -26, 26, 0.5)),
               rotation("Guard_Forearm_L", "x", times, wave(times, 1.0, -40, -10, 0.5)),
               rotation("Guard_Arm_R", "x", times, wave(times, 1.0, -4, 4)),
               rotation("Guard_Spine", "y", times, wave(times, 1.0, -6, 6)),
               rotation("Guard_Head", "y", times, wave(times, 1.0, 5, -5))]
    x, y, z = local_place("Guard_Pelvis")
    bob = [(x, round(y + 0.025 * math.cos(4 * math.pi * t), 6), z) for t in times]
    tracks.append(("Guard_Pelvis", "translation", times, spline(times, bob), "CUBICSPLINE"))
    return tracks + banner(1.0, 0.5, 7)


def aim(gun_at, gun_rest):
    """The turret swings round and fires; the guard shows where to."""
    raised = (0.0, 0.6, 1.0, 1.6, 2.0)
    x, y, z = gun_at
    return [rotation("Turret", "y", (0.0, 0.7, 1.5, 2.0), (0, 38, 38, 0)),
            rotation("Gun", "x", (0.0, 0.7, 1.1, 1.5, 2.0), (gun_rest, -11, -11, -11, gun_rest)),
            ("Gun", "translation", (0.0, 1.1, 1.1333, 1.4, 2.0), [gun_at, gun_at, (x, y, round(z - 0.28, 6)), gun_at, gun_at]),
            rotation("Guard_Arm_R", "x", raised, (0, -62, -84, -84, 0)),
            rotation("Guard_Forearm_R", "x", raised, (0, -34, -8, -8, 0)),
            rotation("Guard_Hand_R", "x", raised, (0, 70, 74, 74, 0)),
            rotation("Guard_Spine", "y", raised, (0, 10, 16, 16, 0)),
            rotation("Guard_Head", "y", raised, (0, 18, 26, 10, 0)),
            ("Guard_Root", "translation", (0.0, 1.1, 1.2, 1.6), [(0.0, 0.0, 0.0), (0.0, 0.0, 0.0), (0.0, 0.0, 0.06), (0.0, 0.0, 0.0)],
             "STEP")] + banner(2.0, 1.0, 4)


def flyby():
    """The camera goes round; nothing else moves but the cloth."""
    times = [i / 2 for i in range(7)]
    eyes = []
    for t in times:
        angle = math.radians(38 + 30 * t)
        distance = 9.2 - 0.5 * t
        eyes.append(tuple(round(c, 6) for c in (FOCUS[0] + distance * math.sin(angle), 3.6 - 0.35 * t, FOCUS[2] + distance * math.cos(angle))))
    return [("Camera_Show", "translation", times, spline(times, eyes), "CUBICSPLINE"),
            ("Camera_Show", "rotation", times, [tuple(look_at(eye, FOCUS)) for eye in eyes])] + banner(3.0, 1.0, 5)


# A material's tracks have the seconds of whatever clip plays: these lie behind the end of the shorter ones.
ALARM_LAMPS = [[0.0, 0.4], [3.0, 0.4], [3.2, 1.0], [3.4, 0.1], [3.6, 1.0], [3.8, 0.1], [4.0, 0.4]]


def alarm():
    """The lamps flash in its last second; the turret looks round for the reason."""
    looks = (0.0, 1.0, 2.0, 3.0, 4.0)
    return [rotation("Turret", "y", looks, (0, -50, 20, 50, 0)), rotation("Guard_Head", "y", looks, (0, 45, -45, 30, 0)),
            rotation("Guard_Arm_L", "x", looks, (0, -70, -70, -120, 0)),
            rotation("Guard_Forearm_L", "x", looks, (0, -50, -20, -40, 0))] + banner(4.0, 1.0, 6)
