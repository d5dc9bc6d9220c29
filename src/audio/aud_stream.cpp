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

OutputStream::OutputStream(std::unique_ptr<Voice> voice, std::shared_ptr<SampleSource> source)
    : mVoice(std::move(voice)), mSource(std::move(source)),
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
    refill();
}

void OutputStream::stop()
{
    if (!mPlaying)
        return;
    getPosition();
    mPlaying = false;
    mVoice->pause();
}

bool OutputStream::isPlaying()
{
    if (!mPlaying)
        return false;
    if (getPosition() >= getLength()) {
        mPlaying = false;
        mVoice->pause();
        return false;
    }
    refill();
    return true;
}

void OutputStream::setPosition(std::int64_t frame)
{
    mVoice->clear();
    mSource->setPosition(frame);
    mQueueStart = mHeard = mSource->getPosition();
    if (mPlaying)
        refill();
}

std::int64_t OutputStream::getPosition()
{
    // Silent or run dry, the sound stands where it was last heard.
    if (!mPlaying || !mVoice->isRunning())
        return mHeard;
    const Voice::Progress progress = mVoice->getProgress();
    const auto heard = mQueueStart + static_cast<std::int64_t>(progress.taken - progress.pending);
    mHeard = std::max(mHeard, std::min(heard, getLength()));
    return mHeard;
}

void OutputStream::setVolume(float volume)
{
    mVoice->setVolume(std::clamp(volume, 0.0f, 1.0f));
}

std::int64_t OutputStream::getLength() const
{
    return mSource->getLength();
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

/** Behind the sound's end comes silence, so that the voice goes on until the end was heard. */
void OutputStream::queueBlock()
{
    const std::int64_t delivered = mSource->read(mDecoded);
    const auto filled = delivered * mSource->getFormat().channels;
    std::fill(mDecoded.begin() + filled, mDecoded.end(), 0.0f);
    mVoice->queue(mDecoded);
}

void OutputStream::unqueueBlocks(int count)
{
    mVoice->unqueue(count);
    mQueueStart += count * mBlockFrames;
}

std::shared_ptr<OutputStream> openSound(std::shared_ptr<AudioDevice> device,
                                        std::shared_ptr<SampleSource> source)
{
    auto voice = Voice::open(std::move(device), source->getFormat());
    if (!voice)
        return nullptr;
    return std::make_shared<OutputStream>(std::move(voice), std::move(source));
}

} // namespace zavex::audio
