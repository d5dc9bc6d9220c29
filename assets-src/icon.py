#!/usr/bin/python3
"""Draws the show's icon into packaging/icons: a glowing curve with its keys, at each size of the desktop's theme.

Needs python3-pil and fonts-inter.
"""

import math
import pathlib

from PIL import Image, ImageChops, ImageDraw, ImageFilter

from pictures import AMBER, CYAN

ICONS = pathlib.Path(__file__).resolve().parent.parent / "packaging" / "icons"
SIZES = (48, 128, 256)
CANVAS = 1024  # drawn once, then made smaller
CORNER = 200  # radius, pixels of the canvas
INDIGO = (0x14, 0x10, 0x2E)
BLACK = (0, 0, 0)
LEFT, RIGHT = 130, CANVAS - 130
KEYS = (0.0, 0.5, 1.0)  # along the curve
KEY_RADIUS = 74
LINE_WIDTH = 64
GLOWS = (28, 90)  # radii of the blurs that are added


def curve(progress):
    x = LEFT + (RIGHT - LEFT) * progress
    swing = math.sin(2 * math.pi * progress) * 0.20 + (0.5 - progress) * 0.34
    return x, CANVAS * (0.5 + swing)


def disc(draw, middle, radius, colour):
    x, y = middle
    draw.ellipse((x - radius, y - radius, x + radius, y + radius), fill=colour)


def lights():
    image = Image.new("RGB", (CANVAS, CANVAS), BLACK)
    draw = ImageDraw.Draw(image)
    for step in range(CANVAS):
        disc(draw, curve(step / (CANVAS - 1)), LINE_WIDTH / 2, CYAN)
    for progress in KEYS:
        disc(draw, curve(progress), KEY_RADIUS, AMBER)
    return image


def icon():
    light = lights()
    picture = Image.new("RGB", light.size, INDIGO)
    for radius in GLOWS:
        picture = ImageChops.add(picture, light.filter(ImageFilter.GaussianBlur(radius)))
    picture = Image.composite(light, picture, light.convert("L").point(lambda value: 255 if value else 0))
    plate = Image.new("L", light.size, 0)
    ImageDraw.Draw(plate).rounded_rectangle((0, 0, CANVAS - 1, CANVAS - 1), CORNER, fill=255)
    picture.putalpha(plate)
    return picture


def main():
    picture = icon()
    for size in SIZES:
        folder = ICONS / f"{size}x{size}" / "apps"
        folder.mkdir(parents=True, exist_ok=True)
        picture.resize((size, size), Image.LANCZOS).save(folder / "afterglow.png", optimize=True)


if __name__ == "__main__":
    main()
