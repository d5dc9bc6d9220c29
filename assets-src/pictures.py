#!/usr/bin/python3
"""Draws the pictures of the show into demo/: white and hued type on black, for additive blending.

Each picture has the size it is shown at in a window of 1024 x 768. Those of the show are a power of
two in both directions, so that building mipmaps never resamples them. Needs python3-pil and fonts-inter.
"""

import pathlib
import random

from PIL import Image, ImageChops, ImageDraw, ImageFilter, ImageFont

DEMO = pathlib.Path(__file__).resolve().parent.parent / "demo"
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
    picture.text((512, 168), "stay for the afterglow", font("ExtraLight", 54), 6, WHITE)
    picture.halo(10, 0.8, CYAN)
    picture.rule((512, 244), 640, CYAN)
    picture.text((512, 304), "open a timeline. draw a curve. press play.", font("Light", 26), 4, WHITE)
    picture.text((512, 354), "this is yours to change", font("Light", 26), 4, AMBER)
    return picture


CREDITS = {
    "code": "every frame in time",
    "graphics": "light instead of paint",
    "music": "one song in a minor",
    "support": "coffee, patience, faith",
}

# One for each plate of the flight.
GREETINGS = (
    "leonhard euler", "joseph fourier", "carl friedrich gauss", "william rowan hamilton", "bernhard riemann",
    "charles hermite", "ada lovelace", "charles babbage", "george boole", "alan turing", "emmy noether",
    "john von neumann", "grace hopper", "claude shannon", "pierre bézier", "paul de casteljau",
    "isaac schoenberg", "carl de boor", "ivan sutherland", "david evans", "henri gouraud", "bùi tường phong",
    "edwin catmull", "jim clark", "james blinn", "martin newell", "frank crow", "lance williams",
    "turner whitted", "robert cook", "loren carpenter", "benoit mandelbrot", "ken perlin", "vera molnár",
    "manfred mohr",
)


def credit(word, line):
    """Stands against the right edge of the window, its top a little above the upper edge."""
    picture = Picture((512, 256))
    right = 440
    for text, face, tracking, y, tint in ((word, font("ExtraLight", 58), 10, 132, WHITE),
                                          (line, font("Light", 22), 3, 196, CYAN)):
        width = sum(face.getlength(letter) for letter in text) + tracking * (len(text) - 1)
        picture.text((right - width / 2, y), text, face, tracking, tint)
    picture.halo(8, 0.8, CYAN)
    picture.rule((right - 105, 168), 210, AMBER)
    return picture


