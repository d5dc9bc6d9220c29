// The program on a sound server: what is heard of it, and when.

#include "common/zvx_system.h"
#include "e2e/program.h"
#include "support/case_name.h"
#include "support/pulse_server.h"
#include "support/sound_file.h"

#include <gtest/gtest.h>

#include <signal.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace zavex::test {
namespace {

constexpr int SAMPLE_RATE = PulseRecording::SAMPLE_RATE;

constexpr double SONG_SECONDS = 12.0;
constexpr double PIECE_SECONDS = 0.05; // of noise, enough to know its place by
constexpr double KNOWN = 0.4;          // correlation; a gap may be heard, chance reaches 0.1
constexpr double REACH = 0.5;          // seconds before and behind, in which a piece is looked for
constexpr int PIECES = 4;              // tried one after the other: a busy server tears gaps
constexpr double LATER = 3.0;          // seconds from a change to a reading
constexpr double SWITCHED = 1.0;       // seconds, at most, until a key's effect is heard
constexpr float NOISE_PEAK = 0.4f;     // what a piece of noise surely reaches

std::int64_t framesIn(double seconds)
{
    return std::llround(seconds * SAMPLE_RATE);
}

/** Empty when it does not lie in `sound`. */
std::span<const float> cut(std::span<const float> sound, std::int64_t first, double seconds)
{
    const std::int64_t length = framesIn(seconds);
    if (first < 0 || first > std::ssize(sound) - length)
        return {};
    return sound.subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(length));
}

