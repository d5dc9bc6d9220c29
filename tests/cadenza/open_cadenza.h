#pragma once

#include "cadenza/cad_gui.h"
#include "cadenza/cad_main.h"

namespace zavex::test {

/** The application with its state in view. */
class OpenCadenza : public cadenza::Cadenza {
public:
    using Cadenza::mAspect;
    using Cadenza::mDisplay;
    using Cadenza::mDumpRate;
    using Cadenza::mDumpVideo;
    using Cadenza::mEffect;
    using Cadenza::mFoundDisplay;
    using Cadenza::mFpsMode;
    using Cadenza::mFullscreen;
    using Cadenza::mGui;
    using Cadenza::mHeight;
    using Cadenza::mLogConsole;
    using Cadenza::mLoop;
    using Cadenza::mMusicFilename;
    using Cadenza::mMusicTime;
    using Cadenza::mMuted;
    using Cadenza::mNosound;
    using Cadenza::mOsd;
    using Cadenza::mOsdDelay;
    using Cadenza::mOsdLocation;
    using Cadenza::mOsdTime;
    using Cadenza::mPaused;
    using Cadenza::mSetup;
    using Cadenza::mSongLength;
    using Cadenza::mStartTime;
    using Cadenza::mSystemTime;
    using Cadenza::mTitle;
    using Cadenza::mWidth;
};

} // namespace zavex::test
