#include "support/process.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zavex::test {

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void execute(const std::vector<std::string>& arguments, const Environment& environment)
{
    for (const auto& [name, value] : environment)
        setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> pointers;
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

Process::Process(const std::vector<std::string>& arguments, const Environment& environment)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0 || (mPid = fork()) < 0)
        throw std::runtime_error("cannot start " + arguments.front());
    if (mPid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(ends[1], STDOUT_FILENO);
        execute(arguments, environment);
    }
    close(ends[1]);
    mOutput = ends[0];
}

Process::~Process()
{
    end(SIGTERM);
    close(mOutput);
}

ssize_t Process::read(void* bytes, std::size_t size) const
{
    return ::read(mOutput, bytes, size);
}

std::string Process::readUntil(int end) const
{
    std::string text;
    for (char each = 0; read(&each, 1) == 1 && each != end;)
        text += each;
    return text;
}

void Process::signal(int number) const
{
    if (mPid > 0) // otherwise, everyone would get it
        kill(mPid, number);
}

int Process::end(int number)
{
    if (mPid == -1)
        return -1;
    signal(number);
    signal(SIGCONT);
    int wait = 0;
    waitpid(std::exchange(mPid, -1), &wait, 0);
    return statusOf(wait);
}

std::string runProgram(const std::vector<std::string>& arguments, const Environment& environment)
{
    Process program(arguments, environment);
    std::string output = program.readUntil();
    if (const int status = program.end(); status != 0)
        throw std::runtime_error(arguments.front() + " ended with status " +
                                 std::to_string(status) + "\n" + output);
    return output;
}

} // namespace zavex::test
