#pragma once

#include "mathbase/mb_box.h"
#include "mathbase/mb_vector2.h"
#include "mathbase/mb_vector4.h"

#include <array>
#include <optional>
#include <string>

namespace zavex::am {
class Image;
} // namespace zavex::am

namespace zavex::display {

class DisplayGL;
class Texture;

/**
 * A bitmap font: a sheet of 16 x 16 glyphs in the order of their byte, drawn as textured quads.
 *
 * Sheets are white on black. Text is drawn in its own colour at the origin of the model-view
 * matrix, centred vertically on it, and runs to the right where y grows upwards; a negative
 * vertical scale serves a y axis that points down. Texts of one font are handed to the driver
 * together as long as no state changes between them. Owns its hold on the sheet's texture, which a
 * display that ends earlier takes along; nothing can be drawn after that.
 */
class Font {
public:
    enum Alignment : int {
        ALIGN_LEFT = 0,
        ALIGN_RIGHT = 1,  // ends at the origin
        ALIGN_CENTER = 2, // its middle at the origin
    };

    /** A point of a texture where it is white and opaque. */
    struct Solid {
        Texture* texture; // not owned; until the next `load`
        mathbase::Vector2f texcoord;
    };

    /** @param display  Where it draws and whose archives it loads from; must not be null. */
    explicit Font(DisplayGL* display);
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    /**
     * Loads a sheet; one that was loaded before is given back.
     *
     * Throws Exception when the display has no archive, or has no such picture.
     *
     * @param flag  Has no effect.
     * @param size  Size of one pixel of the sheet in pixels of the window; a unit of the font is
     *     the window's width or height at the time of loading.
     */
    void load(const std::string& file, bool flag, const mathbase::Vector2f& size);

    /** Draws `text`, one glyph per byte; nothing when no sheet is loaded. Keeps every state, but
     * leaves nothing bound to texture channel 0. */
    void draw(const std::string& text, const mathbase::Vector2f& scale,
              const mathbase::Vector4f& color);

    void setAlignment(int align) { mAlign = align; }

    /** Advances by `width` pixels of the sheet for a space, until the next `load`. */
    void setSizeOfSpace(float width);

    /** The sum of the advances of the text's bytes times `scale`, in drawing units. */
    float getLength(const std::string& text, float scale) const;

    /** The height of a line of text at scale 1, in drawing units. */
    float getHeight() const;

    /** A rectangle, relative to the origin and in drawing units, that `draw` does not draw beyond.
     */
    mathbase::Box2 getBounds(const std::string& text, const mathbase::Vector2f& scale) const;

    /**
     * A point of the sheet: a shape whose corners are all drawn with it looks as it does without
     * texture, and shares the array of the texts around it. Empty where the sheet has none.
     */
    const std::optional<Solid>& getSolid() const { return mSolid; }

private:
    struct Edges;

    void release();
    void measureGlyphs(const am::Image& sheet);
    void findInk(const am::Image& sheet);
    std::optional<Solid> findSolid(const am::Image& sheet) const;
    float startOf(const std::string& text, float scale) const;
    template <typename Place>
    void placeCells(const std::string& text, const mathbase::Vector2f& scale, Place place) const;

    unsigned mWidth = 0;  // pixels of the sheet
    unsigned mHeight = 0; // pixels of the sheet
    int mCharWidth = 0;   // pixels of one cell
    int mCharHeight = 0;  // pixels of one cell
    std::array<float, 256> mKerning{};
    std::array<mathbase::Box2, 256> mInk{}; // what a glyph covers, in pixels of its cell
    bool mExact = false;                    // a texel's middle is hit exactly
    int mAlign = ALIGN_LEFT;
    float mUnitSizeX = 0.0f;    // drawing units per pixel of the sheet
    float mUnitSizeY = 0.0f;    // drawing units per pixel of the sheet
    float mLetterWidth = 0.0f;  // of the sheet's width
    float mLetterHeight = 0.0f; // of the sheet's height
    DisplayGL* mDisplay;
    Texture* mTexture = nullptr; // held once
    std::optional<Solid> mSolid;
};

} // namespace zavex::display
