#include "cadenza/plugin_body.h"
#include "cadenza/probe_effect.h"
#include "cadenza/scratch.h"
#include "display/dis_font.h"
#include "vellum/mouse.h"
#include "vellum/probe.h"
#include "vellum/vel_context.h"
#include "vellum/vel_layout_stack.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <sstream>
#include <string>

namespace zavex::cadenza {
namespace {

using mathbase::Vector2f;
using test::ProbeEffect;
using vellum::test::Mouse;
using vellum::test::Screen;

constexpr Vector2f ORIGIN{10, 5}; // of the timeline
constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float NO_NUMBER = std::numeric_limits<float>::quiet_NaN();

/** The names of the colour pairs; the one at index i is drawn from red i/255 to green i/255. */
constexpr const char* COLORS[] = {"none",           "back.border",      "back.color",
                                  "back.inactive",  "back.highlight",   "back.pushed",
                                  "caption.border", "caption.color",    "caption.highlight",
                                  "caption.pushed", "caption.inactive", "text.color",
                                  "text.pushed"};

std::string styleDocument()
{
    std::string document = "<vellum><effect>";
    for (std::size_t i = 1; i < std::size(COLORS); ++i) {
        std::array<char, 80> color{};
        std::snprintf(color.data(), color.size(),
                      "<color name='%s' first='%02zx0000' second='00%02zx00'/>", COLORS[i], i, i);
        document += color.data();
    }
    return document + "</effect><context><color name='back.color' first='112233'/></context>"
                      "</vellum>";
}

const char* nameOf(float component)
{
    return COLORS[static_cast<std::size_t>(std::lround(component * 255.0f))];
}

/** The bars of effects, with their scripts, in a stack that lies at (10, 5) of a screen. */
struct Timeline {
    explicit Timeline(float start = 2.0f, float end = 8.0f, float width = 380.0f)
    {
        styles.parse(styleDocument());
        screen.loadStyle(&styles);
        effects->setArea({10, 5, 10 + width, 295});
        screen.addControl(effects);
        effect = add("probe", start, end);
    }

    ProbeEffect* add(const std::string& name, float start, float end)
    {
        auto* added = new ProbeEffect; // owned by the stack from here on
        added->setIdentity("probe", name);
        added->setSpan(start, end);
        added->load(nullptr);
        effects->addControl(added);
        added->setupControl();
        effects->recalculate(true);
        return added;
    }

    /** From a point of the stack to another, with the button held. */
    void drag(Vector2f from, Vector2f to, int modifiers = display::KEYMOD_NONE)
    {
        mouse.moveTo(from + ORIGIN);
        mouse.press();
        mouse.moveTo(to + ORIGIN, modifiers);
    }

    /** Opens the header's menu and lets go over a row. */
    void choose(int row)
    {
        mouse.moveTo(effect->getAreaWorld().mMin + Vector2f(30.0f, 10.0f));
        mouse.press(display::MOUSE_RIGHT);
        mouse.release(display::MOUSE_RIGHT);
        ASSERT_EQ(screen.openMenu(), "context");
        mouse.moveTo(screen.getOpen()->getArea().mMin +
                     Vector2f(6.0f, 10.0f + 15.0f * static_cast<float>(row)));
        mouse.release();
        ASSERT_EQ(screen.openMenu(), "");
    }

    void draw()
    {
        screen.render.clear();
        screen.draw();
    }

    std::string span() const
    {
        std::ostringstream out;
        out << effect->getStart() << " to " << effect->getEnd();
        return out.str();
    }

    /** The colours of the first boxes of the topmost bar. */
    std::string boxes(std::size_t count) const
    {
        std::string names;
        for (std::size_t i = 1; i <= count; ++i) { // behind the bars is the stack's own
            const std::string name = nameOf(screen.render.boxColors[i].x);
            EXPECT_EQ(nameOf(screen.render.boxEndColors[i].y), name);
            names += (i > 1 ? " " : "") + name;
        }
        return names;
    }

