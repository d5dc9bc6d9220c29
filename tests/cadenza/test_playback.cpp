#include "cadenza/cad_factory.h"
#include "cadenza/open_cadenza.h"
#include "cadenza/probe_effect.h"
#include "cadenza/scratch.h"
#include "display/dis_event.h"
#include "support/allocation_counter.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <tuple>

namespace zavex::cadenza {
namespace {

using test::OpenCadenza;
using test::ProbeEffect;
using test::writeText;

constexpr const char* SILENT = R"(<music mute="nosound"/>)";
constexpr const char* SILENT_WITHOUT_OSD = R"(<osd show="off"/><music mute="nosound"/>)";

/** The application without window and sound; its clock stands still unless it is moved. */
class Player : public testing::Test {
protected:
    Player() { test::clearLog(); }

    ~Player() override { cadenza.reset(); }

    void start(const std::string& sections)
    {
        writeText("setup.xml", "<demo>" + sections + "</demo>");
        cadenza = std::make_unique<OpenCadenza>();
        cadenza->setup(-1.0f);
    }

    /** A player that is paused, so that a seek is the time of the next frame. */
    void startPaused()
    {
        start(SILENT_WITHOUT_OSD);
        press(display::KEY_SPACE);
    }

    int press(display::Key key, int modifiers = display::KEYMOD_NONE)
    {
        display::KeyEvent event;
        event.key = key;
        event.control = modifiers;
        return cadenza->onKeyDown(event);
    }

    void drawAt(float time)
    {
        cadenza->setTime(time);
        cadenza->onDraw();
    }

    ProbeEffect& addProbe(float start, float end)
    {
        cadenza->addFactory("probe", &factory);
        effects.emplace_back(cadenza->addEffect("probe", "it"));
        effects.back()->setSpan(start, end);
        effects.back()->setupControl();
        return static_cast<ProbeEffect&>(*effects.back());
    }

