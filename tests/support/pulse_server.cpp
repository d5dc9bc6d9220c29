#include "support/pulse_server.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstring>
#include <limits>

namespace zavex::test {

namespace {

constexpr int FRAME_BYTES = 4; // two channels of 16 bits
// The sink hands to the recording what it mixes, and states that it plays it this much later.
constexpr double SINK_BLOCK_SECONDS = 0.010;

} // namespace

void PulseServer::start()
{
    const std::string folder = mFolder.path().string();
    const std::string socket = "socket=" + mFolder.path("native");
    mServer.emplace(
        std::vector<std::string>{
            "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
            "--disable-shm=yes", "--log-target=file:" + mFolder.path("log"), "-L",
            "module-native-protocol-unix auth-anonymous=1 " + socket, "-L",
            "module-null-sink sink_name=cadenza rate=44100 channels=2"
    },
        Environment{{"HOME", folder}, {"XDG_RUNTIME_DIR", folder}});
    runProgram(
        {"timeout", "20", "sh", "-c", "until pactl info >&2; do sleep 0.05; done 2>/dev/null"},
        environment());
}

void PulseServer::restart()
{
    mServer->end(SIGKILL);
    start();
}

Environment PulseServer::environment() const
{
    return {
        {"ALSOFT_DRIVERS", "pulse"                         },
        {"PULSE_SERVER",   "unix:" + mFolder.path("native")},
        {"PULSE_COOKIE",   mFolder.path("cookie")          }
    };
}

PulseRecording::PulseRecording(const PulseServer& server)
    : mRecorder({"parec", "--device=cadenza.monitor", "--format=s16le", "--channels=2",
                 "--rate=" + std::to_string(SAMPLE_RATE), "--latency-msec=20"},
                server.environment()),
      mReceiver([this] { receive(); })
{}

void PulseRecording::stop()
{
    mStopping = true;
    mRecorder.end(SIGTERM);
    if (mReceiver.joinable())
        mReceiver.join();
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
        const ssize_t count = mRecorder.read(piece.data(), piece.size());
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

} // namespace zavex::test
