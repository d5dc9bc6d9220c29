#include "e2e/program.h"

#include "common/zvx_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
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

VirtualScreen::VirtualScreen(const std::string& size)
    : mServer({"Xvfb", "-displayfd", "1", "-screen", "0", size + "x24", "+extension", "GLX",
               "-nolisten", "tcp", "-noreset"}),
      mDisplay(":" + mServer.readUntil('\n'))
{
    if (mDisplay == ":")
        throw Exception("The virtual screen does not start");
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
    if (poll(&waiting, 1, static_cast<int>(1000.0 * std::max(0.0, seconds))) <= 0)
        return false;
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(mTerminal, buffer.data(), buffer.size());
    if (count <= 0)
        return false;
    mPartial.append(buffer.data(), static_cast<std::size_t>(count));
    for (std::size_t end = 0; (end = mPartial.find('\n')) != std::string::npos;) {
        mLines.push_back({steadySeconds(), mPartial.substr(0, end)});
        mPartial.erase(0, end + 1);
    }
    return true;
}

int Program::waitForLine(std::string_view part, std::size_t from, double seconds)
{
    const double deadline = steadySeconds() + seconds;
    for (std::size_t index = from;;) {
        for (; index < mLines.size(); ++index) {
            if (mLines[index].text.find(part) != std::string::npos)
                return static_cast<int>(index);
        }
        if (!readSome(deadline - steadySeconds()) && mLines.size() <= index)
            return -1;
    }
}

void Program::listen(double seconds)
{
    const double deadline = steadySeconds() + seconds;
    while (steadySeconds() < deadline)
        if (!readSome(deadline - steadySeconds()))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

int Program::waitForEnd(double seconds)
{
    const double deadline = steadySeconds() + seconds;
    while (steadySeconds() < deadline) {
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

std::string runOnScreen(const VirtualScreen& screen, const std::vector<std::string>& arguments)
{
    return runProgram(arguments, variable("DISPLAY", screen.display()));
}

} // namespace zavex::test
