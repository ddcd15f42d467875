#!/usr/bin/python3
"""Draws the pictures of the check-out scenario: stoneware in daylight. Needs Debian's python3-cairo.

Run it in this folder to make the PNG files anew; the build does not use it.
"""
import math

import cairo

LIGHT = (1, 1, 1)


def rgb(text):
    return tuple(int(text[i : i + 2], 16) / 255 for i in (1, 3, 5))


def mix(a, b, share):
    return tuple(x + (y - x) * share for x, y in zip(a, b))


class Still:
    """A table against a wall, one unit wide and high."""

    def __init__(self, name, pixels, wall, table, horizon=0.72, aspect=1.0):
        self.name = name
        self.surface = cairo.ImageSurface(cairo.FORMAT_RGB24, pixels, round(pixels * aspect))
        self.c = cairo.Context(self.surface)
        self.c.scale(pixels, pixels)
        self.aspect = aspect
        wall, table = rgb(wall), rgb(table)
        self.fill_rect(0, 0, 1, aspect, mix(wall, LIGHT, 0.10), mix(wall, (0, 0, 0), 0.04))
        self.fill_rect(0, horizon * aspect, 1, aspect, mix(table, LIGHT, 0.08), mix(table, (0, 0, 0), 0.05))

    def fill_rect(self, x, top, right, bottom, begin, end):
        ramp = cairo.LinearGradient(0, top, 0, bottom)
        ramp.add_color_stop_rgb(0, *begin)
        ramp.add_color_stop_rgb(1, *end)
        self.c.set_source(ramp)
        self.c.rectangle(x, top, right - x, bottom - top)
        self.c.fill()

    def window_light(self, x, y, width, height, slant=0.22):
        """The window's light on the wall."""
        self.c.set_source_rgba(1, 1, 1, 0.16)
        for column in range(2):
            for row in range(2):
                left = x + column * (width / 2 + 0.012)
                top = y + row * (height / 2 + 0.012) - slant * column * width / 2
                self.c.move_to(left, top)
                self.c.line_to(left + width / 2, top - slant * width / 2)
                self.c.line_to(left + width / 2, top + height / 2 - slant * width / 2)
                self.c.line_to(left, top + height / 2)
                self.c.close_path()
        self.c.fill()

    def shadow(self, x, y, width, height, strength=0.22):
        self.c.save()
        self.c.translate(x + width * 0.22, y)
        self.c.scale(width, height)
        ramp = cairo.RadialGradient(0, 0, 0, 0, 0, 1)
        ramp.add_color_stop_rgba(0, 0.15, 0.1, 0.08, strength)
        ramp.add_color_stop_rgba(0.6, 0.15, 0.1, 0.08, strength * 0.45)
        ramp.add_color_stop_rgba(1, 0.15, 0.1, 0.08, 0)
        self.c.set_source(ramp)
        self.c.arc(0, 0, 1, 0, 2 * math.pi)
        self.c.fill()
        self.c.restore()

    def side_light(self, left, right, color):
        """Light from the left on something round."""
        ramp = cairo.LinearGradient(left, 0, right, 0)
        for share, tone in ((0, 0.05), (0.22, 0.24), (0.55, 0.0), (1, -0.30)):
            ramp.add_color_stop_rgb(share, *(mix(color, LIGHT, tone) if tone >= 0 else mix(color, (0.1, 0.06, 0.05), -tone)))
        return ramp

    def turned(self, x, foot, profile, color, glaze=None, mouth=None, speckles=0, seed=1, depth=0.35):
        """Something from the potter's wheel: `profile` is (height, radius) from the foot up."""
        c = self.c
        color = rgb(color)
        widest = max(radius for _, radius in profile)
        self.shadow(x, foot, widest * 1.5, widest * 0.30)
        left, right = x - widest, x + widest

        def outline(points):
            c.new_path()
            side = [(x - r, foot - h) for h, r in points]
            self.smooth(side)
            top_h, top_r = points[-1]
            c.save()
            c.translate(x, foot - top_h)
            c.scale(max(top_r, 1e-4), max(top_r * 0.20, 1e-4))
            c.arc(0, 0, 1, math.pi, 2 * math.pi)
            c.restore()
            self.smooth([(x + r, foot - h) for h, r in reversed(points)], joined=True)
            foot_r = points[0][1]
            c.save()
            c.translate(x, foot - points[0][0])
            c.scale(max(foot_r, 1e-4), max(foot_r * 0.20, 1e-4))
            c.arc(0, 0, 1, 0, math.pi)
            c.restore()
            c.close_path()

        outline(profile)
        c.set_source(self.side_light(left, right, color))
        c.fill()
        if glaze:
            glaze_color, from_height, wave = glaze
            c.save()
            outline(profile)
            c.clip()
            top = foot - profile[-1][0] - 0.1
            c.new_path()
            c.move_to(left - 0.05, top)
            c.line_to(left - 0.05, foot - from_height)
            steps = 60
            for step in range(steps + 1):
                px = left - 0.05 + (right - left + 0.1) * step / steps
                bow = 0.20 * widest * math.sin(math.pi * min(max((px - left) / (right - left), 0), 1))
                c.line_to(px, foot - from_height + bow + wave * math.sin(step * 0.55 + seed))
            c.line_to(right + 0.05, top)
            c.close_path()
            c.set_source(self.side_light(left, right, rgb(glaze_color)))
            c.fill()
            c.restore()
        if speckles:
            c.save()
            outline(profile)
            c.clip()
            state = seed * 7919
            for _ in range(speckles):
                state = (state * 1103515245 + 12345) % 2**31
                px = left + (right - left) * (state / 2**31)
                state = (state * 1103515245 + 12345) % 2**31
                py = foot - profile[-1][0] * (state / 2**31)
                state = (state * 1103515245 + 12345) % 2**31
                c.set_source_rgba(0.25, 0.17, 0.12, 0.35)
                c.arc(px, py, 0.0016 + 0.0026 * (state / 2**31), 0, 2 * math.pi)
                c.fill()
            c.restore()
        if mouth:
            top_h, top_r = profile[-1]
            self.mouth(x, foot - top_h, top_r, rgb(glaze[0]) if glaze else color, rgb(mouth), depth)

    def mouth(self, x, y, radius, rim, inside, depth):
        c = self.c
        for share, paint in ((1.0, mix(rim, LIGHT, 0.18)), (0.93, None)):
            c.save()
            c.translate(x, y)
            c.scale(radius * share, radius * 0.20 * share)
            c.arc(0, 0, 1, 0, 2 * math.pi)
            c.restore()
            if paint:
                c.set_source_rgb(*paint)
            else:
                ramp = cairo.LinearGradient(x - radius, y, x + radius, y)
                ramp.add_color_stop_rgb(0, *mix(inside, (0, 0, 0), depth))
                ramp.add_color_stop_rgb(1, *mix(inside, LIGHT, 0.12))
                c.set_source(ramp)
            c.fill()

    def smooth(self, points, joined=False):
        """A curve through the points (Catmull-Rom)."""
        c = self.c
        (c.line_to if joined else c.move_to)(*points[0])
        for i in range(len(points) - 1):
            before = points[max(i - 1, 0)]
            a, b = points[i], points[i + 1]
            after = points[min(i + 2, len(points) - 1)]
            c.curve_to(a[0] + (b[0] - before[0]) / 6, a[1] + (b[1] - before[1]) / 6,
                       b[0] - (after[0] - a[0]) / 6, b[1] - (after[1] - a[1]) / 6, *b)

    def handle(self, x, y, width, height, color, thickness=0.032):
        c = self.c
        c.set_line_cap(cairo.LINE_CAP_ROUND)
        for offset, tone in ((0.006, -0.25), (0, 0.06)):
            paint = rgb(color)
            c.set_source_rgb(*(mix(paint, LIGHT, tone) if tone >= 0 else mix(paint, (0.1, 0.06, 0.05), -tone)))
            c.set_line_width(thickness)
            c.move_to(x, y + offset)
            c.curve_to(x + width * 1.25, y - height * 0.08 + offset, x + width * 1.25, y + height * 0.95 + offset,
                       x - 0.01, y + height + offset)
            c.stroke()

    def branch(self, x, y, height, lean, color, leaves=7, length=0.1):
        c = self.c
        stem = rgb(color)
        c.set_line_cap(cairo.LINE_CAP_ROUND)
        c.set_line_width(0.006)
        c.set_source_rgb(*mix(stem, (0.2, 0.12, 0.05), 0.5))
        c.move_to(x, y)
        c.curve_to(x, y - height * 0.4, x + lean * 0.5, y - height * 0.7, x + lean, y - height)
        c.stroke()
        for index in range(leaves):
            share = 0.25 + 0.75 * index / (leaves - 1)
            u = 1 - share
            px = u**3 * x + 3 * u * u * share * x + 3 * u * share**2 * (x + lean * 0.5) + share**3 * (x + lean)
            py = u**3 * y + 3 * u * u * share * (y - height * 0.4) + 3 * u * share**2 * (y - height * 0.7) + share**3 * (y - height)
            side = 1 if index % 2 else -1
            angle = -math.pi / 2 + side * (1.0 - 0.45 * share) + lean
            size = length * (1.05 - 0.45 * share)
            c.save()
            c.translate(px, py)
            c.rotate(angle)
            c.move_to(0, 0)
            c.curve_to(size * 0.3, -size * 0.28, size * 0.8, -size * 0.22, size, 0)
            c.curve_to(size * 0.8, size * 0.22, size * 0.3, size * 0.28, 0, 0)
            c.set_source_rgb(*mix(stem, LIGHT if side > 0 else (0, 0, 0), 0.14))
            c.fill()
            c.restore()

    def save(self):
        self.surface.write_to_png(self.name + ".png")


