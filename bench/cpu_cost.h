#pragma once

#include "figure.h"

#include "display/dis_display_obsolete.h"
#include "display/dis_glinclude.h"

#include <cstdio>
#include <ctime>
#include <vector>

#include <malloc.h>

// The processor's time for what is drawn.
//
// "Submitting" is what the drawing thread takes until everything is with the driver: what batching
// is for. "Whole" is what all threads take until the picture is there: with a driver that draws in
// software this is mostly the filling of pixels, which no batching saves.
namespace zavex::bench {

/** The seconds that the processor has worked by now; for a whole process or one thread. */
inline double processorSeconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

struct Cost {
    double submitting; // seconds
    double whole;      // seconds
};

template <typename Frame>
Cost costOf(Frame&& frame)
{
    const double wholeBefore = processorSeconds(CLOCK_PROCESS_CPUTIME_ID);
    const double before = processorSeconds(CLOCK_THREAD_CPUTIME_ID);
    frame();
    display::DisplayObsolete::flush();
    const double submitting = processorSeconds(CLOCK_THREAD_CPUTIME_ID) - before;
    glFinish();
    return {submitting, processorSeconds(CLOCK_PROCESS_CPUTIME_ID) - wholeBefore};
}

struct Comparison {
    Cost frame;
    Cost reference;
    Cost ratio;
};

/** Medians over runs taken in turn; as `bench::medianRatio`, for both clocks at once. */
template <typename Frame, typename Reference>
Comparison compare(int runs, Frame&& frame, Reference&& reference)
{
    std::vector<double> values[6];
    for (int i = 0; i <= runs; ++i) {
        const Cost expected = costOf(reference);
        const Cost actual = costOf(frame);
        if (i == 0)
            continue; // what is made at the first frame
        values[0].push_back(actual.submitting);
        values[1].push_back(actual.whole);
        values[2].push_back(expected.submitting);
        values[3].push_back(expected.whole);
        values[4].push_back(actual.submitting / expected.submitting);
        values[5].push_back(actual.whole / expected.whole);
    }
    return {
        {median(values[0]), median(values[1])},
        {median(values[2]), median(values[3])},
        {median(values[4]), median(values[5])}
    };
}

inline void stateCost(const char* name, const Cost& cost)
{
    std::printf("%s: submitting %.3f, whole %.3f (ms, stated)\n", name, 1e3 * cost.submitting,
                1e3 * cost.whole);
}

/**
 * Lets the allocator keep what the driver gives back. Otherwise each frame returns the driver's
 * buffers to the system and gets them anew, or does not, as the heap happens to lie: the ways of
 * drawing differ by half from run to run.
 */
inline void keepMemory()
{
    constexpr int bytes = 1 << 25; // the allocator takes no larger threshold
    mallopt(M_MMAP_THRESHOLD, bytes);
    mallopt(M_TRIM_THRESHOLD, bytes);
}

} // namespace zavex::bench
