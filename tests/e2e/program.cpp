#include "e2e/program.h"

#include "common/zvx_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <linux/capability.h>
#include <poll.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace zavex::test {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

Clock::time_point after(double seconds)
{
    return Clock::now() +
           std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

int millisecondsUntil(Clock::time_point deadline)
{
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<long>(left.count(), 0));
}

/** In the child: replaces the process image, or ends with 127 as a shell does. */
[[noreturn]] void execute(const std::vector<std::string>& arguments, const Environment& environment)
{
    for (const auto& [name, value] : environment)
        setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    execvp(pointers[0], pointers.data());
    _exit(127);
}

int statusOf(int wait)
{
    return WIFEXITED(wait) ? WEXITSTATUS(wait) : 128 + WTERMSIG(wait);
}

std::string readAll(int descriptor)
{
    std::string text;
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = ::read(descriptor, buffer.data(), buffer.size())) > 0)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    return text;
}

} // namespace

bool isReplaced(const Files::value_type& found, const Files::value_type& before,
                const Files::value_type& after)
{
    const bool isNew = found.second == after.second;
    EXPECT_TRUE(isNew || found.second == before.second)
        << found.first << " has " << found.second.size() << " bytes";
    return isNew;
}

Files filesIn(const TemporaryFolder& folder, const std::string& part)
{
    Files found;
    for (const std::string& name : folder.files())
        if (name.starts_with(part + "/"))
            found.emplace_back(name.substr(part.size() + 1), folder.read(name));
    return found;
}

ShowCopy::ShowCopy(std::string_view sections)
{
    fs::copy(CADENZA_DEMO_DIR, path(), fs::copy_options::recursive);
    fs::remove(path("setup.local.xml"));
    write("setup.xml", "<demo>\n" + std::string(sections) + "\n</demo>\n");
}

VirtualScreen::VirtualScreen(int width, int height)
{
    const std::string size = std::to_string(width) + "x" + std::to_string(height) + "x24";
    std::array<int, 2> ready{};
    if (pipe(ready.data()) != 0)
        throw Exception("No pipe for the virtual screen");
    mPid = fork();
    if (mPid == 0) {
        close(ready[0]);
        execute({"Xvfb", "-displayfd", std::to_string(ready[1]), "-screen", "0", size, "+extension",
                 "GLX", "-nolisten", "tcp", "-noreset"},
                {});
    }
    close(ready[1]);
    // The number and the end of its line may come one after the other.
    std::string number;
    for (char digit = 0; ::read(ready[0], &digit, 1) == 1 && digit != '\n';)
        number += digit;
    close(ready[0]);
    if (number.empty()) {
        waitpid(mPid, nullptr, 0);
        throw Exception("The virtual screen does not start");
    }
    mDisplay = ":" + number;
}

VirtualScreen::~VirtualScreen()
{
    kill(mPid, SIGTERM);
    waitpid(mPid, nullptr, 0);
}

Program::Program(const fs::path& folder, const Environment& environment,
                 std::optional<std::size_t> fileSize, const std::string& executable)
{
    termios raw{};
    cfmakeraw(&raw);
    mPid = forkpty(&mTerminal, nullptr, &raw, nullptr);
    if (mPid < 0)
        throw Exception("The program cannot be started");
    if (mPid == 0) {
        if (chdir(folder.c_str()) != 0)
            _exit(126);
        // Fails where there is no such right to give up.
        prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
        if (fileSize) {
            const rlimit limit{*fileSize, *fileSize};
            setrlimit(RLIMIT_FSIZE, &limit);
        }
        execute({executable}, environment);
    }
}

Program::Program(const fs::path& folder, const VirtualScreen& screen, Environment more,
                 std::optional<std::size_t> fileSize, const std::string& executable)
    : Program(folder, (more.emplace_back("DISPLAY", screen.display()), more), fileSize, executable)
{}

Program::~Program()
{
    if (!mEnded) {
        kill(mPid, SIGKILL);
        waitpid(mPid, nullptr, 0);
    }
    close(mTerminal);
}

