#pragma once

#include "am/am_file.h"

#include <memory>

namespace zavex::audio {

class AudioDevice;
class File;
class OutputStream;
class SampleSource;

} // namespace zavex::audio

namespace zavex::cadenza {

/**
 * The song: one stream, decoded from memory while it plays, whose position is the demo's time.
 *
 * Everything but `setup` and `isPaused` must only be called once `setup` has succeeded.
 */
class Music {
public:
    Music();
    Music(const Music&) = delete;
    Music& operator=(const Music&) = delete;
    ~Music();

    /**
     * Opens the sound device and the song, which then stands at its start and is silent.
     *
     * @param file  The whole song; must not be null. Kept as long as the song.
     * @return False when there is no sound device, which is logged, or when the file is no sound or
     *         cannot be played, which is printed on standard output.
     */
    bool setup(const am::File& file);

    /** Lets go of song and device; only `setup` may follow. */
    void close();

    /** Starts or goes on; at the end of the song call `setTime` first. */
    void play();

    /** True falls silent and keeps the position, false goes on there. */
    void pause(bool paused);

    /**
     * Whether the song goes on; false while paused, too. Also decodes ahead, so call it every
     * frame.
     */
    bool isPlaying();

    /** Whether `pause` holds the song, so that `isPlaying` says nothing about its end. */
    bool isPaused() const { return mPaused; }

    /** True lets the song start over at its end, without a gap, and never end. */
    void loop(bool looped);

    /** How often the song has started over since `setup` or `setTime`. */
    int getRounds() const;

    /** The position being heard, in seconds. */
    float getTime() const;

    /** Moves to `seconds`, cut to a whole sample frame and limited to 0..song length. */
    void setTime(float seconds);

    /** True plays at volume 0, false at volume 1. */
    void mute(bool muted);

    /** In seconds. */
    float getSongLength() const;

private:
    audio::OutputStream& stream() const;

    int mSongLength = 0; // sample frames
    // Released from the last to the first.
    std::shared_ptr<audio::AudioDevice> mDevice;
    std::shared_ptr<audio::OutputStream> mSound;
    std::shared_ptr<audio::SampleSource> mSource;
    std::shared_ptr<audio::File> mFile;
    int mSampleRate = 0; // sample frames per second
    bool mPaused = false;
};

} // namespace zavex::cadenza
