#include "cadenza/open_cadenza.h"
#include "cadenza/scratch.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace zavex::cadenza {
namespace {

using display::WindowMode;
using test::OpenCadenza;
using test::thrownMessage;
using test::writeText;

class Setup : public testing::Test {
protected:
    Setup() { test::clearLog(); }

    /** A fresh application with these sections in its setup file. */
    OpenCadenza& configure(const std::string& sections)
    {
        writeText("setup.xml", "<demo>" + sections + "<unknown a=\"1\"/></demo>");
        cadenza.reset();
        cadenza = std::make_unique<OpenCadenza>();
        cadenza->setup(-1.0f);
        EXPECT_TRUE(cadenza->mSetup);
        return *cadenza;
    }

    static std::string failure()
    {
        return thrownMessage([] { OpenCadenza().setup(-1.0f); });
    }

    test::ScratchFolder folder;
    std::unique_ptr<OpenCadenza> cadenza;
};

// clang-format off
constexpr struct SectionCase {
    const char* sections;
    bool (*holds)(const OpenCadenza& it);
} SECTION_CASES[] = {
    {R"(<time start="12.5" loop="on" mode="vsync"/>)",
     [](auto& it) { return it.mStartTime == 12.5f && it.mLoop && it.mFpsMode == WindowMode::FPS_VSYNC; }},
    {R"(<time loop="On"/>)", [](auto& it) { return !it.mLoop; }},
    {R"(<time mode="vsync" start="3" loop="on"/><time/>)",
     [](auto& it) { return it.mStartTime == 0.0f && !it.mLoop && it.mFpsMode == WindowMode::FPS_VARIABLE; }},
    {R"(<display width="0x400" height="01400" fullscreen="on" title="a b"/>)",
     [](auto& it) { return it.mFoundDisplay && it.mWidth == 1024 && it.mHeight == 768 && it.mFullscreen && it.mTitle == "a b"; }},
    {"<display/>", [](auto& it) { return it.mFoundDisplay && it.mWidth == 0 && !it.mFullscreen; }},
    {R"(<osd show="on" location="middle" delay="3.5"/>)",
     [](auto& it) { return it.mOsd && it.mOsdLocation == 1 && it.mOsdDelay == 3.5f; }},
    {R"(<osd location="bottom" delay="0"/>)",
     [](auto& it) { return !it.mOsd && it.mOsdLocation == 2 && it.mOsdDelay == 2.0f; }},
    {R"(<osd show="on" location="bottom"/><osd location="left"/>)", [](auto& it) { return it.mOsdLocation == 0; }},
    {R"(<osd show="off"/><osd show="on"/>)", [](auto& it) { return !it.mOsd; }},
    {R"(<music mute="nosound"/><music filename="b.ogg" mute="off"/>)",
     [](auto& it) { return it.mNosound && !it.mMuted && it.mMusicFilename == "b.ogg"; }},
    {R"(<music filename="a.ogg" mute="on"/>)", [](auto& it) { return !it.mNosound && it.mMuted; }},
};
// clang-format on

TEST_F(Setup, SectionsSayHowTheShowRuns)
{
    for (const SectionCase& row : SECTION_CASES)
        EXPECT_TRUE(row.holds(configure(row.sections))) << row.sections;
}

TEST_F(Setup, ArchivesAndTheLogConsoleAreAskedFor)
{
    EXPECT_TRUE(configure(R"(<archive path="data"/><archive/><log console="on"/>)").mLogConsole);
    EXPECT_EQ(test::countLogged("log", "Cadenza: Adding archive: data\n"), 1);
    EXPECT_EQ(test::countLogged("log", "Cadenza: Adding archive: \n"), 1);
}

TEST_F(Setup, DumpRecordsSilently)
{
    configure(R"(<dump/><music filename="a.ogg"/>)");
    EXPECT_NE(cadenza->mDumpVideo, nullptr);
    EXPECT_EQ(cadenza->mDumpRate, 60.0f);
    EXPECT_TRUE(cadenza->mNosound);
    EXPECT_EQ(test::countLogged("log", "Dumping to 'untitled' (rate='60.000000'fps)"), 1);

    configure(R"(<dump name="film/a.png" rate="29.97"/>)");
    EXPECT_EQ(cadenza->mDumpRate, 29.97f);
    EXPECT_EQ(cadenza->mDumpVideo->getFormat().frameRate, 29);
    EXPECT_EQ(cadenza->mDumpVideo->getFormat().frameRateBase, 1);
    EXPECT_FALSE(cadenza->mNosound);
    EXPECT_EQ(test::countLogged("log", "Dumping to 'film/a.png' (rate='29.969999'fps)"), 1);

    EXPECT_TRUE(configure(R"(<music mute="off"/><dump name="a.png"/>)").mNosound);
}

TEST_F(Setup, ADumpThatLeavesTheFolderIsAnnouncedWithItsFullPath)
{
    const std::filesystem::path here = std::filesystem::current_path();
    std::filesystem::create_directory_symlink("..", "link");
    const std::string outside = (here.parent_path() / "a.000000.png").string();
    const struct {
        const char* name;
        std::string announced; // empty: nothing
    } rows[] = {
        {"a.png",       ""     },
        {"new/b/a.png", ""     },
        {"/new/a.png",  ""     },
        {"../a.png",    outside},
        {"link/a.png",  outside},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        testing::internal::CaptureStderr();
        configure(std::string("<archive path='../'/><dump name='") + row.name + "'/>");
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(said.empty(), row.announced.empty()) << said;
        EXPECT_NE(said.find(row.announced), std::string::npos) << said;
    }
}

TEST_F(Setup, FileLocalOneIsReadAlone)
{
    writeText("setup.xml", R"(<demo><time start="5"/><display/></demo>)");
    writeText("setup.local.xml", R"(<demo><log console="on"/></demo>)");
    OpenCadenza show;
    show.setup(-1.0f);

    EXPECT_TRUE(show.mLogConsole);
    EXPECT_FALSE(show.mFoundDisplay);
    EXPECT_EQ(show.getStartTime(), 0.0f);
}

TEST_F(Setup, FileIsReadOnceButTheAspectIsTaken)
{
    writeText("setup.xml", R"(<demo><time start="5"/></demo>)");
    OpenCadenza show;
    show.setup(-1.0f);
    writeText("setup.xml", R"(<demo><time start="6"/></demo>)");
    show.setup(2.0f);

    EXPECT_EQ(show.getStartTime(), 5.0f);
    EXPECT_EQ(show.mAspect, 2.0f);
}

TEST_F(Setup, FileThatIsBrokenSaysWhatIsWrongAndWhere)
{
    const std::string rate =
        "setup.xml: the dump rate must be positive and at most 1000000, found ";
    const std::pair<const char*, std::string> cases[] = {
        {"",                                    "setup.xml: (error at line 1, col 1); EOF"},
        {"<demo>\n<time start=1.5/></demo>",    "setup.xml: (error at line 2"             },
        {R"(<demo><dump name="film"/></demo>)",
         "Could not find something that could write to 'film'"                            },
        {R"(<demo><dump rate="0"/></demo>)",    rate + "'0'"                              },
        {R"(<demo><dump rate="inf"/></demo>)",  rate + "'inf'"                            },
        {R"(<demo><dump rate="fast"/></demo>)", rate + "'fast'"                           },
    };
    for (const auto& [text, expected] : cases) {
        writeText("setup.xml", text);
        EXPECT_NE(failure().find(expected), std::string::npos) << failure();
    }
    writeText("setup.local.xml", "<demo");
    EXPECT_NE(failure().find("setup.local.xml: "), std::string::npos) << failure();
}

TEST_F(Setup, FileOfAnotherRootConfiguresNothingAndCannotRun)
{
    writeText("setup.xml", R"(<show><time start="5"/><display/></show>)");
    OpenCadenza show;
    show.setup(-1.0f);

    EXPECT_FALSE(show.mSetup);
    EXPECT_EQ(show.getStartTime(), 0.0f);
    const std::string message = thrownMessage([&show] { show.run(); });
    EXPECT_NE(message.find("setup.xml: the root element is not 'demo'"), std::string::npos);
}

} // namespace
} // namespace zavex::cadenza
