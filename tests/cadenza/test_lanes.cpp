// The bars of effects and the lanes on them: what a user does there and what is saved of it.

#include "cadenza/probe_effect.h"
#include "cadenza/scratch.h"
#include "display/dis_font.h"
#include "mathbase/near.h"
#include "vellum/user.h"
#include "vellum/vel_button.h"
#include "vellum/vel_color_chooser.h"
#include "vellum/vel_container.h"
#include "vellum/vel_layout_stack.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <sstream>
#include <string>

namespace zavex::cadenza {
namespace {

using mathbase::Vector2f;
using mathbase::Vector4f;
using test::ProbeEffect;
using vellum::test::Area;
using vellum::test::text;

/** What a row is about, and how its numbers stand in a script. */
enum Part { BAR, CURVE, BEAT, COLOR };

constexpr const char* ELEMENTS[] = {
    R"(<option inactive="*" locked="*"/><time start="*" end="*"/>)",
    R"(<key time="*" value="*"/>)",
    R"(<action start="*" delay="*" repeat="*"/>)",
    R"(<key time="*" r="*" g="*" b="*"/>)",
};

/** The elements that hold these numbers, one after the other. */
std::string elements(Part part, const std::string& numbers)
{
    std::string all;
    std::istringstream in(numbers);
    for (std::string number; in >> number;) {
        if (all.find('*') == std::string::npos)
            all += ELEMENTS[part];
        all.replace(all.find('*'), 1, number);
    }
    return all;
}

/** A script as it is saved, on one line; what is not asked for stands as in a plain one. */
std::string script(Part part, const std::string& numbers)
{
    const auto holds = [&](Part each, const char* usual) {
        return elements(each, each == part ? numbers : usual);
    };
    const std::string keys = holds(COLOR, "");
    return "<effect>" + holds(BAR, "0 0 2 22") + R"(<plugin type="spline" name="curve">)" +
           R"(<attributes type="smooth" before="constant" after="constant"/>)" + holds(CURVE, "") +
           R"(</plugin><plugin type="trigger" name="beat">)" + holds(BEAT, "9 1 1") +
           R"(</plugin><plugin type="color" name="color")" +
           (keys.empty() ? "/>" : ">" + keys + "</plugin>") + "</effect>";
}

/** The names of the colour pairs; the one at index i is drawn from red i/255 to green i/255. */
constexpr const char* COLORS[] = {"none",           "back.border",      "back.color",
                                  "back.inactive",  "back.highlight",   "back.pushed",
                                  "caption.border", "caption.color",    "caption.highlight",
                                  "caption.pushed", "caption.inactive", "text.color",
                                  "text.pushed"};

std::string styleDocument()
{
    std::string pairs;
    for (std::size_t i = 1; i < std::size(COLORS); ++i) {
        std::array<char, 80> color{};
        std::snprintf(color.data(), color.size(),
                      "<color name='%s' first='%02zx0000' second='00%02zx00'/>", COLORS[i], i, i);
        pairs += color.data();
    }
    return "<vellum><effect>" + pairs + "</effect><trigger>" + pairs + "</trigger><color>" + pairs +
           "</color></vellum>";
}

/** Which colour it is, the second of a pair with a 2 behind it. */
std::string nameOf(const Vector4f& color)
{
    const auto index = static_cast<std::size_t>(std::lround(255.0f * (color.x + color.y)));
    return index < std::size(COLORS) ? COLORS[index] + std::string(color.y > 0.0f ? "2" : "") : "";
}

bool isMark(const std::string& name)
{
    return name.starts_with("caption.highlight") || name.starts_with("caption.pushed");
}

/**
 * A timeline at (10, 5) of a screen with a bar on it: 2 to 22 seconds long unless its script says
 * otherwise, the lanes 50, 20 and 30 pixels high below its header. The picker comes up at
 * (240, 95), its field 120 x 100 pixels, the button below that.
 */
struct Timeline : testing::Test {
    Timeline()
    {
        styles.parse(styleDocument());
        screen.loadStyle(&styles);
        screen.addControl(effects);
        effects->setName("effects");
        screen.addControl(window);
        window->setName("picker_window");
        window->setArea({240, 95, 376, 215});
        auto* picker = new vellum::ColorChooser; // owned by the window, as what follows
        window->addControl(picker);
        picker->setName("picker");
        picker->setArea({0, 0, 136, 100});
        auto* ok = new vellum::Button;
        window->addControl(ok);
        ok->setName("picker_ok");
        ok->setArea({0, 100, 136, 120});
    }

