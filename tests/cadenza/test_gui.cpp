// The editor in a window, over an application whose time stands still.

#include "cadenza/stage.h"
#include "display/dis_joystick.h"
#include "support/allocation_counter.h"
#include "support/gl_display.h"
#include "vellum/mouse.h"
#include "vellum/vel_layout_stack.h"
#include "vellum/vel_scrollbars.h"

#include <optional>
#include <string>
#include <vector>

namespace zavex::cadenza {
namespace {

using display::Joystick;
using test::thrownMessage;
using vellum::Control;
using vellum::test::Mouse;
using vellum::test::Observer;
using vellum::test::text;

/** A display with at most one game pad, plugged in as number 3. */
class PadDisplay final : public display::DisplayGLFW {
public:
    bool readJoystick(int index, Joystick& state) const override
    {
        const bool isThere = pad && index == 3;
        state = isThere ? *pad : Joystick{};
        return isThere;
    }

    std::optional<Joystick> pad;
};

class Editor : public test::Stage {
protected:
    Editor()
    {
        writeEditor();
        start(R"(<music mute="nosound"/>)");
        archive.addArchive("./");
        cadenza->mDisplay.reset(display);
        display->setArchive(&archive);
        display->open(test::smallMode(400, 300));
    }

    Gui& open()
    {
        gui.emplace(display, cadenza.get());
        gui->attachToDisplay(display);
        gui->setup();
        return *gui;
    }

    std::string openFailure()
    {
        return thrownMessage([this] { open(); });
    }

    Control& find(const std::string& id) { return *gui->getVellum().findControl(id); }

    int press(display::Key key)
    {
        display::KeyEvent event;
        event.key = key;
        return gui->onKeyDown(event);
    }

