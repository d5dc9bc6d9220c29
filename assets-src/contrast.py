#!/usr/bin/python3
"""Measures how well the toolkit's colours can be told apart: demo/style.xml over what widgets start with.

Each row of the table below is a pair that the drawing code puts on one another. Contrast is that of WCAG 2, between the
ends of the gradients that are closest. Prints the pairs, worst first, and ends with 1 if one is below its bound.
"""

import itertools
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent
TEXT = 4.5  # of text
INACTIVE = 3.0  # of text of what is greyed out
SHAPE = 3.0  # of what carries meaning without words
SELECTION_ALPHA = 0.35  # vel_text_input.cpp

# The elements of controls that start with `widgetStyle`.
WIDGETS = ("caption", "menubar", "menuframe", "scrollbars")

# What is drawn, on what, and the bound. A pair is "element set.pair", for one end of it with ".first" or ".second".
# The element "widget" stands for controls that demo/style.xml does not name. "a > b" lies translucent on b.
PAIRS = [(text, back, bound) for bound, texts, backs in [
    (TEXT, "label text.color|heading text.color", "frame back.color|windowframe back.color|status back.color|"
     "widget back.color"),
    (INACTIVE, "label text.inactive", "frame back.color|widget back.color"),
    (TEXT, "button text.color.first", "button back.color|button back.highlight|button back.pushed"),
    (INACTIVE, "button text.inactive.first", "button back.color"),
    (SHAPE, "button caption.border", "button back.color|button back.highlight|button back.pushed|frame back.color|"
     "widget back.color"),  # has the focus
    (SHAPE, "button back.border", "frame back.color|widget back.color"),
    (TEXT, "caption text.color", "caption back.color|caption back.highlight|widget back.pushed"),
    (INACTIVE, "caption text.inactive", "caption back.inactive"),
    (SHAPE, "caption caption.color|caption caption.highlight", "caption back.color|caption back.highlight"),
    (TEXT, "context text.color.first|context text.highlight.first", "context back.color"),
    (TEXT, "context text.highlight.second", "context back.highlight"),
    (SHAPE, "context back.highlight", "context back.color"),
    (TEXT, "menuframe text.color.first|menuframe text.highlight.first", "menuframe back.color"),
    (TEXT, "menuframe text.highlight.second", "menuframe back.highlight"),
    (SHAPE, "menuframe back.highlight", "menuframe back.color"),
    (TEXT, "menubar text.color", "menubar back.color"),
    (TEXT, "menubar text.highlight.second", "menubar back.highlight|menubar back.pushed"),
    (SHAPE, "menubar back.highlight|menubar back.pushed", "menubar back.color"),
    (INACTIVE, "menubar text.inactive", "menubar back.inactive"),
    # Fields, lists, panels, tabs; the row of a drop-down's list that is marked and the option that is chosen.
    (TEXT, "widget text.color", "widget back.color|widget back.highlight|widget back.pushed|widget back.inactive|"
     "selection > widget back.color|selection > widget back.highlight"),
    (INACTIVE, "widget text.inactive", "widget back.inactive|widget back.color|widget back.pushed"),
    (TEXT, "widget caption.color.first", "widget back.color"),
    (TEXT, "widget back.color.first", "widget caption.color"),
    (SHAPE, "widget back.border", "frame back.color|widget back.color|widget back.highlight|widget back.inactive"),
    (SHAPE, "widget caption.border", "frame back.color|widget back.color|widget back.highlight|widget back.pushed"),
    # Marks of options, handles, pointers, markers, cursors.
    (SHAPE, "widget caption.color", "widget back.color|widget back.highlight|widget back.pushed"),
    (SHAPE, "widget caption.highlight", "widget back.highlight|widget back.pushed"),
    (SHAPE, "widget caption.pushed", "widget back.highlight|widget back.pushed"),
    (SHAPE, "widget caption.inactive", "widget back.inactive|widget back.color|widget back.pushed"),
    (SHAPE, "scrollbars caption.color|scrollbars caption.highlight|scrollbars caption.pushed", "scrollbars back.color"),
    (SHAPE, "scrollbars back.highlight|scrollbars back.pushed", "frame back.color|scrollbars back.color"),
    (TEXT, "ruler text.color|ruler text.highlight.first", "ruler back.color"),
    (SHAPE, "ruler back.inactive", "ruler back.color"),
    (SHAPE, "ruler caption.highlight|ruler caption.pushed|ruler back.highlight", "layoutstack back.color|"
     "spline back.color|trigger back.color|effect back.color|effect back.inactive|effect caption.border"),
    # A bar: its outline, its header, its handles.
    (SHAPE, "effect back.border", "layoutstack back.color|effect caption.border|effect back.inactive"),
    (TEXT, "effect text.color.first", "effect back.color|effect back.inactive|effect back.highlight|effect back.pushed|"
     "effect caption.inactive"),
    (TEXT, "effect text.pushed.first", "effect back.pushed|effect back.inactive|effect caption.inactive"),
    (SHAPE, "effect caption.color", "effect back.color|effect back.inactive|effect back.highlight|effect back.pushed|"
     "effect caption.inactive"),
    (SHAPE, "effect caption.highlight|effect caption.pushed", "effect back.color|effect back.inactive|"
     "effect back.pushed"),
    # Lanes; a trigger lights up to its highlight.
    (SHAPE, "trigger back.border|spline back.border|color back.border", "layoutstack back.color|effect caption.border"),
    (TEXT, "trigger text.color.first", "trigger back.color|trigger back.highlight"),
    (SHAPE, "trigger caption.color > trigger back.color", "trigger back.color"),
    (SHAPE, "trigger caption.color > trigger back.highlight", "trigger back.highlight"),
    (SHAPE, "trigger caption.highlight|trigger caption.pushed", "trigger back.color|trigger back.highlight"),
    (TEXT, "spline text.color.first", "spline back.color"),
    (SHAPE, "spline caption.color|spline caption.highlight.first|spline caption.pushed", "spline back.color"),
    (TEXT, "color text.color.first", "effect caption.border"),
    (SHAPE, "color caption.color.first", "color caption.color.second|color caption.highlight"),
    (TEXT, "stat text.color", "stat back.color"),
    (SHAPE, "stat back.highlight", "stat back.color"),
] for text, back in itertools.product(texts.split("|"), backs.split("|"))]


