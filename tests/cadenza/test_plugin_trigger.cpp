#include "cadenza/cad_plugin_trigger.h"
#include "cadenza/plugin_body.h"
#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_container.h"
#include "vellum/vel_context.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace zavex::cadenza {
namespace {

using mathbase::Vector2f;
using vellum::test::Mouse;
using vellum::test::Screen;

struct Update {
    float time;          // seconds
    std::uint32_t fired; // counted by this update
};

struct FiringCase {
    const char* name;
    std::string body;
    std::vector<Update> updates;
};

const std::string THREE = R"(<action start="1" delay="0.5" repeat="3"/>)";

// clang-format off
const FiringCase FIRING_CASES[] = {
    {"OneByOne", THREE, {{0.9f, 0}, {1.0f, 0}, {1.01f, 1}, {1.6f, 1}, {2.2f, 1}, {3.0f, 0}, {9.0f, 0}}},
    {"AllInOneStep", THREE, {{0.9f, 0}, {2.2f, 3}, {9.0f, 0}}},
    {"AStepMayPassMoreThanThereAre", THREE, {{3.2f, 5}, {9.0f, 0}}},
    {"ASecondUpdateAtTheSameTime", THREE, {{1.2f, 1}, {1.2f, 0}}},
    {"StepBackStartsOver", THREE, {{1.9f, 2}, {1.2f, 0}, {1.3f, 1}, {1.6f, 1}}},
    {"ActionsAddUp", R"(<action start="1"/><action start="1.5"/><action start="3"/>)", {{1.9f, 2}, {3.5f, 1}}},
    {"EmptyDelayAndRepeatAreOne", R"(<action start="1" delay="" repeat=""/>)", {{1.5f, 1}, {2.5f, 0}}},
    {"MissingStartIsZero", R"(<action delay="1" repeat="2"/>)", {{0.5f, 1}}},
    {"NegativeRepeatIsNone", R"(<action start="0" repeat="-1"/>)", {{5.0f, 0}}},
    {"NoDelayFiresAllAtOnce", R"(<action start="1" delay="0" repeat="4"/>)", {{1.0f, 0}, {1.1f, 4}, {2.0f, 0}}},
    {"TinyDelayStaysInRange", R"(<action start="0" delay="1e-30" repeat="4"/>)", {{50.0f, 1000000001u}, {51.0f, 0}}},
    {"EmptyBodyFiresOnlyAfterAStepBack", "", {{5.0f, 0}, {1.0f, 0}, {1.5f, 2}}},
};
// clang-format on
TEST(TriggerFiring, CountsWhatWasPassed)
{
    for (const FiringCase& row : FIRING_CASES) {
        SCOPED_TRACE(row.name);
        Trigger trigger;
        test::loadBody(trigger, row.body);

        for (const Update& update : row.updates) {
            trigger.update(update.time);
            EXPECT_EQ(trigger.get(update.time), update.fired) << "at " << update.time;
        }
    }
}

TEST(Trigger, AnswersZeroForATimeBeforeTheUpdate)
{
    Trigger trigger;
    test::loadBody(trigger, THREE);
    trigger.update(1.2f);

    EXPECT_EQ(trigger.get(1.1f), 0u);
    EXPECT_EQ(trigger.get(1.3f), 1u);
}

const vellum::style::Color BAR(0.0f, 0.0f, 1.0f, 1.0f);
const vellum::style::Color HOVERED(0.0f, 1.0f, 0.0f, 1.0f);
const vellum::style::Color HELD(1.0f, 0.0f, 0.0f, 1.0f);

/** The lane of a trigger, 1000 x 20, in a container at (10, 5) of a screen that shows 300 of it. */
struct Lane {
    explicit Lane(const std::string& body)
    {
        styles.parse("<vellum><trigger><color name='back.color' first='000000' second='000000'/>"
                     "<color name='back.highlight' first='ffffff' second='ffffff'/>"
                     "<color name='caption.color' first='0000ff'/>"
                     "<color name='caption.highlight' first='00ff00'/>"
                     "<color name='caption.pushed' first='ff0000'/></trigger></vellum>");
        screen.loadStyle(&styles);
        auto* container = new vellum::Container; // owned by the screen from here on
        container->setArea({10, 5, 310, 25});
        screen.addControl(container);
        container->addControl(&trigger);
        trigger.setupControl(1000.0f);
        trigger.mName = "beats";
        test::loadBody(trigger, body);
    }

    /** @param x  From the lane's left edge. */
    void moveTo(float x, int modifiers = display::KEYMOD_NONE)
    {
        mouse.moveTo({x + 10.0f, 15.0f}, modifiers);
    }

