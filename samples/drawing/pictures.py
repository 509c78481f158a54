"""The smaller samples: each function gives the pictures of one film, or one picture."""

import math
import random

from .canvas import Canvas, INK, curve, moved, oval, smooth, turned

WHITE = (255, 252, 244)


def cactus():
    """A cactus in a pot, in flower."""
    canvas = Canvas(96, 112)
    green, shade, light = (96, 160, 92), (70, 128, 80), (142, 192, 116)
    for side, top, join in ((-1, 46, 64), (1, 36, 56)):
        x = 48 + 25 * side
        canvas.limb([(48, join)] + curve((48 + 13 * side, join), (x, join), (x, join - 12))
                    + [(x, top)], 11, green)
        canvas.stroke([(x - 2, top + 3), (x - 2, join - 10)], 1.5, light)
    canvas.shape(smooth([(34, 82), (32, 50), (36, 28), (48, 20), (60, 28), (64, 50), (62, 82),
                         (48, 86)], 10), green)
    canvas.shape(smooth([(52, 82), (56, 50), (52, 24), (60, 29), (63, 50), (61, 82)], 10), shade,
                 None)
    for x, bend in ((42, 38), (49, 49)):
        canvas.stroke(curve((x, 30), (bend, 54), (x, 80)), 1.3, light)
    for x, y in ((38, 42), (45, 36), (54, 44), (39, 58), (47, 52), (56, 60), (44, 70), (55, 74)):
        canvas.stroke([(x - 2, y - 1.6), (x + 2, y + 1.6)], 1.1, WHITE)
        canvas.stroke([(x - 2, y + 1.6), (x + 2, y - 1.6)], 1.1, WHITE)
    for turn in range(0, 360, 72):
        petal = turned(moved(oval((0, 0), 3.8, 6), 48, 10), turn, (48, 16))
        canvas.shape(petal, (242, 132, 160))
    canvas.oval((48, 16), 3.6, 3.6, (255, 206, 84))
    canvas.shape([(28, 86), (68, 86), (63, 107), (33, 107)], (206, 108, 74))
    canvas.shape([(56, 87), (66, 87), (61.5, 106.5), (54, 106.5)], (176, 84, 62), None)
    canvas.shape([(25, 78), (71, 78), (70, 88), (26, 88)], (224, 128, 88))
    return canvas.finished()


def pinwheel(count=8):
    """A pinwheel on its stick, turning; the last picture leads back to the first."""
    colours = [(236, 92, 84), (255, 196, 72), (82, 168, 204), (116, 180, 106)]
    pictures = []
    for index in range(count):
        canvas = Canvas(112, 140)
        canvas.limb([(56, 56), (56, 134)], 5, (196, 142, 92))
        # A quarter turn brings other colours to the same places: only a full turn closes.
        for blade in range(4):
            degrees = 90 * blade + 360 * index / count
            vane = [(0, 0)] + curve((0, 0), (16, -18), (4, -46)) \
                + curve((4, -46), (34, -44), (32, -14)) + curve((32, -14), (16, -10), (0, 0))
            fold = curve((0, 0), (16, -18), (4, -46)) + curve((4, -46), (20, -30), (0, 0))
            pale = tuple(min(255, channel + 44) for channel in colours[blade])
            canvas.shape(turned(moved(vane, 56, 56), degrees, (56, 56)), colours[blade])
            canvas.shape(turned(moved(fold, 56, 56), degrees, (56, 56)), pale)
        canvas.oval((56, 56), 5.2, 5.2, WHITE)
        pictures.append(canvas.finished())
    return pictures


def heart(count=8):
    """A heart that beats once: a strong stroke and a weak one."""
    pictures = []
    for index in range(count):
        t = index / count
        strong = math.exp(-((t - 0.2) / 0.1) ** 2)
        weak = math.exp(-((t - 0.5) / 0.1) ** 2)
        size = 1 + 0.24 * strong + 0.12 * weak
        canvas = Canvas(112, 104)
        points = []
        for step in range(90):
            a = 2 * math.pi * step / 90
            x = 16 * math.sin(a) ** 3
            y = 13 * math.cos(a) - 5 * math.cos(2 * a) - 2 * math.cos(3 * a) - math.cos(4 * a)
            points.append((56 + 2.35 * size * x, 50 - 2.35 * size * y))
        canvas.shape(points, (228, 70, 92), line=2)
        shine = oval((56 - 19 * size, 34 - 8 * (size - 1)), 9 * size, 5.5 * size, -38)
        canvas.shape(shine, (250, 150, 160), None)
        for side in (-1, 1):
            x = 56 + 9 * side * size
            canvas.oval((x, 48), 2.4, 3.2 if index != 2 else 1.2, INK, None)
            canvas.oval((x + 6.5 * side, 55 + 2 * (size - 1)), 3.6, 2.2, (250, 130, 140), None)
        canvas.stroke(curve((51, 55), (56, 61), (61, 55)), 2)
        pictures.append(canvas.finished())
    return pictures


