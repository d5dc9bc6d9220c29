#include "audio/aud_stream.h"

#include "audio/aud_device.h"
#include "audio/aud_source.h"
#include "audio/aud_voice.h"

#include <algorithm>
#include <utility>

namespace zavex::audio {

namespace {

// Twelve blocks of an eighth of a second: eleven are left when one is being played.
constexpr int BLOCKS_PER_SECOND = 8;

} // namespace

OutputStream::OutputStream(std::shared_ptr<AudioDevice> device, std::unique_ptr<Voice> voice,
                           std::shared_ptr<SampleSource> source)
    : mDevice(std::move(device)), mVoice(std::move(voice)), mSource(std::move(source)),
      mBlockFrames(std::max(1, mSource->getFormat().sampleRate / BLOCKS_PER_SECOND)),
      mDecoded(static_cast<std::size_t>(mBlockFrames * mSource->getFormat().channels))
{
    setPosition(0);
}

OutputStream::~OutputStream() = default;

void OutputStream::play()
{
    if (mPlaying)
        return;
    mPlaying = true;
    mStart = mHeard;
    goOnAlone(steadySeconds());
    followDevice();
    if (!mAlone)
        refill();
}

void OutputStream::stop()
{
    if (!mPlaying)
        return;
    updateHeard();
    mPlaying = false;
    mVoice->pause();
}

bool OutputStream::isPlaying()
{
    if (!mPlaying)
        return false;
    followDevice();
    if (updateHeard() >= getLength() && !isRepeated()) {
        mPlaying = false;
        mVoice->pause();
        return false;
    }
    if (!mAlone)
        refill();
    return true;
}

void OutputStream::setPosition(std::int64_t frame)
{
    moveQueue(std::min(frame, getLength()));
    mHeard = mStart = mQueueStart;
    goOnAlone(steadySeconds());
}

std::int64_t OutputStream::getPosition()
{
    const std::int64_t heard = updateHeard();
    return heard - roundsBefore(heard) * getLength();
}

std::int64_t OutputStream::getRounds()
{
    return roundsBefore(updateHeard());
}

/** How often the sound has started over before `frame`; its length is still its end. */
std::int64_t OutputStream::roundsBefore(std::int64_t frame) const
{
    return isRepeated() && frame > 0 ? (frame - 1) / getLength() : 0;
}

std::int64_t OutputStream::updateHeard()
{
    // Silent or run dry, the sound stands where it was last heard.
    if (!mPlaying || (!mAlone && !mVoice->isRunning()))
        return mHeard;
    std::int64_t heard = 0;
    if (mAlone) {
        heard = positionAlone();
    } else {
        const Voice::Progress progress = mVoice->getProgress();
        heard = mQueueStart + static_cast<std::int64_t>(progress.taken - progress.pending);
    }
    mHeard = std::max(mHeard, isRepeated() ? heard : std::min(heard, getLength()));
    return mHeard;
}

void OutputStream::setVolume(float volume)
{
    mVolume = std::clamp(volume, 0.0f, 1.0f);
    mVoice->setVolume(mVolume);
}

std::int64_t OutputStream::getLength() const
{
    return mSource->getLength();
}

/** Parts from a device that plays nothing, and comes back to it when it does. */
void OutputStream::followDevice()
{
    mDevice->watch();
    const AudioDevice::State state = mDevice->getState();
    const bool isAway = state == AudioDevice::State::STALLED || mVoice->isLost();
    if (isAway && !mAlone)
        leaveDevice();
    else if (mAlone && state == AudioDevice::State::PLAYING)
        returnToDevice();
}

void OutputStream::leaveDevice()
{
    // Until a stall is noticed the sound stands still. Whoever heard it goes on meanwhile; whoever
    // waits for the first of it does not.
    const double missed = mHeard > mStart ? mDevice->getStallSeconds() : 0.0;
    mVoice->clear(); // or it would be heard when the device goes on, and out of place
    mAlone = true;
    goOnAlone(steadySeconds() - missed);
}

void OutputStream::returnToDevice()
{
    if (mVoice->isLost()) {
        auto voice = Voice::open(mDevice, mSource->getFormat());
        if (!voice)
            return;
        mVoice = std::move(voice);
        mVoice->setVolume(mVolume);
    }
    const std::int64_t heard = updateHeard();
    mAlone = false;
    moveQueue(heard + static_cast<std::int64_t>(mVoice->getProgress().pending));
}

/** Without the device the sound has gone on since then, from where it stands. */
void OutputStream::goOnAlone(double since)
{
    mAloneStart = mHeard;
    mAloneSince = since;
}

std::int64_t OutputStream::positionAlone() const
{
    const double seconds = steadySeconds() - mAloneSince;
    return mAloneStart + static_cast<std::int64_t>(seconds * mSource->getFormat().sampleRate);
}

void OutputStream::moveQueue(std::int64_t frame)
{
    mVoice->clear();
    const std::int64_t before = roundsBefore(frame) * getLength();
    mSource->setPosition(frame - before);
    mQueueStart = before + mSource->getPosition();
    if (mPlaying && !mAlone)
        refill();
}

void OutputStream::refill()
{
    unqueueBlocks(mVoice->getPlayedCount());
    const int pending = mVoice->getQueuedCount();
    while (mVoice->getQueuedCount() < Voice::BLOCK_COUNT)
        queueBlock();
    if (mVoice->isRunning())
        return;
    // A voice that played out while the blocks were decoded counts those as played, too.
    if (mVoice->isPlayedOut())
        unqueueBlocks(pending);
    mVoice->start();
}

void OutputStream::queueBlock()
{
    const std::int64_t end = mQueueStart + mVoice->getQueuedCount() * mBlockFrames;
    decode(end, mDecoded);
    mVoice->queue(mDecoded);
}

/**
 * Fills `samples` with the sound from `first` on, where the source stands unless the sound starts
 * over there. Behind its end comes silence, so that the voice goes on until the end was heard.
 */
void OutputStream::decode(std::int64_t first, std::span<float> samples)
{
    const std::int64_t channels = mSource->getFormat().channels;
    while (!samples.empty()) {
        std::int64_t count = std::ssize(samples) / channels;
        if (isRepeated()) {
            if (first % getLength() == 0)
                mSource->setPosition(0);
            count = std::min(count, getLength() - first % getLength());
        }
        const auto part = samples.first(static_cast<std::size_t>(count * channels));
        const std::int64_t delivered = mSource->read(part);
        std::fill(part.begin() + delivered * channels, part.end(), 0.0f);
        samples = samples.subspan(part.size());
        first += count;
    }
}

void OutputStream::unqueueBlocks(int count)
{
    mVoice->unqueue(count);
    mQueueStart += count * mBlockFrames;
}

std::shared_ptr<OutputStream> openSound(std::shared_ptr<AudioDevice> device,
                                        std::shared_ptr<SampleSource> source)
{
    auto voice = Voice::open(device, source->getFormat());
    if (!voice)
        return nullptr;
    return std::make_shared<OutputStream>(std::move(device), std::move(voice), std::move(source));
}

} // namespace zavex::audio
