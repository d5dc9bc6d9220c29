// What a run leaves behind. No window: the scripts count as loaded only in the tests of `run`.

#include "cadenza/open_cadenza.h"
#include "cadenza/scratch.h"
#include "display/dis_event.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

#include <sys/resource.h>

namespace zavex::cadenza {
namespace {

using test::OpenCadenza;
using test::readText;
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

struct SaveCase {
    const char* name;
    const char* before; // what stands inside the root element
    void (*change)(OpenCadenza&);
    const char* after;
};

void moveStart(OpenCadenza& it)
{
    it.mStartTime = 12.346f;
}

void pressOThreeTimes(OpenCadenza& it)
{
    display::KeyEvent event;
    event.key = display::KEY_o;
    for (int i = 0; i < 3; ++i)
        it.onKeyDown(event);
}

void nothing(OpenCadenza&) {}
// clang-format off
constexpr SaveCase SAVE_CASES[] = {
    {"StartIsRoundedToHundredths", R"(<time loop="on" start="3"/>)", moveStart,
     R"(<time loop="on" start="12.35"/>)"},
    {"OnlyTheFirstTime", R"(<time start="1"/><time mode="vsync" start="2" loop="on"/>)", nothing,
     R"(<time start="2.00" loop="on"/><time mode="vsync" start="2" loop="on"/>)"},
    {"AMissingTimeComesFirst", R"(<!--mine--><log console="on"/>)", [](OpenCadenza& it) { it.mLogConsole = false; },
     R"(<time start="0.00" loop="off"/><!--mine--><log console="off"/>)"},
    {"OnlyTheFirstDisplay", R"(<time/><display width="0x40"/><display fullscreen="on"/>)", nothing,
     R"(<time start="0.00" loop="off"/><display width="0x40" fullscreen="on"/><display fullscreen="on"/>)"},
    {"EveryMusic", R"(<time/><music mute="on" filename="a"/><music filename="b"/>)", nothing,
     R"(<time start="0.00" loop="off"/><music mute="on" filename="a"/><music filename="b" mute="on"/>)"},
    {"NoSoundIsStrongerThanMuted", R"(<time/><music mute="on"/>)", [](OpenCadenza& it) { it.mNosound = true; },
     R"(<time start="0.00" loop="off"/><music mute="nosound"/>)"},
    {"ARecordingSavesNoSound", R"(<time/><dump name="a.png"/><music/>)", nothing,
     R"(<time start="0.00" loop="off"/><dump name="a.png"/><music mute="nosound"/>)"},
    {"EveryOsdAlike", R"(<time/><osd location="middle"/><osd delay="0.5" show="on"/>)", nothing,
     R"(<time start="0.00" loop="off"/><osd location="top" show="off" delay="0.50"/><osd delay="0.50" show="off" location="top"/>)"},
    {"ThreeMovesOfThePositionBar", R"(<time/><osd show="on"/><music mute="nosound"/>)", pressOThreeTimes,
     R"(<time start="0.00" loop="off"/><osd show="on" location="bottom" delay="2.00"/><music mute="nosound"/>)"},
    {"NothingElseIsTouched", R"(<time/><archive path="x"><deep/></archive><dis width="1"/>)", nothing,
     R"(<time start="0.00" loop="off"/><archive path="x"><deep/></archive><dis width="1"/>)"},
};
// clang-format on

class SettingsFile : public testing::Test {
protected:
    SettingsFile() { test::clearLog(); }

    test::ScratchFolder folder;
};

TEST_F(SettingsFile, SavedSettingsHoldWhatTheRunChangedAndAllTheRest)
{
    for (const SaveCase& row : SAVE_CASES) {
        SCOPED_TRACE(row.name);
        const std::string after = std::string("<demo>") + row.after + "</demo>";
        writeText(LOCAL, std::string("<demo>") + row.before + "</demo>");
        session(row.change);
        EXPECT_EQ(flat(readText(LOCAL)), after);

        session();
        EXPECT_EQ(flat(readText(LOCAL)), after) << "saved again";
    }
}

TEST_F(SettingsFile, IsIndentedAndKeepsItsDeclaration)
{
    writeText(LOCAL,
              "<?xml version='1.0'?>\r\n<!--lost--><demo  a='b'><time/><!-- kept --></demo>");
    session();
    EXPECT_EQ(readText(LOCAL), "<?xml version=\"1.0\"?>\n\n"
                               "<demo a=\"b\">\n"
                               "\t<time start=\"0.00\" loop=\"off\"/>\n"
                               "\t<!-- kept -->\n"
                               "</demo>\n");
}

TEST_F(SettingsFile, ThatAllShareIsNeverWritten)
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

// clang-format off
constexpr struct BadFile {
    const char* name;
    const char* found; // when the run ends
    const char* said;
} BAD_FILES[] = {
    {"Empty",       "",                      "Could not save 'setup.local.xml': nothing is saved: (error at line 1"},
    {"Malformed",   "<demo>\n<time start=1", "Could not save 'setup.local.xml': nothing is saved: (error at line 2"},
    {"AnotherRoot", "<show></show>",         "Could not save 'setup.local.xml': nothing is saved: the root element is 'show'"},
};
// clang-format on

TEST_F(SettingsFile, BadSettingsAreReportedAndLeftAsTheyAre)
{
    for (const BadFile& row : BAD_FILES) {
        SCOPED_TRACE(row.name);
        writeText(LOCAL, "<demo><time/></demo>");
        session([&](OpenCadenza&) { writeText(LOCAL, row.found); });

        EXPECT_EQ(readText(LOCAL), row.found);
        EXPECT_EQ(test::countLogged("error", row.said), 1);
    }
}

TEST_F(SettingsFile, ThatCannotBeWrittenIsReportedAndKept)
{
    const std::string before = "<demo><time/></demo>";
    writeText(LOCAL, before);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit small{4, usual.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    session();
    setrlimit(RLIMIT_FSIZE, &usual);

    EXPECT_EQ(readText(LOCAL), before);
    EXPECT_EQ(test::countLogged("error", "Could not save 'setup.local.xml': File too large\n"), 1);
    for (const test::LogLine& line : test::logLines())
        EXPECT_FALSE(line.type == "error" && line.domain == "app") << line.message;
}

TEST_F(SettingsFile, AreSavedByTheFirstOfTwoProgramsInAFolder)
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

TEST_F(SettingsFile, ThatWereChangedMeanwhileStayAndCommentsOutsideAreKeptInACopy)
{
    const std::string before = "<!-- mine --><demo><time/></demo>";
    writeText(LOCAL, before);
    session();
    EXPECT_EQ(readText("setup.local.xml.bak"), before);

    session([](OpenCadenza& it) {
        it.mStartTime = 3.0f;
        writeText(LOCAL, R"(<demo><time start="2.00" mode="vsync"/></demo>)");
    });
    EXPECT_EQ(readText(LOCAL), R"(<demo><time start="2.00" mode="vsync"/></demo>)");
    EXPECT_EQ(flat(readText("setup.local.xml.mine")),
              R"(<demo><time start="3.00" mode="vsync" loop="off"/></demo>)");
}

} // namespace
} // namespace zavex::cadenza
