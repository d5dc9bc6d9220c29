// Start-up and shut-down. What the configuration means is in cad_setup, what is written back in
// cad_save, the frames in cad_playback.

#include "cadenza/cad_main.h"

#include "am/am_atomicwrite.h"
#include "cadenza/cad_effect.h"
#include "cadenza/cad_factory.h"
#include "cadenza/cad_gui.h"
#include "common/zvx_process.h"
#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "vellum/vel_layout_stack.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <utility>

namespace zavex::cadenza {

namespace {

constexpr float NEW_EFFECT_END = 10.0f; // seconds
constexpr float SETTINGS_STEP = 0.01f;  // seconds to which the settings keep a time

} // namespace

Cadenza::Cadenza() : mExceptionsAtStart(std::uncaught_exceptions()) {}

Cadenza::~Cadenza()
{
    close();
    closeDisplay();
}

void Cadenza::close() noexcept
{
    saveOnce();
    mGui.reset();
    mEffect.clear();
}

void Cadenza::saveOnce() noexcept
{
    if (std::exchange(mSaved, true))
        return;
    // A run that failed holds no state worth keeping.
    if (!mSetup || std::uncaught_exceptions() != mExceptionsAtStart)
        return;
    try {
        saveXml();
    } catch (const std::exception& exception) {
        reportFailure("could not save the project: %s", exception.what());
        mSaveFailed = true;
    }
}

/** Between two requests to the screen nothing is half changed: edits make none in their midst. */
void Cadenza::onLost() noexcept
{
    if (mScriptsLoaded)
        saveOnce();
}

void Cadenza::addFactory(const std::string& type, EffectFactoryBase* factory)
{
    mFactory[type] = factory;
}

Effect* Cadenza::addEffect(const std::string& type, const std::string& name)
{
    const auto factory = mFactory.find(type);
    if (factory == mFactory.end()) {
        ZVX_LOG("log", "app", "Effect %s not found.", type.c_str());
        return nullptr;
    }

    std::unique_ptr<Effect> effect(factory->second->create());
    effect->setIdentity(type, name);
    effect->setSpan(0.0f, NEW_EFFECT_END);
    mEffect.push_back(effect.get());
    return effect.release();
}

void Cadenza::openDisplay(int width, int height, bool fullscreen, const std::string& title)
{
    if (width <= 0 || height <= 0)
        throw Exception("%s: display width and height must be positive, found %d x %d",
                        mSetupFilename.c_str(), width, height);

    display::WindowMode mode(title, width, height, fullscreen);
    mode.canResize = mDumpVideo == nullptr;
    mode.fpsMode = mFpsMode;

    mDisplay.reset(display::DisplayGL::create());
    attachToDisplay(mDisplay.get());
    if (mDumpVideo != nullptr) {
        mode.fpsMode = display::WindowMode::FPS_DELTA;
        mode.fps = mDumpRate;
        prepareDumpImage(width, height);
    }
    mDisplay->open(mode);
    mDisplay->setArchive(&mArchive);
}

void Cadenza::prepareDumpImage(int width, int height)
{
    if (height % 2 != 0)
        throw Exception("%s: the display height must be even to record, found %d",
                        mSetupFilename.c_str(), height);
    if (!mDumpImage.isNull())
        return;

    mDumpImage.assign(new am::ImageObject); // owned by the handle
    mDumpImage->resize(width, height);
    mDumpVideo->attach(mDumpImage);
}

void Cadenza::requireDumpSize() const
{
    const display::WindowMode& mode = mDisplay->getWindowMode();
    if (mode.width != mDumpImage->getWidth() || mode.height != mDumpImage->getHeight())
        throw Exception("%s: cannot record %d x %d pixels, the screen gave a window of %d x %d",
                        mSetupFilename.c_str(), mDumpImage->getWidth(), mDumpImage->getHeight(),
                        mode.width, mode.height);
}

void Cadenza::closeDisplay()
{
    attachToDisplay(nullptr);
    mDisplay.reset();
}

void Cadenza::openSound(const char* filename)
{
    if (mNosound)
        return;

    const am::File file = mArchive.readFile(filename, -1);
    if (file.isNull())
        throw Exception("Could not open the file '%s'!", filename);
    if (mMusic.setup(file))
        mMusic.loop(mLoop);
    else
        mNosound = true;
}

void Cadenza::openDevices()
{
    if (mFoundDisplay)
        openDisplay(mWidth, mHeight, mFullscreen, mTitle);
    if (!mNosound)
        openSound(mMusicFilename.c_str());
}

void Cadenza::run()
{
    if (!mSetup && !mSetupFilename.empty())
        throw Exception("%s: the root element is not 'demo', nothing is configured",
                        mSetupFilename.c_str());
    openDevices();
    if (!mFoundDisplay)
        return;

    loadScripts();
    if (!mScriptsLoaded)
        return;
    if (!mNosound) {
        mMusic.mute(true); // until the effects are set up and it is moved to the start
        mMusic.play();
        mSongLength = mMusic.getSongLength();
    }
    buildEditor();
    setupEffects();
    rehearseEffects();
    if (isQuitSignalled())
        return;
    std::printf("\n---\n");
    startTime();
    runFrames();
}

void Cadenza::loadScripts()
{
    for (Effect* effect : mEffect) {
        if (isQuitSignalled())
            return;
        effect->load(mDisplay.get());
    }
    mScriptsLoaded = true;
    removeLeftovers();
}

/** What killed saves left is of no use any more: the files themselves were read whole. */
void Cadenza::removeLeftovers() const
{
    if (!mFolderLock.isHeld())
        return;
    am::removeLeftovers(LOCAL_SETUP);
    for (const Effect* effect : mEffect)
        am::removeLeftovers(effect->getFilename());
}

void Cadenza::buildEditor()
{
    std::printf("\nLoading gui\n");
    mGui = std::make_unique<Gui>(mDisplay.get(), this);
    mGui->attachToDisplay(mDisplay.get());
    mGui->setup();

    vellum::LayoutStack* const timeline = mGui->getTimeline();
    if (!timeline)
        return;
    for (Effect* effect : mEffect) {
        timeline->addControl(effect);
        effect->setupControl();
        timeline->recalculate(true);
    }
}

void Cadenza::setupEffects()
{
    for (Effect* effect : mEffect) {
        if (isQuitSignalled())
            return;
        effect->setup();
    }
}

/** A recording need not: it waits for each frame as long as it takes. */
void Cadenza::rehearseEffects()
{
    if (mDumpVideo != nullptr)
        return;
    for (Effect* effect : mEffect) {
        if (isQuitSignalled())
            return;
        if (willShow(*effect))
            effect->rehearse();
    }
    mDisplay->resetStates();
    display::DisplayObsolete::clear({0.0f, 0.0f, 0.0f, 0.0f}, 1.0f);
}

bool Cadenza::willShow(Effect& effect) const
{
    const float start = std::max(effect.getStart(), 0.0f);
    const float end = std::min(effect.getEnd(), mSongLength);
    return start < end && !effect.getInactive();
}

void Cadenza::startTime()
{
    float t = std::max(mStartTime, 0.0f);
    if (!mNosound) {
        mMusic.mute(mMuted);
        t = seekMusic(limitToSong(t));
    }
    setClock(t);
    hideOsd();

    if (mDumpVideo != nullptr) {
        mDumpStart = t;
        mDumpFrame = 0;
        mLastTime = t;
    }
}

/** A show that starts at the song's end, or behind it, would be over at once. */
float Cadenza::limitToSong(float start) const
{
    if (start < mSongLength - SETTINGS_STEP)
        return start;
    ZVX_LOG("log", "app",
            "%s: the start time %.2f is not before the end of the song at %.2f s, taken as 0\n",
            mSetupFilename.c_str(), double{start}, double{mSongLength});
    return 0.0f;
}

void Cadenza::runFrames()
{
    if (mDumpVideo == nullptr) {
        mDisplay->updateBlocking();
        return;
    }
    while (!isDumpComplete() && mDisplay->update()) {
    }
    ZVX_LOG("log", "app", "Dumped %lld frames, %d lost\n", static_cast<long long>(mDumpFrame),
            mDumpVideo->getLostFrames());
}

} // namespace zavex::cadenza
