#pragma once

#include "vellum/vel_render.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string>

namespace zavex::bench {

/**
 * Draws what `Render` does, each shape and each letter at once with a glBegin and a glEnd of its
 * own: the way of a program without batching.
 *
 * Calls the graphics library directly between `setupDraw` and the end of a frame. Whoever draws a
 * frame puts the library's states back after it.
 */
class PlainRender final : public vellum::Render {
public:
    void setup(display::DisplayGL* display, const std::string& fontFile) override;
    void setupDraw(mathbase::Vector2f windowSize, mathbase::Vector2f pan, float unused) override;
    void setColor(const mathbase::Vector4f& first, const mathbase::Vector4f& second) override;
    void setLineWidth(float width) override;
    void setAlign(int align) override;
    void drawBox(const Area& box, int mode) override;
    void drawBorder(const Area& box) override;
    void drawLine(const mathbase::Vector2f& from, const mathbase::Vector2f& to) override;
    void drawCircle(const Area& box, int segments, float start) override;
    void drawImage(display::Texture& texture, const Area& box) override;
    void drawText(const std::string& text, mathbase::Vector2f position) override;
    void setClipArea(Area area) override;

    std::size_t primitives = 0; // shapes drawn, each letter one of them
    std::size_t letters = 0;    // drawn, spaces left out

private:
    void bindSheet() const;

    std::unique_ptr<display::Font> mSheet;
    std::array<float, 256> mAdvance{};    // pixels
    mathbase::Vector2f mWindowSize{0, 0}; // pixels
    mathbase::Vector4f mFirst{0, 0, 0, 0};
    mathbase::Vector4f mSecond{0, 0, 0, 0};
    float mCell = 0.0f; // side of a glyph's cell in pixels
    int mAlign = 2;
};

} // namespace zavex::bench
