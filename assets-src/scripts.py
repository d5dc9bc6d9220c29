#!/usr/bin/python3
"""Writes the scripts of the show into demo/script/: every key on its bar of the song.

The files have exactly the form in which the program saves them. Editing them in the program is the
usual way to change the show; this program is how its first version was laid on the beat.
"""

import pathlib
import sys

BAR = 1.875  # seconds, 128 BPM
BEAT = BAR / 4
END = 36 * BAR


def number(value):
    return "%.6g" % value


def spline(name, keys, mode="smooth", unit=BAR, span=END):
    """`keys` are (time in `unit` seconds, value); stored times are fractions of `span`."""
    lines = ['<attributes type="%s" before="constant" after="constant"/>' % mode]
    lines += ['<key time="%s" value="%s"/>' % (number(time * unit / span), number(value)) for time, value in keys]
    return "spline", name, lines


def colour(name, keys, span=END):
    """`keys` are (time in bars, colour as #rrggbb, brightness)."""
    lines = []
    for time, text, brightness in keys:
        red, green, blue = (int(text[i:i + 2], 16) / 255 * brightness for i in (1, 3, 5))
        lines.append('<key time="%s" r="%s" g="%s" b="%s"/>'
                     % (number(time * BAR / span), number(red), number(green), number(blue)))
    return "color", name, lines


def trigger(name, actions):
    """`actions` are (start in bars, delay in beats, repeats)."""
    return "trigger", name, ['<action start="%s" delay="%s" repeat="%d"/>'
                             % (number(start * BAR), number(delay * BEAT), repeat)
                             for start, delay, repeat in actions]


def held(level, *spans, fade=0.5):
    """Keys of a curve that is `level` within each (first bar, last bar) and 0 outside."""
    keys = [(0, 0)]
    for first, last in spans:
        keys += [(first, 0), (first + fade, level), (last - fade, level), (last, 0)]
    return keys


PLASMA = [
    spline("invite", held(0.9, (29, 33)), "linear"),
    colour("color", [(0, "#000000", 0), (2, "#2030a0", 1.0), (8, "#1c50c8", 1.1), (15, "#1890d8", 1.0),
                     (15.5, "#1890d8", 1.0), (16, "#20c8ff", 0.48), (16.5, "#20c8ff", 0.48), (22, "#1cb0ff", 0.5),
                     (23.5, "#1cb0ff", 0.5), (24.5, "#3038c0", 1.0), (27, "#2848c0", 1.0), (27.5, "#2848c0", 1.0),
                     (28, "#20c8ff", 0.48), (28.5, "#20c8ff", 0.48), (30.5, "#20a0ff", 0.5), (32, "#ff8c30", 0.5),
                     (34, "#ff7c28", 0.55), (35.5, "#301040", 0.5), (36, "#000000", 0)]),
    spline("stop", [(0, 0.3), (8, 0.3), (15, 0.34), (16, 0.6), (24, 0.45), (25, 0.2), (27, 0.2), (28, 0.62),
                    (34, 0.4), (36, 0.1)], "linear"),
    spline("drop", [(0, 0), (8, 0.4), (12, 0), (16, 0), (20, 0.5), (26, -0.3), (32, 0.2), (36, 0)]),
    spline("camera", [(0, -1.0), (5, -1.0), (9, -0.35), (12.5, 1), (15.5, 1), (20, 0.1), (24, -0.5), (28, -1),
                      (33, -0.4), (36, 0)]),
    spline("logo1", held(0.85, (2, 6)), "linear"),
    spline("logo2", held(0.85, (12, 16)), "linear"),
    trigger("beat trigger", [(8, 1, 31), (16, 1, 31), (26, 1, 32)]),
    spline("beat spline", [(0, 1), (0.06, 0.85), (0.2, 0.3), (0.45, 0)], unit=1, span=1),
    spline("hammertime", [(0, 0.5), (8, 0.55), (15.9, 0.55), (16, 0.8), (18, 0.68), (23.5, 0.66), (25, 0.5),
                          (27.9, 0.5), (28, 0.8), (30, 0.66), (34, 0.6), (36, 0.4)], "linear"),
]