    /** The name of the bar as it is drawn. */
    vellum::test::RecordingRender::Text name() const
    {
        const auto& texts = screen.render.texts;
        const auto found =
            std::ranges::find(texts, "probe", &vellum::test::RecordingRender::Text::text);
        return found == texts.end() ? vellum::test::RecordingRender::Text() : *found;
    }

    xml::XmlParser styles;
    Screen screen;
    vellum::LayoutStack* effects = new vellum::LayoutStack;
    ProbeEffect* effect = nullptr;
    Mouse mouse{screen};
};

constexpr int ON_OFF = 0;
constexpr int LOCK = 1;

const struct DragCase {
    const char* name;
    Vector2f span; // start and end, seconds
    Vector2f from; // of the timeline
    Vector2f to;
    int modifiers; // `display::KeyMod` bits
    const char* expected;
} DRAG_CASES[] = {
    {"HeaderMovesTheEffect",        {2, 5},                 {35, 10},    {45, 10},   0,                      "3 to 6"    },
    {"HeaderKeepsOnOutsideTheBar",  {2, 5},                 {35, 10},    {135, 250}, 0,                      "12 to 15"  },
    {"StartHandle",                 {2, 8},                 {20, 0},     {30, 10},   0,                      "3 to 8"    },
    {"StartStopsTwoSecondsFromEnd", {2, 8},                 {20, 10},    {200, 10},  0,                      "6 to 8"    },
    {"EndHandle",                   {2, 8},                 {70, 10},    {90, 10},   0,                      "2 to 10"   },
    {"EndStopsTwoSecondsFromStart", {2, 8},                 {79, 19.9f}, {0, 10},    0,                      "2 to 4"    },
    {"NarrowBarHasItsEndHandle",    {2, 3.5f},              {26, 10},    {31, 10},   0,                      "2 to 4"    },
    {"NarrowBarHasItsStartHandle",  {2, 3.5f},              {24, 10},    {19, 10},   0,                      "1.5 to 3.5"},
    {"LeftShiftIsFine",             {2, 8},                 {75, 10},    {85, 10},   display::KEYMOD_LSHIFT, "2 to 8.1"  },
    {"RightShiftIsFine",            {2, 8},                 {35, 10},    {25, 10},   display::KEYMOD_RSHIFT, "1.9 to 7.9"},
    {"LaneMovesNothing",            {2, 8},                 {35, 20},    {45, 10},   0,                      "2 to 8"    },
    {"EndlessOneMoves",             {0, INFINITE},          {50, 10},    {60, 10},   0,                      "1 to 1e+06"},
    {"BeginningBeforeZeroEnds",     {-3, 5},                {45, 10},    {55, 10},   0,                      "-3 to 6"   },
    {"BeginningBeforeZeroMoves",    {-3, 5},                {20, 10},    {21, 10},   0,                      "0 to 8"    },
    {"ReversedHasNoBar",            {3, 0},                 {15, 10},    {20, 10},   0,                      "3 to 0"    },
    {"NoNumbersHaveNoBar",          {NO_NUMBER, NO_NUMBER}, {0, 10},     {20, 10},   0,                      "nan to nan"},
};

TEST(EffectDrag, ChangesTheSpan)
{
    for (const DragCase& row : DRAG_CASES) {
        SCOPED_TRACE(row.name);
        Timeline timeline(row.span.x, row.span.y);
        timeline.drag(row.from, row.to, row.modifiers);
        timeline.draw();
        EXPECT_EQ(timeline.span(), row.expected);

        timeline.mouse.release();
        timeline.mouse.moveTo({300, 10});
        EXPECT_EQ(timeline.span(), row.expected);
    }
}

TEST(EffectBar, DragEndsWhenTheTimelineIsHidden)
{
    Timeline timeline;
    timeline.drag({50, 10}, {60, 10});
    timeline.effects->setVisible(false);
    timeline.effects->setVisible(true);
    timeline.mouse.moveTo(Vector2f(90, 10) + ORIGIN);
    EXPECT_EQ(timeline.span(), "3 to 9");
}

TEST(EffectBar, DragWidensTheLanesAndKeepsTheirPlaces)
{
    Timeline timeline(2.0f, 8.0f);
    timeline.drag({75, 10}, {95, 10});

    EXPECT_EQ(vellum::test::text(timeline.effect->getArea()), "20 0 100 120");
    EXPECT_EQ(vellum::test::text(timeline.effect->curve.getArea()), "0 20 80 70");
    EXPECT_EQ(vellum::test::text(timeline.effect->beat.getArea()), "0 70 80 90");
    EXPECT_EQ(vellum::test::text(timeline.effect->color.getArea()), "0 90 80 120");
}

TEST(EffectBar, DragEndsWithTheLeftButtonOrTheMenu)
{
    Timeline timeline(2.0f, 8.0f);
    timeline.drag({50, 10}, {60, 10});
    timeline.mouse.release(display::MOUSE_RIGHT);
    timeline.mouse.moveTo({80, 15});
    EXPECT_EQ(timeline.span(), "4 to 10");

    timeline.mouse.press(display::MOUSE_RIGHT);
    timeline.screen.resetContext(); // takes the releases with it
    timeline.mouse.moveTo({90, 15});
    EXPECT_EQ(timeline.span(), "4 to 10");
}

TEST(EffectBar, LockKeepsItFromBeingDragged)
{
    Timeline timeline(2.0f, 8.0f);
    timeline.choose(LOCK);
    EXPECT_EQ(vellum::test::text(timeline.effect->getOccupiedArea()), "20 0 80 20");
    timeline.drag({50, 10}, {60, 10});
    timeline.mouse.release();
    EXPECT_EQ(timeline.span(), "2 to 8");

    timeline.choose(LOCK);
    EXPECT_GE(timeline.effect->getOccupiedArea().mMax.y, 120.0f);
    timeline.drag({50, 10}, {60, 10});
    EXPECT_EQ(timeline.span(), "3 to 9");
}

TEST(EffectBar, ThatWasLoadedLockedGetsItsLanesBack)
{
    const test::ScratchFolder folder;
    test::writeText("script/probe.locked.xml",
                    R"(<effect><option locked="1"/><time start="2" end="8"/></effect>)");
    Timeline timeline;
    ProbeEffect* const below = timeline.effect;
    timeline.effect = timeline.add("locked", 0.0f, 10.0f);
    ASSERT_EQ(vellum::test::text(below->getArea()), "20 20 80 140");

    timeline.choose(LOCK);
    EXPECT_EQ(vellum::test::text(timeline.effect->getArea()), "20 0 80 120");
    EXPECT_EQ(vellum::test::text(below->getArea()), "20 120 80 240");
}

constexpr struct RightClickCase {
    const char* name;
    Vector2f point; // of the timeline
    const char* menu;
} RIGHT_CLICK_CASES[] = {
    {"Header",        {50, 19.9f}, "context"},
    {"StartHandle",   {20, 0},     "context"},
    {"CurveBelow",    {50, 20},    "spline" },
    {"TriggerBelow",  {50, 75},    "trigger"},
    {"BesidesTheBar", {19.9f, 10}, ""       },
};

TEST(EffectRightClick, OpensTheMenuOfWhatIsThere)
{
    for (const RightClickCase& row : RIGHT_CLICK_CASES) {
        SCOPED_TRACE(row.name);
        Timeline timeline;
        test::loadBody(timeline.effect->beat, "");
        timeline.mouse.moveTo(row.point + ORIGIN);
        timeline.mouse.press(display::MOUSE_RIGHT);

        EXPECT_EQ(timeline.screen.openMenu(), row.menu);
    }
}

struct LookCase {
    const char* name;
    void (*prepare)(Timeline&);
    const char* boxes; // after the bar and the box of its header
    const char* text;
};

template <int X>
void hover(Timeline& timeline)
{
    timeline.mouse.moveTo(Vector2f(static_cast<float>(X), 10.0f) + ORIGIN);
}

template <int X>
void hold(Timeline& timeline)
{
    hover<X>(timeline);
    timeline.mouse.press();
    hover<X + 200>(timeline);
}

template <int... ROWS>
void chooseAndLeave(Timeline& timeline)
{
    (timeline.choose(ROWS), ...);
    hover<50>(timeline);
    hover<300>(timeline);
}

void holdLocked(Timeline& timeline)
{
    timeline.choose(LOCK);
    hold<50>(timeline);
}

// clang-format off
const LookCase LOOK_CASES[] = {
    {"Idle", [](Timeline& it) { it.effects->setFocus(nullptr); }, "back.color caption.color caption.color", "text.color"},
    {"ClickedLast", chooseAndLeave<>, "back.pushed caption.color caption.color", "text.pushed"},
    {"SwitchedOff", chooseAndLeave<ON_OFF>, "back.inactive caption.color caption.color", "text.pushed"},
    {"OnAgain", chooseAndLeave<ON_OFF, ON_OFF>, "back.pushed caption.color caption.color", "text.pushed"},
    {"LockedAndOff", chooseAndLeave<ON_OFF, LOCK>, "caption.inactive caption.color caption.color", "text.pushed"},
    {"LockedHeld", holdLocked, "caption.inactive caption.color caption.color", "text.pushed"},
    {"HeaderHovered", hover<50>, "back.pushed back.highlight caption.color caption.color", "text.color"},
    {"HeaderHeld", hold<50>, "back.pushed back.pushed caption.color caption.color", "text.color"},
    {"StartHovered", hover<25>, "back.pushed caption.highlight caption.color", "text.pushed"},
    {"EndHeld", hold<75>, "back.pushed caption.color caption.pushed", "text.pushed"},
};
// clang-format on

TEST(EffectLook, TellsTheState)
{
    for (const LookCase& row : LOOK_CASES) {
        SCOPED_TRACE(row.name);
        Timeline timeline;
        row.prepare(timeline);
        timeline.draw();

        const std::string expected = std::string("caption.border back.border ") + row.boxes;
        const auto words = std::ranges::count(expected, ' ') + 1;
        EXPECT_EQ(timeline.boxes(static_cast<std::size_t>(words)), expected);
        EXPECT_STREQ(nameOf(timeline.name().color.x), row.text);
    }
}

TEST(EffectBar, DrawsItsHeaderAtTheTop)
{
    Timeline timeline;
    timeline.draw();

    constexpr const char* areas[] = {"30 5 90 125", "30 5 90 25", "32 7 88 23", "33 8 41 22",
                                     "79 8 87 22"};
    for (std::size_t i = 0; i < std::size(areas); ++i)
        EXPECT_EQ(vellum::test::text(timeline.screen.render.boxes[i + 1]), areas[i]);
    EXPECT_EQ(vellum::test::text(timeline.screen.render.borders[0]), areas[0]);
}

constexpr struct NameCase {
    const char* name;
    float end;   // seconds; the bar begins at 30
    float width; // of the timeline, which begins at 10; the name is 30 pixels wide
    float expected;
} NAME_CASES[] = {
    {"InTheMiddleWithRoom", 8,        380, 60 },
    {"WithoutRoom",         7,        380, 50 },
    {"WhereTheBarIsCutOff", 22,       100, 80 },
    {"WhereItNeverEnds",    INFINITE, 380, 360},
};

TEST(EffectName, StaysWhereItCanBeRead)
{
    for (const NameCase& row : NAME_CASES) {
        SCOPED_TRACE(row.name);
        Timeline timeline(2.0f, row.end, row.width);
        timeline.draw();

        EXPECT_EQ(timeline.name().position, Vector2f(row.expected, 15.0f));
        EXPECT_EQ(timeline.name().align, display::Font::ALIGN_CENTER);
    }
}

} // namespace
} // namespace zavex::cadenza
