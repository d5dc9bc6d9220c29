// What evaluating a curve costs while time moves forward, as in playback: it must hardly depend on
// the number of keys, and beat looking the segment up with a binary search.

#include "figure.h"

#include "mathbase/mb_splinebase.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

using zavex::bench::Bound;
using zavex::mathbase::SplineFloat;
using Key = zavex::mathbase::SplineBaseKey<float>;

constexpr int SIZES[] = {10, 100, 1000, 10000};
constexpr int EVALUATIONS = 20000; // per measurement: short, so that few are interrupted
constexpr int STEPS_PER_KEY = 20;  // an animated parameter at 60 frames and 3 keys a second
constexpr int RUNS = 501;

/** A smooth curve of `count` keys, about one a second. */
SplineFloat curveOf(int count)
{
    SplineFloat spline(SplineFloat::SMOOTH, true);
    for (int i = 0; i < count; ++i) {
        const float at = static_cast<float>(i);
        spline.addKey({at + 0.3f * std::sin(at), std::cos(1.7f * at)});
    }
    return spline;
}

/** The same sum over the segment that a binary search finds. */
float evaluateByBinarySearch(const std::vector<Key>& keys, float time)
{
    const auto later = [](float value, const Key& key) { return value < key.time; };
    const auto found = std::upper_bound(keys.begin(), keys.end(), time, later);
    if (found == keys.begin())
        return keys.front().value;
    if (found == keys.end())
        return keys.back().value;

    const Key& first = *(found - 1);
    const Key& second = *found;
    const float u = (time - first.time) / (second.time - first.time);
    const float u2 = u * u;
    const float u3 = u2 * u;
    return (2.0f * u3 - 3.0f * u2 + 1.0f) * first.value + (u3 - 2.0f * u2 + u) * first.tangentOUT +
           (-2.0f * u3 + 3.0f * u2) * second.value + (u3 - u2) * second.tangentIN;
}

/** Runs through the curve from its start in small steps, again and again. */
template <typename Evaluate>
void sweep(int keys, Evaluate evaluate)
{
    const int steps = (keys - 1) * STEPS_PER_KEY;
    int step = 0;
    for (int i = 0; i < EVALUATIONS; ++i) {
        benchmark::DoNotOptimize(evaluate(static_cast<float>(step) * (1.0f / STEPS_PER_KEY)));
        step = step + 1 < steps ? step + 1 : 0;
    }
}

/** One curve, and the two ways of evaluating it. */
class Subject {
public:
    explicit Subject(int count) : mSpline(curveOf(count))
    {
        for (int i = 0; i < count; ++i)
            mKeys.push_back(mSpline[i]);
    }

    void sweepSpline() const
    {
        sweep(mSpline.getNumKeys(), [&](float time) { return mSpline.evaluate(time); });
    }

    void sweepBinarySearch() const
    {
        sweep(mSpline.getNumKeys(),
              [&](float time) { return evaluateByBinarySearch(mKeys, time); });
    }

private:
    SplineFloat mSpline;
    std::vector<Key> mKeys;
};

} // namespace

void zavex::bench::run(Figures& figures)
{
    std::vector<Subject> subjects;
    for (const int size : SIZES)
        subjects.emplace_back(size);

    figures.report(
        "spline: 10000 keys over 10 keys",
        medianRatio(
            RUNS, [&] { subjects.back().sweepSpline(); }, [&] { subjects.front().sweepSpline(); }),
        1.5, Bound::AT_MOST);
    for (std::size_t i = 0; i < subjects.size(); ++i) {
        const double ratio = medianRatio(
            RUNS, [&] { subjects[i].sweepSpline(); }, [&] { subjects[i].sweepBinarySearch(); });
        figures.report("spline: evaluate over binary search, " + std::to_string(SIZES[i]) + " keys",
                       ratio, 1.0, Bound::AT_MOST);
    }
}