def owl():
    """An owl that blinks and looks about: (picture, milliseconds) for each frame."""
    #       lid 0..1, gaze -1..1, tilt, ms
    poses = [(0, 0, 0, 800), (0.5, 0, 0, 50), (1, 0, 0, 100), (0.5, 0, 0, 50), (0, 0, 0, 400),
             (0, 1, 5, 200), (0, 1, 9, 600), (0.5, 0, 4, 50), (0, -1, -5, 200), (0, -1, -9, 600),
             (0.5, 0, -4, 50)]
    return [(_owl(lid, gaze, tilt), delay) for lid, gaze, tilt, delay in poses]


def _owl(lid, gaze, tilt):
    canvas = Canvas(128, 132)
    brown, dark, pale = (158, 112, 78), (118, 80, 62), (240, 216, 176)
    canvas.limb([(6, 118), (60, 120), (122, 116)], 9, (126, 92, 72))
    canvas.shape(smooth([(30, 62), (40, 40), (64, 34), (88, 40), (98, 62), (96, 98), (82, 114),
                         (64, 117), (46, 114), (32, 98)], 8), brown)
    canvas.shape(smooth([(44, 72), (64, 64), (84, 72), (84, 96), (64, 112), (44, 96)], 8), pale,
                 None)
    for row, (y, xs) in enumerate(((80, (54, 64, 74)), (89, (50, 59, 69, 78)), (98, (55, 64, 73)))):
        for x in xs:
            canvas.stroke(curve((x - 3.4, y), (x, y + 5), (x + 3.4, y)), 1.5, (196, 150, 104))
    for side in (-1, 1):
        wing = [(64 + 31 * side, 64), (64 + 40 * side, 80), (64 + 36 * side, 104),
                (64 + 26 * side, 108), (64 + 22 * side, 86)]
        canvas.shape(smooth(wing, 8), dark)
        for x in (-5, 0, 5):
            canvas.limb([(64 + 13 * side + x, 112), (64 + 13 * side + x, 119)], 3.4,
                        (244, 170, 70))

    def at(points):
        return turned(points, tilt, (64, 66))

    canvas.shape(at(smooth([(30, 50), (27, 22), (22, 8), (42, 16), (64, 19), (86, 16), (106, 8),
                            (101, 22), (98, 50), (84, 68), (64, 72), (44, 68)], 8)), brown)
    for side in (-1, 1):
        canvas.shape(at(oval((64 + 16 * side, 44), 18, 19)), pale, None)
    canvas.shape(at([(60, 18), (68, 18), (65.5, 36), (62.5, 36)]), dark, None)
    for side in (-1, 1):
        x, y = at([(64 + 15.5 * side, 43)])[0]
        canvas.oval((x, y), 12.2, 12.2, (255, 204, 76) if lid < 1 else (214, 168, 122))
        if lid < 1:
            canvas.oval((x + 3.6 * gaze, y + 0.5), 6.6, 6.6, INK, None)
            canvas.oval((x + 3.6 * gaze - 2.2, y - 2.2), 2.2, 2.2, WHITE, None)
            if lid > 0:
                half = [p for p in oval((x, y), 12.2, 12.2) if p[1] <= y + 1]
                canvas.shape(half, (214, 168, 122), None)
                canvas.stroke([(x - 12, y + 1), (x + 12, y + 1)], 1.8)
        else:
            canvas.stroke(curve((x - 10.5, y + 2), (x, y + 8), (x + 10.5, y + 2)), 2)
    canvas.shape(at([(58.5, 50), (69.5, 50), (64, 62)]), (244, 170, 70))
    return canvas.finished()


def ball(count=10):
    """A ball that bounces: (name, picture). Where it touches the ground it is flat and wide."""
    result = []
    for index in range(count):
        t = index / count
        height = 4 * t * (1 - t)
        landed = index == 0
        speed = abs(1 - 2 * t)
        wide, flat = (1.34, 0.66) if landed else (1 - 0.16 * speed, 1 + 0.16 * speed)
        canvas = Canvas(128 if landed else 96, 160)
        middle = canvas.width / 2
        radius, ground = 27, 148
        y = ground - radius * flat - (ground - 2.3 * radius - 20) * height
        shadow = (1 - 0.55 * height) * radius * wide
        canvas.oval((middle, ground + 2), shadow, 5 * shadow / radius, (60, 52, 70, 84), None)
        _beach_ball(canvas, (middle, y), radius * wide, radius * flat, 36 * index)
        name = "landing/squash.png" if landed else f"ball-{index:02}.png"
        result.append((name, canvas.finished()))
    return result


