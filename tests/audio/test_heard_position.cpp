#include "audio/aud_device.h"
#include "audio/aud_source.h"
#include "audio/aud_stream.h"
#include "audio/memory_file.h"

#include "support/pulse_server.h"
#include "support/sound_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <thread>
#include <utility>

namespace zavex::audio {
namespace {

constexpr int SAMPLE_RATE = test::PulseRecording::SAMPLE_RATE;

/** What the stream said at a time. */
struct Report {
    double time = 0.0; // steady seconds
    std::int64_t position = 0;
};

/** A sound playing on a sound server, and everything that the server played. */
class HeardPosition : public testing::Test {
protected:
    void SetUp() override
    {
        server.useHere();
        mono = test::makeNoise(SAMPLE_RATE * 12);
        std::vector<float> stereo;
        for (const float sample : mono)
            stereo.insert(stereo.end(), {sample, sample});
        stream = openSound(openDevice("autodetect"),
                           openSampleSource(test::fileOf(
                               test::encodeSound(test::SoundFormat::WAV, 2, SAMPLE_RATE, stereo))));
        ASSERT_NE(stream, nullptr);
    }

    /** Polls as a show does and returns the last report whose time is certain. */
    Report playFor(double seconds)
    {
        constexpr double certain = 0.002; // seconds that a report may take
        const double end = test::steadySeconds() + seconds;
        Report report;
        while (test::steadySeconds() < end || report.time == 0.0) {
            EXPECT_TRUE(stream->isPlaying());
            const double before = test::steadySeconds();
            const std::int64_t position = stream->getPosition();
            if (test::steadySeconds() - before < certain)
                report = {before, position};
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return report;
    }

    /** Seconds by which `report` was ahead of what the recording holds at that time. */
    double reportedAhead(const test::PulseRecording& recording, const Report& report) const
    {
        const std::vector<float> played = recording.samples();
        const std::int64_t at = recording.frameAt(report.time);
        const std::span<const float> piece(played.data() + at, SAMPLE_RATE / 20);
        const std::int64_t reach = SAMPLE_RATE / 2;
        const test::SoundMatch match =
            test::findSound(piece, mono, report.position - reach, report.position + reach);
        EXPECT_GT(match.correlation, 0.4) << "not found near frame " << report.position;
        return static_cast<double>(report.position - match.frame) / SAMPLE_RATE;
    }

    test::PulseServer server;
    std::vector<float> mono;
    std::shared_ptr<OutputStream> stream;
};

TEST_F(HeardPosition, IsWhatTheSoundServerPlays)
{
    test::PulseRecording recording(server);
    stream->play();
    const Report afterStart = playFor(3.0);
    stream->setPosition(SAMPLE_RATE * 8);
    const Report afterSeek = playFor(1.0);
    stream->stop();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    stream->play();
    const Report afterPause = playFor(1.0);
    stream->setVolume(0.0f);
    const Report muted = playFor(0.5);
    playFor(0.2);
    recording.stop();

    // How near it is depends on what else the machine does; that is measured elsewhere.
    for (const auto& [name, report] : {
             std::pair{"apart_start_ms", afterStart},
             {"apart_seek_ms",  afterSeek },
             {"apart_pause_ms", afterPause}
    })
        RecordProperty(name, std::to_string(std::abs(reportedAhead(recording, report)) * 1000.0));
    const std::vector<float> played = recording.samples();
    EXPECT_EQ(played[static_cast<std::size_t>(recording.frameAt(muted.time))], 0.0f);
}

} // namespace
} // namespace zavex::audio
