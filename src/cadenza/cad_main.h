#pragma once

#include "am/am.h"
#include "am/am_diskfile.h"
#include "am/am_image.h"
#include "am/am_videofile.h"
#include "cadenza/cad_clock_follower.h"
#include "cadenza/cad_document.h"
#include "cadenza/cad_music.h"
#include "display/dis_clock.h"
#include "display/dis_listener.h"
#include "display/dis_windowmode.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zavex::am {
class SaveSet;
}

namespace zavex::display {
class DisplayGL;
}

namespace zavex::xml {
class XmlParser;
class XmlTag;
} // namespace zavex::xml

namespace zavex::cadenza {

class Effect;
class EffectFactoryBase;
class Gui;

/** The size in pixels of a picture. */
struct PictureSize {
    int width = 0;
    int height = 0;

    bool operator==(const PictureSize&) const = default;
};

/**
 * The largest picture of this aspect ratio (width / height, positive) that fits into a window, its
 * sides rounded down to even numbers.
 */
PictureSize letterbox(const PictureSize& window, float aspect);

/**
 * The application: reads the configuration, opens window and sound, keeps the effects, turns song
 * and clock into demo time and draws every effect whose span covers it.
 *
 * In order: construct, `setup`, `addFactory` and `addEffect`, `run`, `close`, destroy. Times are
 * demo seconds. Factories are not owned, nor are effects, until `run` adds them to the editor's
 * timeline, which owns its bars. A program that has to know which are left watches them
 * (`vellum::ControlWatch`) and releases those after `close`.
 *
 * While music plays, the clock follows the position that is heard; what sets it by a jump is
 * logged. At the end of a looping song the song starts again without a gap and demo time goes back
 * to 0. While the window is iconified nothing is drawn, and the song goes on to its end.
 *
 * A recording takes the frame n = 1, 2, ... at the start time + n / rate, writes it, and lasts
 * until its length is reached or a quit key is pressed; seeking and pausing do not change its time.
 */
class Cadenza : public display::Listener {
public:
    Cadenza();
    Cadenza(const Cadenza&) = delete;
    Cadenza(Cadenza&&) = delete;
    Cadenza& operator=(const Cadenza&) = delete;
    Cadenza& operator=(Cadenza&&) = delete;

    /** As `close`, then deletes the display. */
    ~Cadenza() override;

    /**
     * Reads "setup.local.xml" or, without one, "setup.xml" from the working directory. Does
     * nothing when that was done before, and configures nothing when the root element is not
     * "demo".
     *
     * Throws `Exception` when there is neither file, when it cannot be read or is malformed, or
     * when the recording that it asks for is impossible.
     *
     * Takes the working directory for this program; where another has it, that is said on standard
     * error and this one saves nothing.
     *
     * @param aspect  Width / height of the picture; at most 0 takes the whole window.
     */
    void setup(float aspect);

    /** Registers or replaces the factory of a type; not owned. */
    void addFactory(const std::string& type, EffectFactoryBase* factory);

    /**
     * Creates an effect and puts it behind those that are there: they are drawn in this order. Its
     * span is 0 to 10 until its script is loaded.
     *
     * @return Null, with a line in the log, when the type has no factory. Owned by the caller until
     *         it is on the timeline; must live until `close`.
     */
    Effect* addEffect(const std::string& type, const std::string& name);

    /**
     * Opens the window; that of a recording cannot be resized. Throws `Exception` when there is no
     * screen, the size is not positive, or a recording cannot have this size.
     */
    void openDisplay(int width, int height, bool fullscreen, const std::string& title);

    /**
     * Opens the song, unless sound is switched off; sound that cannot be played is switched off.
     *
     * Throws `Exception` when the file is in no archive.
     */
    void openSound(const char* filename);

    /** Opens what the configuration asks for. */
    void openDevices();

    /**
     * Opens the devices, loads the scripts, builds the editor, sets the effects up and plays until
     * the program is asked to quit, by a signal as early as while it loads. Returns at once when
     * the configuration has no display section.
     *
     * Throws `Exception` when anything that is needed is missing or malformed.
     */
    void run();

    /**
     * Writes the settings into "setup.local.xml", if there is one, and every effect's script file,
     * if the scripts were loaded.
     *
     * Nothing at all is saved while "setup.local.xml" is malformed or its root element is not
     * "demo": all files stay as they are. All files are written before the first of them is put in
     * place. One that cannot be written is said in the log and on standard error, with its name and
     * the reason, keeps what it holds, and does not keep the others from being saved. What becomes
     * of files that others changed, and of what would be lost, is said at `DocumentFile`.
     */
    void saveXml();

    /** Whether a file of the project could not be saved. */
    bool hasSaveFailed() const { return mSaveFailed; }

    /**
     * Ends the run: saves the project, unless an exception is under way or the configuration was
     * not read, and destroys the editor with the effects on its timeline. Forgets all effects. Does
     * not throw; does nothing the second time.
     */
    void close() noexcept;

    /** Moves song and clock; lands on the nearest sample before `t`, in 0..length of the song. */
    void setTime(float t);

