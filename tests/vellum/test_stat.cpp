#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_stat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace zavex::vellum::test {

namespace {

struct OpenStat final : Stat {
    using Stat::mCurrent;
    using Stat::mValue;
    using Stat::mValueMax;
    using Stat::mValueMaxWannabe;
};

/** A graph of 100 x 50 pixels at (10, 20). */
struct StatTest : testing::Test {
    StatTest()
    {
        root.addControl(stat);
        stat->setArea(Area(10, 20, 110, 70));
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
    OpenStat* stat = new OpenStat;
    Mouse mouse{root};
};

struct Added {
    float time; // seconds
    float value;
};

struct SamplingCase {
    const char* name;
    float interval; // seconds
    std::vector<Added> added;
    std::vector<float> samples; // oldest first

    friend void PrintTo(const SamplingCase& sampling, std::ostream* out) { *out << sampling.name; }
};

const SamplingCase SAMPLING_CASES[] = {
    {"NothingAdded",                           0.25f, {},                                                      {}    },
    {"PeriodNotOver",                          0.25f, {{0.1f, 5}, {0.24f, 5}},                                 {}    },
    {"AverageOfAPeriod",                       0.25f, {{0.1f, 1}, {0.2f, 2}, {0.25f, 6}},                      {3}   },
    {"EachPeriodStartsAfresh",                 0.25f, {{0.25f, 4}, {0.4f, 1}, {0.5f, 3}},                      {4, 2}},
    {"OnePeriodAtATime",
     0.25f,                                           {{1.0f, 1}, {1.0f, 2}, {1.0f, 3}, {1.0f, 4}, {1.0f, 5}},
     {1, 2, 3, 4}                                                                                                    },
    {"NoPeriod",                               0.0f,  {{0, 1}, {0, 2}},                                        {1, 2}},
    {"ClockWentBackBeforeTheReadingThatItHad",
     0.25f,                                           {{2.0f, 1}, {1.0f, 3}, {2.2f, 5}, {2.25f, 7}},
     {1, 5}                                                                                                          },
};

class StatSampling : public StatTest, public testing::WithParamInterface<SamplingCase> {};

TEST_P(StatSampling, IsPacedByTheClock)
{
    stat->setInterval(GetParam().interval);
    for (const Added& each : GetParam().added)
        add(each.time, each.value);
    EXPECT_EQ(samples(), GetParam().samples);
}

INSTANTIATE_TEST_SUITE_P(Cases, StatSampling, testing::ValuesIn(SAMPLING_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

class StatFrameRate : public StatTest, public testing::WithParamInterface<int> {};

TEST_P(StatFrameRate, DoesNotChangeTheSpeed)
{
    for (int frame = 0; frame <= 3 * GetParam(); ++frame)
        add(static_cast<float>(frame) / static_cast<float>(GetParam()), 7.0f);
    EXPECT_NEAR(static_cast<float>(samples().size()), 3.0f / 0.2f, 1.0f);
    EXPECT_EQ(stat->mValueMaxWannabe, 7.0f);
}

INSTANTIATE_TEST_SUITE_P(Rates, StatFrameRate, testing::Values(30, 60, 1000));

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

TEST_F(StatTest, DrawsTheNewestSampleAtTheRightEdge)
{
    stat->mValueMax = stat->mValueMaxWannabe = 8.0f;
    stat->mValue[0] = 0.0f;
    stat->mValue[1] = 8.0f;
    stat->mValue[2] = 4.0f;
    draw();
    ASSERT_GT(root.render.lines.size(), 2u);
    EXPECT_EQ(root.render.lines[0].from, Vector2f(110, 72)) << "zero is out of sight";
    EXPECT_EQ(root.render.lines[0].to, Vector2f(109, 26));
    EXPECT_EQ(root.render.lines[1].from, Vector2f(109, 26));
    EXPECT_EQ(root.render.lines[1].to, Vector2f(108, 49));
    EXPECT_LE(root.render.lines.back().to.x, 10.0f);
    EXPECT_LE(root.render.lines.size(), 110u) << "what is cut off is not drawn";
}

TEST_F(StatTest, FillsWhatIsVisibleAndDrawsNoGraphWithoutValues)
{
    draw(Area(20, 30, 60, 70));
    ASSERT_EQ(root.render.boxes.size(), 1u);
    EXPECT_EQ(text(root.render.boxes[0]), "20 30 60 70");
    EXPECT_TRUE(root.render.lines.empty());
    EXPECT_TRUE(root.render.texts.empty());
}

struct ReadOutCase {
    const char* name;
    float maximum;
    Vector2f pointer;
    const char* text; // empty for none
    Vector2f position;

    friend void PrintTo(const ReadOutCase& readOut, std::ostream* out) { *out << readOut.name; }
};

// Half of the text's width is 12 pixels where it is "1.00", half of its height 5.
constexpr ReadOutCase READ_OUT_CASES[] = {
    {"Middle",           2.0f,       {60, 45},  "1.00",      {60, 40}},
    {"TopIsTheMaximum",  2.0f,       {60, 20},  "2.00",      {60, 25}},
    {"KeptFromTheLeft",  2.0f,       {12, 45},  "1.00",      {22, 40}},
    {"KeptFromTheRight", 2.0f,       {109, 45}, "1.00",      {98, 40}},
    {"Outside",          2.0f,       {60, 75},  "",          {0, 0}  },
    {"NoValues",         0.0f,       {60, 45},  "",          {0, 0}  },
    {"NineCharacters",   4194304e6f, {60, 20},  "419430400", {60, 25}},
};

class StatReadOut : public StatTest, public testing::WithParamInterface<ReadOutCase> {};

TEST_P(StatReadOut, StandsAtThePointer)
{
    stat->mValueMax = stat->mValueMaxWannabe = GetParam().maximum;
    mouse.moveTo(GetParam().pointer);
    draw();
    const std::vector<RecordingRender::Text>& texts = root.render.texts;
    ASSERT_EQ(texts.size(), *GetParam().text ? 1u : 0u);
    if (texts.empty())
        return;
    EXPECT_EQ(texts[0].text, GetParam().text);
    EXPECT_EQ(texts[0].position, GetParam().position);
    EXPECT_EQ(texts[0].align, 2);
}

INSTANTIATE_TEST_SUITE_P(Cases, StatReadOut, testing::ValuesIn(READ_OUT_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(StatTest, HearsThatThePointerLeft)
{
    stat->mValueMax = 2.0f;
    mouse.moveTo(Vector2f(60, 45));
    EXPECT_EQ(stat->mCurrent, 1.0f);
    mouse.moveTo(Vector2f(5, 5));
    EXPECT_EQ(stat->mCurrent, -1.0f);
    Event elsewhere = eventAt("mousemove", Vector2f(5, 5));
    EXPECT_FALSE(stat->acceptEvents(elsewhere));
}

} // namespace

} // namespace zavex::vellum::test
