"""A canvas that draws at four times the size and is reduced at the end.

Coordinates are pixels of the finished picture; y grows downwards. Every shape takes a fill and
an outline; the outline lies outside of the fill, so that neighbouring parts stay apart.
"""

import math

from PIL import Image, ImageDraw

SCALE = 4
INK = (52, 40, 58)
LINE = 1.7


def curve(start, bend, end, steps=24):
    """Points of the quadratic curve from start to end that bend pulls towards itself."""
    points = []
    for step in range(steps + 1):
        t = step / steps
        a, b, c = (1 - t) ** 2, 2 * t * (1 - t), t * t
        points.append((a * start[0] + b * bend[0] + c * end[0],
                       a * start[1] + b * bend[1] + c * end[1]))
    return points


def smooth(points, steps=10):
    """A closed line through all the points, without corners (Catmull-Rom)."""
    result = []
    count = len(points)
    for i in range(count):
        p0, p1, p2, p3 = (points[(i + k - 1) % count] for k in range(4))
        for step in range(steps):
            t = step / steps
            result.append(tuple(
                0.5 * (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t
                       + (3 * b - a - 3 * c + d) * t ** 3)
                for a, b, c, d in zip(p0, p1, p2, p3)))
    return result


def turned(points, degrees, centre=(0, 0)):
    """The points turned clockwise around the centre."""
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    return [(centre[0] + (x - centre[0]) * c - (y - centre[1]) * s,
             centre[1] + (x - centre[0]) * s + (y - centre[1]) * c) for x, y in points]


def moved(points, dx, dy):
    """The points shifted by (dx, dy)."""
    return [(x + dx, y + dy) for x, y in points]


def oval(centre, rx, ry, degrees=0, steps=72):
    """Points of an ellipse."""
    points = [(centre[0] + rx * math.cos(2 * math.pi * i / steps),
               centre[1] + ry * math.sin(2 * math.pi * i / steps)) for i in range(steps)]
    return turned(points, degrees, centre)


class Canvas:
    def __init__(self, width, height, background=None):
        self.width, self.height = width, height
        # Transparent, but of the outline's colour: the reduced edge then gets no pale fringe.
        colour = background + (255,) if background else INK + (0,)
        self.image = Image.new("RGBA", (width * SCALE, height * SCALE), colour)
        self.draw = ImageDraw.Draw(self.image)

    def _brush(self, points, width, colour):
        radius = width * SCALE / 2
        points = [(x * SCALE, y * SCALE) for x, y in points]
        if radius < 1:
            return
        self.draw.line(points, fill=colour, width=max(1, round(2 * radius)))
        for x, y in points:
            self.draw.ellipse((x - radius, y - radius, x + radius, y + radius), fill=colour)

    def shape(self, points, fill, outline=INK, line=LINE):
        """A filled shape. Without an outline (None) it is only its fill."""
        if outline:
            self._brush(list(points) + [points[0]], 2 * line, outline)
        self.draw.polygon([(x * SCALE, y * SCALE) for x, y in points], fill=fill)

    def oval(self, centre, rx, ry, fill, outline=INK, line=LINE, degrees=0):
        """A filled ellipse."""
        self.shape(oval(centre, rx, ry, degrees), fill, outline, line)

    def limb(self, points, width, fill, outline=INK, line=LINE):
        """A round-ended stroke along the points, as wide as a sleeve."""
        if outline:
            self._brush(points, width + 2 * line, outline)
        self._brush(points, width, fill)

    def stroke(self, points, width=LINE, colour=INK):
        """A bare line."""
        self._brush(points, width, colour)

    def finished(self):
        """The picture at its own size, with smooth edges."""
        return self.image.convert("RGBa").resize(
            (self.width, self.height), Image.LANCZOS).convert("RGBA")