    /** Takes the time of the next frame and returns it; while recording, time moves on. */
    float getTime();

    float getDemoLength() const { return mSongLength; }
    float getSystemTime() const { return mSystemTime; }
    float getStartTime() const { return mStartTime; }

    /** Draws the position bar over the whole picture. */
    void drawOsd();

    int onKeyDown(const display::KeyEvent& event) override;
    void onResize(int width, int height) override;
    void onDraw() override;
    void onIdle() override;

    /** Saves the project as `close` does, if the scripts were loaded. */
    void onLost() noexcept override;

protected:
    std::map<std::string, EffectFactoryBase*> mFactory; // by type; not owned
    std::vector<Effect*> mEffect;                       // in drawing order
    std::unique_ptr<display::DisplayGL> mDisplay;
    display::WindowMode::FpsMode mFpsMode = display::WindowMode::FPS_VARIABLE;
    display::Clock mClock;
    std::unique_ptr<Gui> mGui; // null before `run`; owns the effects on its timeline
    bool mNosound = false;     // time comes from the clock alone
    bool mMuted = false;
    Music mMusic;
    float mSongLength = 500.0f; // seconds; this long without music
    std::string mMusicFilename;
    bool mSetup = false;        // the configuration was read completely
    bool mFoundDisplay = false; // the configuration has a display section
    bool mLoop = false;
    bool mPaused = false;
    // Seconds; also the start marker of the position bar. Where it is not before the song's end,
    // the show starts at 0, and it stays as the author set it until he sets another.
    float mStartTime = 0.0f;
    float mLastTime = 0.0f;   // demo time of the frame before, seconds
    float mMusicTime = 0.0f;  // position of the song, seconds
    float mSystemTime = 0.0f; // demo time, seconds
    float mPausedTime = 0.0f; // demo time held while paused, seconds
    bool mFullscreen = false;
    float mAspect = 0.0f; // width / height of the picture; at most 0: the whole window
    std::string mTitle;
    int mHeight = 0;          // pixels
    int mWidth = 0;           // pixels
    bool mOsd = true;         // the position bar may be shown
    int mOsdLocation = 0;     // index of one of `OSD_LOCATIONS`
    float mOsdDelay = 2.0f;   // seconds that the bar stays
    float mOsdTime = -100.0f; // demo time at which the bar was called up, seconds
    am::ArchiveManager mArchive;
    std::unique_ptr<am::VideoFile> mDumpVideo; // null when playing in real time
    am::Image mDumpImage;                      // receives each recorded frame
    float mDumpRate = 60.0f;                   // frames per second
    bool mLogConsole = false;

private:
    static constexpr const char* LOCAL_SETUP = "setup.local.xml";

    void applyTime(const xml::XmlTag& tag);
    void applyArchive(const xml::XmlTag& tag);
    void applyDisplay(const xml::XmlTag& tag);
    void applyOsd(const xml::XmlTag& tag);
    void applyDump(const xml::XmlTag& tag);
    void announceDump() const;
    void applyMusic(const xml::XmlTag& tag);
    void applyLog(const xml::XmlTag& tag);
    void applySections(const xml::XmlParser& parser);

    void prepareDumpImage(int width, int height);
    void requireDumpSize() const;
    void closeDisplay();
    void loadScripts();
    void removeLeftovers() const;
    void buildEditor();
    void setupEffects();
    void rehearseEffects();
    bool willShow(Effect& effect) const;
    void startTime();
    float limitToSong(float start) const;
    void runFrames();

    void saveOnce() noexcept;
    void takeFolder();
    bool saveSettings(am::SaveSet& set);
    void storeSettings(xml::XmlParser& parser) const;

    float seekMusic(float t);
    void setClock(float t);
    float readClock();
    void followMusic();
    void watchSong();
    void startOver(int rounds);
    [[noreturn]] void endShow();
    void drawEffects();
    bool isDumpComplete() const;
    bool isOsdCalledUp(float now) const { return mOsdTime + mOsdDelay > now; }
    void hideOsd();
    void togglePause();
    void toggleMute();
    void pressStartKey(const display::KeyEvent& event);
    void pressOsdKey(const display::KeyEvent& event);

    std::string mSetupFilename;  // the configuration that was read; empty before
    DocumentFile mSettings;      // LOCAL_SETUP
    am::FolderLock mFolderLock;  // on the working directory
    bool mFolderIsOurs = true;   // no other program saves there
    bool mSaveFailed = false;    // a file could not be saved
    bool mScriptsLoaded = false; // the effects hold what their files hold
    MusicClockFollower mClockFollower;
    int mSongRounds = 0;         // how often the song has started over since it was moved
    float mClockFloor = 0.0f;    // the clock's latest time since it was moved, seconds
    float mDumpStart = 0.0f;     // demo time at which the recording begins, seconds
    double mDumpLength = 0.0;    // seconds; at most 0: until a quit key
    std::int64_t mDumpFrame = 0; // frames recorded
    int mExceptionsAtStart = 0;  // under way when this object was made
    bool mSaved = false;         // or is not to be saved any more
};

} // namespace zavex::cadenza
