#include "audio/aud_device.h"
#include "audio/aud_source.h"
#include "audio/aud_stream.h"
#include "audio/memory_file.h"

#include "support/allocation_counter.h"
#include "support/log_capture.h"
#include "support/sound_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>

namespace zavex::audio {
namespace {

constexpr int SAMPLE_RATE = 44100;

std::shared_ptr<File> makeFile(test::SoundFormat format, double seconds)
{
    const auto samples = test::makeNoise(static_cast<std::size_t>(seconds * SAMPLE_RATE) * 2);
    return test::fileOf(test::encodeSound(format, 2, SAMPLE_RATE, samples));
}

/** Plays on the sound library's silent device, which runs at a real one's pace. */
class OutputStreamPlaying : public testing::Test {
protected:
    void SetUp() override { setenv("ALSOFT_DRIVERS", "null", 1); }

    /** The stream alone holds its device and source. */
    void open(std::shared_ptr<File> file)
    {
        stream = openSound(openDevice("autodetect"), openSampleSource(std::move(file)));
        ASSERT_NE(stream, nullptr);
    }

    void openSeconds(double seconds) { open(makeFile(test::SoundFormat::WAV, seconds)); }

    /** Polls as a show does until the position is `frame` or the sound ends; false on the latter.
     */
    bool playTo(std::int64_t frame)
    {
        while (stream->isPlaying()) {
            const std::int64_t position = stream->getPosition();
            EXPECT_GE(position, lastPosition) << "ran backwards";
            lastPosition = position;
            if (position >= frame)
                return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return false;
    }

    std::shared_ptr<OutputStream> stream;
    std::int64_t lastPosition = 0;
};

TEST_F(OutputStreamPlaying, RunsToTheEndAtItsPaceAndCanBeStartedAgain)
{
    openSeconds(0.3);
    EXPECT_FALSE(stream->isPlaying());
    const auto start = std::chrono::steady_clock::now();
    stream->play();
    EXPECT_FALSE(playTo(stream->getLength() + 1));
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;

    EXPECT_GE(took.count(), 0.3);
    EXPECT_EQ(stream->getPosition(), stream->getLength());
    EXPECT_FALSE(stream->isPlaying());

    stream->setPosition(0);
    EXPECT_FALSE(stream->isPlaying());
    stream->play();
    EXPECT_TRUE(stream->isPlaying());
    lastPosition = 0;
    EXPECT_TRUE(playTo(1000));
}

TEST_F(OutputStreamPlaying, StopKeepsThePositionAndPlayGoesOnThere)
{
    openSeconds(5.0);
    stream->play();
    ASSERT_TRUE(playTo(6000));
    stream->stop();
    const std::int64_t stopped = stream->getPosition();
    EXPECT_FALSE(stream->isPlaying());
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(stream->getPosition(), stopped);

    const double start = steadySeconds();
    stream->play();
    const std::int64_t position = stream->getPosition();
    EXPECT_LE(position, stopped + std::llround((steadySeconds() - start + 0.05) * SAMPLE_RATE));
    EXPECT_TRUE(playTo(stopped + 3000));
}

TEST_F(OutputStreamPlaying, SeeksStoppedAndPlayingWithinTheSound)
{
    openSeconds(2.0);
    const std::int64_t end = stream->getLength();
    EXPECT_EQ(end, 2 * SAMPLE_RATE);
    for (const std::int64_t frame :
         {std::int64_t{-1}, end / 2 - 1, end, end + 1, INT64_MAX / 8192}) {
        SCOPED_TRACE(frame);
        const std::int64_t reached = std::clamp(frame, std::int64_t{0}, end);
        stream->stop();
        stream->setPosition(frame);
        EXPECT_EQ(stream->getPosition(), reached);

        stream->setPosition(lastPosition = 0);
        stream->play();
        ASSERT_TRUE(playTo(100));
        stream->setPosition(frame);
        EXPECT_EQ(stream->getPosition(), reached) << "nothing from there can be heard yet";
        EXPECT_EQ(stream->isPlaying(), reached < stream->getLength());
    }
}

TEST_F(OutputStreamPlaying, OneSecondIsQueuedAheadAndADryQueueGoesOnWhereItBrokeOff)
{
    openSeconds(4.0);
    stream->play();
    ASSERT_TRUE(playTo(1000));
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));

    ASSERT_TRUE(stream->isPlaying()) << "taken for the end";
    const std::int64_t brokenOff = stream->getPosition();
    EXPECT_GT(brokenOff, 900 * SAMPLE_RATE / 1000) << "ran dry within the second";
    EXPECT_LT(brokenOff, 2 * SAMPLE_RATE) << "what was not played counts as heard";
    EXPECT_TRUE(playTo(2 * SAMPLE_RATE));
}

TEST_F(OutputStreamPlaying, ARepeatedSoundStartsOverAtItsEnd)
{
    openSeconds(0.3); // not a whole number of blocks, and less than what is queued
    stream->setRepeating(true);
    stream->play();
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(playTo(stream->getLength() / 2));
        EXPECT_EQ(stream->getRounds(), round);
        while (stream->getRounds() == round)
            ASSERT_TRUE(stream->isPlaying());
        lastPosition = 0;
    }
    stream->setPosition(stream->getLength());
    EXPECT_EQ(stream->getPosition(), stream->getLength());
    EXPECT_EQ(stream->getRounds(), 0);
}

TEST_F(OutputStreamPlaying, ADamagedSoundIsSilentToItsLength)
{
    auto bytes =
        test::encodeSound(test::SoundFormat::FLAC, 2, SAMPLE_RATE, test::makeNoise(SAMPLE_RATE));
    std::fill_n(bytes.begin() + std::ssize(bytes) / 2, 2000, std::byte{0});
    open(test::fileOf(std::move(bytes)));
    EXPECT_EQ(stream->getLength(), SAMPLE_RATE / 2);

    test::clearLog();
    stream->play();
    EXPECT_TRUE(playTo(SAMPLE_RATE / 2 - 1000));
    EXPECT_FALSE(playTo(SAMPLE_RATE / 2 + 1));
    EXPECT_EQ(test::countLogged("log", "The sound breaks off at sample frame"), 1);
}

TEST_F(OutputStreamPlaying, AllocatesNothingWhilePlaying)
{
    open(makeFile(test::SoundFormat::FLAC, 3.0));
    stream->play();
    ASSERT_TRUE(playTo(1000));
    const test::AllocationCounter counter;
    ASSERT_TRUE(playTo(SAMPLE_RATE / 2));
    EXPECT_EQ(counter.count(), 0u);
}

TEST_F(OutputStreamPlaying, SeveralStreamsShareADevice)
{
    const auto device = openDevice("autodetect");
    const auto first = openSound(device, openSampleSource(makeFile(test::SoundFormat::WAV, 0.2)));
    stream = openSound(device, openSampleSource(makeFile(test::SoundFormat::OGG, 0.2)));
    first->play();
    stream->play();
    EXPECT_FALSE(playTo(SAMPLE_RATE));
    EXPECT_FALSE(first->isPlaying());
}

TEST_F(OutputStreamPlaying, RefusesAUselessNumberOfChannelsAndAnUnknownDevice)
{
    const auto source = openSampleSource(test::fileOf(
        test::encodeSound(test::SoundFormat::WAV, 3, SAMPLE_RATE, test::makeNoise(300))));
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(openSound(openDevice("autodetect"), source), nullptr);
    EXPECT_EQ(openDevice("no such device"), nullptr);
}

} // namespace
} // namespace zavex::audio
