#pragma once

#include "mathbase/mb_vector3.h"

#include <array>
#include <cstddef>

namespace zavex::effects {

/**
 * The levels of plasma's 25 x 25 x 25 cells and what of a cell never changes.
 *
 * The interference pattern is a sum of one wave per axis, so a frame evaluates 3 x 25 terms and
 * adds them up per cell. Levels persist from frame to frame: lit cells fade at a rate proportional
 * to the speed of the pattern.
 */
class PlasmaField {
public:
    static constexpr int SIZE = 25; // cells along each axis
    static constexpr int COUNT = SIZE * SIZE * SIZE;

    /** A box of this frame, in the cube's own coordinates. */
    struct Cell {
        mathbase::Vector3f position; // centre
        float level = 0.0f;          // half-extent
        float brightness = 0.0f;     // in -0.5..1.5
    };

    PlasmaField();

    /**
     * Fades every cell, then lights those where the pattern is above its threshold.
     *
     * @param phase  Of the pattern, radians.
     * @param fade   Taken off every level first; negative when the pattern runs backwards.
     * @param gain   Level of a lit cell per unit of the pattern.
     */
    void advance(float phase, float fade, float gain);

    /** Level of cell (i, j, k), each in 0..24, at index 625 i + 25 j + k. Never negative. */
    float level(int index) const { return mLevel[static_cast<std::size_t>(index)]; }

    /** The box of cell `index` with every position scaled by `swell` (1.01 at rest). */
    Cell cell(int index, float swell) const;

private:
    std::array<float, COUNT> mLevel{};
    std::array<mathbase::Vector3f, COUNT> mRest{}; // centre of the cell at rest
    std::array<float, COUNT> mDistance{};          // of the rest position from the cube's middle
    std::array<float, COUNT> mRipple{};            // sin(distance / 5): how far a lit cell moves
};

} // namespace zavex::effects
