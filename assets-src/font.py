#!/usr/bin/python3
"""Draws the editor's font sheet demo/fonthelvete2.png: Latin-1 in 16 x 16 cells of 16 x 16 pixels.

Glyph c stands in column c % 16 and row c // 16, white on black, on the base line of its row. The
program moves on by the rightmost bright column of a cell plus two pixels, so each glyph keeps its
own bearing on the left and leaves the gap on the right to the program. Hinted onto whole pixels,
since the sheet is shown pixel for pixel. Needs python3-freetype, python3-pil and fonts-inter.
"""

import pathlib
import sys

import freetype
from PIL import Image

FACE = "/usr/share/fonts/opentype/inter/Inter-Medium.otf"
SIZE = 12  # pixels to the em
CELL = 16
COLUMNS = 16
BASE_LINE = 13  # row below the letters, from the cell's top; the rest holds the descenders
HINTED = freetype.FT_LOAD_RENDER | freetype.FT_LOAD_FORCE_AUTOHINT | freetype.FT_LOAD_TARGET_NORMAL


def printable(code):
    return 0x21 <= code <= 0x7E or 0xA1 <= code <= 0xFF and code != 0xAD


def draw_glyph(sheet, face, code):
    face.load_char(chr(code), HINTED)
    glyph, bitmap = face.glyph, face.glyph.bitmap
    left = max(glyph.bitmap_left, 0)
    top = BASE_LINE - glyph.bitmap_top
    if top < 0 or top + bitmap.rows > CELL or left + bitmap.width > CELL:
        sys.exit(f"font.py: '{chr(code)}' does not fit its cell")
    if bitmap.width:
        picture = Image.frombytes("L", (bitmap.width, bitmap.rows), bytes(bitmap.buffer))
        column, row = code % COLUMNS, code // COLUMNS
        sheet.paste(picture, (column * CELL + left, row * CELL + top))


def main():
    face = freetype.Face(FACE)
    face.set_pixel_sizes(0, SIZE)
    sheet = Image.new("L", (COLUMNS * CELL, COLUMNS * CELL))
    for code in filter(printable, range(256)):
        draw_glyph(sheet, face, code)
    # The program reads no grey pictures.
    path = pathlib.Path(__file__).parent.parent / "demo/fonthelvete2.png"
    sheet.convert("RGB").save(path, optimize=True)


if __name__ == "__main__":
    main()
