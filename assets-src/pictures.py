#!/usr/bin/python3
"""Draws the pictures of the show into demo/: white and hued type on black, for additive blending.

Each picture has the size it is shown at in a window of 1024 x 768. Those of the show are a power of
two in both directions, so that building mipmaps never resamples them. Needs python3-pil and fonts-inter.
"""

import pathlib
import sys

from PIL import Image, ImageChops, ImageDraw, ImageFilter, ImageFont

FONTS = pathlib.Path("/usr/share/fonts/opentype/inter")
WHITE = (255, 255, 255)
CYAN = (0x38, 0xD6, 0xFF)
AMBER = (0xFF, 0x9A, 0x3C)
SIZE = (1024, 512)


def font(weight, size):
    return ImageFont.truetype(str(FONTS / f"Inter-{weight}.otf"), size)


class Picture:
    def __init__(self, size=SIZE):
        self.image = Image.new("RGB", size)
        self.draw = ImageDraw.Draw(self.image)

    def text(self, middle, text, face, tracking, colour):
        """One line centred on `middle`; `tracking` is the extra space between letters in pixels."""
        widths = [face.getlength(letter) for letter in text]
        width = sum(widths) + tracking * (len(text) - 1)
        x = middle[0] - width / 2
        for letter, advance in zip(text, widths):
            self.draw.text((round(x), middle[1]), letter, font=face, fill=colour, anchor="lm")
            x += advance + tracking
        return width

    def rule(self, middle, width, colour):
        """A hair line that fades to nothing at both ends."""
        left, y = round(middle[0] - width / 2), round(middle[1])
        for x in range(left, left + round(width)):
            strength = 1 - abs(2 * (x - middle[0]) / width) ** 2
            self.image.putpixel((x, y), tuple(round(c * max(strength, 0)) for c in colour))

    def halo(self, radius, strength, tint):
        """Adds a soft, tinted light around what is drawn so far."""
        light = self.image.filter(ImageFilter.GaussianBlur(radius))
        light = ImageChops.multiply(light, Image.new("RGB", self.image.size, tint))
        light = light.point(lambda value: min(255, round(value * strength)))
        self.image = ImageChops.add(self.image, light)
        self.draw = ImageDraw.Draw(self.image)

    def save(self, path):
        path.parent.mkdir(parents=True, exist_ok=True)
        self.image.save(path, optimize=True)


def title():
    picture = Picture()
    picture.text((512, 246), "afterglow", font("ExtraLight", 132), 16, WHITE)
    picture.halo(14, 0.9, CYAN)
    picture.rule((512, 346), 560, CYAN)
    return picture


def maker():
    picture = Picture()
    picture.text((512, 196), "made by", font("Light", 30), 14, CYAN)
    picture.text((512, 276), "zavex", font("ExtraLight", 116), 34, WHITE)
    picture.halo(14, 0.9, CYAN)
    picture.rule((512, 368), 420, AMBER)
    return picture


def invitation():
    picture = Picture()
    picture.text((512, 168), "stay until the light is gone", font("ExtraLight", 54), 6, WHITE)
    picture.halo(10, 0.8, CYAN)
    picture.rule((512, 244), 640, CYAN)
    picture.text((512, 304), "open a timeline. draw a curve. press play.", font("Light", 26), 4, WHITE)
    picture.text((512, 354), "this is yours to change", font("Light", 26), 4, AMBER)
    return picture


def emblem():
    """For the gallery of controls, which shows a picture of its own size."""
    picture = Picture((160, 48))
    picture.text((80, 22), "afterglow", font("Light", 24), 3, WHITE)
    picture.halo(4, 0.9, CYAN)
    picture.rule((80, 40), 130, AMBER)
    return picture


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "demo")
    for name, make in (("intro", title), ("intro2", maker), ("invites", invitation)):
        make().save(folder / "plasma" / f"{name}.png")
    emblem().save(folder / "gallery.png")


if __name__ == "__main__":
    main()
