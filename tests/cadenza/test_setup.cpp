#include "cadenza/open_cadenza.h"
#include "cadenza/scratch.h"
#include "support/case_name.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace zavex::cadenza {
namespace {

using display::WindowMode;
using test::OpenCadenza;
using test::thrownMessage;
using test::writeText;

struct SetupCase {
    const char* name;
    std::string sections;
    std::function<void(const OpenCadenza&)> expect;

    friend void PrintTo(const SetupCase& setup, std::ostream* out) { *out << setup.name; }
};

class Setup : public testing::TestWithParam<SetupCase> {
protected:
    test::ScratchFolder folder;
};

TEST_P(Setup, AppliesItsSections)
{
    writeText("setup.xml", "<demo>" + GetParam().sections + "<unknown a=\"1\"/></demo>");
    OpenCadenza cadenza;
    cadenza.setup(-1.0f);

    EXPECT_TRUE(cadenza.mSetup);
    GetParam().expect(cadenza);
}

const SetupCase SETUP_CASES[] = {
    {"TimeStart",                    R"(<time start="12.5"/>)",
     [](const OpenCadenza& it) { EXPECT_EQ(it.getStartTime(), 12.5f); }                                                                                            },
    {"TimeLoop",                     R"(<time loop="on"/>)",                                                   [](const OpenCadenza& it) { EXPECT_TRUE(it.mLoop); }},
    {"OnIsCaseSensitive",            R"(<time loop="On"/>)",
     [](const OpenCadenza& it) { EXPECT_FALSE(it.mLoop); }                                                                                                         },
    {"TimeVsync",                    R"(<time mode="vsync"/>)",
     [](const OpenCadenza& it) { EXPECT_EQ(it.mFpsMode, WindowMode::FPS_VSYNC); }                                                                                  },
    {"LaterTimeResetsTheMode",       R"(<time mode="vsync" start="3" loop="on"/><time/>)",
     [](const OpenCadenza& it) {
         EXPECT_EQ(it.mFpsMode, WindowMode::FPS_VARIABLE);
         EXPECT_EQ(it.getStartTime(), 0.0f);
         EXPECT_FALSE(it.mLoop);
     }                                                                                                                                                             },
    {"Archive",                      R"(<archive path="data"/><archive/>)",
     [](const OpenCadenza&) {
         EXPECT_EQ(test::countLogged("log", "Cadenza: Adding archive: data\n"), 1);
         EXPECT_EQ(test::countLogged("log", "Cadenza: Adding archive: \n"), 1);
     }                                                                                                                                                             },
    {"Display",                      R"(<display width="0x400" height="01400" fullscreen="on" title="a b"/>)",
     [](const OpenCadenza& it) {
         EXPECT_TRUE(it.mFoundDisplay);
         EXPECT_EQ(it.mWidth, 1024);
         EXPECT_EQ(it.mHeight, 768);
         EXPECT_TRUE(it.mFullscreen);
         EXPECT_EQ(it.mTitle, "a b");
     }                                                                                                                                                             },
    {"EmptyDisplay",                 "<display/>",
     [](const OpenCadenza& it) {
         EXPECT_TRUE(it.mFoundDisplay);
         EXPECT_EQ(it.mWidth, 0);
         EXPECT_FALSE(it.mFullscreen);
     }                                                                                                                                                             },
    {"OsdMiddle",                    R"(<osd show="on" location="middle" delay="3.5"/>)",
     [](const OpenCadenza& it) {
         EXPECT_TRUE(it.mOsd);
         EXPECT_EQ(it.mOsdLocation, 1);
         EXPECT_EQ(it.mOsdDelay, 3.5f);
     }                                                                                                                                                             },
    {"OsdBottomWithoutShow",         R"(<osd location="bottom" delay="0"/>)",
     [](const OpenCadenza& it) {
         EXPECT_FALSE(it.mOsd);
         EXPECT_EQ(it.mOsdLocation, 2);
         EXPECT_EQ(it.mOsdDelay, 2.0f);
     }                                                                                                                                                             },
    {"OsdUnknownLocationIsTop",      R"(<osd show="on" location="bottom"/><osd location="left"/>)",
     [](const OpenCadenza& it) { EXPECT_EQ(it.mOsdLocation, 0); }                                                                                                  },
    {"AnyOsdSwitchesOff",            R"(<osd show="off"/><osd show="on"/>)",
     [](const OpenCadenza& it) { EXPECT_FALSE(it.mOsd); }                                                                                                          },
    {"EmptyDumpIsUntitledAndSilent", R"(<dump/><music filename="a.ogg"/>)",
     [](const OpenCadenza& it) {
         EXPECT_NE(it.mDumpVideo, nullptr);
         EXPECT_EQ(it.mDumpRate, 60.0f);
         EXPECT_TRUE(it.mNosound);
         EXPECT_EQ(test::countLogged("log", "Dumping to 'untitled' (rate='60.000000'fps)"), 1);
     }                                                                                                                                                             },
    {"Dump",                         R"(<dump name="film/a.png" rate="29.97"/>)",
     [](const OpenCadenza& it) {
         EXPECT_EQ(it.mDumpRate, 29.97f);
         EXPECT_EQ(it.mDumpVideo->getFormat().frameRate, 29);
         EXPECT_EQ(it.mDumpVideo->getFormat().frameRateBase, 1);
         EXPECT_FALSE(it.mNosound);
         EXPECT_EQ(test::countLogged("log", "Dumping to 'film/a.png' (rate='29.969999'fps)"), 1);
     }                                                                                                                                                             },
    {"MusicBeforeDumpIsSilentToo",   R"(<music mute="off"/><dump name="a.png"/>)",
     [](const OpenCadenza& it) { EXPECT_TRUE(it.mNosound); }                                                                                                       },
    {"MusicNosound",                 R"(<music mute="nosound"/><music filename="b.ogg" mute="off"/>)",
     [](const OpenCadenza& it) {
         EXPECT_TRUE(it.mNosound);
         EXPECT_FALSE(it.mMuted);
         EXPECT_EQ(it.mMusicFilename, "b.ogg");
     }                                                                                                                                                             },
    {"MusicMuted",                   R"(<music filename="a.ogg" mute="on"/>)",
     [](const OpenCadenza& it) {
         EXPECT_FALSE(it.mNosound);
         EXPECT_TRUE(it.mMuted);
         EXPECT_EQ(it.mMusicFilename, "a.ogg");
     }                                                                                                                                                             },
    {"LogConsole",                   R"(<log console="on"/>)",
     [](const OpenCadenza& it) { EXPECT_TRUE(it.mLogConsole); }                                                                                                    },
};

INSTANTIATE_TEST_SUITE_P(Cases, Setup, testing::ValuesIn(SETUP_CASES), test::caseName);

class SetupFile : public testing::Test {
protected:
    static std::string setupFailure()
    {
        return thrownMessage([] { OpenCadenza().setup(-1.0f); });
    }

