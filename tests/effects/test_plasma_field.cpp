#include "effects/plasma_field.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace zavex::effects {
namespace {

std::vector<float> levelsOf(const PlasmaField& field)
{
    std::vector<float> levels;
    for (int index = 0; index < PlasmaField::COUNT; ++index)
        levels.push_back(field.level(index));
    return levels;
}

TEST(PlasmaField, LitCellsFollowTheGainAndTheRestFadesToNothing)
{
    PlasmaField half;
    PlasmaField full;
    half.advance(1.0f, 0.0f, 0.5f);
    full.advance(1.0f, 0.0f, 1.0f);
    const std::vector<float> levels = levelsOf(full);
    const auto lit = std::ranges::count_if(levels, [](float level) { return level > 0.0f; });
    EXPECT_GT(lit, PlasmaField::COUNT / 10);
    EXPECT_LT(lit, PlasmaField::COUNT);
    for (std::size_t index = 0; index < levels.size(); ++index) {
        EXPECT_FLOAT_EQ(levelsOf(half)[index] * 2.0f, levels[index]);
        if (levels[index] > 0.0f) {
            EXPECT_GT(levels[index], 0.1f); // the threshold of the pattern
            break;
        }
    }

    // Elsewhere in the pattern other cells are lit; those that no longer are keep what is left.
    const std::vector<float> before = levels;
    full.advance(1.3f, 0.25f, 1.0f);
    PlasmaField fresh;
    fresh.advance(1.3f, 0.25f, 1.0f);
    int faded = 0;
    for (int index = 0; index < PlasmaField::COUNT; ++index) {
        if (fresh.level(index) > 0.0f) {
            EXPECT_EQ(full.level(index), fresh.level(index)) << index;
            continue;
        }
        const float left = before[static_cast<std::size_t>(index)] - 0.25f;
        EXPECT_FLOAT_EQ(full.level(index), std::max(left, 0.0f)) << index;
        faded += left > 0.0f ? 1 : 0;
    }
    EXPECT_GT(faded, 100);
}

TEST(PlasmaField, StandsStillWithThePhaseAndGoesDarkWithoutGain)
{
    PlasmaField field;
    field.advance(2.0f, 0.0f, 0.8f);
    const std::vector<float> before = levelsOf(field);
    field.advance(2.0f, 0.0f, 0.8f);
    EXPECT_EQ(levelsOf(field), before);

    field.advance(2.0f, 0.0f, 0.0f);
    for (std::size_t index = 0; index < before.size(); ++index)
        EXPECT_EQ(field.level(static_cast<int>(index)), 0.0f) << index;
}

} // namespace
} // namespace zavex::effects
