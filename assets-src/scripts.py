#!/usr/bin/python3
"""Writes the scripts of the show into demo/script/: every key on its bar of the song.

The files have exactly the form in which the program saves them. Editing them in the program is the
usual way to change the show; this program is how its first version was laid on the beat.
"""

import pathlib

import song
from song import CUT, DROP, IMPACT, RESOLVE

BAR = song.BAR  # seconds
BEAT = BAR / 4
SONG = song.BARS
END = (SONG + 1) * BAR  # of the effects that make every frame: the song's very last is shown too


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


def shown(level, first, last, fade=0.5):
    """Keys of a curve that is `level` from bar `first` to bar `last` but for its fades, and 0 outside."""
    return [(0, 0), (first, 0), (first + fade, level), (last - fade, level), (last, 0)]


def kicks(first, last, start=0):
    """The beats with a kick from bar `first` until bar `last`, in bars after bar `start`."""
    return [bar - start for bar in song.kicks(first, last)]


NEAR = 0.002  # bars between two keys that make a jump


def hold(first, last, text, brightness=1):
    """Keys of a gradient that keeps a colour from bar `first` to bar `last`. The automatic tangents of
    a key swing as far as its longer neighbouring segment is long: a second key close by stops that."""
    return [(time, text, brightness) for time in (first, first + NEAR, last - NEAR, last)]


def pulses(base, peak, times, fall=0.22):
    """Keys of a linear curve that jumps from `base` to `peak` at each time and falls back within `fall` bars."""
    keys = []
    for time in times:
        keys += [(time - NEAR, base), (time, peak), (time + fall, base)]
    return keys


PLASMA_SPAN = {"span": CUT * BAR}
PLASMA = [
    spline("invite", shown(0.9, 28, 32, fade=0.25), "linear", **PLASMA_SPAN),
    colour("color", [(0, "#000000", 0), (1, "#182478", 0.9), (2, "#2030a0", 1.3)] + hold(3, 6, "#1c44c0", 0.8)
           + [(7, "#1c50c8", 1.1)] + hold(10, 12, "#1c60d0", 1.0) + hold(12.5, 15, "#1c50c8", 0.6)
           + hold(15.75, DROP - NEAR, "#1430a0", 0.3) + hold(DROP, 17, "#20c8ff", 0.3) + hold(19, 20, "#1cb0ff", 0.36)
           + [(22, "#2858e0", 0.4)] + hold(24, 25, "#4038d0", 0.4) + [(26, "#2868e0", 0.42)]
           + hold(27, 27.75, "#20b0ff", 0.4) + hold(28, 30, "#2838b0", 0.5) + hold(31, 31.5, "#2060d0", 0.35)
           + [(32, "#20c8ff", 0.35)], **PLASMA_SPAN),
    spline("stop", [(0, 0.3), (8, 0.3), (15, 0.34), (15.75, 0.05), (16, 0.6), (24, 0.5), (28, 0.4), (30, 0.5),
                    (32, 0.9)], "linear", **PLASMA_SPAN),
    spline("drop", [(0, 0), (8, 0.4), (12, 0), (16, 0), (20, 0.5), (25, -0.3), (28, 0), (32, 0)], **PLASMA_SPAN),
    spline("camera", [(0, -1.0), (5, -1.0), (9, -0.35), (12.5, 1), (15.5, 1), (20, 0.1), (24, -0.5), (28, -1),
                      (32, -0.6)], **PLASMA_SPAN),
    spline("logo1", shown(0.85, 2, 6.5), "linear", **PLASMA_SPAN),
    spline("logo2", shown(0.9, 12, 15.75), "linear", **PLASMA_SPAN),
    trigger("beat trigger", [(8, 1, 30), (16, 1, 63)]),
    spline("beat spline", [(0, 1), (0.06, 0.9), (0.2, 0.4), (0.46, 0)], unit=1, span=1),
    # Higher where the pattern leaves few cells lit; beyond 1 the field bursts.
    spline("hammertime", [(0, 0.9), (2, 0.65), (5, 0.55), (6.5, 1), (8, 0.85), (8.5, 0.55), (11, 0.75), (12.5, 0.85),
                          (14, 0.8), (14.5, 0.58), (15.75, 0.58), (15.99, 0.3), (16, 1.3), (17, 1.05), (17.8, 1.2),
                          (19, 1), (20, 1.1), (21.7, 1.2), (22.2, 0.9), (23.9, 0.8), (24, 1.4), (25, 1.1), (25.8, 1.2),
                          (26.5, 0.9), (27.9, 0.9), (28, 0.6), (29, 0.85), (30.5, 0.85), (31, 0.6), (32, 0.8)],
           "linear", **PLASMA_SPAN),
]