    /** Puts a bar on the timeline; the newest is the topmost. Owned by the timeline. */
    ProbeEffect* add(const std::string& name, const std::string& document)
    {
        test::writeText("script/probe." + name + ".xml", document);
        auto* const added = new ProbeEffect;
        added->setIdentity("probe", name);
        added->load(nullptr);
        effects->addControl(added);
        added->setupControl();
        effects->recalculate(true);
        return added;
    }

    /** Begins anew with one bar. Positions count from the part's corner, a bar's from (0, 0). */
    void show(Part part, const std::string& numbers, float width = 225.0f)
    {
        if (screen.getOpen())
            screen.resetContext();
        effects->deleteControls();
        effects->setArea({10, 5, 10 + width, 295});
        window->setVisible(false);
        user.does("reset");
        effect = add("it", script(part, numbers));
        effects->setFocus(nullptr);
        vellum::Control* const lanes[] = {effects, &effect->curve, &effect->beat, &effect->color};
        lane = lanes[part];
        user.origin = lane->getAreaWorld().mMin;
    }

    /** What the bars' scripts would be, on one line. */
    std::string saved(ProbeEffect& bar)
    {
        bar.save();
        std::string document = test::readText(bar.getFilename());
        std::erase_if(document, [](char byte) { return byte == '\n' || byte == '\t'; });
        return document;
    }

    /** The open menu and where it is; else the marked firings by place, the keys by number. */
    std::string state()
    {
        std::ostringstream out;
        if (vellum::Context* const menu = screen.getOpen()) {
            const Vector2f corner = menu->getArea().mMin - user.origin;
            out << menu->getCaption() << " at " << corner.x << ',' << corner.y;
            return out.str();
        }
        screen.redraw();
        const auto& drawn = screen.render;
        for (std::size_t i = 0; i < drawn.boxes.size(); ++i)
            if (const std::string name = nameOf(drawn.boxColors[i]);
                drawn.boxes[i].getWidth() == 1.0f && isMark(name))
                out << drawn.boxes[i].mMin.x - user.origin.x << ' ' << name;
        int key = 0;
        for (std::size_t i = 1; i < drawn.circles.size(); ++i)
            if (nameOf(drawn.circleColors[i - 1]) == "caption.color") { // its rim
                if (const std::string name = nameOf(drawn.circleColors[i]); isMark(name))
                    out << key << ' ' << name;
                ++key;
            }
        return out.str();
    }

    /** Draws, and returns where the bars of a colour begin, from the lane's left edge. */
    std::string barsIn(const std::string& color)
    {
        screen.redraw();
        std::ostringstream out;
        for (std::size_t i = 0; i < screen.render.boxes.size(); ++i)
            if (screen.render.boxes[i].getWidth() <= 1.0f &&
                nameOf(screen.render.boxColors[i]) == color)
                out << screen.render.boxes[i].mMin.x - user.origin.x << ' ';
        return out.str();
    }

    /** The colours of the first boxes of the topmost bar. */
    std::string boxes(std::size_t count)
    {
        screen.redraw();
        std::string names;
        for (std::size_t i = 1; i <= count; ++i) { // behind the bars is the stack's own
            const std::string name = nameOf(screen.render.boxColors[i]);
            EXPECT_EQ(nameOf(screen.render.boxEndColors[i]), name + "2");
            names += (i > 1 ? " " : "") + name;
        }
        return names;
    }

    /** The name of the bar as it is drawn. */
    vellum::test::RecordingRender::Text name()
    {
        const auto& texts = screen.render.texts;
        const auto found =
            std::ranges::find(texts, "it", &vellum::test::RecordingRender::Text::text);
        return found == texts.end() ? vellum::test::RecordingRender::Text() : *found;
    }

