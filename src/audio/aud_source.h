#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace zavex::audio {

class File;

/** The shape of decoded sound. A sample frame is one sample of every channel. */
struct SampleFormat {
    int channels = 0;
    int sampleRate = 0; // sample frames per second
};

/**
 * Decoded sound: reads a file piece by piece from a position that can be moved anywhere.
 *
 * Holds its file. Samples are interleaved floats, full scale in -1..1.
 */
class SampleSource {
public:
    virtual ~SampleSource() = default;
    SampleSource(const SampleSource&) = delete;
    SampleSource& operator=(const SampleSource&) = delete;

    virtual const SampleFormat& getFormat() const = 0;

    /** Length in sample frames; damage before the end may leave fewer to be read. */
    virtual std::int64_t getLength() const = 0;

    /** The sample frame that `read` delivers next. */
    virtual std::int64_t getPosition() const = 0;

    /**
     * Moves to a sample frame, limited to 0..length.
     *
     * A damaged file may refuse: this is logged, and the source then behaves as at its end until
     * it is moved to a place that can be reached.
     */
    virtual void setPosition(std::int64_t frame) = 0;

    /**
     * Decodes the next sample frames; allocates nothing.
     *
     * @param samples  Receives whole sample frames: its size must be a multiple of the channels.
     * @return How many sample frames were delivered; fewer than asked only at the end of the data.
     */
    virtual std::int64_t read(std::span<float> samples) = 0;

protected:
    SampleSource() = default;
};

/**
 * Opens a sound, its format found by looking at the bytes: WAV, FLAC, Ogg Vorbis, Opus, MP3 and
 * what else libsndfile knows. Null when the bytes are no sound, or state a sample rate or a number
 * of channels that cannot be.
 *
 * What the file states of its length is not believed: the end is looked for, and where it is not
 * there, the length is that of what can be decoded. Of an Ogg file nothing is played behind the
 * first page that is damaged. Both are logged.
 */
std::shared_ptr<SampleSource> openSampleSource(std::shared_ptr<File> file);

} // namespace zavex::audio