SCENE = {"span": (IMPACT - CUT) * BAR}
# High over the low houses, down between those that grow, and up again. Bars of the scene.
ROAD = [
    colour("color", [(0, "#14102e", 0), (1, "#2a20a0", 0.8), (8, "#2038d0", 1.2), (16, "#2080f0", 1.3),
                     (24, "#38d6ff", 1.2), (32, "#38d6ff", 1.6)], **SCENE),
    # Not bars: how far a house has come, from 0 to 32.
    colour("color_house_create", [(0, "#ff9a3c", 0), (16, "#ff9a3c", 1.3), (26, "#3830c0", 1.0), (32, "#1c2ca0", 0.8)],
           **SCENE),
    spline("path x", [(0, 0), (3, 0), (8, 0.35), (13, -0.25), (17, -0.1), (21, 0.5), (25, -0.1), (27.5, 0), (32, 0)],
           **SCENE),
    spline("path y", [(0, -0.5), (8, -0.68), (14, -0.8), (20, -0.92), (25, -0.92), (30, -0.82), (32, -0.8)], **SCENE),
    spline("path z", [(0, -1), (8, -0.42), (16, -0.02), (24, 0.42), (31, 0.88), (31.75, 0.93), (32, 1)], **SCENE),
    spline("code", shown(0.9, 1, 7), "linear", **SCENE),
    spline("graphics", shown(0.9, 9, 15), "linear", **SCENE),
    spline("music", shown(0.9, 17, 23), "linear", **SCENE),
    spline("support", shown(0.9, 25, 31), "linear", **SCENE),
]

# The stars are dark behind the streaks and come back behind the end picture. Bars of the stars.
SKY = {"span": (SONG - CUT) * BAR}
STARS = [spline("not fast enough", [(0, -1), (0.5, 0.9), (3, 0.6), (8, -0.2), (24, -0.2), (30, 0.6),
                                    (31.99, 1), (32, -1), (58, -1), (60, 0.8), (64, 0.8)], "linear", **SKY)]

# The streaks flash on every beat and go out behind the end picture. Bars of the flight.
FLIGHT = {"span": (SONG - IMPACT) * BAR}
LIGHTSPEED = [
    spline("not fast enough", [(0, 1), (0.5, 0.2)] + pulses(0.2, 1, kicks(65, 70, IMPACT))
           + pulses(-0.1, 0.6, kicks(70, 87, IMPACT)) + pulses(-0.5, 0.2, kicks(87, 90, IMPACT))
           + [(26, -0.5), (26.25, -1), (32, -1)], "linear", **FLIGHT),
    spline("greetings (to)", shown(0.9, 23.5, 25.9), "linear", **FLIGHT),
    spline("explode", [(0, -1), (3, -0.85), (7.5, -0.75), (8, -0.75), (10, -0.35), (13, -0.6), (15.5, -0.65),
                       (16, -0.65), (17.5, -0.2), (20, -0.55), (24.5, -0.7), (25, -0.7), (26, 0.5), (32, 1)], **FLIGHT),
    spline("rot x", [(0, 0), (4, 0.5), (8, 0), (12, -0.5), (16, 0.3), (20, -0.3), (24, 0), (32, 0)], **FLIGHT),
    spline("rot y", [(0, 0), (3, -0.3), (6, 0.2), (9, 0), (14, 0.4), (18, 0), (22, -0.3), (26, 0), (32, 0)], **FLIGHT),
    trigger("triggerexplode", [(0, 4, 25)]),
]

