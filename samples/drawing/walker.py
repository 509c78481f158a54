"""A child on its way somewhere: one step cycle, seen from the side, walking to the right."""

import math

from .canvas import Canvas, INK, curve, moved, smooth, turned

SIZE = 160
FRAMES = 12

SKIN, BLUSH = (255, 214, 178), (247, 166, 142)
HAIR = (110, 64, 44)
COAT, COAT_SHADE = (224, 74, 62), (178, 48, 52)
SCARF, SCARF_SHADE = (255, 200, 68), (236, 160, 44)
TROUSERS, TROUSERS_SHADE = (70, 98, 156), (50, 70, 118)
BOOT, BOOT_SHADE = (134, 84, 54), (98, 60, 42)
HAT, POMPOM = (58, 152, 148), (246, 240, 226)
PACK, PACK_SHADE = (122, 158, 84), (94, 126, 66)

GROUND = 150.0
THIGH, SHIN, ANKLE = 17.0, 17.0, 6.0
STRIDE = 17.0


def foot_at(phase):
    """Ankle (relative to the middle of the step) and pitch in degrees of a foot.

    The first half of the phase the foot stands and is left behind, the second half it swings
    forward. Pitch is positive with the heel up.
    """
    phase %= 1.0
    if phase < 0.5:
        t = phase / 0.5
        x = STRIDE * (1 - 2 * t)
        if t < 0.2:
            pitch = -22 * (1 - t / 0.2)
        elif t < 0.6:
            pitch = 0.0
        else:
            pitch = 46 * ((t - 0.6) / 0.4) ** 1.4
        # The heel leaves the ground while the toes still stand on it.
        lift = 11 * math.sin(math.radians(max(pitch, 0)))
        return x + lift * 0.25, -lift, pitch
    t = (phase - 0.5) / 0.5
    ease = t - math.sin(2 * math.pi * t) / (2 * math.pi) * 0.5
    x = STRIDE * (2 * ease - 1)
    start = 11 * math.sin(math.radians(46))
    lift = start * (1 - t) ** 2 + 9.5 * math.sin(math.pi * t) ** 1.2
    pitch = 46 * (1 - t) ** 1.3 - 22 * t ** 2 + 14 * math.sin(math.pi * t)
    return x + start * 0.25 * (1 - t), -lift, pitch


def joint(start, end, first, second, forward):
    """Where the knee or elbow lies between two ends; forward is +1 or -1."""
    dx, dy = end[0] - start[0], end[1] - start[1]
    distance = min(math.hypot(dx, dy), first + second - 0.01)
    along = (first ** 2 - second ** 2 + distance ** 2) / (2 * distance)
    aside = math.sqrt(max(first ** 2 - along ** 2, 0))
    ux, uy = dx / math.hypot(dx, dy), dy / math.hypot(dx, dy)
    return (start[0] + ux * along + uy * aside * forward,
            start[1] + uy * along - ux * aside * forward)


def draw_leg(canvas, hip, phase, trousers, boot):
    x, y, pitch = foot_at(phase)
    ankle = (80 + x, GROUND - ANKLE + y)
    knee = joint(hip, ankle, THIGH, SHIN, 1)
    canvas.limb(curve(hip, (2 * knee[0] - (hip[0] + ankle[0]) / 2,
                            2 * knee[1] - (hip[1] + ankle[1]) / 2), ankle), 10.5, trousers)
    sole = [(-6, -6), (5, -6), (7.5, -1.5), (13, 0), (14, 5), (12, 6), (-5.5, 6), (-7, 4)]
    canvas.shape(smooth(moved(turned(sole, pitch), *ankle), 6), boot)
    cuff = turned([(-6.5, -7.5), (5.8, -7.5)], pitch)
    canvas.limb(moved(cuff, *ankle), 3.6, POMPOM)


def draw_arm(canvas, shoulder, swing, coat):
    upper, lower = 13.0, 12.0
    angle = math.radians(90 - 44 * swing + 6)
    elbow = (shoulder[0] + upper * math.cos(angle), shoulder[1] + upper * math.sin(angle))
    bend = math.radians(26 + 26 * max(swing, 0))
    hand = (elbow[0] + lower * math.cos(angle - bend), elbow[1] + lower * math.sin(angle - bend))
    canvas.oval(hand, 4.8, 4.8, SKIN)
    canvas.limb(curve(shoulder, elbow, hand)[:19], 9.5, coat)


def draw_body(canvas, x, y):
    pack = smooth([(x - 24, y - 31), (x - 13, y - 35), (x - 8, y - 20), (x - 10, y - 6),
                   (x - 22, y - 6), (x - 27, y - 18)], 8)
    canvas.shape(pack, PACK)
    canvas.stroke(curve((x - 25.5, y - 17), (x - 18, y - 14), (x - 11, y - 17)), 1.7)
    coat = smooth([(x - 10, y - 37), (x + 1, y - 39), (x + 9, y - 35), (x + 13, y - 18),
                   (x + 16.5, y + 3), (x + 4, y + 6), (x - 8, y + 5.5), (x - 15, y + 2),
                   (x - 12.5, y - 18)], 8)
    canvas.shape(coat, COAT)
    hem = [(x - 15, y + 1.5), (x - 8, y + 4.6), (x + 4, y + 5.2), (x + 16.4, y + 2.2),
           (x + 15.6, y - 3), (x + 4, y + 0.2), (x - 8, y - 0.6), (x - 14.2, y - 4)]
    canvas.shape(hem, COAT_SHADE, None)
    canvas.stroke(curve((x + 7, y - 33), (x + 9.5, y - 14), (x + 10.5, y + 3)), 1.4)
    for height in (-24, -13):
        canvas.oval((x + 5.2 + (height + 24) * 0.06, y + height), 1.3, 1.3, SCARF, None)