/** False when nothing came in time or nothing will come any more. */
bool Program::readSome(double seconds)
{
    pollfd waiting{mTerminal, POLLIN, 0};
    if (poll(&waiting, 1, millisecondsUntil(after(seconds))) <= 0)
        return false;
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(mTerminal, buffer.data(), buffer.size());
    if (count <= 0)
        return false;
    mPartial.append(buffer.data(), static_cast<std::size_t>(count));
    for (std::size_t end = 0; (end = mPartial.find('\n')) != std::string::npos;) {
        mLines.push_back({Clock::now(), mPartial.substr(0, end)});
        mPartial.erase(0, end + 1);
    }
    return true;
}

int Program::waitForLine(std::string_view part, std::size_t from, double seconds)
{
    const Clock::time_point deadline = after(seconds);
    for (std::size_t index = from;;) {
        for (; index < mLines.size(); ++index) {
            if (mLines[index].text.find(part) != std::string::npos)
                return static_cast<int>(index);
        }
        if (!readSome(millisecondsUntil(deadline) / 1000.0) && mLines.size() <= index)
            return -1;
    }
}

void Program::listen(double seconds)
{
    const Clock::time_point deadline = after(seconds);
    while (millisecondsUntil(deadline) > 0) {
        if (!readSome(millisecondsUntil(deadline) / 1000.0))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

int Program::waitForEnd(double seconds)
{
    const Clock::time_point deadline = after(seconds);
    while (millisecondsUntil(deadline) > 0) {
        readSome(0.02);
        int wait = 0;
        if (waitpid(mPid, &wait, WNOHANG) != mPid)
            continue;
        mEnded = true;
        while (readSome(0.0)) {
        }
        return statusOf(wait);
    }
    return -1;
}

std::string Program::output() const
{
    std::string text;
    for (const OutputLine& line : mLines)
        text += line.text + "\n";
    return text + mPartial;
}

Keyboard::Keyboard(const VirtualScreen& screen, const std::string& title) : mScreen(screen)
{
    runOnScreen(screen, {"timeout", "60", "xdotool", "search", "--sync", "--onlyvisible", "--name",
                         title, "windowfocus", "--sync"});
}

void Keyboard::press(const std::string& keys) const
{
    std::vector<std::string> command{"xdotool", "key", keys};
    if (const std::size_t plus = keys.find('+'); plus != std::string::npos) {
        // Left to itself, xdotool lets go of the modifier first.
        const std::string modifier = keys.substr(0, plus);
        const std::string key = keys.substr(plus + 1);
        command = {"xdotool", "keydown", modifier, "key", key, "keyup", modifier};
    }
    runOnScreen(mScreen, command);
}

double demoTimeIn(const OutputLine& line)
{
    return std::strtod(line.text.c_str() + line.text.rfind(' '), nullptr);
}

Files record(const TemporaryFolder& show, const VirtualScreen& screen)
{
    Program program(show.path(), screen, variable("CADENZA_SEED", "7"));
    if (program.waitForEnd(240.0) != 0)
        throw Exception("The recording does not end well:\n%s", program.output().c_str());
    return filesIn(show, "frames");
}

std::string runProgram(const std::vector<std::string>& arguments, const Environment& environment)
{
    std::array<int, 2> out{};
    if (pipe(out.data()) != 0)
        throw Exception("No pipe for '%s'", arguments[0].c_str());
    const int pid = fork();
    if (pid == 0) {
        dup2(out[1], STDOUT_FILENO);
        close(out[0]);
        close(out[1]);
        execute(arguments, environment);
    }
    close(out[1]);
    std::string text = readAll(out[0]);
    close(out[0]);
    int wait = 0;
    waitpid(pid, &wait, 0);
    if (statusOf(wait) != 0)
        throw Exception("'%s' ended with status %d", arguments[0].c_str(), statusOf(wait));
    return text;
}

std::string runOnScreen(const VirtualScreen& screen, const std::vector<std::string>& arguments)
{
    return runProgram(arguments, variable("DISPLAY", screen.display()));
}

} // namespace zavex::test
