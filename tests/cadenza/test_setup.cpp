#include "cadenza/cad_log_line.h"
#include "cadenza/stage.h"

#include <filesystem>
#include <string>
#include <utility>

namespace zavex::cadenza {
namespace {

using test::OpenCadenza;
using test::thrownMessage;
using test::writeText;

class Setup : public test::Stage {
protected:
    static std::string failure()
    {
        return thrownMessage([] { OpenCadenza().setup(-1.0f); });
    }
};

TEST_F(Setup, SaysWhichArchivesItAddsAndWhatItRecords)
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

TEST_F(Setup, OfADumpThatLeavesTheFolderAnnouncesItsFullPath)
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

TEST_F(Setup, ReadsTheLocalFileAloneAndOnce)
{
    writeText("setup.local.xml", R"(<demo><time start="5"/></demo>)");
    start("<display/>");
    writeText("setup.local.xml", R"(<demo><time start="6"/></demo>)");
    cadenza->setup(2.0f);

    EXPECT_EQ(cadenza->getStartTime(), 5.0f);
    EXPECT_EQ(runFailure(), "Could not open the file ''!") << "there is a display";
}

TEST_F(Setup, SaysWhatIsWrongAndWhere)
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

TEST_F(Setup, OfAShowThatCannotRunSaysSoWhenItIsToRun)
{
    for (const auto& [sections, said] : {
             std::pair{R"(<display width="0x400" height="-010"/><music mute="nosound"/>)",
                       "setup.xml: display width and height must be positive, found 1024 x -8"},
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