    test::ScratchFolder folder;
    xml::XmlParser styles;
    vellum::test::Screen screen;
    vellum::LayoutStack* effects = new vellum::LayoutStack; // owned by the screen, as what follows
    vellum::Container* window = new vellum::Container;
    ProbeEffect* effect = nullptr;
    vellum::Control* lane = nullptr;
    vellum::test::User user{screen, [this] { return state(); }};
};

constexpr const char* THREE = "1 0.5 3";
constexpr const char* PAIR = "0.5 1 1 1 0.53 0 0 0"; // at 100 and 106, squares of 12 pixels
constexpr const char* RGB = "0.2 1 0 0 0.5 0 1 0 0.8 0 0 1";
constexpr const char* WHITE = "0 1 1 1 0.5 1 1 1 1 1 1 1";

// clang-format off
const struct EditCase {
    const char* name;
    Part part;
    const char* before;
    const char* steps; // then the button is let go and the pointer leaves
    const char* after;
} EDIT_CASES[] = {
    {"HeaderMovesTheEffect",        BAR, "0 0 2 5",     "down 35,10; move 45,10",         "0 0 3 6"},
    {"HeaderKeepsOnOutsideTheBar",  BAR, "0 0 2 5",     "down 35,10; move 135,250",       "0 0 12 15"},
    {"StartHandle",                 BAR, "0 0 2 8",     "down 20,0; move 30,10",          "0 0 3 8"},
    {"StartStopsTwoSecondsFromEnd", BAR, "0 0 2 8",     "down 20,10; move 200,10",        "0 0 6 8"},
    {"EndHandle",                   BAR, "0 0 2 8",     "down 70,10; move 90,10",         "0 0 2 10"},
    {"EndStopsTwoSecondsFromStart", BAR, "0 0 2 8",     "down 79,19.9; move 0,10",        "0 0 2 4"},
    {"NarrowBarHasItsEndHandle",    BAR, "0 0 2 3.5",   "down 26,10; move 31,10",         "0 0 2 4"},
    {"NarrowBarHasItsStartHandle",  BAR, "0 0 2 3.5",   "down 24,10; move 19,10",         "0 0 1.5 3.5"},
    {"ShiftIsFine",                 BAR, "0 0 2 8",     "down 75,10; move SHIFT 85,10",   "0 0 2 8.1"},
    {"LaneMovesNothing",            BAR, "0 0 2 8",     "down 35,20; move 45,10",         "0 0 2 8"},
    {"EndlessOneMoves",             BAR, "0 0 0 inf",   "down 50,10; move 60,10",         "0 0 1 1e+06"},
    {"BeginningBeforeZeroEnds",     BAR, "0 0 -3 5",    "down 45,10; move 55,10",         "0 0 -3 6"},
    {"BeginningBeforeZeroMoves",    BAR, "0 0 -3 5",    "down 20,10; move 21,10",         "0 0 0 8"},
    {"ReversedHasNoBar",            BAR, "0 0 3 0",     "down 15,10; move 20,10",         "0 0 3 0"},
    {"NoNumbersHaveNoBar",          BAR, "0 0 nan nan", "down 0,10; move 20,10",          "0 0 nan nan"},
    {"HidingEndsItsDrag",           BAR, "0 0 2 8",     "down 50,10; move 60,10; hide effects; show effects; move 90,10", "0 0 3 9"},
    {"OtherButtonGoesOn",           BAR, "0 0 2 8",     "down 50,10; move 60,10; rightup; move 70,10", "0 0 4 10"},
    {"MenuEndsItsDrag",             BAR, "0 0 2 8",     "down 50,10; move 60,10; right; up 66,20; move 90,10", "1 0 3 9"},
    {"SwitchedOff",                 BAR, "0 0 2 8",     "right 50,10; rightup; = context at 50,10; up 56,20", "1 0 2 8"},
    {"LockedStays",                 BAR, "0 0 2 8",     "right 50,10; rightup; up 56,35; down 50,10; move 60,10", "0 1 2 8"},
    {"UnlockedMoves",               BAR, "0 1 2 8",     "right 50,10; rightup; up 56,35; down 50,10; move 60,10", "0 0 3 9"},
    {"NoMenuBesides",               BAR, "0 0 2 8",     "right 19.9,10; =; right 20,0; = context at 20,0", "0 0 2 8"},

    {"KeyIsDragged",    CURVE, "0.5 0.5", "down 100,12; move 120,18", "0.6 0.28"},
    {"MenuOnTheCurve",  CURVE, "0.5 0.5", "right 50,30; = spline at 50,30", "0.5 0.5"},

    {"FirstMovesAll",          BEAT, THREE, "down 10,10; move 25,250",       "2.5 0.5 3"},
    {"SecondStretches",        BEAT, THREE, "move 15,10; = 15 caption.highlight; down; = 15 caption.pushed; move 18,250", "1 0.8 3"},
    {"ThirdStretchesHalf",     BEAT, THREE, "down 20,10; move 26,250",       "1 0.8 3"},
    {"DelayStaysPositive",     BEAT, THREE, "down 20,10; move 10,10",        "1 0.01 3"},
    {"ShiftIsFine",            BEAT, THREE, "down 10,10; move SHIFT 25,250", "1.15 0.5 3"},
    {"BesidesTheBars",         BEAT, THREE, "down 30,10; move 40,10",        THREE},
    {"NearestFromTheLeft",     BEAT, THREE, "down 12.6,10; move 15.6,10",    "1 0.8 3"},
    {"OneAndAHalfBeforeFirst", BEAT, THREE, "down 2.6,10; move 12.6,10",     "2 0.5 3"},
    {"FartherBefore",          BEAT, THREE, "down 2.4,10; move 12.4,10",     THREE},
    {"HalfBehindTheLast",      BEAT, THREE, "down 22.4,10; move 28.4,10",    "1 0.8 3"},
    {"FirstActionOnly",        BEAT, "1 0.5 3 5 1 1", "down 50,10; move 60,10; up; down 10,10; move 20,10", "2 0.5 3 5 1 1"},
    {"NoneWithoutRepeat",      BEAT, "1 1 0",   "down 10,10; move 20,10", "1 1 0"},
    {"AllAtTheStart",          BEAT, "1 0 9",   "down 13,10; move 23,10", "2 0 9"},
    {"NegativeDelay",          BEAT, "1 -1 9",  "down 10,10; move 20,10", "2 -1 9"},
    {"StartThatIsNoNumber",    BEAT, "nan 1 9", "down 10,10; move 20,10", "nan 1 9"},
    {"EndlessDelay",           BEAT, "1 inf 9", "down 10,10; move 20,10", "2 inf 9"},
    {"HidingEndsTheDrag",      BEAT, THREE, "down 10,10; hide effects; show effects; move 25,10", THREE},
    {"MenuEndsTheDrag",        BEAT, THREE, "down 10,10; right; up 16,20; move 25,10", "1 0.5 1"},
    {"SeriesIsLonger",         BEAT, THREE, "right 101,10; rightup; = trigger at 101,10; up 107,20", "1 0.5 19"},
    {"SeriesIsShorter",        BEAT, THREE, "right 16,10; rightup; pick adjust", "1 0.5 2"},
    {"LeftOfTheFirst",         BEAT, THREE, "right 1,10; rightup; pick adjust", "1 0.5 1"},
    {"WithoutDelay",           BEAT, "1 0 4", "right 50,10; rightup; pick adjust", "1 0 1"},
    {"WithoutStart",           BEAT, "nan 1 4", "right 50,10; rightup; pick adjust", "nan 1 1"},
    {"HardlyAnyDelay",         BEAT, "0 1e-30 4", "right 50,10; rightup; pick adjust", "0 1e-30 1000000000"},

    {"TheLastOfTwoKeys",    COLOR, PAIR, "move 103,22; = 1 caption.highlight; down; move 120,22", "0.5 1 1 1 0.6 0 0 0"},
    {"LeftEdgeBelongs",     COLOR, PAIR, "down 94,22; move 90,22",   "0.45 1 1 1 0.53 0 0 0"},
    {"RightEdgeDoesNot",    COLOR, PAIR, "down 112,22; move 120,22", PAIR},
    {"TopEdgeBelongs",      COLOR, PAIR, "down 97,16.5; move 90,22", "0.45 1 1 1 0.53 0 0 0"},
    {"BottomEdgeDoesNot",   COLOR, PAIR, "down 97,28.5; move 90,22", PAIR},
    {"MovesToTheRelease",   COLOR, RGB, "down 100,22; move 120,200; = 1 caption.highlight; up; move 70,22; =", "0.2 1 0 0 0.6 0 1 0 0.8 0 0 1"},
    {"NotToTheStart",       COLOR, RGB, "down 100,22; move 0,22",             RGB},
    {"BackFromBeyondAnEnd", COLOR, RGB, "down 100,22; move -20,22; move 90,22", "0.2 1 0 0 0.45 0 1 0 0.8 0 0 1"},
    {"PastTheRightOne",     COLOR, RGB, "down 100,22; move 164,22; = 2 caption.highlight", "0.2 1 0 0 0.8 0 0 1 0.82 0 1 0"},
    {"GoesOnWithTheRight",  COLOR, RGB, "down 100,22; move 164,22; move 180,22", "0.2 1 0 0 0.82 0 1 0 0.9 0 0 1"},
    {"PastTheLeftOne",      COLOR, RGB, "down 100,22; move 36,22; = 0 caption.highlight", "0.18 0 1 0 0.2 1 0 0 0.8 0 0 1"},
    {"HidingEndsTheDrag",   COLOR, RGB, "down 100,22; hide effects; show effects; move 120,22", RGB},
    {"MenuEndsTheDrag",     COLOR, RGB, "down 100,22; right; up 106,32; move 120,22", RGB},
    {"FirstIsBlack",        COLOR, "",  "right 100,22; rightup; pick add", "0.5 0 0 0"},
    {"AddsWithoutAChange",  COLOR, "0 0.2 0.2 0.2 1 1 0 0.6", "right 100,22; = context at 100,22; rightup; up 106,32", "0 0.2 0.2 0.2 0.5 0.6 0.1 0.4 1 1 0 0.6"},
    {"DeletesTheKey",       COLOR, "0.5 1 0 0 0.8 0 0 1", "right 100,22; rightup; pick delete", "0.8 0 0 1"},
    {"EditsNothingYet",     COLOR, WHITE, "right 100,22; rightup; pick edit; move 100,5; = 1 caption.highlight2", WHITE},
    // Cyan: the picker knows its colour from the frame behind the click on.
    {"RecoloursTheKey",     COLOR, WHITE, "double 100,22; up; click 270,0; = 1 caption.highlight2; = 1 caption.highlight2", "0 1 1 1 0.5 0 1 1 1 1 1 1"},
    {"UntilThePickerCloses", COLOR, WHITE, "double 100,22; up; click 290,0; = 1 caption.highlight2; click 270,110; =; click 310,0; =; =", "0 1 1 1 0.5 0 1 0 1 1 1 1"},
    {"AnotherKeepsItsOwn",  COLOR, WHITE, "double 100,22; up; click 290,0; = 1 caption.highlight2; click 270,110; double 0,22; up; = 0 caption.highlight2", "0 1 1 1 0.5 0 1 0 1 1 1 1"},
    {"OthersComeAndGo",     COLOR, "0.2 1 1 1 0.5 1 1 1", "right 100,22; rightup; pick edit; right 40,22; rightup; pick delete; move 9,5;"
        "= 0 caption.highlight2; right 20,22; rightup; pick add; move 9,5; = 1 caption.highlight2; right 100,22; rightup; pick delete; click 270,0; =", "0.1 1 1 1"},
};
// clang-format on

TEST_F(Timeline, SavesWhatTheUserDid)
{
    for (const EditCase& row : EDIT_CASES) {
        SCOPED_TRACE(row.name);
        show(row.part, row.before);
        user.does(row.steps);
        user.does("up; move 320,250");
        EXPECT_EQ(saved(*effect), script(row.part, row.after));
    }
}

TEST_F(Timeline, LanesKeepTheirPlacesWhereBarsGrowAndOpen)
{
    show(BAR, "0 0 2 8");
    ProbeEffect* const below = effect;
    user.does("down 75,10; move 95,10; up");
    EXPECT_EQ(text(below->getArea()), "20 0 100 120");
    EXPECT_EQ(text(below->curve.getArea()), "0 20 80 70");
    EXPECT_EQ(text(below->beat.getArea()), "0 70 80 90");
    EXPECT_EQ(text(below->color.getArea()), "0 90 80 120");

    ProbeEffect* const locked = add("locked", script(BAR, "0 1 2 8"));
    EXPECT_EQ(text(locked->getOccupiedArea()), "20 0 80 20");
    EXPECT_EQ(text(below->getArea()), "20 20 100 140");
    user.does("right 50,10; rightup; up 56,35");
    EXPECT_EQ(text(locked->getArea()), "20 0 80 120");
    EXPECT_EQ(text(below->getArea()), "20 120 100 240");
}

TEST_F(Timeline, AGradientMayLieAnywhereOnItsBar)
{
    show(COLOR, "0.5 0 1 0");
    effect->color.setArea({7, 90, 207, 120});
    user.origin = effect->color.getAreaWorld().mMin;
    user.does("down 100,22; move 120,22; up; right 40,22; = context at 40,22");
    EXPECT_EQ(saved(*effect), script(COLOR, "0.6 0 1 0"));
}

TEST_F(Timeline, ARecolouredGradientPlaysAsItWillWhenItIsLoadedAgain)
{
    show(COLOR, WHITE);
    user.does("double 100,22; up; click 270,0; = 1 caption.highlight2; = 1 caption.highlight2");
    ProbeEffect* const again = add("again", saved(*effect));
    EXPECT_TRUE(test::isNear(effect->color.get(3.0f), again->color.get(3.0f)));
}

TEST_F(Timeline, GivesThePickerToTheLaneThatOpenedItLast)
{
    show(COLOR, "0.5 1 1 1");
    user.does("double 100,22; up; click 270,0");
    ProbeEffect* const last = add("last", script(COLOR, "0.5 1 1 1")); // 120 pixels above
    screen.draw();
    user.does("double 100,22; up; click 290,0; move 9,5");
    screen.draw();
    screen.draw();
    EXPECT_EQ(saved(*last), script(COLOR, "0.5 0 1 0"));
    EXPECT_EQ(saved(*effect), script(COLOR, "0.5 0 1 1"));

    user.does("double 100,22; up");
    delete last;
    user.does("click 290,0; click 270,110");
    screen.draw();
    user.does("double 100,22; up");
    delete window;
    user.does("double 100,22; up");
    EXPECT_EQ(saved(*effect), script(COLOR, "0.5 0 1 1"));
}

TEST_F(Timeline, LanesWithoutKeysActionsOrWidthHaveNothingToEdit)
{
    show(COLOR, "0.5 1 0 0");
    Trigger empty;
    effect->color.setupControl(0.0f);
    for (const char* action : {"context.delete", "context.edit", "context.add", "trigger.adjust"}) {
        vellum::Event event;
        event.type = "context";
        event.action = action;
        effect->color.handleEvent(event);
        empty.handleEvent(event);
    }
    empty.setArea({10, 205, 310, 225});
    screen.addControl(&empty);
    user.does("down 20,115; move 40,115; right; =");
    EXPECT_EQ(saved(*effect), script(COLOR, "0.5 1 0 0"));
}

// clang-format off
constexpr struct LookCase {
    const char* name;
    const char* before;
    const char* steps;
    const char* boxes; // behind the bar and the box of its header
    const char* text;
} LOOK_CASES[] = {
    {"Idle",          "0 0 2 8", "",                        "back.color caption.color caption.color",                "text.color"},
    {"ClickedLast",   "0 0 2 8", "click 50,10; move 300,10", "back.pushed caption.color caption.color",               "text.pushed"},
    {"Off",           "1 0 2 8", "",                        "back.inactive caption.color caption.color",             "text.color"},
    {"LockedAndOff",  "1 1 2 8", "down 50,10; move 250,10", "caption.inactive caption.color caption.color",          "text.pushed"},
    {"HeaderHovered", "0 0 2 8", "move 50,10",              "back.color back.highlight caption.color caption.color", "text.color"},
    {"HeaderHeld",    "0 0 2 8", "down 50,10; move 250,10", "back.pushed back.pushed caption.color caption.color",   "text.color"},
    {"StartHovered",  "0 0 2 8", "move 25,10",              "back.color caption.highlight caption.color",            "text.color"},
    {"EndHeld",       "0 0 2 8", "down 75,10; move 275,10", "back.pushed caption.color caption.pushed",              "text.pushed"},
};
// clang-format on

TEST_F(Timeline, BarsTellTheirState)
{
    for (const LookCase& row : LOOK_CASES) {
        SCOPED_TRACE(row.name);
        show(BAR, row.before);
        user.does(row.steps);
        const std::string expected = std::string("caption.border back.border ") + row.boxes;
        const auto words = std::ranges::count(expected, ' ') + 1;
        EXPECT_EQ(boxes(static_cast<std::size_t>(words)), expected);
        EXPECT_EQ(nameOf(name().color), row.text);
        user.does("up");
    }
    show(BAR, "0 0 2 8");
    screen.redraw();
    constexpr const char* areas[] = {"30 5 90 125", "30 5 90 25", "32 7 88 23", "33 8 41 22",
                                     "79 8 87 22"};
    for (std::size_t i = 0; i < std::size(areas); ++i)
        EXPECT_EQ(text(screen.render.boxes[i + 1]), areas[i]);
    EXPECT_EQ(text(screen.render.borders[0]), areas[0]);
}

TEST_F(Timeline, TheNameOfABarStaysWhereItCanBeRead)
{
    constexpr struct {
        const char* before;
        float width; // of the timeline, which begins at 10; the name is 12 pixels wide
        float expected;
    } CASES[] = {
        {"0 0 2 8",   380, 60 },
        {"0 0 2 22",  100, 98 }, // where the bar is cut off
        {"0 0 2 inf", 380, 378},
    };
    for (const auto& [before, width, expected] : CASES) {
        show(BAR, before, width);
        screen.redraw();
        EXPECT_EQ(name().position, Vector2f(expected, 15.0f)) << before;
        EXPECT_EQ(name().align, display::Font::ALIGN_CENTER);
    }
}

TEST_F(Timeline, FiringsAreDrawnWhereTheyAreAndInSight)
{
    constexpr struct {
        const char* name;
        const char* numbers;
        const char* bars; // from the lane's left edge, 350 pixels of which are in sight
    } CASES[] = {
        {"OfEveryAction",       "1 0.5 3 5 1 2",    "10 15 20 50 60 "},
        {"NoneWithoutRepeat",   "1 1 0",            ""               },
        {"OnlyThoseInSight",    "-2 10 2000000000", "80 180 280 "    },
        {"TouchingTheEdges",    "-0.05 34.95 3",    "-0.5 349 "      },
        {"BehindTheEnd",        "35 1 9",           ""               },
        {"OneForAllAtTheStart", "1 0 2000000000",   "10 "            },
        {"StartThatIsNoNumber", "nan 1 2000000000", ""               },
    };
    for (const auto& row : CASES) {
        SCOPED_TRACE(row.name);
        show(BEAT, row.numbers, 370);
        effect->setArea({20, 0, 1020, 120});
        effect->updatePlugins();
        EXPECT_EQ(barsIn("caption.color"), row.bars);
    }

    show(BEAT, "0 1e-06 2000000000", 370);
    effect->setArea({20, 0, 1020, 120});
    effect->updatePlugins();
    screen.redraw();
    std::vector<Area> drawn = screen.render.boxes;
    std::erase_if(drawn, [](const Area& box) { return box.getWidth() > 1.1f; });
    EXPECT_LT(drawn.size(), 10000u);
    for (std::size_t i = 1; i < drawn.size(); ++i)
        ASSERT_LT(drawn[i].mMin.x, drawn[i - 1].mMax.x);
    EXPECT_GT(drawn.back().mMax.x, 379.0f);
}

TEST_F(Timeline, ATriggerFlashesAtAFiring)
{
    show(BEAT, THREE);
    effect->beat.mName.clear();
    for (const auto& [time, first] : {
             std::pair{0.9f,  2.0f},
             {1.1f,  4.0f},
             {1.2f,  3.0f},
             {1.35f, 2.0f}
    }) {
        effect->beat.update(time);
        screen.render.clear();
        effect->beat.draw({0, 0, 200, 20}, {0, 0, 200, 20}, {0, 0, 200, 20});
        EXPECT_NEAR(screen.render.boxColors[0].x * 255.0f, first, 0.01f) << time;
    }
}

TEST_F(Timeline, AGradientIsDrawnWhereItIsInSight)
{
    constexpr float NONE = std::numeric_limits<float>::quiet_NaN();
    constexpr float ENDLESS = std::numeric_limits<float>::infinity();
    constexpr const char* TWO = "0 1 0 0 1 0 0 1";
    constexpr const char* WILD = "nan nan inf 1e38 0.5 nan 0 0 -inf 0 0 0 1e38 1 1 1 2 1 1 1";
    constexpr struct {
        const char* keys;
        Area area;
        Area clip;
        std::size_t swatches;
        float first; // left edge of the first swatch
        std::size_t markers;
    } CASES[] = {
        {TWO,  {0, 0, 100, 30},       {0, 0, 100, 30}, 15, 0,  2},
        {TWO,  {10, 0, 110, 30},      {10, 0, 25, 30}, 3,  10, 1},
        {TWO,  {-50.5f, 0, 1e6f, 30}, {0, 0, 21, 30},  4,  -1, 0},
        {TWO,  {0, 0, 1000, 30},      {12, 0, 14, 30}, 0,  0,  0}, // between two swatches
        {TWO,  {10, 0, 10, 30},       {10, 0, 10, 30}, 0,  0,  2},
        {TWO,  {90, 0, 10, 30},       {10, 0, 90, 30}, 0,  0,  2}, // backwards
        {TWO,  {0, 0, ENDLESS, 30},   {0, 0, 100, 30}, 15, 0,  0},
        {TWO,  {0, 0, NONE, 30},      {0, 0, 100, 30}, 0,  0,  0},
        {WILD, {0, 0, 100, 30},       {0, 0, 100, 30}, 15, 0,  1},
    };
    for (const auto& [keys, area, clip, swatches, first, markers] : CASES) {
        SCOPED_TRACE(keys + (" in " + text(area)));
        show(COLOR, keys);
        screen.render.clear();
        effect->color.draw(area, Area(0, 0, 0, 0), clip);
        ASSERT_EQ(screen.render.boxes.size(), swatches);
        if (swatches > 0) {
            EXPECT_EQ(screen.render.boxes[0], Area(first, 15, first + 5, 30));
        }
        EXPECT_EQ(screen.render.circles.size(), 2 * markers);
    }
}

TEST_F(Timeline, ACurveHasItsNameAtItsFoot)
{
    show(CURVE, "");
    screen.render.clear();
    effect->curve.draw({10, 20, 110, 70}, {0, 0, 400, 300}, {30, 20, 110, 60});
    ASSERT_EQ(screen.render.texts.size(), 2u);
    EXPECT_EQ(screen.render.texts[1].text, "curve");
    EXPECT_EQ(screen.render.texts[1].position, Vector2f(10, 65));
    EXPECT_EQ(screen.render.texts[1].align, display::Font::ALIGN_LEFT);
}

} // namespace
} // namespace zavex::cadenza