    void choose(float x)
    {
        moveTo(x);
        mouse.press(display::MOUSE_RIGHT);
        mouse.release(display::MOUSE_RIGHT);
        ASSERT_EQ(screen.openMenu(), "trigger");
        mouse.moveTo(screen.getOpen()->getArea().mMin + Vector2f(6.0f, 10.0f));
        mouse.release();
    }

    /** Draws, and returns where the bars of a colour begin, from the lane's left edge. */
    std::string barsIn(const vellum::style::Color& color)
    {
        screen.render.clear();
        screen.draw();
        std::ostringstream out;
        for (std::size_t i = 0; i < screen.render.boxes.size(); ++i)
            if (screen.render.boxColors[i] == color)
                out << screen.render.boxes[i].mMin.x - 10.0f << ' ';
        return out.str();
    }

    xml::XmlParser styles;
    Screen screen;
    Trigger trigger;
    Mouse mouse{screen};
};

// clang-format off
const struct HitCase {
    const char* name;
    float x; // from the lane's left edge
    std::string body;
    const char* bar;
} HIT_CASES[] = {
    {"NearestFromTheLeft",     12.6f, THREE,                                           "15 "},
    {"OneAndAHalfBeforeFirst", 2.6f,  THREE,                                           "10 "},
    {"FartherBefore",          2.4f,  THREE,                                           ""   },
    {"HalfBehindTheLast",      22.4f, THREE,                                           "20 "},
    {"NoneWithoutRepeat",      10.0f, R"(<action start="1" repeat="0"/>)",             ""   },
    {"FirstActionOnly",        50.0f, THREE + R"(<action start="5"/>)",                ""   },
    {"AllAtTheStart",          13.0f, R"(<action start="1" delay="0" repeat="9"/>)",   "10 "},
    {"NegativeDelay",          10.0f, R"(<action start="1" delay="-1" repeat="9"/>)",  "10 "},
    {"StartThatIsNoNumber",    10.0f, R"(<action start="nan" repeat="9"/>)",           ""   },
    {"EndlessDelay",           10.0f, R"(<action start="1" delay="inf" repeat="9"/>)", "10 "},
};
// clang-format on

TEST(TriggerHit, MarksTheBarUnderThePointer)
{
    for (const HitCase& row : HIT_CASES) {
        SCOPED_TRACE(row.name);
        Lane lane(row.body);
        lane.moveTo(row.x);
        EXPECT_EQ(lane.barsIn(HOVERED), row.bar);

        lane.mouse.press();
        EXPECT_EQ(lane.barsIn(HELD), row.bar);
        lane.mouse.release();
        lane.mouse.moveTo({200, 200});
        EXPECT_EQ(lane.barsIn(HOVERED), "");
    }
}

struct DragCase {
    const char* name;
    float from; // from the lane's left edge
    float to;
    int modifiers; // `display::KeyMod` bits
    std::string body;
    std::string expected;
};

const std::string OTHER = R"(<action start="5" delay="1" repeat="1"/>)";

// clang-format off
const DragCase DRAG_CASES[] = {
    {"FirstMovesAll",        10, 25, 0,                      THREE,         R"(<action start="2.5" delay="0.5" repeat="3"/>)" },
    {"SecondStretches",      15, 18, 0,                      THREE,         R"(<action start="1" delay="0.8" repeat="3"/>)"   },
    {"ThirdStretchesHalf",   20, 26, 0,                      THREE,         R"(<action start="1" delay="0.8" repeat="3"/>)"   },
    {"DelayStaysPositive",   20, 10, 0,                      THREE,         R"(<action start="1" delay="0.01" repeat="3"/>)"  },
    {"LeftShiftIsFine",      10, 25, display::KEYMOD_LSHIFT, THREE,         R"(<action start="1.15" delay="0.5" repeat="3"/>)"},
    {"RightShiftIsFine",     15, 18, display::KEYMOD_RSHIFT, THREE,         R"(<action start="1" delay="0.53" repeat="3"/>)"  },
    {"BesidesTheBars",       30, 40, 0,                      THREE,         THREE                                             },
    {"OtherActionsStay",     10, 20, 0,                      THREE + OTHER, R"(<action start="2" delay="0.5" repeat="3"/>)" + OTHER},
};
// clang-format on

TEST(TriggerDrag, ChangesTheFirstAction)
{
    for (const DragCase& row : DRAG_CASES) {
        SCOPED_TRACE(row.name);
        Lane lane(row.body);
        lane.moveTo(row.from);
        lane.mouse.press();
        lane.mouse.moveTo({row.to + 10.0f, 250.0f}, row.modifiers); // far below the lane
        lane.mouse.release();
        lane.moveTo(100.0f);

        EXPECT_EQ(test::savedBody(lane.trigger), row.expected);
    }
}

// clang-format off
const struct AdjustCase {
    const char* name;
    float x; // from the lane's left edge
    std::string body;
    const char* expected;
} ADJUST_CASES[] = {
    {"Longer",          101, THREE, R"(<action start="1" delay="0.5" repeat="19"/>)"},
    {"Shorter",         16,  THREE, R"(<action start="1" delay="0.5" repeat="2"/>)"},
    {"LeftOfTheFirst",  1,   THREE, R"(<action start="1" delay="0.5" repeat="1"/>)"},
    {"WithoutDelay",    50,  R"(<action start="1" delay="0" repeat="4"/>)", R"(<action start="1" delay="0" repeat="1"/>)"},
    {"StartIsNoNumber", 50,  R"(<action start="nan" repeat="4"/>)", R"(<action start="nan" delay="1" repeat="1"/>)"},
    {"HardlyAnyDelay",  50,  R"(<action start="0" delay="1e-30" repeat="4"/>)", R"(<action start="0" delay="1e-30" repeat="1000000000"/>)"},
};
// clang-format on

TEST(TriggerAdjust, EndsTheSeriesWhereTheMenuWasOpened)
{
    for (const AdjustCase& row : ADJUST_CASES) {
        SCOPED_TRACE(row.name);
        Lane lane(row.body);
        lane.choose(row.x);

        EXPECT_EQ(test::savedBody(lane.trigger), row.expected);
    }
}

const struct BarsCase {
    const char* name;
    std::string body;
    const char* expected;
} BARS_CASES[] = {
    {"OfEveryAction",       THREE + R"(<action start="5" delay="1" repeat="2"/>)",    "10 15 20 50 60 "},
    {"NoneWithoutRepeat",   R"(<action start="1" repeat="0"/>)",                      ""               },
    {"OnlyThoseInSight",    R"(<action start="-2" delay="10" repeat="2000000000"/>)", "80 180 280 "    },
    {"TouchingTheEdges",    R"(<action start="-0.05" delay="29.95" repeat="3"/>)",    "-0.5 299 "      },
    {"BehindTheEnd",        R"(<action start="30" delay="1" repeat="9"/>)",           ""               },
    {"OneForAllAtTheStart", R"(<action start="1" delay="0" repeat="2000000000"/>)",   "10 "            },
    {"StartThatIsNoNumber", R"(<action start="nan" delay="1" repeat="2000000000"/>)", ""               },
};

TEST(TriggerBars, StandWhereTheTriggerFires)
{
    for (const BarsCase& row : BARS_CASES) {
        SCOPED_TRACE(row.name);
        Lane lane(row.body);
        EXPECT_EQ(lane.barsIn(BAR), row.expected);
    }
}

TEST(TriggerLane, DrawsFewBarsOfManyAndStillFillsThePixels)
{
    Lane lane(R"(<action start="0" delay="1e-06" repeat="2000000000"/>)");
    lane.barsIn(BAR);
    const auto& boxes = lane.screen.render.boxes;
    EXPECT_LT(boxes.size(), 10000u);
    for (std::size_t i = 2; i < boxes.size(); ++i)
        ASSERT_LT(boxes[i].mMin.x, boxes[i - 1].mMax.x);
    EXPECT_GT(boxes.back().mMax.x, 309.0f);
}

TEST(TriggerLane, FlashesAtAFiring)
{
    Lane lane(THREE);
    const auto brightnessAt = [&](float time) {
        lane.trigger.update(time);
        lane.barsIn(BAR);
        return lane.screen.render.boxColors[0].x;
    };
    EXPECT_EQ(brightnessAt(0.9f), 0.0f);
    EXPECT_EQ(brightnessAt(1.1f), 1.0f);
    EXPECT_NEAR(brightnessAt(1.2f), 0.5f, 1e-5f);
    EXPECT_EQ(brightnessAt(1.35f), 0.0f);
}

TEST(TriggerLane, WithoutActionsHasNothingToEdit)
{
    Lane lane(THREE);
    Trigger empty;
    empty.setArea({10, 105, 310, 125});
    lane.screen.addControl(&empty);
    lane.mouse.moveTo({20, 110});
    lane.mouse.press();
    lane.mouse.moveTo({40, 110});
    lane.mouse.press(display::MOUSE_RIGHT);
    vellum::Event adjust;
    adjust.type = "context";
    adjust.action = "trigger.adjust";
    empty.handleEvent(adjust);

    EXPECT_EQ(lane.screen.openMenu(), "");
    EXPECT_EQ(test::savedBody(empty), "");
}

} // namespace
} // namespace zavex::cadenza
