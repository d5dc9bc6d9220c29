#!/usr/bin/python3
"""Prints where the scripts of the show put its cuts and accents, against the bars where the song has them.

    ./sync.py [FOLDER] > ../docs/sync.md

Reads FOLDER/script/*.xml (default: demo/). Ends with status 1 if an event is more than one frame at
60 frames per second away from its bar.
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree

import song

BAR = song.BAR  # seconds
FRAME = 1 / 60  # seconds

# Event, bar, effect, plugin; no plugin: the effect begins or ends there.
EVENTS = (
    ("plasma begins", 0, "plasma", None),
    ("title appears", 2, "plasma", "logo1"),
    ("title has gone", 6.5, "plasma", "logo1"),
    ("maker appears", 12, "plasma", "logo2"),
    ("maker has gone", 15.75, "plasma", "logo2"),
    ("breath before the drop", 15.75, "plasma", "color"),
    ("drop: white flash", 16, "clear", "color"),
    ("drop: the field opens up", 16, "plasma", "hammertime"),
    ("drop: the field speeds up", 16, "plasma", "stop"),
    ("drop: glow", 16, "postprocess", "glow"),
    ("second half of the drop", 24, "plasma", "hammertime"),
    ("invitation appears", 28, "plasma", "invite"),
    ("invitation has gone", 32, "plasma", "invite"),
    ("plasma ends", 32, "plasma", None),
    ("cut to black", 32, "flash", "flash"),
    ("out of black", 32.25, "flash", "flash"),
    ("stars begin", 32, "stars", None),
    ("road begins", 32, "volumetric", None),
    ("credit: code", 33, "volumetric", "code"),
    ("code has gone", 39, "volumetric", "code"),
    ("credit: graphics", 41, "volumetric", "graphics"),
    ("graphics has gone", 47, "volumetric", "graphics"),
    ("credit: music", 49, "volumetric", "music"),
    ("music has gone", 55, "volumetric", "music"),
    ("credit: support", 57, "volumetric", "support"),
    ("support has gone", 63, "volumetric", "support"),
    ("silence before the impact: dark", 63.75, "flash", "flash"),
    ("road ends", 64, "volumetric", None),
    ("stars are dark", 64, "stars", "not fast enough"),
    ("impact: white flash", 64, "clear", "color"),
    ("flash is over", 64.25, "clear", "color"),
    ("streaks begin", 64, "lightspeed", None),
    ("tunnel opens on the phrase", 72, "lightspeed", "explode"),
    ("tunnel opens again", 80, "lightspeed", "explode"),
    ("greetings appear", 87.5, "lightspeed", "greetings (to)"),
    ("resolve: white flash", 90, "clear", "color"),
    ("end picture begins", 90, "ascii", None),
    ("tunnel opens for good", 89, "lightspeed", "explode"),
    ("fade begins", 94, "flash", "flash"),
    ("black", 95.25, "flash", "flash"),
)

# Accents, first bar, bar after the last, effect, plugin.
BEATS = (
    ("field jumps on the kicks", 8, 32, "plasma", "beat trigger"),
    ("glow on the kicks", 64, 90, "postprocess", "glow"),
    ("streaks on the kicks", 65, 90, "lightspeed", "not fast enough"),
)


class Script:
    def __init__(self, path):
        root = ElementTree.parse(path).getroot()
        span = root.find("time")
        self.start, self.end = float(span.get("start")), float(span.get("end"))
        self.plugins = {plugin.get("name"): plugin for plugin in root.findall("plugin")}

    def times(self, plugin):
        """Seconds of the show at which something is set in `plugin`, or of the effect's ends."""
        if plugin is None:
            return [self.start, self.end]
        body = self.plugins[plugin]
        length = self.end - self.start
        keys = [self.start + float(key.get("time")) * length for key in body.findall("key")]
        for action in body.findall("action"):
            start, delay = float(action.get("start")), float(action.get("delay"))
            keys += [self.start + start + delay * repeat for repeat in range(int(action.get("repeat")) + 1)]
        return keys


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent / "demo")
    scripts = {path.name.split(".")[0]: Script(path) for path in (folder / "script").glob("*.xml")}

    def nearest(bar, effect, plugin):
        return min(scripts[effect].times(plugin), key=lambda time: abs(time - bar * BAR))

    worst = 0.0
    print("# Where the show meets its song\n")
    print("Made by `assets-src/sync.py` from the scripts: 128 BPM, a bar is 1.875 s.\n")
    print("| event | bar | intended, s | in the script, s | off by, ms | where |\n|---|---|---|---|---|---|")
    for event, bar, effect, plugin in EVENTS:
        time = nearest(bar, effect, plugin)
        worst = max(worst, abs(time - bar * BAR))
        print("| %s | %g | %.4f | %.4f | %.2f | %s, %s |"
              % (event, bar, bar * BAR, time, 1000 * (time - bar * BAR), effect, plugin or "its span"))
    for event, first, last, effect, plugin in BEATS:
        bars = [time / BAR for time, _ in song.strokes("kick") if first * BAR <= time < last * BAR]
        bars = [bar for bar in bars if bar * 4 % 1 == 0]
        off = max((nearest(bar, effect, plugin) - bar * BAR for bar in bars), key=abs)
        worst = max(worst, abs(off))
        print("| %s: %d of them | %g to %g | %.4f to %.4f | | at most %.2f | %s, %s |"
              % (event, len(bars), bars[0], bars[-1], bars[0] * BAR, bars[-1] * BAR, 1000 * abs(off), effect,
                 plugin))
    print("\nAt most %.2f ms off; a frame at 60 frames per second is %.2f ms." % (1000 * worst, 1000 * FRAME))
    return worst > FRAME


if __name__ == "__main__":
    sys.exit(main())
