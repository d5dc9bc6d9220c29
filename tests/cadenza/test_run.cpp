// The application with a window of its own.

#include "cadenza/stage.h"
#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "support/gl_display.h"
#include "vellum/vel_layout_stack.h"

#include <string>
#include <utility>
#include <vector>

namespace zavex::cadenza {
namespace {

using test::ProbeEffect;
using test::readText;
using test::writeText;
using vellum::ControlWatch;

constexpr const char* LOCAL = "setup.local.xml";
constexpr const char* SCRIPT = "script/probe.it.xml";
constexpr const char* SMALL = R"(<display width="64" height="48"/><music mute="nosound"/>)";
constexpr const char* RECORDING = R"(<time start="3"/><display width="64" height="48"/>)"
                                  R"(<dump name="film/a.png" rate="25" length="0.2"/>)"
                                  R"(<music filename="none.ogg"/>)";

class Run : public test::Stage {
protected:
    /** With one effect. Its script spans the first minute. */
    ProbeEffect& begin(const std::string& sections, const std::string& layoutLacks = "")
    {
        writeText(SCRIPT, R"(<effect><time start="0" end="60"/></effect>)");
        writeEditor("", layoutLacks);
        start(sections);
        return add();
    }

    static void fail() { throw Exception("cannot go on"); }
};

TEST_F(Run, RecordsItsLengthFromTheStartTimeInExactSteps)
{
    ProbeEffect& effect = begin(RECORDING, "effects");
    std::vector<float> times;
    effect.onDraw = [&] {
        times.push_back(effect.last.time);
        EXPECT_NEAR(effect.last.delta, 0.04f, 1e-6f);
    };
    cadenza->run();

    EXPECT_EQ(times, (std::vector<float>{3.04f, 3.08f, 3.12f, 3.16f, 3.2f}));
    EXPECT_EQ(effect.setups, 1);
    EXPECT_EQ(effect.rehearsals, 0);
}

TEST_F(Run, RehearsesWhatTheSongWillShow)
{
    for (const auto& [attributes, rehearsals] : {
             std::pair{R"(<time start="499" end="600"/>)",                    1},
             {R"(<time start="500" end="600"/>)",                    0},
             {R"(<time start="-5" end="0"/>)",                       0},
             {R"(<time start="20" end="10"/>)",                      0},
             {R"(<option inactive="1"/><time start="0" end="60"/>)", 0},
    }) {
        SCOPED_TRACE(attributes);
        writeText("script/probe.other.xml", std::string("<effect>") + attributes + "</effect>");
        ProbeEffect& effect = begin(SMALL, "effects");
        effect.onDraw = fail;
        const ProbeEffect& other = add("other");
        EXPECT_EQ(runFailure(), "cannot go on");
        EXPECT_EQ(effect.rehearsals, 1);
        EXPECT_EQ(other.rehearsals, rehearsals);
    }
}

TEST_F(Run, ThatFailsSavesNothing)
{
    const std::string settings = std::string("<demo>") + SMALL + "</demo>";
    writeText(LOCAL, settings);
    ProbeEffect& effect = begin("");
    effect.onDraw = fail;
    const ControlWatch watch(effect);
    const std::string script = readText(SCRIPT);
    EXPECT_EQ(test::thrownMessage([this] { std::exchange(cadenza, nullptr)->run(); }),
              "cannot go on");
    EXPECT_TRUE(watch.isGone()) << "it was the timeline's";
    EXPECT_EQ(readText(SCRIPT), script);
    EXPECT_EQ(readText(LOCAL), settings);
}

TEST_F(Run, ScriptsAreSavedUnlessTheSettingsAreBroken)
{
    constexpr const char* UNSAVED = "Could not save 'setup.local.xml': nothing is saved: ";
    for (const auto& [settings, said] : {
             std::pair{"<demo>\n<time start=1", "(error at line 2"          },
             {"",                      "(error at line 1"          },
             {"<show></show>",         "the root element is 'show'"},
             {"<demo></demo>",         nullptr                     },
    }) {
        SCOPED_TRACE(settings);
        std::filesystem::remove(LOCAL);
        ProbeEffect& effect = begin(RECORDING, "effects");
        const std::string script = readText(SCRIPT);
        cadenza->run();
        effect.setSpan(0.0f, 30.0f);
        writeText(LOCAL, settings);
        test::clearLog();
        cadenza.reset();

        EXPECT_EQ(test::countLogged("error", std::string(UNSAVED) + (said ? said : "")),
                  said ? 1 : 0);
        EXPECT_EQ(readText(SCRIPT) == script, said != nullptr);
        EXPECT_EQ(readText(LOCAL) == settings, said != nullptr);
    }
}

TEST_F(Run, HoldsTheEffectsInOrderOnTheTimelineUntilItIsClosed)
{
    ProbeEffect& first = begin(RECORDING);
    ProbeEffect& second = add("other");
    const ControlWatch firstWatch(first);
    const ControlWatch secondWatch(second);
    cadenza->run();

    vellum::LayoutStack& timeline = *cadenza->mGui->getTimeline();
    EXPECT_EQ(timeline.getOrder(0), &first);
    EXPECT_EQ(timeline.getOrder(1), &second);
    EXPECT_EQ(first.getArea().mMin.y, 120.0f);
    EXPECT_EQ(first.getArea().mMax.x, 600.0f);
    EXPECT_EQ(second.getArea().mMin.y, 0.0f);

    cadenza->close();
    EXPECT_TRUE(firstWatch.isGone());
    EXPECT_TRUE(secondWatch.isGone());
    EXPECT_TRUE(std::filesystem::exists("script/probe.other.xml"));
    EXPECT_NE(cadenza->mDisplay, nullptr);
}

TEST_F(Run, LeavesTheEffectsToTheProgramWhenTheTimelineWasNotBuilt)
{
    const ControlWatch watch(begin(RECORDING, "main_ruler"));
    EXPECT_EQ(runFailure(), "layout.xml: there is no control called 'main_ruler'");
    cadenza.reset();
    EXPECT_FALSE(watch.isGone());
}

TEST_F(Run, ThePositionBarShowsAfterASeekAtItsPlaceAndHidesAfterItsDelay)
{
    begin(R"(<display width="200" height="100"/><music mute="nosound"/>)", "effects").onDraw = [] {
        display::DisplayObsolete::clear({0.2f, 0.4f, 0.6f, 1.0f}, 1.0f);
    };
    cadenza->openDevices();
    cadenza->mEffect[0]->setSpan(0.0f, 500.0f);
    cadenza->setTime(200.0f); // two fifths of the way through
    test::Picture picture;
    const auto pixel = [&](int x, int y) { return test::pixelAt(picture, x, y); };
    constexpr unsigned SHOW = 0x336699;
    for (const auto& [location, y] : {
             std::pair{0, 3 },
             {1, 50},
             {2, 96}
    }) {
        cadenza->mOsdLocation = location;
        picture = test::pictureOf(*cadenza->mDisplay, [] {});
        EXPECT_NEAR(pixel(60, y) & 0xff, 0x99 * 0.4, 2.0) << location;
        for (const auto& [x, beside] : {
                 std::pair{60, 20},
                 {60, 54},
                 {0,  y }
        })
            EXPECT_EQ(pixel(x, beside), SHOW) << location;
    }
    cadenza->mOsdTime = 190.0f;
    picture = test::pictureOf(*cadenza->mDisplay, [] {});
    EXPECT_EQ(pixel(60, 96), SHOW);
}

TEST_F(Run, LetterboxesThePicture)
{
    start(R"(<display width="200" height="100"/><music mute="nosound"/>)");
    cadenza->setup(1.0f);
    cadenza->openDevices();

    const display::WindowMode& mode = cadenza->mDisplay->getWindowMode();
    EXPECT_EQ(mode.getActiveWidth(), 100);
    EXPECT_EQ(mode.getActiveHeight(), 100);
}

} // namespace
} // namespace zavex::cadenza