    am::ArchiveManager archive;
    PadDisplay* const display = new PadDisplay; // the application's
    std::optional<Gui> gui;
};

TEST_F(Editor, TimelineIsAsLongAsTheShow)
{
    open();
    EXPECT_EQ(text(find("main_ruler").getArea()), "0 0 5011 174"); // without music
    cadenza->mSongLength = 0.0f;
    open();
    EXPECT_EQ(text(find("main_ruler").getArea()), "0 0 11 174");
    EXPECT_EQ(text(find("main_body").getArea()), "0 0 11 1000");
}

TEST_F(Editor, NamesTheControlThatTheLayoutLacksOrThatIsOfAnotherKind)
{
    constexpr const char* OPTIONAL = "effects";
    for (const auto& [id, type] : {
             std::pair<std::string, std::string>{"main_scrollbars_horisontal", "scrollbars"  },
             {"main_ruler",                 "ruler"       },
             {"main_body",                  ""            },
             {"main_stat",                  "stat"        },
             {"fps",                        ""            },
             {"main_window",                ""            },
             {"picker_window",              "window"      },
             {"picker",                     "colorchooser"},
             {"picker_ok",                  "button"      },
             {OPTIONAL,                     "layoutstack" },
    }) {
        writeEditor("", id);
        EXPECT_EQ(openFailure(), id == OPTIONAL
                                     ? "nothing was thrown"
                                     : "layout.xml: there is no control called '" + id + "'");
        writeEditor("<label id=\"" + id + "\"/>");
        EXPECT_EQ(openFailure(), type.empty() ? "nothing was thrown"
                                              : "layout.xml: the control '" + id + "' must be a '" +
                                                    type + "', found a 'label'");
    }
}

TEST_F(Editor, CanDoWithoutTimelineAndWorkspace)
{
    writeEditor("", "effects");
    EXPECT_EQ(open().getTimeline(), nullptr);
    gui->onDraw();

    writeEditor("", "workspace");
    open();
    EXPECT_EQ(press(display::KEY_TAB), display::Listener::WHATEVER);
}

TEST_F(Editor, GrowsWithItsBars)
{
    vellum::LayoutStack& timeline = *open().getTimeline();
    Control* const bar = new Control; // owned by the timeline from here on
    bar->setArea({0.0f, 0.0f, 10.0f, 1500.0f});
    timeline.addControl(bar);
    gui->onDraw();
    EXPECT_EQ(text(find("main_body").getArea()), "0 0 5011 1540");

    bar->setArea({0.0f, 0.0f, 10.0f, 20.0f});
    timeline.recalculate(true);
    gui->onDraw();
    EXPECT_EQ(text(find("main_body").getArea()), "0 0 5011 1000");
}

TEST_F(Editor, TabHidesItAndEndsADrag)
{
    open();
    auto& bars = dynamic_cast<vellum::Scrollbars&>(find("main_scrollbars_horisontal"));
    Mouse mouse(find("workspace"));
    mouse.drag({5.0f, 295.0f}, {25.0f, 295.0f});
    EXPECT_EQ(bars.getScrollPosition().x, 20.0f);

    press(display::KEY_TAB);
    press(display::KEY_SPACE);
    EXPECT_FALSE(find("workspace").getVisible());
    press(display::KEY_TAB);
    EXPECT_TRUE(find("workspace").getVisible());
    mouse.moveTo({90.0f, 295.0f});
    EXPECT_EQ(bars.getScrollPosition().x, 20.0f);
}

TEST_F(Editor, FitsTheRulerToWhatWasResized)
{
    open();
    Mouse mouse(find("workspace"));
    mouse.drag({395.0f, 295.0f}, {395.0f, 245.0f}); // the corner of the scroll area
    mouse.release();
    EXPECT_EQ(text(find("main_window").getArea()), "0 100 400 250");
    EXPECT_EQ(text(find("main_ruler").getArea()), "0 0 5011 124");

    mouse.doubleClick({20.0f, 110.0f}); // the caption
    EXPECT_TRUE(find("main_window").getMaximized());
    EXPECT_EQ(find("main_ruler").getArea().getHeight(), 300.0f);
}

TEST_F(Editor, PutsWindowsInTheirPlacesWhenTheScreenChanges)
{
    writeEditor(R"(<flow id="places" hidden="true"><child>
        <container><area percent="1"/></container>
        <container id="place.main_window"><area percent="1"/></container></child></flow>)");
    open();
    EXPECT_EQ(text(find("main_window").getArea()), "0 150 400 300");
    EXPECT_EQ(find("main_ruler").getArea().getHeight(), 124.0f);

    display->onWindowSize(500, 400);
    EXPECT_EQ(text(find("main_window").getArea()), "0 200 500 400");
    EXPECT_EQ(find("main_ruler").getArea().getHeight(), 174.0f);
    EXPECT_EQ(text(find("picker_window").getArea()), "200 0 400 100");
}

TEST_F(Editor, ClosesThePickerWhoeverElseListens)
{
    open();
    Observer other;
    find("picker_ok").setCallback(&other);
    Mouse(find("workspace")).click({300.0f, 76.0f}); // below the caption and the colours
    EXPECT_FALSE(other.heard.empty());
    EXPECT_FALSE(find("picker_window").getVisible());
}

TEST_F(Editor, MarksStartAndPlayHead)
{
    cadenza->mStartTime = 12.0f;
    cadenza->mSystemTime = 30.0f;
    open().onDraw();
    const test::Picture picture = test::pictureOf(*display, [] {});
    EXPECT_EQ(test::pixelAt(picture, 120, 200), 0x00ff00u);
    EXPECT_EQ(test::pixelAt(picture, 300, 200), 0xff0000u);
    EXPECT_NE(test::pixelAt(picture, 301, 200), 0xff0000u);
}

const struct SpeedCase {
    const char* name;
    std::vector<float> times; // demo time of each frame, seconds
    const char* caption;
} SPEED_CASES[] = {
    {"TooEarlyToTell",        {0.0f, 0.05f, 0.09f},               ""                       },
    {"TheFirstFrameIsNoTime", {0.0f, 0.03f, 0.06f, 0.09f, 0.12f}, "Speed: 24.00ms (42 fps)"},
    {"APauseIsNoTime",        {5.0f, 5.06f, 7.06f, 7.12f},        "Speed: 30.00ms (33 fps)"},
    {"GoingBackIsNoTime",     {5.0f, 5.06f, 4.0f, 4.06f},         "Speed: 30.00ms (33 fps)"},
    {"StartsAnew",            {0.0f, 0.125f, 0.25f, 0.5f},        "Speed: 250.00ms (4 fps)"},
};

TEST_F(Editor, SpeedIsShownEveryTenthOfASecond)
{
    for (const SpeedCase& row : SPEED_CASES) {
        SCOPED_TRACE(row.name);
        open();
        for (const float time : row.times) {
            cadenza->mSystemTime = time;
            gui->onDraw();
        }
        EXPECT_EQ(find("fps").getCaption(), row.caption);
    }
}

TEST_F(Editor, PadMovesThroughTheShow)
{
    constexpr struct {
        bool back;
        float backAxis;
        bool forth;
        float forthAxis;
        float expected; // demo time after 10 seconds
    } CASES[] = {
        {true,  0.0f,  false, 0.0f,  9.9f },
        {true,  -1.0f, false, 0.0f,  10.0f},
        {false, 0.0f,  true,  -1.0f, 10.2f},
        {true,  1.0f,  true,  0.0f,  10.1f}, // forth is the last
    };
    for (const auto& row : CASES) {
        SCOPED_TRACE(row.expected);
        display->pad.emplace();
        open();
        display->pad->buttons[8] = row.back;
        display->pad->axes[12] = row.backAxis;
        display->pad->buttons[9] = row.forth;
        display->pad->axes[13] = row.forthAxis;
        cadenza->mPaused = true;
        cadenza->setTime(10.0f);
        cadenza->getTime();
        gui->onDraw();
        EXPECT_FLOAT_EQ(cadenza->getTime(), row.expected);

        display->pad.reset();
        gui->onDraw();
        EXPECT_FLOAT_EQ(cadenza->getTime(), row.expected) << "unplugged";
    }
}

TEST_F(Editor, AFrameOfTheShowWithBarsAndPositionBarAllocatesNothing)
{
    display->pad.emplace();
    cadenza->attachToDisplay(display);
    cadenza->mPaused = true;
    test::ProbeEffect& effect = add();
    vellum::LayoutStack& timeline = *open().getTimeline();
    timeline.addControl(&effect);
    effect.setupControl();
    timeline.recalculate(true);
    const auto playFrames = [this](int frames) {
        for (int frame = 0; frame < frames; ++frame) {
            // Not of one speed, and with the position bar.
            cadenza->setTime(cadenza->getSystemTime() + 0.04f + 0.001f * static_cast<float>(frame));
            display->update();
        }
    };
    playFrames(10);
    const test::AllocationCounter allocations;
    playFrames(10);
    EXPECT_EQ(allocations.count(), 0u);
    EXPECT_EQ(effect.draws, 20);
}

} // namespace
} // namespace zavex::cadenza
