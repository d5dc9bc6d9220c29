#!/usr/bin/python3
"""Prints where the scripts of the show put its cuts and accents, against the bars where the song has them.

    ./sync.py > ../docs/sync.md

Reads demo/script/*.xml. Ends with status 1 if an event is more than one frame at 60 frames per second away from
its bar.
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree

from song import BAR, BPM, CUT, DROP, IMPACT, RESOLVE, kicks

SCRIPTS = pathlib.Path(__file__).resolve().parent.parent / "demo" / "script"
FRAME = 1 / 60  # seconds

# Event, bar, effect, plugin, what the plugin holds there: a value, or the red of a colour. No plugin: the effect
# begins or ends there.
EVENTS = (
    ("plasma begins", 0, "plasma", None, None),
    ("title begins to appear", 2, "plasma", "logo1", 0),
    ("title has gone", 6.5, "plasma", "logo1", 0),
    ("maker begins to appear", 12, "plasma", "logo2", 0),
    ("maker has gone", 15.75, "plasma", "logo2", 0),
    ("breath before the drop", 15.75, "plasma", "stop", 0.05),
    ("drop: white flash", DROP, "clear", "color", 0.9),
    ("drop: the field bursts", DROP, "plasma", "hammertime", 1.3),
    ("drop: the field speeds up", DROP, "plasma", "stop", 0.6),
    ("drop: glow", DROP, "postprocess", "glow", 0.6),
    ("second half: the field bursts", 24, "plasma", "hammertime", 1.4),
    ("invitation begins to appear", 28, "plasma", "invite", 0),
    ("invitation has gone", CUT, "plasma", "invite", 0),
    ("plasma ends", CUT, "plasma", None, None),
    ("cut to black", CUT, "flash", "flash", 0.5),
    ("out of black", 32.25, "flash", "flash", 0),
    ("stars begin", CUT, "stars", None, None),
    ("road begins", CUT, "volumetric", None, None),
    ("code begins to appear", 33, "volumetric", "code", 0),
    ("code has gone", 39, "volumetric", "code", 0),
    ("graphics begins to appear", 41, "volumetric", "graphics", 0),
    ("graphics has gone", 47, "volumetric", "graphics", 0),
    ("music begins to appear", 49, "volumetric", "music", 0),
    ("music has gone", 55, "volumetric", "music", 0),
    ("support begins to appear", 57, "volumetric", "support", 0),
    ("support has gone", 63, "volumetric", "support", 0),
    ("silence before the impact: dark from here", 63.75, "flash", "flash", 0),
    ("road ends", IMPACT, "volumetric", None, None),
    ("stars are dark", IMPACT, "stars", "not fast enough", -1),
    ("impact: white flash", IMPACT, "clear", "color", 1),
    ("impact: out of the dark", IMPACT, "flash", "flash", 0),
    ("streaks begin", IMPACT, "lightspeed", None, None),
    ("tunnel opens on the phrase", 72, "lightspeed", "explode", -0.75),
    ("tunnel opens again", 80, "lightspeed", "explode", -0.65),
    ("greetings begin to appear", 87.5, "lightspeed", "greetings (to)", 0),
    ("tunnel opens for good", 89, "lightspeed", "explode", -0.7),
    ("resolve: white flash", RESOLVE, "clear", "color", 0.7),
    ("end picture begins", RESOLVE, "ascii", None, None),
    ("fade begins", 94, "flash", "flash", 0),
    ("black", 95.25, "flash", "flash", 0.5),
)

# Accent, first bar, bar after the last, effect, plugin.
ACCENTS = (
    ("field jumps", 8, CUT, "plasma", "beat trigger"),
    ("glow", IMPACT, RESOLVE, "postprocess", "glow"),
    ("streaks flash", 65, RESOLVE, "lightspeed", "not fast enough"),
)


class Script:
    def __init__(self, path):
        root = ElementTree.parse(path).getroot()
        span = root.find("time")
        self.start, self.end = float(span.get("start")), float(span.get("end"))
        self.plugins = {plugin.get("name"): plugin for plugin in root.findall("plugin")}

    def times(self, plugin, value):
        """Seconds of the show at which `plugin` is set, to `value` if that is not None; without one, the ends."""
        if plugin is None:
            return [self.start, self.end]
        body = self.plugins[plugin]
        length = self.end - self.start
        keys = [self.start + float(key.get("time")) * length for key in body.findall("key")
                if value is None or abs(float(key.get("value") or key.get("r")) - value) < 1e-3]
        for action in body.findall("action"):
            start, delay = float(action.get("start")), float(action.get("delay"))
            keys += [self.start + start + delay * repeat for repeat in range(int(action.get("repeat")) + 1)]
        return keys


def main():
    scripts = {path.name.split(".")[0]: Script(path) for path in SCRIPTS.glob("*.xml")}
    offs = []

    def nearest(event, bar, effect, plugin, value=None):
        if effect not in scripts:
            sys.exit(f"sync.py: {SCRIPTS} has no script of {effect}")
        time = min(scripts[effect].times(plugin, value), key=lambda time: abs(time - bar * BAR), default=float("inf"))
        offs.append(abs(time - bar * BAR))
        if offs[-1] > FRAME:
            print(f"sync.py: {event}, bar {bar}: {offs[-1]:.3f} s off", file=sys.stderr)
        return time

    print("# Where the show meets its song\n")
    print(f"Made by `assets-src/sync.py` from the scripts: {BPM} BPM, a bar is {BAR:g} s.\n")
    print("| event | bar | intended, s | in the script, s | off by, ms | where |\n|---|---|---|---|---|---|")
    for event, bar, effect, plugin, value in EVENTS:
        time = nearest(event, bar, effect, plugin, value)
        print("| %s | %g | %.4f | %.4f | %.2f | %s, %s |"
              % (event, bar, bar * BAR, time, 1000 * (time - bar * BAR), effect, plugin or "its span"))
    for event, first, last, effect, plugin in ACCENTS:
        bars = kicks(first, last)
        off = max(abs(nearest(event, bar, effect, plugin) - bar * BAR) for bar in bars)
        print("| %s on each of %d kicks | %g to %g | %.4f to %.4f | | at most %.2f | %s, %s |"
              % (event, len(bars), bars[0], bars[-1], bars[0] * BAR, bars[-1] * BAR, 1000 * off, effect, plugin))
    print("\nAt most %.2f ms off; a frame at 60 frames per second is %.2f ms." % (1000 * max(offs), 1000 * FRAME))
    return max(offs) > FRAME


if __name__ == "__main__":
    sys.exit(main())
