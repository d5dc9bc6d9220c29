#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace zavex::audio {

class AudioDevice;
class SampleSource;
class Voice;

/**
 * Plays a sample source on a device, decoding as it goes.
 *
 * `isPlaying` does the work: call it every frame. It keeps at least one second decoded ahead, so a
 * slow frame is not heard; after a pause of the program longer than that there is silence, and the
 * next call goes on where the sound broke off. Positions are sample frames of the source.
 *
 * While the device is gone, or takes no sound, the stream is silent and its position goes on by a
 * time of its own, to the end of the sound if need be; once the device plays again, the sound goes
 * on at the position reached. No call waits for the device.
 *
 * Holds the device and the source; the source must be moved and read by the stream alone.
 */
class OutputStream {
public:
    /** @param voice  Of the device, fit for the source. Programs call `openSound`, which finds one.
     */
    OutputStream(std::shared_ptr<AudioDevice> device, std::unique_ptr<Voice> voice,
                 std::shared_ptr<SampleSource> source);
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
     * taken off. Does not run backwards while playing, but where a repeated sound starts over;
     * equals what `setPosition` set until the first sample frame from there is heard.
     */
    std::int64_t getPosition();

    /**
     * True lets the sound start over at its end, sample behind sample, and never end. Call it
     * before `play`; a sound of no length is not repeated.
     */
    void setRepeating(bool repeating) { mRepeating = repeating; }

    /** How often the sound that is heard has started over since `setPosition`. */
    std::int64_t getRounds();

    /** @param volume  Amplitude factor, limited to 0..1. */
    void setVolume(float volume);

    /** Length in sample frames. */
    std::int64_t getLength() const;

private:
    void followDevice();
    void leaveDevice();
    void returnToDevice();
    void goOnAlone(double since);
    std::int64_t positionAlone() const;
    std::int64_t updateHeard();
    bool isRepeated() const { return mRepeating && getLength() > 0; }
    std::int64_t roundsBefore(std::int64_t frame) const;
    void moveQueue(std::int64_t frame);
    void refill();
    void queueBlock();
    void decode(std::int64_t first, std::span<float> samples);
    void unqueueBlocks(int count);

    std::shared_ptr<AudioDevice> mDevice;
    std::unique_ptr<Voice> mVoice;
    std::shared_ptr<SampleSource> mSource;
    std::int64_t mBlockFrames = 0; // sample frames of a block
    std::vector<float> mDecoded;   // one block
    // Sample frames; those of a sound that starts over are counted on behind its length.
    std::int64_t mQueueStart = 0; // at which the voice's queue begins
    std::int64_t mHeard = 0;      // last reported
    std::int64_t mStart = 0;      // of the last `play` or `setPosition`
    bool mPlaying = false;
    bool mRepeating = false;
    float mVolume = 1.0f;         // amplitude factor
    bool mAlone = false;          // without the device
    std::int64_t mAloneStart = 0; // sample frame, so counted, at which it stood ...
    double mAloneSince = 0.0;     // ... at this time, steady seconds
};

/**
 * Opens a stream that plays `source` on `device`; it stands at the source's first sample frame.
 *
 * The stream holds both. Null when the device cannot play the source's number of channels.
 */
std::shared_ptr<OutputStream> openSound(std::shared_ptr<AudioDevice> device,
                                        std::shared_ptr<SampleSource> source);

} // namespace zavex::audio
