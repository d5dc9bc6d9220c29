#pragma once

#include "support/process.h"
#include "support/temporary_folder.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zavex::test {

/** Files by name, in order, and what they hold. */
using Files = std::vector<std::pair<std::string, std::string>>;

/** Sections of a setup file: the show ends by itself after one frame, as if Escape had been
 * pressed. */
inline constexpr const char* ONE_FRAME =
    R"(<display width="16" height="12" title="short"/><music mute="nosound"/>)"
    R"(<dump name="frames/shot.png" rate="25" length="0.04"/>)";

/** Checks that a file is as before or as after. @return whether it is as after. */
bool isReplaced(const Files::value_type& found, const Files::value_type& before,
                const Files::value_type& after);

/** Those below `part` of a folder, named from there on. */
Files filesIn(const TemporaryFolder& folder, const std::string& part);

/** A working copy of the show, `demo/`, with settings of its own. */
class ShowCopy : public TemporaryFolder {
public:
    /** @param sections  What stands inside the `demo` element of its setup file. */
    explicit ShowCopy(std::string_view sections);

    Files scripts() const { return filesIn(*this, "script"); }
};

/** An X server without a screen, for one test. Throws when none starts. */
class VirtualScreen {
public:
    explicit VirtualScreen(const std::string& size = "1024x768");

    /** For the environment: ":7". */
    const std::string& display() const { return mDisplay; }

    int pid() const { return mServer.pid(); }

private:
    Process mServer;
    std::string mDisplay;
};

/** One line of what a program printed, and when it was read. */
struct OutputLine {
    double when = 0.0; // steady seconds
    std::string text;
};

/**
 * The built program, started in a folder. Its output is read through a terminal, so that lines
 * come as they are printed. Killed, if it still runs, with the object. Files are protected from it
 * by their permissions even where the tests run as root.
 */
class Program {
public:
    static constexpr double PATIENCE = 60.0; // seconds; generous: software rendering, sanitizers

    /**
     * @param fileSize    Largest file that it may write, bytes; a stand-in for a full disk.
     * @param executable  Another program, such as a launcher of the built one.
     */
    Program(const std::filesystem::path& folder, const Environment& environment,
            std::optional<std::size_t> fileSize = std::nullopt,
            const std::string& executable = CADENZA_PROGRAM);
    /** On a screen. @param more  Of the environment. */
    Program(const std::filesystem::path& folder, const VirtualScreen& screen, Environment more = {},
            std::optional<std::size_t> fileSize = std::nullopt,
            const std::string& executable = CADENZA_PROGRAM);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    /** Reads on until a line after `from` contains `part`; its index, -1 when none comes in time.
     */
    int waitForLine(std::string_view part, std::size_t from = 0, double seconds = PATIENCE);

    /** Reads on for `seconds` whatever comes. */
    void listen(double seconds);

    /** Reads on until the program ends. @return its status, 128 + signal, -1 when it does not end.
     */
    int waitForEnd(double seconds = PATIENCE);

    const std::vector<OutputLine>& lines() const { return mLines; }
    std::string output() const;
    int pid() const { return mPid; }

private:
    bool readSome(double seconds);

    int mPid = -1;
    int mTerminal = -1;
    bool mEnded = false;
    std::string mPartial;
    std::vector<OutputLine> mLines;
};

/** Sends real keys to the program's window, which must be the only one on its screen. */
class Keyboard {
public:
    /** Waits for the window with this title, a minute at most, and gives it the keyboard. The
       screen must outlive the object. */
    Keyboard(const VirtualScreen& screen, const std::string& title);

    /** Presses and releases a key, while at most one other is held: "space", "alt+Return". */
    void press(const std::string& keys) const;

private:
    const VirtualScreen& mScreen;
};

/** The demo time that a line ends with, seconds; P logs one. */
double demoTimeIn(const OutputLine& line);

/**
 * Lets the show in a folder record the frames that its setup file asks for into "frames", from a
 * fixed seed; throws when it does not end well.
 */
Files record(const TemporaryFolder& show, const VirtualScreen& screen);

/** Runs a program to its end on a screen. @return its output; throws when its status is not 0. */
std::string runOnScreen(const VirtualScreen& screen, const std::vector<std::string>& arguments);

} // namespace zavex::test
