#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_stat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace zavex::vellum::test {

namespace {

struct OpenStat final : Stat {
    using Stat::mValue;
    using Stat::mValueMax;
    using Stat::mValueMaxWannabe;
};

/** A graph of 100 x 50 pixels at (10, 20). */
struct StatTest : testing::Test {
    StatTest() { reset(); }

    void reset()
    {
        root.deleteControls();
        root.addControl(stat = new OpenStat);
        stat->setArea(Area(10, 20, 110, 70));
        root.render.time = 0.0f;
    }

    void draw(Area clip)
    {
        root.render.clear();
        stat->draw(stat->getArea(), root.getArea(), clip);
    }
    void draw() { draw(stat->getArea()); }

    /** Adds `value` at `time` seconds. */
    void add(float time, float value)
    {
        root.render.time = time;
        stat->addValue(value);
    }

    /** The newest samples, oldest first; all others are 0. */
    std::vector<float> samples() const
    {
        std::vector<float> values(stat->mValue);
        while (!values.empty() && values.back() == 0.0f)
            values.pop_back();
        std::ranges::reverse(values);
        return values;
    }

    Root root;
    OpenStat* stat = nullptr;
    Mouse mouse{root};
};

struct Added {
    float time; // seconds
    float value;
};

const struct SamplingCase {
    const char* name;
    float interval; // seconds
    std::vector<Added> added;
    std::vector<float> samples; // oldest first
} SAMPLING_CASES[] = {
    // clang-format off
    {"PeriodNotOver",                          0.25f, {{0.1f, 5}, {0.24f, 5}}, {}},
    {"AverageOfAPeriod",                       0.25f, {{0.1f, 1}, {0.2f, 2}, {0.25f, 6}}, {3}},
    {"EachPeriodStartsAfresh",                 0.25f, {{0.25f, 4}, {0.4f, 1}, {0.5f, 3}}, {4, 2}},
    {"OnePeriodAtATime",                       0.25f, {{1.0f, 1}, {1.0f, 2}, {1.0f, 3}, {1.0f, 4}, {1.0f, 5}}, {1, 2, 3, 4}},
    {"NoPeriod",                               0.0f,  {{0, 1}, {0, 2}}, {1, 2}},
    {"ClockWentBackBeforeTheReadingThatItHad", 0.25f, {{2.0f, 1}, {1.0f, 3}, {2.2f, 5}, {2.25f, 7}}, {1, 5}},
};
// clang-format on

TEST_F(StatTest, SamplingIsPacedByTheClock)
{
    for (const SamplingCase& row : SAMPLING_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        stat->setInterval(row.interval);
        for (const Added& each : row.added)
            add(each.time, each.value);
        EXPECT_EQ(samples(), row.samples);
    }
}

TEST_F(StatTest, FollowsTheHighestSampleOfItsHistory)
{
    stat->setInterval(0.0f);
    add(0.0f, 10.0f);
    draw();
    EXPECT_FLOAT_EQ(stat->mValueMax, 0.4f);
    draw();
    EXPECT_FLOAT_EQ(stat->mValueMax, 0.784f);
    for (std::size_t i = 1; i < Stat::HISTORY; ++i)
        add(0.0f, 5.0f);
    EXPECT_EQ(stat->mValueMaxWannabe, 10.0f);
    add(0.0f, 5.0f);
    EXPECT_EQ(stat->mValueMaxWannabe, 5.0f) << "the highest one fell off";
    EXPECT_EQ(stat->mValue.size(), Stat::HISTORY);
}

// Half of the text's width is 12 pixels where it is "1.00", half of its height 5.
constexpr struct ReadOutCase {
    const char* name;
    float maximum;
    Vector2f pointer;
    const char* text; // empty for none
    Vector2f position;
} READ_OUT_CASES[] = {
    {"Middle", 2.0f, {60, 45}, "1.00", {60, 40}},
    {"TopIsTheMaximum", 2.0f, {60, 20}, "2.00", {60, 25}},
    {"KeptFromTheLeft", 2.0f, {12, 45}, "1.00", {22, 40}},
    {"Outside", 2.0f, {60, 75}, "", {0, 0}},
    {"NoValues", 0.0f, {60, 45}, "", {0, 0}},
    {"NineCharacters", 4194304e6f, {60, 20}, "419430400", {60, 25}},
};

TEST_F(StatTest, ReadOutStandsAtThePointer)
{
    for (const ReadOutCase& row : READ_OUT_CASES) {
        SCOPED_TRACE(row.name);
        reset();
        stat->mValueMax = stat->mValueMaxWannabe = row.maximum;
        mouse.moveTo(row.pointer);
        draw();
        const std::vector<RecordingRender::Text>& texts = root.render.texts;
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