    test::ScratchFolder folder;
};

TEST_F(SetupFile, LocalOneIsReadAlone)
{
    writeText("setup.xml", R"(<demo><time start="5"/><display/></demo>)");
    writeText("setup.local.xml", R"(<demo><log console="on"/></demo>)");
    OpenCadenza cadenza;
    cadenza.setup(-1.0f);

    EXPECT_TRUE(cadenza.mLogConsole);
    EXPECT_FALSE(cadenza.mFoundDisplay);
    EXPECT_EQ(cadenza.getStartTime(), 0.0f);
}

TEST_F(SetupFile, IsReadOnceButTheAspectIsTaken)
{
    writeText("setup.xml", R"(<demo><time start="5"/></demo>)");
    OpenCadenza cadenza;
    cadenza.setup(-1.0f);
    writeText("setup.xml", R"(<demo><time start="6"/></demo>)");
    cadenza.setup(2.0f);

    EXPECT_EQ(cadenza.getStartTime(), 5.0f);
    EXPECT_EQ(cadenza.mAspect, 2.0f);
}

struct BadSetupCase {
    const char* name;
    const char* file;
    const char* text;
    const char* expected; // part of the message

    friend void PrintTo(const BadSetupCase& bad, std::ostream* out) { *out << bad.name; }
};

constexpr BadSetupCase BAD_SETUP_CASES[] = {
    {"Empty",                  "setup.xml",       "",                                    "setup.xml: (error at line 1, col 1); EOF"},
    {"Malformed",              "setup.local.xml", "<demo>\n<time start=1.5/></demo>",
     "setup.local.xml: (error at line 2"                                                                                           },
    {"DumpWithoutExtension",   "setup.xml",       R"(<demo><dump name="film"/></demo>)",
     "Could not find something that could write to 'film'"                                                                         },
    {"DumpRateOfZero",         "setup.xml",       R"(<demo><dump rate="0"/></demo>)",
     "setup.xml: the dump rate must be positive and at most 1000000, found '0'"                                                    },
    {"DumpRateWithoutEnd",     "setup.xml",       R"(<demo><dump rate="inf"/></demo>)",
     "setup.xml: the dump rate must be positive and at most 1000000, found 'inf'"                                                  },
    {"DumpRateThatIsNoNumber", "setup.xml",       R"(<demo><dump rate="fast"/></demo>)",
     "setup.xml: the dump rate must be positive and at most 1000000, found 'fast'"                                                 },
};

class BadSetup : public SetupFile, public testing::WithParamInterface<BadSetupCase> {};

TEST_P(BadSetup, SaysWhatIsWrongAndWhere)
{
    writeText(GetParam().file, GetParam().text);
    const std::string message = setupFailure();
    EXPECT_NE(message.find(GetParam().expected), std::string::npos) << message;
}

INSTANTIATE_TEST_SUITE_P(Cases, BadSetup, testing::ValuesIn(BAD_SETUP_CASES), test::caseName);

TEST_F(SetupFile, OfAnotherRootConfiguresNothingAndCannotRun)
{
    writeText("setup.xml", R"(<show><time start="5"/><display/></show>)");
    OpenCadenza cadenza;
    cadenza.setup(-1.0f);

    EXPECT_FALSE(cadenza.mSetup);
    EXPECT_EQ(cadenza.getStartTime(), 0.0f);
    const std::string message = thrownMessage([&cadenza] { cadenza.run(); });
    EXPECT_NE(message.find("setup.xml: the root element is not 'demo'"), std::string::npos);
}

} // namespace
} // namespace zavex::cadenza