MUG = [(0, 0.150), (0.02, 0.165), (0.16, 0.172), (0.30, 0.170), (0.335, 0.168)]
BOWL = [(0, 0.105), (0.025, 0.115), (0.07, 0.21), (0.15, 0.285), (0.215, 0.305)]
VASE = [(0, 0.115), (0.02, 0.13), (0.14, 0.185), (0.26, 0.18), (0.37, 0.11), (0.44, 0.072), (0.50, 0.082)]
CARAFE = [(0, 0.13), (0.02, 0.145), (0.15, 0.165), (0.28, 0.125), (0.38, 0.08), (0.46, 0.078), (0.50, 0.095)]
POT = [(0, 0.13), (0.02, 0.14), (0.14, 0.175), (0.25, 0.195), (0.27, 0.198)]
CUP = [(0, 0.075), (0.015, 0.085), (0.09, 0.105), (0.16, 0.108), (0.175, 0.107)]


def mug(name, pixels, aspect=1.0, foot=0.80, scale=1.0):
    still = Still(name, pixels, "#e9ddd0", "#d9c3ae", horizon=0.70 if aspect == 1.0 else 0.74, aspect=aspect)
    still.window_light(0.10, 0.22, 0.34, 0.34)
    body = [(h * scale, r * scale) for h, r in MUG]
    still.handle(0.47 + 0.150 * scale, foot * aspect - 0.275 * scale, 0.115 * scale, 0.19 * scale, "#c9714f", 0.034 * scale)
    still.turned(0.47, foot * aspect, body, "#d7b99c", ("#c9714f", 0.10 * scale, 0.006), "#8f4a33", 90, 3)
    still.save()


