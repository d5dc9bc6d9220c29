#include "effects/plasma_field.h"

#include <algorithm>
#include <cmath>

namespace zavex::effects {

using mathbase::Vector3f;

namespace {

constexpr float MIDDLE = 12.5f;   // of the cube, cells
constexpr float THRESHOLD = 0.1f; // pattern value above which a cell is lit
constexpr float RIPPLE_LENGTH = 5.0f;
constexpr float SHELL_LENGTH = 2.5f;

using Axis = std::array<float, PlasmaField::SIZE>;

/** Evaluates one axis of the pattern. */
template <typename Wave>
Axis evaluateAxis(Wave wave)
{
    Axis axis{};
    for (int i = 0; i < PlasmaField::SIZE; ++i)
        axis[static_cast<std::size_t>(i)] = wave(static_cast<float>(i));
    return axis;
}

/** How the levels change in one frame. */
struct Change {
    float fade = 0.0f;
    float gain = 0.0f;
};

/** Advances the cells along the last axis; `row` is what the other two axes add to the pattern. */
void advanceRow(float* level, float row, const Axis& along, Change change)
{
    for (std::size_t k = 0; k < along.size(); ++k) {
        const float wave = 0.5f * (row - along[k]);
        const float lit = wave > THRESHOLD ? wave * change.gain : level[k] - change.fade;
        level[k] = std::max(lit, 0.0f);
    }
}

} // namespace

PlasmaField::PlasmaField()
{
    for (int cell = 0; cell < COUNT; ++cell) {
        const auto index = static_cast<std::size_t>(cell);
        const int plane = cell / (SIZE * SIZE);
        const int row = cell / SIZE % SIZE;
        mRest[index] =
            Vector3f(static_cast<float>(plane) - MIDDLE, static_cast<float>(row) - MIDDLE,
                     static_cast<float>(cell % SIZE) - MIDDLE);
        mDistance[index] = mRest[index].length();
        mRipple[index] = std::sin(mDistance[index] / RIPPLE_LENGTH);
    }
}

void PlasmaField::advance(float phase, float fade, float gain)
{
    const Axis alongI = evaluateAxis([phase](float i) {
        return std::sin(0.15f * i + 2.0f * phase) * std::cos(0.3f * phase + 0.2f * i + 1.0f);
    });
    const Axis alongJ = evaluateAxis([phase](float j) {
        return std::sin(0.12f * j + 1.0f + 3.0f * phase) * std::cos(0.2f * phase + 0.3f * j + 3.0f);
    });
    const Axis alongK = evaluateAxis([phase](float k) {
        return std::cos(0.1f * phase + 0.4f * k + 5.0f) * std::sin(4.0f * phase + 0.11f * k + 2.0f);
    });

    float* level = mLevel.data();
    for (const float i : alongI) {
        for (const float j : alongJ) {
            advanceRow(level, i + j, alongK, {fade, gain});
            level += SIZE;
        }
    }
}

PlasmaField::Cell PlasmaField::cell(int index, float swell) const
{
    const auto at = static_cast<std::size_t>(index);
    const float scale = (mLevel[at] * mRipple[at] + 1.0f) * swell;

    Cell cell;
    cell.position = mRest[at] * scale;
    cell.level = mLevel[at];
    cell.brightness = std::sin(mDistance[at] * std::abs(scale) / SHELL_LENGTH) + 0.5f;
    return cell;
}

} // namespace zavex::effects
