#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>

namespace zavex::audio {

class AudioDevice;
struct SampleFormat;

/**
 * The sound library's player: plays a queue of blocks of samples, each as long as the others.
 *
 * It runs while there are blocks and halts by itself when the last one is played out. Holds its
 * device, and is lost with that: it then plays nothing any more, and another has to be opened.
 */
class Voice {
public:
    static constexpr int BLOCK_COUNT = 12;

    /** How far the queue has come. */
    struct Progress {
        double taken = 0.0;   // sample frames the device took, from the start of the queue
        double pending = 0.0; // sample frames of these that are not heard yet
    };

    /** Null when the device cannot play so many channels. */
    static std::unique_ptr<Voice> open(std::shared_ptr<AudioDevice> device,
                                       const SampleFormat& format);

    ~Voice();
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;

    /** Copies interleaved samples to the end of the queue, which must not be full. */
    void queue(std::span<const float> samples);

    /** Takes the first `count` blocks out of the queue; each must have been played. */
    void unqueue(int count);

    /** Halts and empties the queue. */
    void clear();

    void start();

    /** Halts within the queue; `start` goes on there. */
    void pause();

    /** @param volume  Amplitude factor in 0..1. */
    void setVolume(float volume);

    bool isLost() const;

    bool isRunning() const;

    /** Whether everything in the queue was played. */
    bool isPlayedOut() const;

    /** Blocks at the start of the queue that were played; all of them once it is played out. */
    int getPlayedCount() const;

    int getQueuedCount() const { return BLOCK_COUNT - mFreeCount; }

    Progress getProgress() const;

private:
    Voice(std::shared_ptr<AudioDevice> device, const SampleFormat& format, int libraryFormat);

    std::shared_ptr<AudioDevice> mDevice;
    int mOpening = 0;       // of the device
    double mPeriod = 0.0;   // seconds of sound that the device takes at a time
    int mSampleRate = 0;    // sample frames per second
    int mLibraryFormat = 0; // the sound library's name of the sample format
    unsigned mSource = 0;   // the sound library's names, 0 when there are none
    std::array<unsigned, BLOCK_COUNT> mFreeBlocks = {}; // the first `mFreeCount` count
    int mFreeCount = 0;
};

} // namespace zavex::audio