VOLUMETRIC = 32 * BAR
SCENE = {"span": VOLUMETRIC}
STARS = [spline("not fast enough", [(0, -1), (2, 0.2), (24, 0.6), (31, 0.8), (32, -1)], "linear", **SCENE)]
# Through the plain in bends, over the low houses and then between the high ones.
ROAD = [
    colour("color", [(0, "#14102e", 0), (1, "#2a20a0", 1.2), (8, "#2038d0", 1.4), (16, "#2080f0", 1.4),
                     (24, "#38d6ff", 1.2), (31, "#38d6ff", 1.5), (32, "#38d6ff", 0)], **SCENE),
    colour("color_house_create", [(0, "#ff9a3c", 0), (16, "#ff9a3c", 1.3), (26, "#4030c0", 1.4), (32, "#2a30b8", 1.3)],
           **SCENE),
    spline("path x", [(0, 0), (4, 0.02), (9, 0.3), (14, -0.12), (20, -0.42), (26, 0.1), (32, 0.3)], **SCENE),
    spline("path y", [(0, -0.93), (8, -0.925), (14, -0.9), (19, -0.925), (25, -0.86), (29, -0.8), (32, -0.55)], **SCENE),
    spline("path z", [(0, -1), (8, -0.62), (16, -0.18), (24, 0.36), (32, 1)], **SCENE),
    spline("code", held(0.9, (2, 8)), "linear", **SCENE),
    spline("graphics", held(0.9, (10, 16)), "linear", **SCENE),
    spline("music", held(0.9, (18, 24)), "linear", **SCENE),
    spline("support", held(0.9, (25.5, 31.5)), "linear", **SCENE),
]

FLIGHT = {"span": 26 * BAR}
LIGHTSPEED = [
    spline("not fast enough", [(0, 0.2), (0.5, 1), (8, 0.6), (16, 0.9), (23, 0.5), (25.5, -0.4), (26, -1)], "linear",
           **FLIGHT),
    spline("greetings (to)", held(0.9, (23.5, 26)), "linear", **FLIGHT),
    spline("explode", [(0, -1), (2, -0.9), (8, -0.45), (12, -0.85), (16, -0.3), (20, -0.8), (24, -0.6), (26, 0.6)],
           **FLIGHT),
    spline("rot x", [(0, 0), (8, 0.3), (16, -0.3), (24, 0.4), (26, 0)], **FLIGHT),
    spline("rot y", [(0, 0), (6, -0.2), (14, 0.35), (22, -0.3), (26, 0)], **FLIGHT),
    trigger("triggerexplode", [(0, 4, 26)]),
]

EFFECTS = {
    "common.Common": [],
    "clear.clear": [colour("color", [(0, "#05040c", 1), (36, "#05040c", 1)])],
    "flash.flash": [spline("flash", [(0, 0.5), (0.1, 0.5), (2, 0), (34.5, 0), (35.7, 0.5), (36, 0.5)], "linear")],
    "plasma.plasma": PLASMA,
    "postprocess.postprocess": [
        spline("glow", [(0, -0.1), (8, 0), (15.9, 0.1), (16, 0.5), (24, 0.1), (27.9, 0.1), (28, 0.5), (34, 0.2),
                        (36, -0.6)], "linear"),
        spline("glownoise", [(0, -0.75), (24, -0.7), (36, -0.8)], "linear"),
    ],
    "stars.stars": STARS,
    "volumetric.volumetric": ROAD,
    "lightspeed.lightspeed": LIGHTSPEED,
    "ascii.ascii": [spline("done", [(0, 0), (1, 1)], "linear", 1, 1)],
}

# Where an effect plays, in bars, if not as long as the song.
SPANS = {
    "stars.stars": (32, 64),
    "volumetric.volumetric": (32, 64),
    "lightspeed.lightspeed": (64, 90),
    "ascii.ascii": (90, 96),
}

# Switched off: their bars of the song are not written.
WAITING = {"stars.stars", "volumetric.volumetric"}


def document(name, plugins):
    start, end = (bar * BAR for bar in SPANS.get(name, (0, END / BAR)))
    lines = ["<effect>", '\t<option inactive="%d" locked="0"/>' % (name in WAITING),
             '\t<time start="%s" end="%s"/>' % (number(start), number(end))]
    for kind, name, body in plugins:
        lines.append('\t<plugin type="%s" name="%s">' % (kind, name))
        lines += ["\t\t" + line for line in body]
        lines.append("\t</plugin>")
    return "\n".join(lines + ["</effect>", ""])


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "demo")
    (folder / "script").mkdir(parents=True, exist_ok=True)
    for name, plugins in EFFECTS.items():
        (folder / "script" / f"{name}.xml").write_text(document(name, plugins), newline="\n")


if __name__ == "__main__":
    main()
