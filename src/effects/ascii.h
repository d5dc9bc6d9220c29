#pragma once

#include "cadenza/cad_plugin_spline.h"
#include "display/dis_display_obsolete.h"
#include "effects/common_effect.h"
#include "mathbase/mb_vector2.h"

#include <memory>
#include <vector>

namespace zavex::effects {

/**
 * The end picture, cut into a grid of character cells that slide up into their places row by row:
 * each starts below its place by an amount of its own, drawn at `setup`, and later rows by more.
 *
 * A function of time alone.
 */
class Ascii final : public CommonEffect {
public:
    struct Char {
        float mOffset = 0.0f; // initial distance from its place, in half screen heights
    };

    static constexpr int ROWS = 20;
    static constexpr int COLUMNS = 94;

    Ascii();

    void setup() override;

    /** Row by row; null before `setup`. */
    const Char* chars() const { return mChar.get(); }

private:
    void drawFrame(float time, float delta, float progress) override;
    void leave(DrawingStates& left) const override { left.addLight(); }
    void layOutCells();
    void slideCells(float time);

    std::unique_ptr<Char[]> mChar;
    display::DisplayObsolete ds;
    display::Texture* mTexture = nullptr;                    // owned by the display
    cadenza::Spline mDone;                                   // stored with the show; not used
    std::vector<display::DisplayObsolete::Vertex> mVertices; // four a cell; only y changes
    mathbase::Vector2f mCellSize{0.0f, 0.0f}; // that they are laid out for, on the screen
};

} // namespace zavex::effects