    test::ScratchFolder folder;
    EffectFactory<ProbeEffect> factory;
    std::vector<std::unique_ptr<Effect>> effects;
    std::unique_ptr<OpenCadenza> cadenza;
};

TEST_F(Player, CreatesEffectsByTypeInOrder)
{
    start(SILENT);
    EXPECT_EQ(cadenza->addEffect("plasma", "one"), nullptr);
    EXPECT_EQ(test::countLogged("log", "Effect plasma not found."), 1);

    const Effect& first = addProbe(0.0f, 1.0f);
    const Effect& second = addProbe(0.0f, 1.0f);
    ASSERT_EQ(cadenza->mEffect.size(), 2u);
    EXPECT_EQ(cadenza->mEffect[0], &first);
    EXPECT_EQ(cadenza->mEffect[1], &second);
}

TEST_F(Player, AnEffectsSpanIsOpenAtBothEnds)
{
    startPaused();
    ProbeEffect& effect = addProbe(5.0f, 8.0f);
    for (const float time : {4.0f, 5.0f, 8.0f, 9.0f}) {
        drawAt(time);
        EXPECT_EQ(effect.draws, 0) << time;
    }
    drawAt(5.001f);
    drawAt(6.5f);
    EXPECT_EQ(effect.draws, 2);
    effect.setInactive(true);
    drawAt(6.5f);
    EXPECT_EQ(effect.draws, 2) << "switched off";
}

TEST_F(Player, DrawsWithTimesRelativeToTheEffect)
{
    startPaused();
    writeText("script/probe.it.xml",
              R"(<effect><time start="5" end="8"/><plugin name="curve">)"
              R"(<attributes type="linear"/><key time="0" value="0"/><key time="1" value="3"/>)"
              R"(</plugin><plugin name="beat"><action start="1" delay="9"/></plugin></effect>)");
    ProbeEffect& effect = addProbe(0.0f, 1.0f);
    effect.load(nullptr);
    effect.setArea({50, 0, 80, 100});
    effect.updatePlugins();

    drawAt(6.0f);
    drawAt(6.5f);
    EXPECT_EQ(effect.last, (ProbeEffect::Drawn{1.5f, 0.5f, 0.5f, 1.5f, 1}));

    cadenza->onDraw(); // the same moment again, as while paused
    EXPECT_EQ(effect.last, (ProbeEffect::Drawn{1.5f, 0.0f, 0.5f, 1.5f, 0}));
}

TEST_F(Player, AllocatesNothingInAFrame)
{
    startPaused();
    addProbe(5.0f, 8.0f);
    addProbe(0.0f, 9.0f);
    drawAt(6.0f);

    const test::AllocationCounter allocations;
    for (int i = 0; i < 10; ++i)
        cadenza->onDraw();
    EXPECT_EQ(allocations.count(), 0u);
}

TEST_F(Player, AsksToQuitForTheQuitKeysOnly)
{
    start(SILENT);
    EXPECT_EQ(press(display::KEY_ESC), display::Listener::QUIT);
    EXPECT_EQ(press(display::KEY_q, display::KEYMOD_LSHIFT), display::Listener::QUIT);
    EXPECT_EQ(press(display::KEY_t), display::Listener::WHATEVER);
}

TEST_F(Player, SeeksByFiveSecondsFromTheFrameShown)
{
    startPaused();
    drawAt(12.0f);
    press(display::KEY_RIGHT);
    press(display::KEY_RIGHT);
    cadenza->onDraw();
    EXPECT_EQ(cadenza->getSystemTime(), 17.0f);
    EXPECT_EQ(cadenza->mOsdTime, 17.0f);

    drawAt(3.0f);
    press(display::KEY_LEFT);
    cadenza->onDraw();
    EXPECT_EQ(cadenza->getSystemTime(), 0.0f);
}

TEST_F(Player, PausesAndGoesOnAtTheFrameShown)
{
    start(SILENT_WITHOUT_OSD);
    drawAt(6.5f);
    press(display::KEY_SPACE);
    EXPECT_TRUE(cadenza->mPaused);
    EXPECT_EQ(cadenza->mOsdTime, 6.5f);
    cadenza->onDraw();
    EXPECT_EQ(cadenza->getSystemTime(), 6.5f);

    drawAt(20.0f);
    press(display::KEY_SPACE);
    EXPECT_FALSE(cadenza->mPaused);
    cadenza->onDraw();
    EXPECT_EQ(cadenza->getSystemTime(), 20.0f);
}

TEST_F(Player, MarksTheStartPointAndReturnsToIt)
{
    startPaused();
    drawAt(42.5f);
    press(display::KEY_t, display::KEYMOD_RCTRL);
    EXPECT_EQ(cadenza->getStartTime(), 42.5f);

    drawAt(60.0f);
    press(display::KEY_t);
    EXPECT_EQ(cadenza->mOsdTime, 60.0f); // of the frame shown, not of the point jumped to
    cadenza->onDraw();
    EXPECT_EQ(cadenza->getSystemTime(), 42.5f);

    press(display::KEY_t, display::KEYMOD_LALT);
    EXPECT_EQ(cadenza->getStartTime(), 0.0f);
    cadenza->onDraw();
    EXPECT_EQ(cadenza->getSystemTime(), 0.0f);
}

TEST_F(Player, MovesThePositionBarOnlyWhileItShows)
{
    start(SILENT);
    cadenza->mOsd = false;
    cadenza->setTime(50.0f);
    cadenza->onDraw();
    cadenza->mOsd = true;
    cadenza->mOsdTime = -100.0f;

    press(display::KEY_o);
    EXPECT_EQ(cadenza->mOsdLocation, 0);
    EXPECT_EQ(cadenza->mOsdTime, 50.0f);
    for (const int location : {1, 2, 0}) {
        press(display::KEY_o);
        EXPECT_EQ(cadenza->mOsdLocation, location);
    }

    press(display::KEY_o, display::KEYMOD_LCTRL);
    EXPECT_FALSE(cadenza->mOsd);
    EXPECT_EQ(cadenza->mOsdLocation, 0);
    press(display::KEY_o, display::KEYMOD_RCTRL);
    EXPECT_TRUE(cadenza->mOsd);
}

TEST_F(Player, StepsARecordingByWholeFramesWithoutDrift)
{
    start(R"(<dump name="a.png" rate="29.97"/>)");
    float last = 0.0f;
    for (int frame = 1; frame <= 100000; ++frame)
        last = cadenza->getTime();

    EXPECT_EQ(last, static_cast<float>(100000.0 / double{29.97f}));
    EXPECT_EQ(cadenza->getSystemTime(), last);
    EXPECT_EQ(cadenza->mMusicTime, 0.0f);
}

TEST_F(Player, OpensTheSongEvenWithoutAWindow)
{
    start("");
    EXPECT_EQ(test::thrownMessage([this] { cadenza->run(); }), "Could not open the file ''!");
}

TEST_F(Player, WithoutAWindowNeitherLoadsNorSavesScripts)
{
    const std::string script = R"(<effect><time start="5" end="8"/></effect>)";
    start(SILENT);
    writeText("script/probe.it.xml", script);
    const ProbeEffect& effect = addProbe(0.0f, 1.0f);
    cadenza->run();

    EXPECT_EQ(effect.getEnd(), 1.0f);
    EXPECT_EQ(effect.setups, 0);
    cadenza.reset();
    EXPECT_EQ(test::readText("script/probe.it.xml"), script);
}

TEST(Letterbox, FitsThePictureIntoTheWindow)
{
    const std::tuple<PictureSize, float, PictureSize> cases[] = {
        {{1024, 768}, 2.0f,        {1024, 512}},
        {{1000, 400}, 2.0f,        {800, 400} },
        {{1024, 768}, 4.0f / 3.0f, {1024, 768}},
        {{1024, 768}, 1.777809f,   {1024, 574}}, // cut to whole pixels, then made even
        {{801, 601},  1.0f,        {600, 600} },
        {{10, 10},    100.0f,      {10, 0}    },
        {{1000, 400}, 1e-10f,      {0, 400}   }, // a height beyond integers
    };
    for (const auto& [window, aspect, expected] : cases) {
        const PictureSize picture = letterbox(window, aspect);
        EXPECT_EQ(picture.width, expected.width) << aspect;
        EXPECT_EQ(picture.height, expected.height) << aspect;
    }
}

} // namespace
} // namespace zavex::cadenza
