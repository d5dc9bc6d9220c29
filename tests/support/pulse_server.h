#pragma once

#include "support/process.h"
#include "support/temporary_folder.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <thread>
#include <vector>

namespace zavex::test {

/**
 * A sound server of our own with one sink, "cadenza", that plays at the pace of a real one and is
 * heard by nobody. Its folder lies under the system's temporary folder and goes with it.
 *
 * Programs started with `environment` play on it, and on nothing else.
 */
class PulseServer {
public:
    /** Returns when the server can be reached. Throws std::runtime_error when it does not start. */
    PulseServer() { start(); }

    Environment environment() const;

    /** Sends it a signal, such as SIGSTOP; it may end by that. */
    void signal(int number) const { mServer->signal(number); }

    /** Starts it again at the same place, what is left of it is killed; throws as the constructor.
     */
    void restart();

private:
    void start();

    TemporaryFolder mFolder;
    std::optional<Process> mServer;
};

/**
 * Records what the server's sink plays, from construction until `stop`.
 *
 * Running, it also keeps the sink awake at a short latency, as a sound card is; before the first
 * recording the sink takes nearly two seconds to notice a player.
 */
class PulseRecording {
public:
    static constexpr int SAMPLE_RATE = 44100; // sample frames per second

    explicit PulseRecording(const PulseServer& server);
    ~PulseRecording() { stop(); }
    PulseRecording(const PulseRecording&) = delete;
    PulseRecording& operator=(const PulseRecording&) = delete;

    void stop();

    /** Sample frames recorded by now; may be called while recording. */
    std::size_t frameCount() const;

    /** What was recorded on the left, full scale in -1..1. Call after `stop`. */
    std::vector<float> samples() const;

    /**
     * The sample frame that the sink played at `time`, seconds of std::chrono::steady_clock, as the
     * promptest delivery around that time tells. Call after `stop`.
     */
    std::int64_t frameAt(double time) const;

private:
    /** When what had been received by then ended. */
    struct Delivery {
        double time = 0.0; // steady seconds
        std::int64_t frame = 0;
    };

    void receive();

    Process mRecorder;
    std::atomic<bool> mStopping = false;
    mutable std::mutex mMutex;
    std::vector<std::byte> mBytes;
    std::vector<Delivery> mDeliveries; // oldest first
    std::thread mReceiver;
};

/** Where a piece of sound lies within another, and how alike they are there. */
struct SoundMatch {
    std::int64_t frame = 0;
    double correlation = 0.0; // in -1..1
};

/** Searches `piece` in `whole` at every start in [first, last), as far as it fits. */
SoundMatch findSound(std::span<const float> piece, std::span<const float> whole, std::int64_t first,
                     std::int64_t last);

} // namespace zavex::test
