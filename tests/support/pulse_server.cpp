#include "support/pulse_server.h"

#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace zavex::test {

namespace {

constexpr int FRAME_BYTES = 4; // two channels of 16 bits
// The sink hands to the recording what it mixes, and states that it plays it this much later.
constexpr double SINK_BLOCK_SECONDS = 0.010;
constexpr std::chrono::seconds START_LIMIT{20};

/** Starts a program that ends with this one; `output` becomes its standard output when not -1. */
pid_t startProgram(std::vector<std::string> arguments, int output,
                   const std::vector<std::pair<std::string, std::string>>& environment)
{
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot start " + arguments.front());
    if (child > 0)
        return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (output != -1)
        dup2(output, STDOUT_FILENO);
    dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    for (const auto& [name, value] : environment)
        setenv(name.c_str(), value.c_str(), 1);
    execvp(argv[0], argv.data());
    _exit(127);
}

void endProgram(pid_t& program)
{
    if (program == -1)
        return;
    kill(program, SIGTERM);
    waitpid(program, nullptr, 0);
    program = -1;
}

bool canConnect(const std::string& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool connected =
        connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    close(connection);
    return connected;
}

} // namespace

PulseServer::PulseServer()
{
    start();
}

void PulseServer::start()
{
    const std::string folder = mFolder.path().string();
    mServer = startProgram(
        {
            "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
            "--disable-shm=yes", "--log-target=stderr", "-L",
            "module-native-protocol-unix auth-anonymous=1 socket=" + socketPath(), "-L",
            "module-null-sink sink_name=cadenza rate=44100 channels=2"
    },
        -1, {{"HOME", folder}, {"XDG_RUNTIME_DIR", folder}});

    const auto limit = std::chrono::steady_clock::now() + START_LIMIT;
    while (!canConnect(socketPath())) {
        const bool hasEnded = waitpid(mServer, nullptr, WNOHANG) != 0;
        if (hasEnded || std::chrono::steady_clock::now() > limit) {
            endProgram(mServer);
            throw std::runtime_error("the sound server does not start");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

PulseServer::~PulseServer()
{
    signal(SIGCONT);
    endProgram(mServer);
}

void PulseServer::signal(int number) const
{
    kill(mServer, number);
}

void PulseServer::restart()
{
    signal(SIGKILL);
    waitpid(mServer, nullptr, 0);
    start();
}

std::vector<std::pair<std::string, std::string>> PulseServer::environment() const
{
    return {
        {"ALSOFT_DRIVERS", "pulse"               },
        {"PULSE_SERVER",   "unix:" + socketPath()},
        {"PULSE_COOKIE",   mFolder.path("cookie")}
    };
}

PulseRecording::PulseRecording(const PulseServer& server)
{
    std::array<int, 2> ends = {};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot make a pipe");
    mPipe = ends[0];
    mRecorder = startProgram({"parec", "--device=cadenza.monitor", "--format=s16le", "--channels=2",
                              "--rate=" + std::to_string(SAMPLE_RATE), "--latency-msec=20"},
                             ends[1], server.environment());
    close(ends[1]);
    mReceiver = std::thread([this] { receive(); });
}

PulseRecording::~PulseRecording()
{
    stop();
}

void PulseRecording::stop()
{
    if (mRecorder == -1)
        return;
    mStopping = true;
    endProgram(mRecorder);
    mReceiver.join();
    close(mPipe);
}

std::size_t PulseRecording::frameCount() const
{
    const std::scoped_lock lock(mMutex);
    return mBytes.size() / FRAME_BYTES;
}

std::vector<float> PulseRecording::samples() const
{
    const std::scoped_lock lock(mMutex);
    std::vector<float> left(mBytes.size() / FRAME_BYTES);
    for (std::size_t i = 0; i < left.size(); ++i) {
        std::int16_t sample = 0;
        std::memcpy(&sample, mBytes.data() + i * FRAME_BYTES, sizeof(sample));
        left[i] = static_cast<float>(sample) / 32768.0f;
    }
    return left;
}

std::int64_t PulseRecording::frameAt(double time) const
{
    // The server may stall on a busy machine, which moves everything behind; so only what was
    // delivered about that time counts.
    constexpr double around = 0.3; // seconds
    const std::scoped_lock lock(mMutex);
    double origin = std::numeric_limits<double>::infinity();
    for (const Delivery& delivery : mDeliveries)
        if (std::abs(delivery.time - time) < around)
            origin =
                std::min(origin, delivery.time - static_cast<double>(delivery.frame) / SAMPLE_RATE);
    return std::llround((time - origin - SINK_BLOCK_SECONDS) * SAMPLE_RATE);
}

void PulseRecording::receive()
{
    std::array<std::byte, 65536> piece = {};
    for (;;) {
        const ssize_t count = read(mPipe, piece.data(), piece.size());
        if (count <= 0)
            return;
        const std::scoped_lock lock(mMutex);
        mBytes.insert(mBytes.end(), piece.begin(), piece.begin() + count);
        // The last delivery is cut short and tells nothing about the pace.
        if (!mStopping)
            mDeliveries.push_back({steadySeconds(), std::ssize(mBytes) / FRAME_BYTES});
    }
}

SoundMatch findSound(std::span<const float> piece, std::span<const float> whole, std::int64_t first,
                     std::int64_t last)
{
    const auto energy = [](std::span<const float> samples) {
        double sum = 0.0;
        for (const float sample : samples)
            sum += double{sample} * double{sample};
        return sum;
    };
    const double pieceEnergy = energy(piece);
    const std::int64_t end = std::min(last, std::ssize(whole) - std::ssize(piece) + 1);
    SoundMatch best;
    for (std::int64_t start = std::max<std::int64_t>(0, first); start < end; ++start) {
        const auto part = whole.subspan(static_cast<std::size_t>(start), piece.size());
        float product = 0.0f;
        for (std::size_t i = 0; i < piece.size(); ++i)
            product += piece[i] * part[i];
        const double correlation = double{product} / std::sqrt(pieceEnergy * energy(part) + 1e-12);
        if (correlation > best.correlation)
            best = {start, correlation};
    }
    return best;
}

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace zavex::test
