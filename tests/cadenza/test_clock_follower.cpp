#include "cadenza/cad_clock_follower.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>

namespace zavex::cadenza {
namespace {

constexpr double FRAME_SECONDS = 1.0 / 60.0;

/** A clock and a song side by side, as frames of a show see them. */
struct Show {
    MusicClockFollower follower = {};
    double clock = 0.0;
    double heard = 0.0;
    double largestStep = 0.0;  // of the clock, beyond the frame's own time
    double smallestStep = 1.0; // of the clock from frame to frame
    double corrected = 0.0;    // sum of all corrections' amounts

    void start(double time)
    {
        clock = heard = time;
        follower.restart(time);
    }

    void frame(double musicStep)
    {
        const double before = clock;
        heard += musicStep;
        clock += FRAME_SECONDS;
        const double correction = follower.follow(clock, heard);
        clock += correction;
        corrected += std::abs(correction);
        largestStep = std::max(largestStep, clock - before - FRAME_SECONDS);
        smallestStep = std::min(smallestStep, clock - before);
    }

    void play(double seconds, double rate = 1.0)
    {
        for (double at = 0.0; at < seconds; at += FRAME_SECONDS)
            frame(FRAME_SECONDS * rate);
    }

    /** A song that loops begins again. */
    void startOver()
    {
        const double passed = heard;
        clock -= passed;
        heard -= passed;
        follower.shift(-passed);
    }