def _beach_ball(canvas, centre, rx, ry, degrees):
    canvas.oval(centre, rx, ry, WHITE, line=2)
    colours = [(232, 78, 78), WHITE, (70, 150, 204), WHITE, (255, 200, 70), WHITE]
    for part in range(6):
        start, end = math.radians(degrees + 60 * part), math.radians(degrees + 60 * (part + 1))
        hub = (0.22 * math.cos(math.radians(degrees)), 0.22 * math.sin(math.radians(degrees)) - 0.1)
        rim = [(math.cos(start + (end - start) * i / 12), math.sin(start + (end - start) * i / 12))
               for i in range(13)]
        wedge = (curve(hub, _bulge(hub, rim[0]), rim[0]) + rim
                 + curve(rim[-1], _bulge(hub, rim[-1]), hub))
        canvas.shape([(centre[0] + rx * x, centre[1] + ry * y) for x, y in wedge], colours[part],
                     None)
    hub = (centre[0] + rx * hub[0], centre[1] + ry * hub[1])
    canvas.oval(hub, 4.6 * rx / 27, 4.6 * ry / 27, WHITE, line=1.2)
    canvas.shape(oval((centre[0] - 0.45 * rx, centre[1] - 0.52 * ry), 0.2 * rx, 0.12 * ry, -38),
                 WHITE, None)


def _bulge(hub, rim):
    x, y = (hub[0] + rim[0]) / 2, (hub[1] + rim[1]) / 2
    return x - 0.22 * (rim[1] - hub[1]), y + 0.22 * (rim[0] - hub[0])


def meadow(side=96):
    """A tile of a meadow: its right edge continues at its left, its lower edge at its upper."""
    chance = random.Random(7)
    canvas = Canvas(side, side, (150, 198, 112))

    def everywhere(x, y):
        return [(x + dx, y + dy) for dx in (-side, 0, side) for dy in (-side, 0, side)]

    for _ in range(7):
        x, y = chance.uniform(0, side), chance.uniform(0, side)
        rx, ry, lean = chance.uniform(10, 16), chance.uniform(6, 9), chance.uniform(-25, 25)
        for cx, cy in everywhere(x, y):
            canvas.oval((cx, cy), rx, ry, (160, 206, 120), None, degrees=lean)
    for i in range(16):
        x = (i % 4 + chance.uniform(0.15, 0.85)) * side / 4
        y = (i // 4 + chance.uniform(0.15, 0.85)) * side / 4
        for cx, cy in everywhere(x, y):
            for lean in (-3.4, 0, 3.4):
                canvas.stroke(curve((cx + lean / 3, cy), (cx + lean / 3, cy - 4),
                                    (cx + lean, cy - 6 + abs(lean) / 3)), 1.4, (104, 162, 88))
    places = [(17, 20), (62, 12), (84, 52), (38, 56), (12, 80), (66, 82)]
    petals = [(255, 252, 244), (255, 214, 94), (244, 150, 170), (255, 252, 244), (244, 150, 170),
              (186, 160, 226)]
    for (x, y), colour in zip(places, petals):
        for cx, cy in everywhere(x, y):
            for turn in range(0, 360, 72):
                petal = turned(oval((cx, cy - 4), 2.3, 3), turn + 9 * x, (cx, cy))
                canvas.shape(petal, colour, (104, 140, 92), 0.9)
            canvas.oval((cx, cy), 2.1, 2.1, (248, 184, 60), None)
    return canvas.finished().convert("RGB")


def apple(side=160):
    """An apple with a leaf and a highlight."""
    canvas = Canvas(side, side)
    canvas.oval((80, 146), 46, 7, (60, 52, 70, 70), None)
    body = smooth([(80, 44), (104, 34), (132, 46), (141, 78), (128, 116), (104, 142), (80, 136),
                   (56, 142), (32, 116), (19, 78), (28, 46), (56, 34)], 12)
    canvas.shape(body, (220, 56, 58), line=2.2)
    canvas.shape(smooth([(128, 52), (137, 78), (125, 114), (103, 138), (88, 136), (112, 116),
                         (124, 86)], 12), (178, 38, 52), None)
    canvas.shape(turned(oval((46, 70), 9, 19), 18, (46, 70)), (248, 140, 124), None)
    canvas.oval((42, 100), 4.4, 4.4, (248, 140, 124), None)
    canvas.shape(smooth([(62, 42), (80, 48), (98, 42), (92, 52), (80, 55), (68, 52)], 8),
                 (160, 34, 48), None)
    canvas.limb(curve((80, 50), (79, 32), (88, 16)), 5, (126, 84, 58))
    leaf = curve((84, 34), (96, 8), (128, 14)) + curve((128, 14), (120, 38), (84, 34))
    canvas.shape(leaf, (104, 170, 84))
    canvas.stroke(curve((86, 33), (104, 22), (120, 18)), 1.5, (70, 128, 70))
    return canvas.finished()
