// Playing: demo time, the work of a frame, the keys.

#include "cadenza/cad_effect.h"
#include "cadenza/cad_gui.h"
#include "cadenza/cad_main.h"
#include "cadenza/cad_position_bar.h"
#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_event.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zavex::cadenza {

namespace {

constexpr float SEEK_STEP = 5.0f;      // seconds
constexpr float NEVER_SHOWN = -100.0f; // demo time of a position bar that was not called up

// A length in decimals times a rate may land just above the whole number of frames that it means.
constexpr double FRAME_TOLERANCE = 1e-3;

} // namespace

PictureSize letterbox(const PictureSize& window, float aspect)
{
    const float height = static_cast<float>(window.width) / aspect;
    PictureSize picture = window;
    // Compared before it is converted: a float may be too large for every integer.
    if (height >= static_cast<float>(window.height + 1))
        picture.width = static_cast<int>(static_cast<float>(window.height) * aspect);
    else
        picture.height = static_cast<int>(height);
    return {picture.width & ~1, picture.height & ~1};
}

void Cadenza::setTime(float t)
{
    t = std::max(t, 0.0f);
    if (!mNosound)
        t = seekMusic(t);
    setClock(t);
    mOsdTime = t;
}

float Cadenza::seekMusic(float t)
{
    mMusic.setTime(t);
    mLastTime = mMusic.getTime();
    mSongRounds = 0;
    mClockFollower.restart(double{mLastTime});
    return mLastTime;
}

void Cadenza::setClock(float t)
{
    mClock.setTime(t);
    mClockFloor = t;
    if (mPaused)
        mPausedTime = t;
}

float Cadenza::getTime()
{
    if (mDumpVideo != nullptr) {
        ++mDumpFrame;
        mSystemTime = static_cast<float>(double{mDumpStart} +
                                         static_cast<double>(mDumpFrame) / double{mDumpRate});
        return mSystemTime;
    }

    if (!mNosound && !mPaused)
        followMusic();
    mSystemTime = mPaused ? mPausedTime : readClock();
    mMusicTime = mNosound ? mSystemTime : mMusic.getTime();
    return mSystemTime;
}

float Cadenza::readClock()
{
    // A clock that was just set may read a rounding error less than before, which would be a jump
    // back in time to a trigger.
    mClockFloor = std::max(mClock.getTime(), mClockFloor);
    return mClockFloor;
}

void Cadenza::followMusic()
{
    const float clock = mClock.getTime();
    const double correction = mClockFollower.follow(double{clock}, double{mMusic.getTime()});
    if (correction == 0.0)
        return;

    const auto time = static_cast<float>(double{clock} + correction);
    const bool isSetBack = double{time} < double{mClockFloor} - MusicClockFollower::JUMP_SECONDS;
    if (isSetBack || correction > MusicClockFollower::JUMP_SECONDS)
        ZVX_LOG("log", "app", "The picture is moved from %.3f to %.3f s, where the song is\n",
                double{isSetBack ? mClockFloor : clock}, double{time});
    if (isSetBack) {
        setClock(time);
        mLastTime = time;
    } else {
        mClock.setTime(time);
    }
}

void Cadenza::onDraw()
{
    watchSong();
    getTime();
    drawEffects();
    mLastTime = mSystemTime;

    if (mDumpVideo != nullptr) {
        mDisplay->getScreenShot(mDumpImage);
        mDumpVideo->writeFrame();
    }
    if (mDumpVideo != nullptr || (mOsd && isOsdCalledUp(mMusicTime))) {
        mDisplay->resetStates();
        drawOsd();
    }
}

void Cadenza::onIdle()
{
    if (mDumpVideo != nullptr)
        return;
    watchSong();
    getTime();
}

void Cadenza::watchSong()
{
    if (mNosound || mMusic.isPaused())
        return;
    if (!mMusic.isPlaying())
        endShow(); // a song that loops has no end
    else if (const int rounds = mMusic.getRounds(); rounds != mSongRounds)
        startOver(rounds);
}

