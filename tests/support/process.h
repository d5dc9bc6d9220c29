#pragma once

#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace zavex::test {

using Environment = std::vector<std::pair<std::string, std::string>>;

inline Environment variable(const std::string& name, const std::string& value)
{
    return Environment(1, {name, value});
}

/** Seconds of std::chrono::steady_clock. */
double steadySeconds();

/** In a child: replaces the process image, or ends with 127 as a shell does. */
[[noreturn]] void execute(const std::vector<std::string>& arguments,
                          const Environment& environment);

/** A program whose standard output is read here. It is told to end with the object. */
class Process {
public:
    /** Throws std::runtime_error when nothing can be started. */
    explicit Process(const std::vector<std::string>& arguments,
                     const Environment& environment = {});
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    int pid() const { return mPid; }

    /** Does nothing when it was ended here. */
    void signal(int number) const;

    /** Reads on until `end`, which is left out, or the end of the output. */
    std::string readUntil(int end = -1) const;

    /** At most `size` bytes as soon as there are some. @return how many, none at the end. */
    ssize_t read(void* bytes, std::size_t size) const;

    /** Ends it with a signal, unless it ends by itself at 0. @return its status, 128 + signal. */
    int end(int number = 0);

private:
    int mPid = -1; // none when it has ended
    int mOutput = -1;
};

/** The status that waitpid tells, 128 + signal. */
int statusOf(int wait);

/** Runs a program to its end. @return its standard output; throws when its status is not 0. */
std::string runProgram(const std::vector<std::string>& arguments,
                       const Environment& environment = {});

} // namespace zavex::test
