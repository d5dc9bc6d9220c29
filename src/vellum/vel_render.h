#pragma once

#include "display/dis_display_obsolete.h"
#include "display/dis_font.h"
#include "mathbase/mb_box.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector4.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zavex::display {
class DisplayGL;
class Texture;
} // namespace zavex::display

namespace zavex::vellum {

/**
 * Draws for the whole control tree: boxes, lines, circles and text in pixels from the window's
 * top-left corner, y growing downwards, each primitive in one colour or a gradient of two.
 *
 * Shapes, borders and texts reach the driver in one array, however many clip areas they have:
 * shapes are drawn through the font's sheet, where that has a solid point, and only what is really
 * cut is clipped. Lines, cut shapes and large areas (more than 4096 pixels) have arrays of their
 * own. The display's other states hold.
 *
 * The workspace owns one. Everything is virtual so that a double can record what controls draw
 * where there is no window.
 */
class Render {
public:
    using Area = mathbase::Box2;

    /** Which way the gradient of a box runs. */
    enum Gradient : int { GRADIENT_VERTICAL = 0, GRADIENT_HORISONTAL = 1 };

    Render();
    Render(const Render&) = delete;
    Render(Render&&) = delete;
    Render& operator=(const Render&) = delete;
    Render& operator=(Render&&) = delete;
    virtual ~Render();

    /** @param display  What to draw on, without text until `setup`. Must outlive this object; or
     *     null. */
    virtual void setDisplay(display::DisplayGL* display);

    /**
     * Sets the display and loads the font.
     *
     * @param display   Not null ("mFont"), not owned; must outlive this object.
     * @param fontFile  Font sheet in the display's archive. Throws as `display::Font::load` does.
     */
    virtual void setup(display::DisplayGL* display, const std::string& fontFile);

    /**
     * Begins a frame: one unit is one pixel. There must be a display ("mDisplay").
     *
     * @param windowSize  In pixels.
     * @param pan         View offset in pixels.
     * @param unused      Ignored.
     */
    virtual void setupDraw(mathbase::Vector2f windowSize, mathbase::Vector2f pan, float unused);

    /** Sets both ends of the gradient. A second colour with an alpha below 0 means flat. */
    virtual void setColor(const mathbase::Vector4f& first, const mathbase::Vector4f& second);

    /** @param width  In pixels. */
    virtual void setLineWidth(float width);

    /** @param align  `display::Font` alignment: 0 left, 1 right, 2 centre. */
    virtual void setAlign(int align);

    /** Height of a line of text in pixels. */
    virtual float getFontHeight() const;

    /** A filled box. @param mode  A `Gradient`; any value but 1 counts as 0. */
    virtual void drawBox(const Area& box, int mode);

    /** The outline of a box, one pixel wide inside it: top in the first colour, bottom in the
     * second. */
    virtual void drawBorder(const Area& box);

    /** A line from `from` in the first colour to `to` in the second. */
    virtual void drawLine(const mathbase::Vector2f& from, const mathbase::Vector2f& to);

    /**
     * A filled ellipse inscribed in `box`, in the first colour.
     *
     * @param segments  -1 follows the size; at least 3 are drawn.
     * @param start     Angle of the first rim point in whole turns, from the bottom on.
     */
    virtual void drawCircle(const Area& box, int segments, float start);

    /** The whole picture in `box`, its colours times the first colour. */
    virtual void drawImage(display::Texture& texture, const Area& box);

    /** Text in the first colour, vertically centred on `position`. */
    virtual void drawText(const std::string& text, mathbase::Vector2f position);

    /** Width of the text in pixels. */
    virtual float getTextLength(const std::string& text) const;

    /**
     * The longest beginning of `text` that is at most `width` pixels wide: `text` itself, or a
     * string that holds until the next call.
     */
    const std::string& fittingText(const std::string& text, float width);

    /** Restricts drawing to `area`; one whose first x is exactly -1 takes the restriction away. */
    virtual void setClipArea(Area area);

    /** The display's time in seconds. */
    virtual float getTime() const;

private:
    class SharedArray;

    /** Where this object has drawn in the array that is being filled. */
    struct Filling {
        std::vector<Area> areas;  // pixels
        unsigned long array = 0;  // how many arrays were drawn before it
        std::size_t vertices = 0; // that this object put into it
    };

    display::DisplayObsolete::Vertex corner(float x, float y,
                                            const mathbase::Vector4f& color) const;
    void fill(const Area& wholeBox, const std::array<mathbase::Vector4f, 4>& colors);
    Area visiblePart(Area box) const;
    bool isCutAway(const Area& bounds) const;
    const std::vector<mathbase::Vector2f>& unitRim(int segments, float start);
    void drawBorderAsLines(const Area& box);
    display::Font& font() const;

    display::DisplayGL* mDisplay = nullptr; // not owned
    mathbase::Vector2f mWindowSize{0, 0};   // pixels
    mathbase::Vector2f mPan{0, 0};          // pixels
    mathbase::Vector4f mColor{0, 0, 0, 0};
    mathbase::Vector4f mColor2{0, 0, 0, 0};
    Area mClipArea{0, 0, 0, -1};
    std::unique_ptr<display::Font> mFont;               // without a sheet until `setup`
    std::optional<display::Font::Solid> mSolid;         // what shapes are drawn through
    display::DisplayObsolete mModel;                    // places text
    std::vector<display::DisplayObsolete::Vertex> mFan; // reused by every circle
    std::vector<mathbase::Vector2f> mRim;               // of the circle drawn last, at radius 1
    float mRimStart = 0.0f;                             // turns, of its first point
    Filling mFilling;
    std::string mFitting; // reused by every shortened text
};

} // namespace zavex::vellum
