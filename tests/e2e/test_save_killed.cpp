#include "e2e/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

constexpr int KILLS = 50;       // while saving
constexpr int MOST_TURNS = 150; // on a busy machine some come late
constexpr int ENOUGH_INSIDE = KILLS / 2;
constexpr int ACTIONS = 2000; // make the longest file take its time
constexpr unsigned SEED = 50;

constexpr const char* FRAMES_DONE = "frames, ";
constexpr const char* SAVING = "effect::save: filename:";

/** Scripts that hold the same as the shipped ones in other words, the longest with many actions. */
Files oldScripts(const ShowCopy& show)
{
    Files scripts = show.scripts();
    for (auto& [name, content] : scripts) {
        content.insert(content.find('\n'), "<!-- as it was -->");
        if (name != "plasma.plasma.xml")
            continue;
        const std::size_t place = content.find("<action");
        for (int action = 0; action < ACTIONS; ++action)
            content.insert(place, "<action start='0.125' delay='0.5' repeat='0'/>\n");
    }
    return scripts;
}

void restore(const ShowCopy& show, const Files& scripts)
{
    for (const auto& [name, content] : scripts)
        show.write("script/" + name, content);
}

/** The named files as they are, whatever else lies in their folder. */
Files readLike(const ShowCopy& show, const Files& scripts)
{
    Files found;
    for (const auto& [name, content] : scripts)
        found.emplace_back(name, show.read("script/" + name));
    return found;
}

/** Checks that each file is either old or new. @return how many are new. */
int countNew(const Files& found, const Files& before, const Files& after)
{
    int count = 0;
    for (std::size_t file = 0; file < found.size(); ++file)
        count += isReplaced(found[file], before[file], after[file]) ? 1 : 0;
    return count;
}

struct KilledSave : testing::Test {
    /** Saves undisturbed. @return how long after its last frame it had saved, seconds. */
    double save()
    {
        Program program(show.path(), screen);
        EXPECT_EQ(program.waitForEnd(), 0) << program.output();
        const int begin = program.waitForLine(FRAMES_DONE);
        int end = begin;
        for (int line = begin; line >= 0; line = program.waitForLine(SAVING, line + 1, 0.0))
            end = line;
        if (begin < 0 || end == begin || program.waitForLine("", end + 2, 0.0) < 0) {
            ADD_FAILURE() << program.output();
            return 0.0;
        }
        const auto& lines = program.lines();
        // Behind the line that names the last file, and where that was printed, something follows.
        return lines[end + 2].when - lines[begin].when;
    }

    /** @return whether saving had begun. */
    bool killAfter(double seconds)
    {
        Program program(show.path(), screen);
        const int begin = program.waitForLine(FRAMES_DONE);
        EXPECT_GE(begin, 0) << program.output();
        if (begin < 0)
            return false;
        std::this_thread::sleep_for(
            std::chrono::duration<double>(program.lines()[begin].when + seconds - steadySeconds()));
        kill(program.pid(), SIGKILL);
        program.waitForEnd();
        return program.waitForLine(SAVING, begin, 0.0) >= 0;
    }

    /** Learns how long saving takes and what it writes. */
    void SetUp() override
    {
        std::array<double, 3> durations{};
        for (double& each : durations) {
            restore(show, before);
            each = save();
        }
        duration = *std::ranges::min_element(durations);
        ASSERT_GT(duration, 0.0);
        after = readLike(show, before);
    }

    VirtualScreen screen;
    ShowCopy show{ONE_FRAME};
    Files before = oldScripts(show);
    Files after;
    double duration = 0.0; // seconds
};

TEST_F(KilledSave, LeavesEachFileOldOrNewAtFiftyRandomMoments)
{
    const int files = static_cast<int>(before.size());
    EXPECT_EQ(countNew(before, before, after), 0);
    EXPECT_EQ(countNew(after, before, after), files);

    std::mt19937 generator(SEED);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    int inside = 0;
    int mixed = 0;
    int turn = 0;
    for (; inside < KILLS && turn < MOST_TURNS; ++turn) {
        restore(show, before);
        // One in each of as many equal parts: none of them is left out by chance.
        const double moment = (turn % KILLS + share(generator)) / KILLS * duration;
        SCOPED_TRACE(moment);
        const bool begun = killAfter(moment);
        const int replaced = countNew(readLike(show, before), before, after);
        inside += begun && replaced < files ? 1 : 0;
        mixed += replaced > 0 && replaced < files ? 1 : 0;
    }
    std::printf("%d of %d kills while saving (%.1f ms), %d with some files old and some new\n",
                inside, turn, 1e3 * duration, mixed);
    EXPECT_GE(inside, ENOUGH_INSIDE);

    // What killed runs left behind is in nobody's way, and is gone after the next start.
    restore(show, before);
    save();
    EXPECT_EQ(readLike(show, before), after);
    for (const auto& entry : fs::directory_iterator(show.path() / "script"))
        EXPECT_EQ(entry.path().string().find(".part"), std::string::npos) << entry.path();
}

} // namespace
} // namespace zavex::test
