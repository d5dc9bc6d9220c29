#pragma once

#include "mathbase/mb_box.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zavex::xml {
class IteratorConst;
}

namespace zavex::bench {

/**
 * The screen that a layout describes, built anew in each frame with Dear ImGui: for every control
 * and every row of one the widget that comes closest, at the same place and with the same caption.
 *
 * Owns the one context of Dear ImGui, which draws through its backend for the fixed pipeline. The
 * window's context must be current whenever it is used.
 */
class ImguiScreen {
public:
    /** @param workspace  Stands on the layout's "workspace" element. */
    ImguiScreen(const xml::IteratorConst& workspace, mathbase::Vector2f windowSize);
    ImguiScreen(const ImguiScreen&) = delete;
    ImguiScreen& operator=(const ImguiScreen&) = delete;
    ~ImguiScreen();

    /** Builds one frame and hands it to the graphics library. */
    void draw();

    /** Controls and rows. */
    std::size_t widgetCount() const;

    /** Letters that the last frame drew, spaces left out. */
    std::size_t letterCount() const;

    /** Adds lines of text until a frame draws at least `count` letters. */
    void fillUpTo(std::size_t count);

    struct Item {
        using Draw = void (*)(Item& item);

        Draw draw = nullptr;
        std::string text;
        mathbase::Box2 area; // in the parent's coordinates
        std::vector<Item> rows;
        std::vector<Item> children;
        char input[64] = "";  // what the user edits
        bool checked = false; // or unfolded, or selected
        float value = 0.5f;
    };

private:
    Item mScreen;
    std::string mFilling;
    mathbase::Vector2f mSize; // pixels
};

} // namespace zavex::bench
