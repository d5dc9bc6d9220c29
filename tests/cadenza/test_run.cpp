// The application with a window of its own.

#include "am/am_image.h"
#include "cadenza/cad_effect.h"
#include "cadenza/cad_factory.h"
#include "cadenza/editor_files.h"
#include "cadenza/open_cadenza.h"
#include "cadenza/scratch.h"
#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "support/allocation_counter.h"
#include "support/log_capture.h"
#include "vellum/vel_control_watch.h"
#include "vellum/vel_layout_stack.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zavex::cadenza {
namespace {

using display::DisplayObsolete;
using test::OpenCadenza;
using test::readText;
using test::writeText;

/** Fills the window with a flat colour and notes the times that it is given. */
class Filler final : public Effect {
public:
    void setup() override { ++setups; }
    void rehearse() override { rehearsals += times.empty() && setups == 1 ? 1 : 100; }
    void draw(float time, float delta, float) override
    {
        times.push_back(getStart() + time);
        deltas.push_back(delta);
        DisplayObsolete::clear({0.2f, 0.4f, 0.6f, 1.0f}, 1.0f);
        if (fails)
            throw Exception("cannot go on");
    }
    using Effect::draw;

    int setups = 0;
    int rehearsals = 0; // in their time, between the set-up and the first frame
    bool fails = false;
    std::vector<float> times;  // demo seconds
    std::vector<float> deltas; // seconds
};

constexpr const char* SCRIPT = "script/filler.it.xml";
const std::string WHOLE_SHOW = "<effect>\n"
                               "\t<option inactive=\"0\" locked=\"0\"/>\n"
                               "\t<time start=\"0\" end=\"60\"/>\n"
                               "</effect>\n";

class Run : public testing::Test {
protected:
    Run()
    {
        writeText(SCRIPT, WHOLE_SHOW);
        test::writeEditor(test::editorLayout("", "effects"));
        test::clearLog();
    }

    void start(const std::string& sections)
    {
        writeText("setup.xml", "<demo>" + sections + "</demo>");
        cadenza = std::make_unique<OpenCadenza>();
        cadenza->setup(-1.0f);
        cadenza->addFactory("filler", &factory);
        effect.reset(static_cast<Filler*>(cadenza->addEffect("filler", "it")));
    }

    /** A pixel of the window: blue, green, red, alpha. The first row is the top. */
    std::vector<int> pixelAt(int x, int y)
    {
        const display::WindowMode& mode = cadenza->mDisplay->getWindowMode();
        am::Image image(new am::ImageObject);
        image->resize(mode.width, mode.height);
        cadenza->mDisplay->getScreenShot(image);
        const auto index = static_cast<std::size_t>(y * mode.width + x);
        const unsigned char* const pixel = image->getData() + 4 * index;
        return {pixel, pixel + 4};
    }

    test::ScratchFolder folder;
    EffectFactory<Filler> factory;
    std::unique_ptr<Filler> effect;
    std::unique_ptr<OpenCadenza> cadenza;
};

constexpr const char* RECORDING = R"(<time start="3"/><display width="64" height="48"/>)"
                                  R"(<dump name="film/a.png" rate="25" length="0.2"/>)"
                                  R"(<music filename="none.ogg"/>)";

TEST_F(Run, RecordsItsLengthFromTheStartTimeInExactSteps)
{
    start(RECORDING);
    cadenza->run();

    EXPECT_EQ(effect->times, (std::vector<float>{3.04f, 3.08f, 3.12f, 3.16f, 3.2f}));
    for (const float delta : effect->deltas)
        EXPECT_NEAR(delta, 0.04f, 1e-6f);
    EXPECT_EQ(effect->setups, 1);
    EXPECT_EQ(effect->rehearsals, 0);
    std::vector<std::string> pictures = folder.files();
    std::erase_if(pictures, [](const std::string& name) { return !name.starts_with("film/"); });
    EXPECT_EQ(pictures.size(), 5u);
    EXPECT_EQ(pictures.back(), "film/a.000004.png");
    EXPECT_EQ(test::countLogged("log", "Dumped 5 frames, 0 lost\n"), 1);

    cadenza.reset();
    EXPECT_EQ(readText(SCRIPT), WHOLE_SHOW);
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
        writeText("script/filler.other.xml", std::string("<effect>") + attributes + "</effect>");
        start(R"(<display width="64" height="48"/><music mute="nosound"/>)");
        effect->fails = true; // in the first frame
        const std::unique_ptr<Effect> other(cadenza->addEffect("filler", "other"));
        EXPECT_EQ(test::thrownMessage([this] { cadenza->run(); }), "cannot go on");
        EXPECT_EQ(effect->rehearsals, 1) << attributes;
        EXPECT_EQ(static_cast<Filler&>(*other).rehearsals, rehearsals) << attributes;
        cadenza.reset();
    }
}

