#include "effects/plasma_field.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zavex::effects {
namespace {

TEST(PlasmaField, LitCellsFollowTheGainAndTheRestFadesToNothing)
{
    PlasmaField half;
    PlasmaField full;
    PlasmaField later;
    PlasmaField fresh;
    half.advance(1.0f, 0.0f, 0.5f);
    full.advance(1.0f, 0.0f, 1.0f);
    for (int frame = 0; frame < 2; ++frame) // standing still changes nothing
        later.advance(1.0f, 0.0f, 1.0f);
    later.advance(1.3f, 0.25f, 1.0f);
    fresh.advance(1.3f, 0.25f, 1.0f);

    int lit = 0;
    int faded = 0;
    for (int cell = 0; cell < PlasmaField::COUNT; ++cell) {
        SCOPED_TRACE(cell);
        const float level = full.level(cell);
        EXPECT_FLOAT_EQ(half.level(cell) * 2.0f, level);
        EXPECT_TRUE(level == 0.0f || level > 0.1f); // the threshold of the pattern
        lit += level > 0.0f ? 1 : 0;
        // Elsewhere in the pattern other cells are lit; of the others something may be left.
        const bool isLit = fresh.level(cell) > 0.0f;
        EXPECT_FLOAT_EQ(later.level(cell),
                        isLit ? fresh.level(cell) : std::max(level - 0.25f, 0.0f));
        faded += !isLit && later.level(cell) > 0.0f ? 1 : 0;
    }
    EXPECT_GT(lit, PlasmaField::COUNT / 10);
    EXPECT_LT(lit, PlasmaField::COUNT);
    EXPECT_GT(faded, 100);

    full.advance(1.0f, 0.0f, 0.0f);
    for (int cell = 0; cell < PlasmaField::COUNT; ++cell)
        EXPECT_EQ(full.level(cell), 0.0f) << cell;
}

} // namespace
} // namespace zavex::effects