def rgba(code):
    """Components in 0..1 of RRGGBB or RRGGBBAA."""
    return [int((code + "ff")[i:i + 2], 16) / 255 for i in (0, 2, 4, 6)]


def built_in():
    """The colours of `widgetStyle`, as "set.pair" to its two ends."""
    code = (ROOT / "src/vellum/vel_look.cpp").read_text()
    names = {"body": "back", "mark": "caption", "colors.mText": "text"}
    found = re.findall(r"setFlat\((\w+(?:\.mText)?)\.m(\w+)1, \1\.m\w+2, 0x(\w{6})\);", code)
    return {f"{names[place]}.{pair.lower()}": (rgba(color),) * 2 for place, pair, color in found}


def styles():
    """By element: "set.pair" to its two ends."""
    elements = {"widget": built_in()}
    for element in ElementTree.parse(ROOT / "demo/style.xml").getroot():
        start = elements["widget"] if element.tag in WIDGETS else {}
        own = {each.get("name"): (rgba(each.get("first")), rgba(each.get("second"))) for each in element}
        elements[element.tag] = {**start, **own}
    return elements


def over(color, behind):
    return [c * color[3] + b * (1 - color[3]) for c, b in zip(color[:3], behind)] + [1.0]


def ends(elements, name):
    """The opaque colours that a pair may show; a translucent one over black and white where nothing is said."""
    front, _, behind = name.partition(" > ")
    if front == "selection":
        cyan = elements["widget"]["caption.color"][0]
        return [over(cyan[:3] + [SELECTION_ALPHA], back) for back in ends(elements, behind)]
    element, pair = front.split()
    pair, end = re.fullmatch(r"(\w+\.\w+)\.?(\w*)", pair).groups()
    # What is missing looks as the plain pair of its set.
    colors = elements[element].get(pair) or elements[element].get(pair.split(".")[0] + ".color")
    if not colors:
        sys.exit(f"contrast.py: demo/style.xml: <{element}> needs {pair}")
    chosen = [colors[("first", "second").index(end)]] if end else colors
    behinds = ends(elements, behind) if behind else ([0, 0, 0, 1], [1, 1, 1, 1])
    return [over(color, back) for color in chosen for back in behinds]


def luminance(color):
    red, green, blue = (c / 12.92 if c <= 0.04045 else ((c + 0.055) / 1.055)**2.4 for c in color[:3])
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def least(firsts, seconds):
    """The contrast of the two colours that are closest."""
    return min((max(pair) + 0.05) / (min(pair) + 0.05)
               for pair in itertools.product(map(luminance, firsts), map(luminance, seconds)))


def main():
    elements = styles()
    rows = sorted((least(ends(elements, front), ends(elements, back)) / bound, bound, front, back)
                  for front, back, bound in PAIRS)
    for share, bound, front, back in rows:
        print(f"{share * bound:6.2f}:1 {'below' if share < 1 else 'of at least'} {bound}  {front}  on  {back}")
    sys.exit(rows[0][0] < 1)


if __name__ == "__main__":
    main()
