#include "e2e/program.h"
#include "support/case_name.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

namespace zavex::test {
namespace {

TEST(Recording, AFullDiskLosesFramesAndSaysHowMany)
{
    const VirtualScreen screen;
    const ShowCopy show(R"(<display width="160" height="120" title="full"/>)"
                        R"(<dump name="frames/shot.png" rate="25" length="0.2"/>)"
                        R"(<music mute="nosound"/>)");
    const auto before = show.scripts();
    constexpr std::size_t LARGEST_FILE = 100; // bytes: no picture and no script fits
    Program program(show.path(), screen, {}, LARGEST_FILE);
    EXPECT_EQ(program.waitForEnd(), 0) << program.output();
    EXPECT_NE(program.output().find("Dumped 5 frames, 5 lost"), std::string::npos)
        << program.output();
    EXPECT_EQ(show.scripts(), before);
    EXPECT_NE(program.output().find("script/plasma.plasma.xml"), std::string::npos);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(show.path() / "frames"))
        ADD_FAILURE() << entry.path() << " was left behind";
}

/** How a run ends that is not ended by a key. */
struct EndCase {
    const char* name;
    const char* sections; // of the setup file, behind the window and the start marker
    const char* moment;   // the line after which it is ended
    const char* keys;     // pressed then
    void (*end)(const Program& program, const VirtualScreen& screen);
    int status;
    const char* said; // on the way
    const char* left; // in the setup file

    friend void PrintTo(const EndCase& row, std::ostream* out) { *out << row.name; }
};

template <int SIGNAL>
void signal(const Program& program, const VirtualScreen&)
{
    kill(program.pid(), SIGNAL);
}

/** The first one cannot be obeyed while the screen does not answer. */
void signalTwice(const Program& program, const VirtualScreen& screen)
{
    constexpr std::chrono::milliseconds LONG_ENOUGH{500};
    kill(screen.pid(), SIGSTOP);
    std::this_thread::sleep_for(LONG_ENOUGH);
    kill(program.pid(), SIGTERM);
    std::this_thread::sleep_for(LONG_ENOUGH);
    kill(program.pid(), SIGHUP);
}

void destroyWindow(const Program&, const VirtualScreen& screen)
{
    runOnScreen(screen, {"xdotool", "search", "--name", "ends", "windowclose"});
}

void resizeWindow(const Program&, const VirtualScreen& screen)
{
    runOnScreen(screen, {"xdotool", "search", "--name", "ends", "windowsize", "90", "70"});
}

void endScreen(const Program&, const VirtualScreen& screen)
{
    kill(screen.pid(), SIGKILL);
}

constexpr const char* DUMP = R"(<dump name="frames/shot.png" rate="25"/>)";
constexpr const char* UNTOUCHED = R"(<time start="2"/>)";
constexpr const char* MARKED = R"(<osd show="off")"; // by Ctrl+O

constexpr EndCase END_CASES[] = {
    {"Interrupt",       "",   "---",          "ctrl+o", signal<SIGINT>,  0,            "",               MARKED           },
    {"TerminatePaused", "",   "---",          "space",  signal<SIGTERM>, 0,            "",               R"(start="2.00")"},
    {"HangUp",          "",   "---",          "ctrl+o", signal<SIGHUP>,  0,            "",               MARKED           },
    {"WhileItLoads",    "",   "effect::load", nullptr,  signal<SIGTERM>, 0,            "",               R"(start="2.00")"},
    {"WhileItRecords",  DUMP, "---",          "ctrl+o", signal<SIGINT>,  0,            ", 0 lost",       MARKED           },
    {"WhenItIsResized", DUMP, "---",          "ctrl+o", resizeWindow,    1,            "window 90 x 70", UNTOUCHED        },
    {"SecondSignal",    "",   "---",          "ctrl+o", signalTwice,     128 + SIGHUP, "",               UNTOUCHED        },
    {"WindowDestroyed", "",   "---",          "ctrl+o", destroyWindow,   1,            "is lost: error", MARKED           },
    {"ScreenEnds",      "",   "---",          "ctrl+o", endScreen,       1,            "is lost: the",   MARKED           },
};

class End : public testing::TestWithParam<EndCase> {};

TEST_P(End, LosesNothing)
{
    const EndCase& row = GetParam();
    const VirtualScreen screen;
    const ShowCopy show{""};
    show.write(
        "setup.local.xml",
        std::string(R"(<demo><time start="2"/><display width="64" height="48" title="ends"/>)") +
            R"(<osd show="on" location="top" delay="2"/><music mute="nosound"/>)" + row.sections +
            "</demo>");
    const Files scripts = show.scripts();
    Program program(show.path(), screen);
    ASSERT_GE(program.waitForLine(row.moment), 0) << program.output();
    if (row.keys) {
        const Keyboard keyboard(screen, "ends");
        keyboard.press(row.keys);
        keyboard.press("p");
        ASSERT_GE(program.waitForLine("[onKeyDown], "), 0) << program.output();
    }
    row.end(program, screen);
    EXPECT_EQ(program.waitForEnd(), row.status) << program.output();
    EXPECT_NE(program.output().find(row.said), std::string::npos) << program.output();
    EXPECT_NE(show.read("setup.local.xml").find(row.left), std::string::npos)
        << show.read("setup.local.xml");
    EXPECT_EQ(show.scripts(), scripts);
    for (const auto& [name, content] : filesIn(show, "frames"))
        EXPECT_TRUE(content.ends_with("IEND\xae\x42\x60\x82")) << name;
    kill(screen.pid(), SIGCONT);
}

INSTANTIATE_TEST_SUITE_P(Cases, End, testing::ValuesIn(END_CASES), caseName);

} // namespace
} // namespace zavex::test