/** A song that loops has begun again by itself, and the picture goes with it. */
void Cadenza::startOver(int rounds)
{
    const float passed = static_cast<float>(rounds - mSongRounds) * mMusic.getSongLength();
    mSongRounds = rounds;
    mClockFollower.shift(-double{passed});
    setClock(std::max(mClock.getTime() - passed, 0.0f));
    mLastTime = 0.0f;
    hideOsd();
}

/** The way a show ends by itself: nothing was edited, nothing is saved. */
void Cadenza::endShow()
{
    // Nothing on the stack is destroyed, yet the screen must get its own mode back.
    mSaved = true;
    mGui.reset();
    closeDisplay();
    mMusic.close();
    std::exit(0);
}

void Cadenza::drawEffects()
{
    const float t = mSystemTime;
    for (Effect* effect : mEffect) {
        if (!effect->covers(t) || effect->getInactive())
            continue;
        const float local = t - effect->getStart();
        effect->update(local);
        effect->draw(local, t - mLastTime, local / (effect->getEnd() - effect->getStart()));
    }
}

bool Cadenza::isDumpComplete() const
{
    return mDumpLength > 0.0 && static_cast<double>(mDumpFrame) >=
                                    std::ceil(mDumpLength * double{mDumpRate} - FRAME_TOLERANCE);
}

void Cadenza::hideOsd()
{
    mOsdTime = NEVER_SHOWN;
}

void Cadenza::drawOsd()
{
    drawPositionBar(mOsdLocation, mStartTime / mSongLength, mMusicTime / mSongLength);
}

int Cadenza::onKeyDown(const display::KeyEvent& event)
{
    switch (event.key) {
        case display::KEY_ESC:
        case display::KEY_q: return QUIT;
        case display::KEY_LEFT: setTime(mSystemTime - SEEK_STEP); break;
        case display::KEY_RIGHT: setTime(mSystemTime + SEEK_STEP); break;
        case display::KEY_p: ZVX_LOG("log", "app", "%f\n", double{mSystemTime}); break;
        case display::KEY_SPACE: togglePause(); break;
        case display::KEY_t: pressStartKey(event); break;
        case display::KEY_m: toggleMute(); break;
        case display::KEY_o: pressOsdKey(event); break;
        default: break;
    }
    return WHATEVER;
}

void Cadenza::togglePause()
{
    mPaused = !mPaused;
    mPausedTime = mSystemTime;
    mOsdTime = mSystemTime;
    if (!mNosound)
        mMusic.pause(mPaused);
    if (!mPaused) {
        setClock(mPausedTime);
        mClockFollower.restart(double{mPausedTime});
    }
}

void Cadenza::toggleMute()
{
    mMuted = !mMuted;
    if (!mNosound)
        mMusic.mute(mMuted);
}

void Cadenza::pressStartKey(const display::KeyEvent& event)
{
    if (event.ctrl()) {
        mStartTime = mMusicTime;
    } else {
        if (event.alt())
            mStartTime = 0.0f;
        setTime(mStartTime);
    }
    mOsdTime = mSystemTime;
}

void Cadenza::pressOsdKey(const display::KeyEvent& event)
{
    if (event.ctrl()) {
        mOsd = !mOsd;
        return;
    }
    if (isOsdCalledUp(mSystemTime))
        mOsdLocation = (mOsdLocation + 1) % static_cast<int>(OSD_LOCATIONS.size());
    mOsdTime = mSystemTime;
}

void Cadenza::onResize(int /*width*/, int /*height*/)
{
    if (!mDumpImage.isNull())
        requireDumpSize();
    if (!(mAspect > 0.0f))
        return;

    const display::WindowMode& mode = mDisplay->getWindowMode();
    const PictureSize picture = letterbox({mode.width, mode.height}, mAspect);
    mDisplay->setActiveResolution(picture.width, picture.height);
}

} // namespace zavex::cadenza
