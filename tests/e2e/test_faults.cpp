// What a show loses when one call of the system fails while it is read or saved: nothing.

#include "e2e/program.h"
#include "support/case_name.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <optional>
#include <ostream>

namespace zavex::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* SETTINGS = "setup.local.xml";
constexpr const char* REPORT = "failed"; // comes into being when the call fails
constexpr int FEWEST_PLACES = 9;         // one for each script
constexpr std::size_t AT_ONCE = 6;       // programs that mostly wait for the screen

struct Fault {
    const char* name; // of the call
    int error;
    int step;         // from one place of the fault to the next
    const char* said; // of a file that was not saved

    friend void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }
};

constexpr Fault FAULTS[] = {
    {"open",   EIO,    1,   ".xml"     },
    {"read",   EIO,    1,   ".xml"     },
    {"write",  ENOSPC, 1,   ".xml"     },
    {"fsync",  EIO,    1,   ".xml"     },
    {"rename", EIO,    1,   ".xml"     },
    {"close",  EIO,    1,   ".xml"     },
    {"new",    ENOMEM, 499, "cadenza: "},
};

/** A show of which every file holds something that a save drops, and a program that runs it. */
class FaultyRun {
public:
    FaultyRun() : mShow("")
    {
        mShow.write(SETTINGS, std::string("<demo>") + ONE_FRAME + "</demo>");
        for (const auto& [name, content] : mShow.scripts())
            mShow.write("script/" + name, "<!-- kept -->" + content);
        mFiles = files();
    }

    /** Puts the files back and starts the program, whose call number `at` fails. */
    void start(const VirtualScreen& screen, const Fault& fault, int at)
    {
        fs::remove_all(mShow.path("script"));
        fs::remove(mShow.path(REPORT));
        for (const auto& [name, content] : mFiles)
            mShow.write(name, content);
        mProgram.emplace(mShow.path(), screen,
                         Environment{
                             {"LD_PRELOAD",   CADENZA_FAULTS                           },
                             {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"},
                             {"FAULT_CALL",   fault.name                               },
                             {"FAULT_AT",     std::to_string(at)                       },
                             {"FAULT_ERRNO",  std::to_string(fault.error)              },
                             {"FAULT_REPORT", REPORT                                   },
                             {"FAULT_PATHS",  std::string("script/:.part:") + SETTINGS }
        });
    }

    /** Waits for the end. @return whether the call failed; there are not so many otherwise. */
    bool end()
    {
        mStatus = mProgram->waitForEnd();
        return fs::exists(mShow.path(REPORT));
    }

    /** Checks that each file is old or new, and that what became of it is said. */
    void check(const Files& saved, const Fault& fault) const
    {
        const Files found = files();
        ASSERT_EQ(found.size(), mFiles.size()) << mProgram->output();
        bool allNew = true;
        for (std::size_t index = 0; index < found.size(); ++index) {
            const std::string& name = found[index].first;
            const bool isNew = isReplaced(found[index], mFiles[index], saved[index]);
            EXPECT_TRUE(!isNew || name == SETTINGS || isBeside(mFiles[index])) << name;
            allNew = allNew && isNew;
        }
        EXPECT_TRUE(mStatus == 1 || (mStatus == 0 && allNew)) << mStatus;
        EXPECT_TRUE(allNew || mProgram->output().find(fault.said) != std::string::npos);
        if (testing::Test::HasFailure())
            ADD_FAILURE() << mProgram->output();
    }

    /** Settings and scripts. */
    Files files() const
    {
        Files found{
            {SETTINGS, mShow.read(SETTINGS)}
        };
        for (const auto& [name, content] : mShow.scripts())
            if (name.ends_with(".xml"))
                found.emplace_back("script/" + name, content);
        return found;
    }

private:
    /** Whether the old script was kept under a name of its own. */
    bool isBeside(const Files::value_type& old) const
    {
        return std::ranges::any_of(mShow.scripts(), [&](const auto& file) {
            return ("script/" + file.first).starts_with(old.first + ".bak") &&
                   file.second == old.second;
        });
    }

    ShowCopy mShow;
    Files mFiles;
    std::optional<Program> mProgram;
    int mStatus = 0;
};

class FailingCall : public testing::TestWithParam<Fault> {};

TEST_P(FailingCall, LosesNothingWhereverItComes)
{
    const VirtualScreen screen;
    std::array<FaultyRun, AT_ONCE> runs;
    runs[0].start(screen, GetParam(), 0);
    EXPECT_FALSE(runs[0].end());
    const Files saved = runs[0].files();
    runs[0].check(saved, GetParam());

    int at = 1;
    int places = 0;
    for (bool more = true; more && !HasFailure();) {
        const int first = at;
        for (FaultyRun& run : runs)
            run.start(screen, GetParam(), std::exchange(at, at + GetParam().step));
        for (std::size_t index = 0; index < runs.size(); ++index) {
            SCOPED_TRACE(first + static_cast<int>(index) * GetParam().step);
            more = runs[index].end();
            places += more ? 1 : 0;
            runs[index].check(saved, GetParam());
        }
    }
    std::printf("failed at %d places\n", places);
    EXPECT_GE(places, FEWEST_PLACES);
}

INSTANTIATE_TEST_SUITE_P(Calls, FailingCall, testing::ValuesIn(FAULTS), test::caseName);

} // namespace
} // namespace zavex::test