def bowl():
    still = Still("bowl", 342, "#dfe5e1", "#c5cfc8")
    still.window_light(0.52, 0.25, 0.34, 0.3)
    still.turned(0.5, 0.80, BOWL, "#e6ddcf", ("#6f8f86", 0.115, 0.007), "#54716a", 60, 5)
    still.save()


def vase():
    still = Still("vase", 342, "#f0e0d6", "#ddc4b4")
    still.window_light(0.56, 0.24, 0.3, 0.32)
    for height, lean, leaves in ((0.26, -0.12, 7), (0.31, 0.04, 8), (0.23, 0.15, 6)):
        still.branch(0.48, 0.36, height, lean, "#7d8f69", leaves, 0.085)
    still.turned(0.48, 0.84, VASE, "#efe6da", None, "#b9a996", 70, 9)
    still.save()


def carafe():
    still = Still("carafe", 342, "#d9dee8", "#bcc6d4")
    still.window_light(0.10, 0.26, 0.32, 0.34)
    still.turned(0.42, 0.82, CARAFE, "#e9e4da", ("#3f5f86", 0.20, 0.006), "#2d4566", 50, 4)
    still.turned(0.72, 0.86, CUP, "#e9e4da", ("#3f5f86", 0.075, 0.004), "#2d4566", 24, 8)
    still.save()


def planter():
    still = Still("planter", 342, "#e4e8da", "#cdd3bd")
    still.window_light(0.56, 0.22, 0.3, 0.3)
    for height, lean in ((0.36, -0.20), (0.46, -0.05), (0.44, 0.10), (0.32, 0.23)):
        still.branch(0.5, 0.60, height, lean, "#5f7f56", 8, 0.13)
    still.turned(0.5, 0.86, POT, "#c98d6b", None, "#5b4334", 40, 2)
    still.save()


def plates():
    still = Still("plates", 342, "#ece4d6", "#d8c9b0")
    still.window_light(0.12, 0.24, 0.34, 0.32)
    for index, color in enumerate(("#8c9a86", "#d9a441", "#efe6da")):
        foot = 0.83 - index * 0.062
        still.turned(0.5, foot, [(0, 0.17), (0.012, 0.20), (0.035, 0.30), (0.045, 0.315)], color, None, color, 26, index + 3, 0.10)
    still.turned(0.5, 0.655, CUP, "#c9714f", None, "#7d3f2c", 24, 6)
    still.save()


mug("mug", 342)
mug("mug-large", 780, aspect=1.0, foot=0.82, scale=1.12)
bowl()
vase()
carafe()
planter()
plates()