def draw_scarf_tail(canvas, x, y, phase):
    points = []
    for i in range(15):
        t = i / 14
        wave = math.sin(2 * math.pi * (2 * phase + 0.1) - 4.2 * t) * 5.4 * t
        points.append((x - 6 - 33 * t, y + 1 + 4 * t + wave))
    canvas.limb(points, 7.0, SCARF_SHADE)
    for shift in (0.62, 0.82):
        i = round(14 * shift)
        (ax, ay), (bx, by) = points[i], points[i + 1]
        length = math.hypot(bx - ax, by - ay)
        nx, ny = -(by - ay) / length * 3.4, (bx - ax) / length * 3.4
        canvas.stroke([(ax - nx, ay - ny), (ax + nx, ay + ny)], 2.0, POMPOM)


def draw_head(canvas, x, y, nod, blink):
    def at(points):
        return turned(moved(points, x, y), nod, (x, y + 20))

    canvas.shape(at(smooth([(-21, 2), (-17, -16), (0, -22), (17, -15), (22, 2), (17, 16),
                            (2, 21), (-15, 17)], 8)), SKIN)
    canvas.shape(at(smooth([(-22, -6), (-8, -9), (-7.5, 2), (-10, 11), (-14, 17), (-20, 12),
                            (-23.5, 3)], 8)), HAIR)
    ear = at([(-5, 4)])[0]
    canvas.oval(ear, 4.2, 5.0, SKIN)
    canvas.stroke(at(curve((-6.2, 2.6), (-3.6, 3.4), (-5, 6.2))), 1.2, BLUSH)
    canvas.shape(at(smooth([(20.5, 2.5), (24.6, 4.2), (24.2, 7), (20, 7.2)], 8)), SKIN)
    canvas.shape(at([(18, 1.5), (21.3, 2.9), (21.2, 6.8), (17.5, 8)]), SKIN, None)
    if blink:
        canvas.stroke(at(curve((9.6, 2), (12.6, 5.4), (15.6, 2))), 2.1)
    else:
        canvas.shape(at(smooth([(12.6, -2.8), (15.3, 1.2), (12.6, 5.2), (9.9, 1.2)], 8)), INK,
                     None)
        canvas.oval(at([(13.5, -0.7)])[0], 1.2, 1.2, (255, 255, 255), None)
    canvas.oval(at([(7, 8.2)])[0], 3.7, 2.6, BLUSH, None)
    canvas.stroke(at(curve((11.4, 10.6), (14.4, 14), (17.6, 10.4))), 1.7)
    canvas.shape(at(smooth([(-23.5, -6.5), (-22, -17), (-13, -27), (1, -31), (14, -26),
                            (21, -16), (22, -6.5), (0, -9)], 8)), HAT)
    canvas.limb(at(curve((-22.5, -7.5), (0, -12.5), (22.5, -7.5))), 6.4, POMPOM)
    for i in range(7):
        left = at([(-19 + 6.4 * i, -11.6 - 0.9 * math.cos((i - 3) / 2.2))])[0]
        canvas.stroke([left, (left[0] + 0.2, left[1] + 4.2)], 1.0, (206, 196, 178))


def draw_pompom(canvas, x, y, lag):
    canvas.oval((x - 3 + lag * 0.6, y - 32 + lag), 7.2, 6.8, POMPOM)
    canvas.stroke(curve((x - 6 + lag * 0.6, y - 31 + lag), (x - 3 + lag * 0.6, y - 28 + lag),
                        (x + 1 + lag * 0.6, y - 30 + lag)), 1.1, (206, 196, 178))


def frame(index):
    """Frame number index (from 0) of the cycle."""
    phase = index / FRAMES
    canvas = Canvas(SIZE, SIZE)
    bob = 2.3 * math.cos(4 * math.pi * phase)
    late = 2.3 * math.cos(4 * math.pi * (phase - 0.06))
    hip = (79.0, GROUND - ANKLE - 31.0 + bob)
    body = (hip[0] - 0.5, hip[1] - 2)
    head = (body[0] + 4, body[1] - 58.5 + 0.4 * late)
    shoulder = (body[0] - 2, body[1] - 29)
    swing = math.cos(2 * math.pi * phase)

    draw_arm(canvas, (shoulder[0] + 5, shoulder[1]), swing, COAT_SHADE)
    draw_leg(canvas, (hip[0] + 2, hip[1]), phase + 0.5, TROUSERS_SHADE, BOOT_SHADE)
    draw_leg(canvas, (hip[0] - 1, hip[1]), phase, TROUSERS, BOOT)
    draw_scarf_tail(canvas, body[0] - 4, body[1] - 37, phase)
    draw_body(canvas, *body)
    draw_pompom(canvas, head[0], head[1], 0.9 * math.sin(4 * math.pi * (phase - 0.1)))
    draw_head(canvas, head[0], head[1], 1.6 * math.sin(4 * math.pi * phase), index == 8)
    canvas.limb(curve((body[0] - 10, body[1] - 37), (body[0] + 3, body[1] - 31),
                      (body[0] + 13, body[1] - 38)), 8.5, SCARF)
    draw_arm(canvas, shoulder, -swing, COAT)
    return canvas.finished()


def frames():
    """The whole cycle."""
    return [frame(index) for index in range(FRAMES)]
