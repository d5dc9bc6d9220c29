#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

/** What the benchmark programs share: timing by medians, and the one line that a figure prints. */
namespace zavex::bench {

/** Which side of its bound a measured figure must stay on; the bound itself is allowed. */
enum class Bound { AT_MOST, AT_LEAST };

/**
 * Prints the figures of one program and keeps whether all bounds were met.
 *
 * `exitStatus` is the program's.
 */
class Figures {
public:
    /** Prints "name: measured (bound)", followed by "MISSED" when the bound is. */
    void report(const std::string& name, double measured, double bound, Bound direction)
    {
        const bool isMet = direction == Bound::AT_MOST ? measured <= bound : measured >= bound;
        std::printf("%s: %.4g (%s %.4g)%s\n", name.c_str(), measured,
                    direction == Bound::AT_MOST ? "at most" : "at least", bound,
                    isMet ? "" : " MISSED");
        std::fflush(stdout);
        mAllMet = mAllMet && isMet;
    }

    /** EXIT_SUCCESS as long as every bound was met. */
    int exitStatus() const { return mAllMet ? EXIT_SUCCESS : EXIT_FAILURE; }

private:
    bool mAllMet = true;
};

/** Measures and reports what the program is for; each has its own. */
void run(Figures& figures);

/** The seconds that one call of `action` takes. */
template <typename Action>
double secondsOf(Action&& action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/** The middle of `values`, which must not be empty; the upper of the two middle ones. */
inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/** The median of the seconds that `runs` calls of `action` take, after one that is not counted. */
template <typename Action>
double medianSeconds(int runs, Action&& action)
{
    action();
    std::vector<double> seconds;
    for (int i = 0; i < runs; ++i)
        seconds.push_back(secondsOf(action));
    return median(std::move(seconds));
}

/**
 * The time of `action` divided by that of `reference`: the median over `runs` pairs taken in turn,
 * so that a machine that slows down for a while slows both. On a busy machine many short runs are
 * steadier than few long ones. One pair before is not counted.
 */
template <typename Action, typename Reference>
double medianRatio(int runs, Action&& action, Reference&& reference)
{
    action();
    reference();
    std::vector<double> ratios;
    for (int i = 0; i < runs; ++i) {
        const double referenceSeconds = secondsOf(reference);
        ratios.push_back(secondsOf(action) / referenceSeconds);
    }
    return median(std::move(ratios));
}

} // namespace zavex::bench