def greetings_lines():
    """All lines below each other, one for each plate, which is ten times as wide as it is high."""
    width, height = 1024, 2048
    lines = []
    for name in GREETINGS:
        # Drawn at the plate's own proportions, then squeezed into the line.
        line = Picture((width, width // 10))
        face, tracking = font("Medium", 62), 9
        while sum(face.getlength(letter) for letter in name) + tracking * (len(name) - 1) > width - 90:
            face = font("Medium", face.size - 2)
        line.text((width / 2, width / 20), name, face, tracking, WHITE)
        lines.append(line.image)
    picture = Picture((width, height))
    for number, line in enumerate(lines):
        top, bottom = round(number * height / len(lines)), round((number + 1) * height / len(lines))
        picture.image.paste(line.resize((width, bottom - top), Image.LANCZOS), (0, top))
    return picture


def greetings():
    picture = Picture()
    picture.text((512, 196), "greetings", font("ExtraLight", 116), 22, WHITE)
    picture.halo(14, 0.9, CYAN)
    picture.rule((512, 284), 620, AMBER)
    picture.text((512, 336), "to all who taught numbers to shine", font("Light", 28), 5, CYAN)
    return picture


def threads():
    """The side of a house: hair lines of light from the ground to the roof, repeated sideways."""
    chance = random.Random(4)
    width, height, count = 512, 512, 24
    picture = Picture((width, height))
    for thread in range(count):
        x = (thread + 0.5) * width / count
        strength = chance.choice((0.25, 0.4, 0.55, 0.75, 1.0))
        hue = CYAN if chance.random() < 0.6 else (0x5A, 0x4C, 0xE0)
        begin = chance.randint(0, height // 2)
        for y in range(begin, height):
            fade = min(1.0, (y - begin) / 90) * strength
            picture.image.putpixel((int(x), y), tuple(round(c * fade) for c in hue))
            picture.image.putpixel((int(x) + 1, y), tuple(round(c * fade) for c in hue))
    for floor in range(1, 8):
        y = height - floor * height // 8
        for x in range(width):
            old = picture.image.getpixel((x, y))
            picture.image.putpixel((x, y), tuple(max(o, round(c * 0.16)) for o, c in zip(old, CYAN)))
    picture.halo(2.5, 0.7, WHITE)
    return picture


# Eight rows of eight dots each, darkest first: what a cell of the end picture shows.
CELL_GLYPHS = (
    "00 00 00 00 00 00 00 00", "00 00 00 00 00 18 18 00", "00 18 18 00 00 18 18 00", "00 00 00 7e 7e 00 00 00",
    "00 18 18 7e 7e 18 18 00", "00 7e 00 7e 7e 00 7e 00", "24 24 7e 24 24 7e 24 24", "66 7e 3c ff ff 3c 7e 66",
    "3c 7e db ff ff db 7e 3c", "7e ff ff ff ff ff ff 7e",
)


def end_picture():
    """94 x 20 cells of 8 x 8 texels: the title out of characters, and a closing line."""
    cell, columns, rows = 8, 94, 20
    fine = 8  # samples of the title in a cell
    title = Image.new("L", (columns * fine, 15 * fine))
    face = font("SemiBold", 118)
    drawn = ImageDraw.Draw(title)
    letters = "afterglow"
    widths = [face.getlength(letter) for letter in letters]
    gap = 6
    x = (title.width - sum(widths) - gap * (len(letters) - 1)) / 2
    for letter, advance in zip(letters, widths):
        drawn.text((round(x), title.height * 0.44), letter, font=face, fill=255, anchor="lm")
        x += advance + gap
    density = title.resize((columns, 15), Image.BOX)

    picture = Picture((columns * cell, rows * cell))
    for row in range(density.height):
        for column in range(columns):
            level = density.getpixel((column, row)) / 255
            glyph = CELL_GLYPHS[min(int(level * len(CELL_GLYPHS)), len(CELL_GLYPHS) - 1)]
            across = column / (columns - 1)
            tint = [round(a + (b - a) * across) for a, b in zip((0x50, 0x48, 0xD8), CYAN)]
            for y, bits in enumerate(glyph.split()):
                for bit in range(cell):
                    if int(bits, 16) & (0x80 >> bit):
                        picture.image.putpixel((column * cell + bit, row * cell + y), tuple(tint))
    picture.text((columns * cell / 2, 18 * cell), "the light stays on", font("Light", 26), 8, AMBER)
    return picture


def emblem():
    """For the gallery of controls, which shows a picture of its own size."""
    picture = Picture((160, 48))
    picture.text((80, 22), "afterglow", font("Light", 24), 3, WHITE)
    picture.halo(4, 0.9, CYAN)
    picture.rule((80, 40), 130, AMBER)
    return picture


def main():
    for name, make in (("intro", title), ("intro2", maker), ("invites", invitation)):
        make().save(DEMO / "plasma" / f"{name}.png")
    for word, line in CREDITS.items():
        credit(word, line).save(DEMO / "creds" / f"{word}.png")
    greetings_lines().save(DEMO / "lightspeed" / "greets.png")
    greetings().save(DEMO / "lightspeed" / "greetings.png")
    threads().save(DEMO / "volumetric" / "threads.png")
    end_picture().save(DEMO / "ascii" / "ascii.png")
    emblem().save(DEMO / "gallery.png")


if __name__ == "__main__":
    main()
