#include "vellum/user.h"
#include "vellum/vel_stat.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zavex::vellum::test {

namespace {

struct OpenStat final : Stat {
    using Stat::mValue;
    using Stat::mValueMax;
    using Stat::mValueMaxWannabe;
};

/** A graph of 100 x 50 pixels at (10, 20). */
struct StatTree {
    StatTree()
    {
        screen.addControl(stat);
        stat->setArea(Area(10, 20, 110, 70));
    }

    /** Adds `value` at `time` seconds. */
    void add(float time, float value)
    {
        screen.render.time = time;
        stat->addValue(value);
    }

    Screen screen;
    OpenStat* stat = new OpenStat; // owned by the screen
};

const struct SamplingCase {
    const char* name;
    float interval;                             // seconds
    std::vector<std::pair<float, float>> added; // times in seconds, and values
    const char* samples;                        // newest first; all others are 0
} SAMPLING_CASES[] = {
  // clang-format off
    {"PeriodNotOver",          0.25f, {{0.1f, 5}, {0.24f, 5}}, "0 0 0 0 "},
    {"AverageOfAPeriod",       0.25f, {{0.1f, 1}, {0.2f, 2}, {0.25f, 6}}, "3 0 0 0 "},
    {"EachPeriodStartsAfresh", 0.25f, {{0.25f, 4}, {0.4f, 1}, {0.5f, 3}}, "2 4 0 0 "},
    {"OnePeriodAtATime",       0.25f, {{1.0f, 1}, {1.0f, 2}, {1.0f, 3}, {1.0f, 4}, {1.0f, 5}}, "4 3 2 1 "},
    {"NoPeriod",               0.0f,  {{0.0f, 1}, {0.0f, 2}}, "2 1 0 0 "},
    {"ClockWentBack",          0.25f, {{2.0f, 1}, {1.0f, 3}, {2.2f, 5}, {2.25f, 7}}, "5 1 0 0 "},
  // clang-format on
};

TEST(Stat, SamplingIsPacedByTheClock)
{
    for (const SamplingCase& row : SAMPLING_CASES) {
        SCOPED_TRACE(row.name);
        StatTree tree;
        tree.stat->setInterval(row.interval);
        for (const auto& [time, value] : row.added)
            tree.add(time, value);
        std::string samples;
        for (std::size_t i = 0; i < 4; ++i)
            samples += number(i < tree.stat->mValue.size() ? tree.stat->mValue[i] : 0.0f) + " ";
        EXPECT_EQ(samples, row.samples);
    }
}

TEST(Stat, FollowsTheHighestSampleOfItsHistory)
{
    StatTree tree;
    tree.stat->setInterval(0.0f);
    tree.add(0.0f, 10.0f);
    tree.screen.redraw();
    EXPECT_FLOAT_EQ(tree.stat->mValueMax, 0.4f);
    tree.screen.redraw();
    EXPECT_FLOAT_EQ(tree.stat->mValueMax, 0.784f);
    for (std::size_t i = 1; i < Stat::HISTORY; ++i)
        tree.add(0.0f, 5.0f);
    EXPECT_EQ(tree.stat->mValueMaxWannabe, 10.0f);
    tree.add(0.0f, 5.0f);
    EXPECT_EQ(tree.stat->mValueMaxWannabe, 5.0f) << "the highest one fell off";
    EXPECT_EQ(tree.stat->mValue.size(), Stat::HISTORY);
}

// Half of the text's width is 12 pixels where it is "1.00", half of its height 5.
// clang-format off
constexpr struct ReadOutCase {
    const char* name;
    float maximum;
    const char* steps;
    const char* text; // empty for none
    Vector2f position;
} READ_OUT_CASES[] = {
    {"Middle",          2.0f,       "move 60,45", "1.00",      {60, 40}},
    {"TopIsTheMaximum", 2.0f,       "move 60,20", "2.00",      {60, 25}},
    {"KeptFromTheLeft", 2.0f,       "move 12,45", "1.00",      {22, 40}},
    {"Outside",         2.0f,       "move 60,75", "",          {}},
    {"NoValues",        0.0f,       "move 60,45", "",          {}},
    {"NineCharacters",  4194304e6f, "move 60,20", "419430400", {60, 25}},
};
// clang-format on

TEST(Stat, ReadOutStandsAtThePointer)
{
    for (const ReadOutCase& row : READ_OUT_CASES) {
        SCOPED_TRACE(row.name);
        StatTree tree;
        tree.stat->mValueMax = tree.stat->mValueMaxWannabe = row.maximum;
        User(tree.screen).does(row.steps);
        tree.screen.redraw();
        const std::vector<RecordingRender::Text>& texts = tree.screen.render.texts;
        ASSERT_EQ(texts.size(), *row.text ? 1u : 0u);
        if (texts.empty())
            continue;
        EXPECT_EQ(texts[0].text, row.text);
        EXPECT_EQ(texts[0].position, row.position);
        EXPECT_EQ(texts[0].align, 2);
    }
}

} // namespace

} // namespace zavex::vellum::test
