#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace zavex::audio {

class AudioDevice;
class SampleSource;

/**
 * Plays a sample source on a device, decoding as it goes.
 *
 * `isPlaying` does the work: call it every frame. It keeps at least one second decoded ahead, so a
 * slow frame is not heard; after a pause of the program longer than that there is silence, and the
 * next call goes on where the sound broke off. Positions are sample frames of the source.
 *
 * Holds the device and the source; the source must be moved and read by the stream alone.
 */
class OutputStream {
public:
    /** Programs call `openSound`, which checks what is required here. */
    OutputStream(std::shared_ptr<AudioDevice> device, std::shared_ptr<SampleSource> source);
    ~OutputStream();
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;

    /**
     * Starts at the position, or goes on; nothing happens while playing.
     *
     * A stream that reached the end starts again after `setPosition`.
     */
    void play();

    /** Falls silent and keeps the position. */
    void stop();

    /**
     * Decodes ahead and tells whether the sound goes on. False after `stop`, and once the last
     * sample frame was heard; the stream is then stopped, its position at the length.
     */
    bool isPlaying();

    /** Moves to a sample frame, limited to 0..length; a playing stream plays on from there. */
    void setPosition(std::int64_t frame);

    /**
     * The sample frame being heard: what the device holds back on its way to the loudspeaker is
     * taken off. Does not run backwards while playing; equals what `setPosition` set until the
     * first sample frame from there is heard.
     */
    std::int64_t getPosition();

    /** @param volume  Amplitude factor, limited to 0..1. */
    void setVolume(float volume);

    /** Length in sample frames. */
    std::int64_t getLength() const;

private:
    static constexpr int BLOCK_COUNT = 12;
    static constexpr int BLOCKS_PER_SECOND = 8;

    void refill();
    void queueBlock(unsigned block);
    void unqueueBlocks(int count);
    void dropQueue();
    std::int64_t heardFrame();

    std::shared_ptr<AudioDevice> mDevice;
    std::shared_ptr<SampleSource> mSource;
    std::vector<float> mDecoded; // one block
    unsigned mVoice = 0;         // the sound library's player
    std::array<unsigned, BLOCK_COUNT> mBlocks = {};
    std::array<unsigned, BLOCK_COUNT> mFreeBlocks = {}; // the first `mFreeCount` count
    int mFreeCount = 0;
    std::int64_t mBlockFrames = 0; // sample frames of a block
    std::int64_t mQueueStart = 0;  // sample frame at which the queue begins
    std::int64_t mHeard = 0;       // sample frame last reported
    bool mPlaying = false;
};

} // namespace zavex::audio