    void forgetSteps()
    {
        largestStep = corrected = 0.0;
        smallestStep = 1.0;
    }
};

TEST(MusicClockFollower, WaitsForTheMusicAndThenRunsWithIt)
{
    struct Row {
        double silence;    // seconds before the music is heard
        double earlyLead;  // seconds that the report is ahead during the first half second
        double playedFor;  // seconds
        double difference; // seconds, largest allowed at the end
    };
    constexpr Row CASES[] = {
        {0.0,  0.0,   0.1, 0.0015},
        {0.07, 0.0,   0.3, 0.0015},
        {2.0,  0.0,   2.2, 0.0015},
        {0.5,  0.05,  3.0, 0.002 },
        {0.5,  -0.05, 3.0, 0.002 },
    };
    for (const auto& [silence, earlyLead, playedFor, difference] : CASES) {
        SCOPED_TRACE(testing::Message() << silence << " " << earlyLead);
        Show show;
        for (const double before : {3.0, 10.0}) { // it was moved while it played, and when it stood
            SCOPED_TRACE(before);
            show.play(before, before < 10.0 ? 1.0 : 0.0);
            show.forgetSteps();
            show.start(10.0);
            double reported = 0.0;
            for (double at = 0.0; at < playedFor; at += FRAME_SECONDS) {
                const double sounding = std::max(0.0, at - silence);
                const double lead = sounding > 0.0 && sounding < 0.5 ? earlyLead : 0.0;
                const double next = std::max(reported, sounding + lead);
                show.frame(next - reported);
                ASSERT_TRUE(sounding > 0.0 || show.clock == 10.0) << "moved before the music did";
                reported = next;
            }
            EXPECT_NEAR(show.clock, show.heard, difference);
            EXPECT_GE(show.smallestStep, 0.0);
        }
    }

    Show elsewhere;
    elsewhere.start(10.0);
    elsewhere.heard = 3.0;
    elsewhere.play(1.0);
    EXPECT_NEAR(elsewhere.clock, elsewhere.heard, 0.0015) << "the music began far behind";
    elsewhere.start(10.0);
    elsewhere.startOver();
    elsewhere.frame(0.0);
    EXPECT_EQ(elsewhere.clock, 0.0) << "still waiting";
}

/** What befalls a clock that has run with the music for three seconds. */
struct DriftCase {
    const char* name;
    double lead;        // seconds by which the music jumps ahead of the clock
    double rate;        // of the music's crystal against the clock
    double playedFor;   // seconds
    double difference;  // seconds that the clock may be behind the music at the end
    double tolerance;   // seconds
    double largestStep; // seconds beyond a frame's own time
};

constexpr double SLEW_STEP = 0.005 * FRAME_SECONDS * 1.0001;
constexpr double NO_STEP = 1e-9;

// A slew of 5 ms a second begins within the first second: after n seconds 5n - 5 to 5n ms are out.
constexpr DriftCase DRIFT_CASES[] = {
    {"SmallLeadIsSlewed",      0.05,  1.0,    4.0,  0.0325,  0.003,  SLEW_STEP},
    {"SmallLagIsSlewed",       -0.05, 1.0,    4.0,  -0.0325, 0.003,  NO_STEP  },
    {"SlewEndsAtTheMusic",     0.02,  1.0,    8.0,  0.0,     0.001,  SLEW_STEP},
    {"LagEndsAtTheMusic",      -0.02, 1.0,    8.0,  0.0,     0.001,  NO_STEP  },
    {"JustBelowTheLimit",      0.09,  1.0,    4.0,  0.0725,  0.003,  SLEW_STEP},
    {"JustAboveTheLimit",      0.11,  1.0,    2.2,  0.0,     0.001,  0.12     },
    {"LargeLeadIsTakenAtOnce", 0.4,   1.0,    2.2,  0.0,     0.001,  0.41     },
    {"LagJustAboveTheLimit",   -0.11, 1.0,    2.2,  0.0,     0.001,  NO_STEP  },
    {"LargeLagIsSetBack",      -5.0,  1.0,    2.2,  0.0,     0.001,  NO_STEP  },
    {"FastCrystal",            0.0,   1.0002, 60.0, 0.0,     0.0015, SLEW_STEP},
    {"SlowCrystal",            0.0,   0.9998, 60.0, 0.0,     0.0015, SLEW_STEP},
};

TEST(FollowerDrift, IsTakenOutAtItsPace)
{
    for (const DriftCase& row : DRIFT_CASES) {
        SCOPED_TRACE(row.name);
        Show show;
        show.start(0.0);
        show.play(3.0);
        show.startOver();
        show.forgetSteps();

        show.heard += row.lead;
        show.play(row.playedFor, row.rate);

        EXPECT_NEAR(show.heard - show.clock, row.difference, row.tolerance);
        EXPECT_LE(show.largestStep, row.largestStep);
        EXPECT_LT(show.corrected, std::abs(row.lead) + 0.015) << "went to and fro";
        const bool isSetBack = row.lead < -MusicClockFollower::JUMP_SECONDS;
        EXPECT_GE(show.smallestStep, isSetBack ? row.lead : 0.0) << "demo time ran backwards";
    }
}

/** The program, or the whole machine, stood still; the song went on for a part of that. */
TEST(MusicClockFollower, IsWithTheMusicAsSoonAsAHeldUpProgramGoesOn)
{
    constexpr struct {
        double playedFor; // seconds before
        double heldUp;    // seconds
        double sounded;   // seconds of these
    } CASES[] = {
        {3.4, 5.0,  0.06},
        {3.4, 60.0, 1.4 },
        {3.4, 5.0,  5.0 },
        {0.0, 5.0,  0.06},
    };
    for (const auto& [playedFor, heldUp, sounded] : CASES) {
        SCOPED_TRACE(testing::Message() << playedFor << " " << heldUp << " " << sounded);
        Show show;
        show.start(0.0);
        show.play(playedFor);
        if (playedFor > 0.0) { // a correction is under way
            show.heard += 0.02;
            show.play(1.6);
        }
        show.clock += heldUp;
        show.heard += sounded;
        show.frame(FRAME_SECONDS);
        show.forgetSteps();
        for (int frame = 0; frame < 180; ++frame) {
            show.frame(FRAME_SECONDS);
            ASSERT_NEAR(show.clock, show.heard, 0.0015) << frame;
        }
        EXPECT_GT(show.smallestStep, 0.9 * FRAME_SECONDS) << "stood still";
    }

    Show early; // a little
    early.start(0.0);
    early.play(3.4);
    early.clock += 5.0;
    early.heard += 5.05;
    early.forgetSteps();
    early.frame(FRAME_SECONDS);
    EXPECT_LE(early.largestStep, SLEW_STEP) << "jumped";

    Show rough; // its first reports are ahead
    rough.start(0.0);
    rough.play(3.4);
    rough.clock += 5.0;
    rough.heard += 0.05;
    rough.play(0.4);
    rough.play(0.05, 0.0);
    rough.play(2.5);
    EXPECT_NEAR(rough.clock, rough.heard, 0.002);
}

TEST(MusicClockFollower, TakesNoNoticeOfReportsThatComeInSteps)
{
    Show show;
    show.start(0.0);
    const double step = 1024.0 / 44100.0;
    double at = 0.0;
    const auto play = [&](double until) {
        for (; at < until; at += FRAME_SECONDS)
            show.frame(std::floor(at / step) * step - show.heard);
    };
    play(5.0);
    show.forgetSteps();
    play(65.0);
    EXPECT_LT(show.corrected, 0.03);
    EXPECT_NEAR(show.clock, at - FRAME_SECONDS - step / 2.0, 0.004);
}

TEST(MusicClockFollower, GoesOnAloneWhenTheMusicStandsStill)
{
    Show show;
    show.start(5.0);
    show.play(10.0, 0.0);
    EXPECT_NEAR(show.clock, 12.0, 0.05) << "three seconds of waiting, then its own pace";

    Show lost;
    lost.start(0.0);
    lost.play(4.0);
    lost.forgetSteps();
    lost.play(10.0, 0.0);
    EXPECT_NEAR(lost.clock, 14.0, 0.2);
    EXPECT_GE(lost.smallestStep, 0.0);
}

} // namespace
} // namespace zavex::cadenza