TEST_F(Run, ThatFailsSavesNothing)
{
    const std::string script = R"(<effect><time start="0" end="60"/></effect>)";
    const std::string settings = std::string("<demo>") + RECORDING + "</demo>";
    writeText(SCRIPT, script);
    writeText("setup.local.xml", settings);
    test::writeEditor();
    start("");
    effect->fails = true;
    const vellum::ControlWatch watch(*effect.release()); // the timeline's from the start on
    const std::string message = test::thrownMessage([this] {
        const std::unique_ptr<OpenCadenza> failing = std::move(cadenza);
        failing->run();
    });

    EXPECT_EQ(message, "cannot go on");
    EXPECT_TRUE(watch.isGone());
    EXPECT_EQ(readText(SCRIPT), script);
    EXPECT_EQ(readText("setup.local.xml"), settings);
}

TEST_F(Run, ScriptsAreSavedUnlessTheSettingsAreBroken)
{
    for (const char* settings : {"", "<demo>", "<show>\n</show>"}) {
        SCOPED_TRACE(settings);
        std::filesystem::remove("setup.local.xml");
        writeText(SCRIPT, WHOLE_SHOW);
        start(RECORDING);
        cadenza->run();
        effect->setSpan(0.0f, 30.0f);
        if (*settings)
            writeText("setup.local.xml", settings);
        cadenza.reset();

        EXPECT_EQ(readText(SCRIPT) != WHOLE_SHOW, !*settings);
        EXPECT_EQ(readText("setup.local.xml"), settings);
    }
}

/** With a timeline, which owns the effects from the start of the run on. */
class Timeline : public Run {
protected:
    Timeline()
    {
        test::writeEditor();
        start(RECORDING);
        effect.release();
    }
};

TEST_F(Timeline, HoldsTheEffectsInOrderUntilTheRunIsClosed)
{
    Effect* const first = cadenza->mEffect.front();
    Effect* const second = cadenza->addEffect("filler", "other");
    const vellum::ControlWatch firstWatch(*first);
    const vellum::ControlWatch secondWatch(*second);
    cadenza->run();

    vellum::LayoutStack& timeline = *cadenza->mGui->getTimeline();
    EXPECT_EQ(timeline.getOrder(0), first);
    EXPECT_EQ(timeline.getOrder(1), second);
    EXPECT_EQ(first->getArea().mMin.y, 20.0f);
    EXPECT_EQ(first->getArea().mMax.x, 600.0f);
    EXPECT_EQ(second->getArea().mMin.y, 0.0f);

    cadenza->close();
    EXPECT_TRUE(firstWatch.isGone());
    EXPECT_TRUE(secondWatch.isGone());
    EXPECT_TRUE(std::filesystem::exists("script/filler.other.xml"));
    EXPECT_NE(cadenza->mDisplay, nullptr);
}

TEST_F(Timeline, LeavesTheEffectsToTheProgramWhenItWasNotBuilt)
{
    test::writeEditor(test::editorLayout("", "main_ruler"));
    effect.reset(static_cast<Filler*>(cadenza->mEffect.front()));
    const vellum::ControlWatch watch(*effect);
    EXPECT_EQ(test::thrownMessage([this] { cadenza->run(); }),
              "layout.xml: there is no control called 'main_ruler'");
    cadenza.reset();
    EXPECT_FALSE(watch.isGone());
}

/** A window of 200 x 100 with the position bar in the middle, two fifths of the way through. */
class PositionBar : public Run {
protected:
    PositionBar()
    {
        start(R"(<display width="200" height="100"/><osd show="on" location="middle"/>)"
              R"(<music mute="nosound"/>)");
        cadenza->openDevices();
        effect->setSpan(0.0f, 500.0f);
        cadenza->setTime(200.0f);
    }
};

TEST_F(PositionBar, ShowsAfterASeekAtItsPlaceAndHidesAfterItsDelay)
{
    const std::vector<int> picture{153, 102, 51, 255};
    for (const auto& [location, y] : {
             std::pair{0, 3 },
             {1, 50},
             {2, 96}
    }) {
        cadenza->mOsdLocation = location;
        cadenza->mDisplay->update();
        EXPECT_NEAR(pixelAt(60, y)[0], 153 * 0.4, 2.0) << location;
        EXPECT_EQ(pixelAt(60, 20), picture);
        EXPECT_EQ(pixelAt(60, 54), picture);
        EXPECT_EQ(pixelAt(0, y), picture);
    }
    cadenza->mOsdTime = 190.0f;
    cadenza->mDisplay->update();
    EXPECT_EQ(pixelAt(60, 96), picture);
}

TEST_F(PositionBar, IsDrawnWithoutAllocating)
{
    for (int frame = 0; frame < 3; ++frame)
        cadenza->mDisplay->update();
    effect->times.reserve(100);
    effect->deltas.reserve(100);

    const test::AllocationCounter allocations;
    for (int frame = 0; frame < 10; ++frame)
        cadenza->mDisplay->update();
    EXPECT_EQ(allocations.count(), 0u);
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