NIGHT = "#05040c"
CLEAR = [colour("color", hold(0, DROP - NEAR, NIGHT) + hold(DROP, DROP + 2 * NEAR, "#ffffff", 0.9)
                + hold(DROP + 0.25, CUT, NIGHT) + hold(CUT + 1, IMPACT - NEAR, "#0b0a20")
                + hold(IMPACT, IMPACT + 2 * NEAR, "#ffffff") + hold(IMPACT + 0.25, RESOLVE - NEAR, NIGHT)
                + hold(RESOLVE, RESOLVE + 2 * NEAR, "#ffffff", 0.7)
                + hold(RESOLVE + 0.25, 94, "#0c0a1c") + [(95.25, "#000000", 0)])]
FLASH = [spline("flash", [(0, 0.5), (0.1, 0.5), (2, 0), (31.998, 0), (32, 0.5), (32.05, 0.5), (32.25, 0),
                          (63.75, 0), (63.85, 0.42), (63.998, 0.42), (64, 0), (94, 0), (95.25, 0.5),
                          (97, 0.5)], "linear")]
GLOW = [
    spline("glow", [(0, -0.1), (8, 0), (15.75, 0.1), (15.99, -0.2), (16, 0.6), (18, 0.3), (24, 0.2), (28, 0.1),
                    (31.9, 0.5), (32, -0.1), (48, 0.1), (63.99, 0.5)]
           + pulses(0.3, 0.6, kicks(64, 70)) + pulses(0.1, 0.4, kicks(70, 90))
           + [(90, 0.6), (92, 0.2), (94, 0), (95.25, -1), (97, -1)], "linear"),
    spline("glownoise", [(0, -0.75), (24, -0.7), (97, -0.8)], "linear"),
]

EFFECTS = {
    "common.Common": [],
    "clear.clear": CLEAR,
    "flash.flash": FLASH,
    "plasma.plasma": PLASMA,
    "postprocess.postprocess": GLOW,
    "stars.stars": STARS,
    "volumetric.volumetric": ROAD,
    "lightspeed.lightspeed": LIGHTSPEED,
    "ascii.ascii": [spline("done", [(0, 0), (1, 1)], "linear", 1, 1)],
}

# Where an effect plays, in bars, if not as long as the song.
SPANS = {
    "plasma.plasma": (0, CUT),
    "stars.stars": (CUT, SONG),
    "volumetric.volumetric": (CUT, IMPACT),
    "lightspeed.lightspeed": (IMPACT, SONG),
    "ascii.ascii": (RESOLVE, SONG),
}


def document(name, plugins):
    start, end = (bar * BAR for bar in SPANS.get(name, (0, END / BAR)))
    lines = ["<effect>", '\t<option inactive="0" locked="0"/>',
             '\t<time start="%s" end="%s"/>' % (number(start), number(end))]
    for kind, name, body in plugins:
        lines.append('\t<plugin type="%s" name="%s">' % (kind, name))
        lines += ["\t\t" + line for line in body]
        lines.append("\t</plugin>")
    return "\n".join(lines + ["</effect>", ""])


def main():
    folder = pathlib.Path(__file__).resolve().parent.parent / "demo" / "script"
    folder.mkdir(exist_ok=True)
    for name, plugins in EFFECTS.items():
        (folder / f"{name}.xml").write_text(document(name, plugins), newline="\n")


if __name__ == "__main__":
    main()