float loudest(std::span<const float> sound)
{
    float peak = 0.0f;
    for (const float sample : sound)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

/**
 * The show with every effect off, so that frames come quickly, and with noise for a song, of which
 * each piece is known when it is heard.
 */
class NoiseShow : public ShowCopy {
public:
    /**
     * @param time   Attributes of the `time` element.
     * @param music  More attributes of the `music` element.
     */
    explicit NoiseShow(const std::string& time, const std::string& music = "")
        : ShowCopy("<time " + time + R"(/><display width="64" height="48" title="sound"/>)" +
                   R"(<music filename="song.wav" )" + music + "/>"),
          mSong(makeNoise(static_cast<std::size_t>(framesIn(SONG_SECONDS))))
    {
        for (const auto& [name, script] : scripts())
            write("script/" + name, R"(<effect><option inactive="1"/></effect>)");
        std::vector<float> stereo;
        for (const float sample : mSong)
            stereo.insert(stereo.end(), 2, sample);
        const auto bytes = encodeSound(SoundFormat::WAV, 2, SAMPLE_RATE, stereo);
        write("song.wav", {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }

    std::span<const float> song() const { return mSong; }

private:
    std::vector<float> mSong;
};

/** A demo time that was logged, and when that was read. */
struct Reading {
    double demo = 0.0; // seconds
    double when = 0.0; // steady seconds
};

Reading readingOf(const OutputLine& line)
{
    return {demoTimeIn(line), line.when};
}

/** The program on a sound server and a screen of its own, and what is heard of it. */
class Sound : public testing::Test {
protected:
    /** Returns when the recording has begun. */
    void record()
    {
        mRecording.emplace(mServer);
        waitUntil([this] { return mRecording->frameCount() > 0; });
    }

    static void waitUntil(const std::function<bool()>& holds)
    {
        constexpr double LIMIT = 30.0; // seconds; generous: an attempt to open may be under way
        for (const double limit = steadySeconds() + LIMIT; !holds();) {
            if (steadySeconds() > limit)
                throw Exception("The sound server delivers nothing");
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    /** Returns when the show has started. */
    void start(const ShowCopy& show)
    {
        mProgram.emplace(show.path(), mScreen, mServer.environment());
        mStarted = readingOf(lineWith("---", 0)).when;
        mKeyboard.emplace(mScreen, "sound");
    }

    void recordFromStart(const ShowCopy& show)
    {
        record();
        start(show);
    }

    /** Ends the recording, then the program. */
    void end()
    {
        mProgram->listen(REACH);
        mRecording->stop();
        mHeard = mRecording->samples();
        mKeyboard->press("Escape");
        EXPECT_EQ(mProgram->waitForEnd(), 0) << mProgram->output();
    }

    void listenUntil(double when) { mProgram->listen(std::max(0.0, when - steadySeconds())); }

    /** Presses M, then listens until that must be heard. @return when it was pressed. */
    double pressMute()
    {
        const double pressed = steadySeconds();
        mKeyboard->press("m");
        listenUntil(pressed + SWITCHED + REACH);
        return pressed;
    }

    /**
     * Demo time at the promptest of many presses of P, from `when` on for half a second. A line
     * tells the time of the frame in which it was logged and is read a little later: part of a
     * frame, and what else the machine is busy with.
     */
    Reading readDemoTime(double when)
    {
        constexpr std::size_t COUNT = 50;
        listenUntil(when);
        std::size_t from = mProgram->lines().size();
        // Typed beside the reading, so that a line is read as soon as it is there.
        const auto typing = std::async(std::launch::async, [this] {
            runOnScreen(mScreen, {"xdotool", "key", "--repeat", std::to_string(COUNT),
                                  "--repeat-delay", "10", "--delay", "0", "p"});
        });
        std::vector<Reading> readings;
        while (readings.size() < COUNT) {
            readings.push_back(readingOf(lineWith("[onKeyDown], ", from)));
            from = mFound + 1;
        }
        return std::ranges::min(readings, {},
                                [](const Reading& reading) { return reading.when - reading.demo; });
    }

    /**
     * Seconds by which demo time was ahead of the noise that was heard then; a test asks for no
     * more than that it is heard about there, how near is a figure of the machine's, too.
     */
    double ahead(const Reading& reading, const NoiseShow& show)
    {
        SoundMatch match;
        double position = 0.0;
        for (int piece = 0; piece < PIECES && match.correlation <= KNOWN; ++piece) {
            const double later = piece * PIECE_SECONDS;
            // A song that loops goes on at its start.
            position = std::fmod(reading.demo + later, SONG_SECONDS);
            match = findSound(cut(mHeard, mRecording->frameAt(reading.when + later), PIECE_SECONDS),
                              show.song(), framesIn(position - REACH), framesIn(position + REACH));
        }
        EXPECT_GT(match.correlation, KNOWN)
            << reading.demo << " seconds are not heard at " << reading.when - mStarted;
        const double apart = position - static_cast<double>(match.frame) / SAMPLE_RATE;
        RecordProperty("apart_ms", std::to_string(std::abs(apart) * 1000.0));
        return apart;
    }

    /** When the noise up to `position` has been heard, in seconds after the start. */
    double heardUpTo(double position, const NoiseShow& show) const
    {
        const std::int64_t first = mRecording->frameAt(mStarted);
        SoundMatch match;
        double earlier = 0.0;
        for (int piece = 1; piece <= PIECES && match.correlation <= KNOWN; ++piece) {
            earlier = piece * PIECE_SECONDS;
            match = findSound(cut(show.song(), framesIn(position - earlier), PIECE_SECONDS), mHeard,
                              first, std::ssize(mHeard));
        }
        EXPECT_GT(match.correlation, KNOWN) << "what is before " << position << " is not heard";
        return static_cast<double>(match.frame - first) / SAMPLE_RATE + earlier;
    }

    /** The loudest sample of the piece heard at `when`, steady seconds. */
    float loudestAt(double when) const
    {
        const auto piece = cut(mHeard, mRecording->frameAt(when), PIECE_SECONDS);
        EXPECT_FALSE(piece.empty()) << "nothing was recorded at " << when - mStarted;
        return loudest(piece);
    }

    PulseServer mServer;
    VirtualScreen mScreen;
    std::optional<PulseRecording> mRecording;
    std::optional<Program> mProgram;
    std::optional<Keyboard> mKeyboard;
    double mStarted = 0.0;     // steady seconds
    std::vector<float> mHeard; // all that was recorded

private:
    const OutputLine& lineWith(std::string_view part, std::size_t from)
    {
        const int found = mProgram->waitForLine(part, from);
        if (found < 0)
            throw Exception("No line with '%s' in\n%s", std::string(part).c_str(),
                            mProgram->output().c_str());
        mFound = static_cast<std::size_t>(found);
        return mProgram->lines()[mFound];
    }

    std::size_t mFound = 0; // the line found last
};

TEST_F(Sound, IsTheSongFromItsStartAndNothingBeforeThoughItWouldBeOverAtOnce)
{
    constexpr double SECONDS = 5.0;
    constexpr double LATEST = 2.5; // seconds; how long a sink may take to begin
    const NoiseShow show(R"(start="12")");
    recordFromStart(show);
    listenUntil(mStarted + LATEST + SECONDS);
    end();
    const double begin = heardUpTo(1.0, show) - 1.0;
    EXPECT_LT(begin, LATEST);
    const std::int64_t first = mRecording->frameAt(mStarted) + framesIn(begin);
    const auto heard = cut(mHeard, first, SECONDS);
    ASSERT_FALSE(heard.empty());
    EXPECT_GT(findSound(cut(show.song(), 0, SECONDS), heard, 0, 1).correlation, 0.9);
    EXPECT_EQ(loudest(cut(mHeard, 0, static_cast<double>(first) / SAMPLE_RATE)), 0.0f);
    EXPECT_NE(mProgram->output().find("start time 12.00 is not before"), std::string::npos)
        << mProgram->output();
}

/** Has the program's window look as a window manager leaves it that iconifies it. */
void iconify(const Program&, const VirtualScreen& screen, bool isIconified)
{
    const std::string window = runOnScreen(screen, {"xdotool", "search", "--name", "sound"});
    const std::unique_ptr<Display, int (*)(Display*)> server(XOpenDisplay(screen.display().c_str()),
                                                             XCloseDisplay);
    const Atom state = XInternAtom(server.get(), "WM_STATE", False);
    const std::array<long, 2> value{isIconified ? IconicState : NormalState, None};
    XChangeProperty(server.get(), std::stoul(window), state, state, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(value.data()), std::ssize(value));
}

void stop(const Program& program, const VirtualScreen&, bool isAway)
{
    kill(program.pid(), isAway ? SIGSTOP : SIGCONT);
}

/** Something that moves music or picture; demo time is to be right three seconds later. */
struct SyncCase {
    const char* name;
    const char* time; // attributes of the `time` element
    double at;        // seconds after the start
    std::vector<const char*> keys;
    void (*leave)(const Program&, const VirtualScreen&, bool isAway); // for a while
    bool isAwake = true; // the sink, kept so by the recording

    friend void PrintTo(const SyncCase& sync, std::ostream* out) { *out << sync.name; }
};

// clang-format off
const SyncCase SYNC_CASES[] = {
    {"TheStart", "", 0.0, {}, nullptr},
    {"ALateStart", "", 0.0, {}, nullptr, false},
    {"ASeek", "", 1.0, {"Right"}, nullptr},
    {"ASeekBack", R"(start="7")", 1.0, {"Left"}, nullptr},
    {"ASeekInAPause", "", 1.0, {"space", "Right", "space"}, nullptr},
    {"AHalt", "", 1.0, {}, stop},
    {"AnAbsence", "", 1.0, {}, iconify},
    {"TheEndOfALoop", R"(start="10")", 0.0, {}, nullptr},
};
// clang-format on

class SoundAfter : public Sound, public testing::WithParamInterface<SyncCase> {};

TEST_P(SoundAfter, IsHeardAtItsDemoTime)
{
    // On a slow machine the song may end before all is read.
    const NoiseShow show(std::string(R"(loop="on" )") + GetParam().time);
    if (GetParam().isAwake)
        record();
    start(show);
    double done = mStarted + GetParam().at;
    listenUntil(done);
    for (const char* key : GetParam().keys) {
        mProgram->listen(0.5);
        mKeyboard->press(key);
        done = steadySeconds();
    }
    if (GetParam().leave) {
        GetParam().leave(*mProgram, mScreen, true);
        mProgram->listen(5.0);
        GetParam().leave(*mProgram, mScreen, false);
        done = steadySeconds();
    }
    listenUntil(done + LATER);
    if (!GetParam().isAwake)
        record();
    const Reading reading = readDemoTime(steadySeconds());
    end();
    EXPECT_NEAR(ahead(reading, show), 0.0, REACH);
}

INSTANTIATE_TEST_SUITE_P(Cases, SoundAfter, testing::ValuesIn(SYNC_CASES), test::caseName);

TEST_F(Sound, IsOffFromTheStartWhenTheSettingsSaySoAndSwitchedWhileTheSongGoesOn)
{
    const NoiseShow show(R"(loop="on")", R"(mute="on")");
    recordFromStart(show);
    listenUntil(mStarted + 2.0 * SWITCHED);
    const double on = pressMute();
    const double off = pressMute();
    const double again = pressMute();
    const Reading reading = readDemoTime(again + SWITCHED + REACH);
    end();
    const double silence = static_cast<double>(mRecording->frameAt(on)) / SAMPLE_RATE;
    EXPECT_GT(silence, 2.0 * SWITCHED);
    EXPECT_EQ(loudest(cut(mHeard, 0, silence)), 0.0f);
    EXPECT_GT(loudestAt(on + SWITCHED), NOISE_PEAK);
    EXPECT_EQ(loudestAt(off + SWITCHED), 0.0f);
    EXPECT_GT(loudestAt(again + SWITCHED), NOISE_PEAK);
    EXPECT_NEAR(ahead(reading, show), 0.0, REACH);
}

TEST_F(Sound, EndsTheProgramAtItsEndWhenItDoesNotLoop)
{
    const NoiseShow show(R"(start="9")");
    for (const bool isIconified : {false, true}) {
        SCOPED_TRACE(isIconified ? "iconified" : "on the screen");
        recordFromStart(show);
        iconify(*mProgram, mScreen, isIconified);
        EXPECT_EQ(mProgram->waitForEnd(), 0) << mProgram->output();
        const double ended = steadySeconds() - mStarted;
        EXPECT_NE(mProgram->output().find("closing display"), std::string::npos)
            << mProgram->output();
        mProgram->listen(REACH);
        mRecording->stop();
        mHeard = mRecording->samples();
        EXPECT_LE(heardUpTo(SONG_SECONDS, show), ended);
    }
}

/** The sound server gets a signal: it ends, or hangs. */
class SoundOutage : public Sound, public testing::WithParamInterface<int> {
protected:
    /** Brings the server back; returns when it plays something. */
    void bringBack()
    {
        if (GetParam() == SIGSTOP)
            mServer.signal(SIGCONT);
        else
            mServer.restart();
        record();
        waitUntil([this] { return loudest(mRecording->samples()) >= NOISE_PEAK; });
    }
};

TEST_P(SoundOutage, IsSilenceInAShowThatGoesOn)
{
    const NoiseShow show(R"(loop="on")");
    recordFromStart(show);
    listenUntil(mStarted + 1.0);
    mServer.signal(GetParam());
    for (const char* key : {"Left", "space", "Right", "Left", "space"})
        mKeyboard->press(key);
    const Reading first = readDemoTime(steadySeconds() + LATER);
    const Reading second = readDemoTime(first.when + LATER);
    const double passed = second.when - first.when;
    EXPECT_NEAR(std::remainder(second.demo - first.demo - passed, SONG_SECONDS), 0.0, REACH);

    bringBack();
    const Reading reading = readDemoTime(steadySeconds() + LATER);
    end();
    EXPECT_NEAR(ahead(reading, show), 0.0, REACH);
}

TEST_P(SoundOutage, LetsTheShowEnd)
{
    const NoiseShow show(R"(start="9")");
    start(show);
    mServer.signal(GetParam());
    EXPECT_EQ(mProgram->waitForEnd(), 0) << mProgram->output();
    EXPECT_GT(steadySeconds() - mStarted, SONG_SECONDS - 9.0 - REACH);
}

INSTANTIATE_TEST_SUITE_P(Signals, SoundOutage, testing::Values(SIGKILL, SIGSTOP));

} // namespace
} // namespace zavex::test
