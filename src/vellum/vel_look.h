#pragma once

#include "vellum/vel_render.h"
#include "vellum/vel_style.h"

#include "mathbase/mb_vector2.h"

#include <string>

namespace zavex::vellum {

class Control;

/** How a control that reacts to the user shows its state. */
enum class Look { NORMAL, HOVERED, PRESSED, INACTIVE };

/** Two ends of a gradient. Refers to the colour set that it was picked from. */
struct ColorPair {
    const style::Color& first;
    const style::Color& second;
};

/** The pair of a set that belongs to a look: `mColor`, `mHighlight`, `mPushed` or `mInactive`. */
ColorPair pairOf(const style::colorInfo& set, Look look = Look::NORMAL);

/** As `pairOf`; where the first colour of that pair is wholly transparent it is `mColor`. */
ColorPair pick(const style::colorInfo& set, Look look);

/** The `mBorder` pair of a set. */
ColorPair borderOf(const style::colorInfo& set);

/** The look of a part of a control: it is pressed where the pointer is on it and it is held. */
Look partLook(bool pointedAt, bool held);

/**
 * The colours that value widgets start with: dark bodies (`mBack`), cyan marks whose border is the
 * border of what has the keyboard focus (`mCaption`), light text (`mText`).
 */
style widgetStyle();

/** Whether keyboard events come to the control: it is at the end of the focus path, or on it. */
bool hasKeyboardFocus(const Control& control);

/** Whether the control and everything above it is visible. Hidden controls still get events. */
bool isShown(const Control& control);

/** A box in a pair of colours. @param gradient  A `Render::Gradient`. */
void fillBox(Render& render, const ColorPair& colors, const Render::Area& area,
             int gradient = Render::GRADIENT_VERTICAL);

/** The outline of a box in a pair of colours. */
void drawBorder(Render& render, const ColorPair& colors, const Render::Area& area);

/** The ellipse inscribed in `area`, in the first colour. */
void fillCircle(Render& render, const ColorPair& colors, const Render::Area& area);

/**
 * A body with a border one pixel wide: filled with the `mBack` pair of the look.
 *
 * @param focused  Whether the border is that of `mCaption` instead of that of `mBack`.
 */
void drawField(Render& render, const style& colors, const Render::Area& area, Look look,
               bool focused);

/** Where a line of text stands. */
struct TextPlace {
    mathbase::Vector2f position; // vertically the middle of the line
    float width = 0.0f;          // that there is room for, pixels
    int align = 0;               // `display::Font` alignment: 0 left, 1 right, 2 centre
};

/** Text in the `mText` pair of the look, shortened by its last characters until there is room. */
void drawLabel(Render& render, const style& colors, const std::string& text, const TextPlace& place,
               Look look);

} // namespace zavex::vellum
