// The settings: what they mean, and what a run without a window leaves of them.

#include "cadenza/cad_log_line.h"
#include "cadenza/stage.h"

#include <filesystem>
#include <functional>
#include <string>
#include <utility>

namespace zavex::cadenza {
namespace {

using test::OpenCadenza;
using test::readText;
using test::thrownMessage;
using test::writeText;

constexpr const char* LOCAL = "setup.local.xml";

/** Runs a session without window and sound on the settings that are there. */
void session(const std::function<void(OpenCadenza&)>& change = [](OpenCadenza&) {})
{
    OpenCadenza cadenza;
    cadenza.setup(-1.0f);
    change(cadenza);
}

/** A document on one line. */
std::string flat(std::string document)
{
    std::erase_if(document, [](char byte) { return byte == '\n' || byte == '\t'; });
    return document;
}

// clang-format off
constexpr struct SettingsCase {
    const char* name;
    const char* before; // what stands inside the root element
    const char* after;
} SETTINGS_CASES[] = {
    {"StartIsRoundedToHundredths", R"(<time loop="on" start="12.346"/>)",
     R"(<time loop="on" start="12.35"/>)"},
    {"LastTimeIsReadAndTheFirstWritten", R"(<time start="1"/><time mode="vsync" start="2" loop="on"/>)",
     R"(<time start="2.00" loop="on"/><time mode="vsync" start="2" loop="on"/>)"},
    {"AMissingTimeComesFirst", R"(<!--mine--><log console="on"/><log console="On"/>)",
     R"(<time start="0.00" loop="off"/><!--mine--><log console="off"/><log console="off"/>)"},
    {"LogConsole", R"(<time loop="On"/><log console="off"/><log console="on"/>)",
     R"(<time loop="off" start="0.00"/><log console="on"/><log console="on"/>)"},
    {"OnlyTheFirstDisplay", R"(<time/><display width="0x40"/><display fullscreen="on"/>)",
     R"(<time start="0.00" loop="off"/><display width="0x40" fullscreen="on"/><display fullscreen="on"/>)"},
    {"MutedOnce", R"(<time/><music mute="on" filename="a"/><music filename="b" mute="off"/>)",
     R"(<time start="0.00" loop="off"/><music mute="on" filename="a"/><music filename="b" mute="on"/>)"},
    {"NoSoundIsStrongerThanMuted", R"(<time/><music mute="nosound"/><music mute="on"/>)",
     R"(<time start="0.00" loop="off"/><music mute="nosound"/><music mute="nosound"/>)"},
    {"ARecordingSavesNoSound", R"(<time/><music mute="off"/><dump name="a.png"/>)",
     R"(<time start="0.00" loop="off"/><music mute="nosound"/><dump name="a.png"/>)"},
    {"PositionBar", R"(<time/><osd show="on" location="middle" delay="3.5"/>)",
     R"(<time start="0.00" loop="off"/><osd show="on" location="middle" delay="3.50"/>)"},
    {"NoDelayIsTwoSeconds", R"(<time/><osd show="on" location="bottom" delay="0"/>)",
     R"(<time start="0.00" loop="off"/><osd show="on" location="bottom" delay="2.00"/>)"},
    {"EveryPositionBarAlike", R"(<time/><osd location="middle"/><osd location="left" delay="0.5" show="on"/>)",
     R"(<time start="0.00" loop="off"/><osd location="top" show="off" delay="0.50"/><osd location="top" delay="0.50" show="off"/>)"},
    {"NothingElseIsTouched", R"(<time/><archive path="x"><deep/></archive><dis width="1"/>)",
     R"(<time start="0.00" loop="off"/><archive path="x"><deep/></archive><dis width="1"/>)"},
};
// clang-format on

class Settings : public test::Stage {};

TEST_F(Settings, AreReadAndSavedWithAllTheRest)
{
    for (const SettingsCase& row : SETTINGS_CASES) {
        SCOPED_TRACE(row.name);
        const std::string after = std::string("<demo>") + row.after + "</demo>";
        writeText(LOCAL, std::string("<demo>") + row.before + "</demo>");
        session();
        EXPECT_EQ(flat(readText(LOCAL)), after);

        session();
        EXPECT_EQ(flat(readText(LOCAL)), after) << "saved again";
    }
}

TEST_F(Settings, AreIndentedAndKeepTheirDeclaration)
{
    writeText(LOCAL,
              "<?xml version='1.0'?>\r\n<!--lost--><demo  a='b'><time/><!-- kept --></demo>");
    const std::string before = readText(LOCAL);
    session();
    EXPECT_EQ(readText(LOCAL), "<?xml version=\"1.0\"?>\n\n"
                               "<demo a=\"b\">\n"
                               "\t<time start=\"0.00\" loop=\"off\"/>\n"
                               "\t<!-- kept -->\n"
                               "</demo>\n");
    EXPECT_EQ(readText("setup.local.xml.bak"), before) << "for the comment outside";
}

TEST_F(Settings, ThatAllShareAreNeverWritten)
{
    const std::string shared = R"(<demo><time start="1"/></demo>)";
    const test::TemporaryFolder elsewhere;
    elsewhere.write("shared", shared);
    std::filesystem::create_symlink(elsewhere.path("shared"), "setup.xml");
    session([](OpenCadenza& it) { it.mStartTime = 5.0f; });

    EXPECT_EQ(readText("setup.xml"), shared);
    EXPECT_FALSE(std::filesystem::exists(LOCAL));

    session([](OpenCadenza& it) {
        it.mStartTime = 6.0f;
        std::filesystem::copy("setup.xml", LOCAL); // as somebody who wants settings of one's own
    });
    EXPECT_EQ(flat(readText(LOCAL)), R"(<demo><time start="6.00" loop="off"/></demo>)");
}

TEST_F(Settings, AreSavedByTheFirstOfTwoProgramsInAFolder)
{
    writeText(LOCAL, "<demo><time/></demo>");
    OpenCadenza first;
    first.setup(-1.0f);
    session([](OpenCadenza& second) { second.mStartTime = 2.0f; });
    EXPECT_EQ(readText(LOCAL), "<demo><time/></demo>");
    EXPECT_EQ(test::countLogged("log", "Another program has this folder open"), 1);

    first.mStartTime = 1.0f;
    first.close();
    EXPECT_EQ(flat(readText(LOCAL)), R"(<demo><time start="1.00" loop="off"/></demo>)");
}

TEST_F(Settings, ThatWereChangedMeanwhileStay)
{
    writeText(LOCAL, "<demo><time/></demo>");
    session([](OpenCadenza& it) {
        it.mStartTime = 3.0f;
        writeText(LOCAL, R"(<demo><time start="2.00" mode="vsync"/></demo>)");
    });
    EXPECT_EQ(readText(LOCAL), R"(<demo><time start="2.00" mode="vsync"/></demo>)");
    EXPECT_EQ(flat(readText("setup.local.xml.mine")),
              R"(<demo><time start="3.00" mode="vsync" loop="off"/></demo>)");
}

std::string failure()
{
    return thrownMessage([] { OpenCadenza().setup(-1.0f); });
}

TEST_F(Settings, SayWhichArchivesAreAddedAndWhatIsRecorded)
{
    start(R"(<archive path="data"/><archive/><dump/>)");
    start(R"(<dump name="film/a.png" rate="29.97"/>)");
    EXPECT_EQ(cadenza->mDumpVideo->getFormat().frameRate, 29);
    EXPECT_EQ(cadenza->mDumpVideo->getFormat().frameRateBase, 1);
    for (const char* said :
         {"Cadenza: Adding archive: data\n", "Cadenza: Adding archive: \n",
          "there is no archive 'data'", "Dumping to 'untitled' (rate='60.000000'fps)",
          "Dumping to 'film/a.png' (rate='29.969999'fps)"})
        EXPECT_EQ(test::countLogged("log", said), 1) << said;
}

TEST_F(Settings, OfADumpThatLeavesTheFolderAnnounceItsFullPath)
{
    std::filesystem::create_directory_symlink("..", "link");
    const std::string outside = (folder.path().parent_path() / "a.000000.png").string();
    for (const auto& [name, announced] : {
             std::pair<const char*, std::string>{"a.png",       ""     },
             {"new/b/a.png", ""     },
             {"/new/a.png",  ""     },
             {"../a.png",    outside},
             {"link/a.png",  outside},
    }) {
        SCOPED_TRACE(name);
        testing::internal::CaptureStderr();
        start(std::string("<archive path='../'/><dump name='") + name + "'/>");
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(said.empty(), announced.empty()) << said;
        EXPECT_NE(said.find(announced), std::string::npos) << said;
    }
}

TEST_F(Settings, OfOnesOwnAreReadAloneAndOnce)
{
    writeText("setup.local.xml", R"(<demo><time start="5"/></demo>)");
    start("<display/>");
    writeText("setup.local.xml", R"(<demo><time start="6"/></demo>)");
    cadenza->setup(2.0f);

    EXPECT_EQ(cadenza->getStartTime(), 5.0f);
    EXPECT_EQ(runFailure(), "Could not open the file ''!") << "it has no window";
}

TEST_F(Settings, ThatAreBrokenSayWhatAndWhere)
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

TEST_F(Settings, OfAShowThatCannotRunSaySoWhenItIsToRun)
{
    for (const auto& [sections, said] : {
             std::pair{R"(<display width="0x400" height="-010"/><music mute="nosound"/>)",
                       "setup.xml: display width and height must be positive, found 1024 x -8"},
             {R"(<display height="8"/><music mute="nosound"/>)",
                       "setup.xml: display width and height must be positive, found 0 x 8"    },
             {R"(<music filename="a.ogg"/><music filename="b.ogg"/>)",
                       "Could not open the file 'b.ogg'!"                                     },
    }) {
        start(sections);
        EXPECT_EQ(runFailure(), said);
    }
    writeText("setup.xml", R"(<show><time start="5"/><display/></show>)");
    cadenza.reset();
    OpenCadenza show;
    show.setup(-1.0f);
    EXPECT_EQ(show.getStartTime(), 0.0f);
    EXPECT_EQ(thrownMessage([&show] { show.run(); }),
              "setup.xml: the root element is not 'demo', nothing is configured");
}

TEST(LogLine, ShowsTypeFunctionMessageAndPlace)
{
    constexpr struct {
        const char* file;
        const char* function;
        const char* message;
        const char* line;
    } CASES[] = {
        {"main.cpp",              "setup",             "hi",          "[log][setup], hi (main.cpp:7)\n"   },
        {"/src/cadenza/main.cpp", "zavex::cadenza::f", "",            "[log][cadenza::f],  (main.cpp:7)\n"},
        {"c:\\src\\main.cpp",     "f<zavex::X>",       "No sound!\n",
         "[log][f<zavex::X>], No sound!\n (main.cpp:7)\n"                                                 },
        {"a/b\\c:main.cpp",       "f",                 "100%d",       "[log][f], 100%d (main.cpp:7)\n"    },
    };
    for (const auto& [file, function, message, line] : CASES) {
        LogData data;
        data.type = "log";
        data.domain = "app";
        data.line = 7;
        data.file = file;
        data.function = function;
        data.message = message;
        EXPECT_EQ(logLine(data), line);
    }
}

} // namespace
} // namespace zavex::cadenza
