#include "cadenza/stage.h"

#include <map>
#include <sstream>
#include <tuple>

namespace zavex::cadenza {
namespace {

using test::ProbeEffect;
using test::writeText;

constexpr const char* SILENT = R"(<osd show="off"/><music mute="nosound"/>)";

/** The application without window and sound. */
class Player : public test::Stage {
protected:
    /** Words are keys; a number is a frame at that time, a dot one more frame. */
    void play(const std::string& script)
    {
        const std::map<std::string, display::Key> keys{
            {"left",  display::KEY_LEFT },
            {"right", display::KEY_RIGHT},
            {"space", display::KEY_SPACE},
            {"t",     display::KEY_t    },
            {"o",     display::KEY_o    }
        };
        std::istringstream words(script);
        for (std::string word; words >> word;) {
            const std::string key = word.substr(word.find('+') + 1);
            if (keys.contains(key))
                press(keys.at(key), word.starts_with("ctrl")  ? display::KEYMOD_RCTRL
                                    : word.starts_with("alt") ? display::KEYMOD_LALT
                                                              : display::KEYMOD_NONE);
            else if (word == ".")
                cadenza->onDraw();
            else
                drawAt(std::stof(word));
        }
    }

    /** The demo time, the start marker, when the position bar was called up, and where it is. */
    std::string state() const
    {
        std::ostringstream out;
        out << cadenza->getSystemTime() << " start " << cadenza->getStartTime() << " bar "
            << cadenza->mOsdTime << " at " << cadenza->mOsdLocation
            << (cadenza->mPaused ? " paused" : "") << (cadenza->mOsd ? " shown" : "");
        return out.str();
    }
};

constexpr struct KeyCase {
    const char* name;
    const char* script;
    const char* state;
} KEY_CASES[] = {
    {"SeeksFromTheFrameShown", "12 right right .",       "17 start 0 bar 17 at 0"         },
    {"NotToBeforeTheStart",    "3 left .",               "0 start 0 bar 0 at 0"           },
    {"Pauses",                 "6.5 space .",            "6.5 start 0 bar 6.5 at 0 paused"},
    {"SeeksWhilePaused",       "6.5 space 20 .",         "20 start 0 bar 20 at 0 paused"  },
    {"GoesOnAtTheFrameShown",  "6.5 space 20 space .",   "20 start 0 bar 20 at 0"         },
    {"MarksTheStart",          "42.5 ctrl+t",            "42.5 start 42.5 bar 42.5 at 0"  },
    {"ReturnsToTheStart",      "42.5 ctrl+t 60 t .",     "42.5 start 42.5 bar 60 at 0"    },
    {"ForgetsTheStart",        "42.5 ctrl+t 60 alt+t .", "0 start 0 bar 60 at 0"          },
    {"BarShowsFirst",          "o",                      "0 start 0 bar 0 at 0"           },
    {"BarMovesWhileItShows",   "o o o",                  "0 start 0 bar 0 at 2"           },
    {"BarMovesAround",         "o o o o",                "0 start 0 bar 0 at 0"           },
    {"BarIsSwitched",          "ctrl+o",                 "0 start 0 bar -100 at 0 shown"  },
};

TEST_F(Player, KeysMoveThroughTheShow)
{
    for (const KeyCase& row : KEY_CASES) {
        SCOPED_TRACE(row.name);
        start(SILENT);
        play(row.script);
        EXPECT_EQ(state(), row.state);
    }
}

TEST_F(Player, DrawsAnEffectInsideItsSpan)
{
    start(SILENT);
    EXPECT_EQ(cadenza->addEffect("plasma", "one"), nullptr);
    EXPECT_EQ(test::countLogged("log", "Effect plasma not found."), 1);

    ProbeEffect& effect = add();
    effect.setSpan(5.0f, 8.0f);
    for (const auto& [time, draws] : {
             std::pair{4.0f,   0},
             {5.0f,   0},
             {8.0f,   0},
             {9.0f,   0},
             {5.001f, 1},
             {6.5f,   2}
    }) {
        drawAt(time);
        EXPECT_EQ(effect.draws, draws) << time;
    }
    effect.setInactive(true);
    drawAt(6.5f);
    EXPECT_EQ(effect.draws, 2) << "switched off";
}

TEST_F(Player, DrawsWithTimesRelativeToTheEffect)
{
    start(SILENT);
    writeText("script/probe.it.xml",
              R"(<effect><time start="5" end="8"/><plugin name="curve">)"
              R"(<attributes type="linear"/><key time="0" value="0"/><key time="1" value="3"/>)"
              R"(</plugin><plugin name="beat"><action start="1" delay="9"/></plugin></effect>)");
    ProbeEffect& effect = add();
    effect.load(nullptr);
    effect.setupControl();
    press(display::KEY_SPACE);
    drawAt(6.0f);
    drawAt(6.5f);
    EXPECT_EQ(effect.last, (ProbeEffect::Drawn{1.5f, 0.5f, 0.5f, 1.5f, 1}));

    cadenza->onDraw(); // the same moment again
    EXPECT_EQ(effect.last, (ProbeEffect::Drawn{1.5f, 0.0f, 0.5f, 1.5f, 0}));
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

TEST_F(Player, WithoutAWindowNeitherLoadsNorSavesScripts)
{
    const std::string script = R"(<effect><time start="5" end="8"/></effect>)";
    start(SILENT);
    writeText("script/probe.it.xml", script);
    const ProbeEffect& effect = add();
    cadenza->run();

    EXPECT_EQ(effect.getEnd(), 10.0f);
    EXPECT_EQ(effect.setups, 0);
    cadenza->close();
    EXPECT_EQ(test::readText("script/probe.it.xml"), script);
}

TEST(Letterbox, FitsThePictureIntoTheWindow)
{
    constexpr std::tuple<PictureSize, float, PictureSize> cases[] = {
        {{1024, 768}, 2.0f,        {1024, 512}},
        {{1000, 400}, 2.0f,        {800, 400} },
        {{1024, 768}, 4.0f / 3.0f, {1024, 768}},
        {{1024, 768}, 1.777809f,   {1024, 574}}, // cut to whole pixels, then made even
        {{801, 601},  1.0f,        {600, 600} },
        {{10, 10},    100.0f,      {10, 0}    },
        {{1000, 400}, 1e-10f,      {0, 400}   }, // a height beyond integers
    };
    for (const auto& [window, aspect, expected] : cases)
        EXPECT_TRUE(letterbox(window, aspect) == expected) << aspect;
}

} // namespace
} // namespace zavex::cadenza
