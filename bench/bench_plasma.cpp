// The levels of plasma's cells for one frame: evaluated per axis against the formula per cell.

#include "effects/plasma_field.h"

#include "figure.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using zavex::effects::PlasmaField;

constexpr float FRAME = 1.0f / 60.0f; // seconds
constexpr float FADE = 0.3f * FRAME;
constexpr float GAIN = 0.8f;
constexpr int FRAMES = 300;
constexpr int SIDE = PlasmaField::SIZE;

/** The same frame as written: six trigonometric calls for each of the 15,625 cells. */
void advancePerCell(std::vector<float>& level, float phase, float fade, float gain)
{
    for (int cell = 0; cell < PlasmaField::COUNT; ++cell) {
        const int plane = cell / (SIDE * SIDE);
        const int row = cell / SIDE % SIDE;
        const auto i = static_cast<float>(plane);
        const auto j = static_cast<float>(row);
        const auto k = static_cast<float>(cell % SIDE);
        float& p = level[static_cast<std::size_t>(cell)];
        const float w =
            0.5f *
            (std::sin(0.15f * i + 2.0f * phase) * std::cos(0.3f * phase + 0.2f * i + 1.0f) +
             std::sin(0.12f * j + 1.0f + 3.0f * phase) * std::cos(0.2f * phase + 0.3f * j + 3.0f) -
             std::cos(0.1f * phase + 0.4f * k + 5.0f) * std::sin(4.0f * phase + 0.11f * k + 2.0f));
        p = std::max(w > 0.1f ? w * gain : p - fade, 0.0f);
    }
}

} // namespace

void zavex::bench::run(Figures& figures)
{
    PlasmaField field;
    std::vector<float> expected(PlasmaField::COUNT, 0.0f);
    float largestDifference = 0.0f;
    for (int frame = 0; frame < FRAMES; ++frame) {
        const float phase = static_cast<float>(frame) * FRAME;
        field.advance(phase, FADE, GAIN);
        advancePerCell(expected, phase, FADE, GAIN);
        for (int index = 0; index < PlasmaField::COUNT; ++index)
            largestDifference =
                std::max(largestDifference,
                         std::abs(field.level(index) - expected[static_cast<std::size_t>(index)]));
    }

    float phase = 0.0f;
    const double ratio = medianRatio(
        101, [&] { advancePerCell(expected, phase += FRAME, FADE, GAIN); },
        [&] { field.advance(phase, FADE, GAIN); });

    figures.report("plasma_cells_speedup", ratio, 10.0, Bound::AT_LEAST);
    figures.report("plasma_cells_difference", largestDifference, 1e-4, Bound::AT_MOST);
}
