#pragma once

#include "common/zvx_system.h"
#include "mathbase/mb_vector2.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zavex::mathbase {

/**
 * One key of a curve.
 *
 * Tangents are value changes over the whole neighbouring segment, not slopes: along a straight
 * line both tangents of a segment are the difference of its two values.
 */
template <typename T>
struct SplineBaseKey {
    float time = 0.0f; // on the curve's own time axis
    T value{};
    T tangentIN{};  // over the segment that ends at this key
    T tangentOUT{}; // over the segment that starts at this key
};

/**
 * A keyframe curve: maps a time to a value through keys sorted by time, with three ways of
 * interpolating, automatic tangents, and holding or repeating outside its keys.
 *
 * Only `SplineBase<float, SplineBaseKey<float>>` is used, under the name `SplineFloat`. A plain
 * value that owns its keys. Looking up a segment remembers it, even through a const curve, which
 * makes the next nearby look-up cheap; a curve is therefore not to be shared between threads.
 *
 * A `SQUARE` key takes effect at its own time, except for the last: there the segment before it
 * still counts.
 *
 * Keys may stand at equal times; the segment between them has no length and is a step. The other
 * modes give it the value of its first key, and it has no part in automatic tangents:
 * a key next to it takes its slope from its other side alone, and is flat (both tangents 0) between
 * two of them. A curve whose keys all stand at one time is not repeated.
 */
template <typename T, typename Key>
class SplineBase {
public:
    /** How values between keys are formed. */
    enum InterpolationMode : std::int32_t {
        SQUARE = 0, // the value of the key at the start of the segment
        LINEAR = 1,
        SMOOTH = 2 // cubic Hermite with the keys' tangents
    };

    /** What comes before the first and after the last key. */
    enum ExtrapolationMode : std::int32_t {
        EXT_CONSTANT = 0,  // the end key's value
        EXT_REPEAT = 1,    // the keys again, with the period from the first to the last time
        EXT_REPEAT_ADD = 2 // the same, each period higher by the last value less the first
    };

    /** What `getKeyIndex` answers outside the segments. */
    static constexpr int BEFORE_FIRST_KEY = -1;
    static constexpr int AFTER_LAST_KEY = -2;
    static constexpr int NO_KEYS = -3;

    /** An empty curve that holds its end values. */
    SplineBase(InterpolationMode interpolation, bool autoTangents)
        : mIntMode(interpolation), mAutoTangents(autoTangents)
    {}

    /** Removes every key; the value range becomes 0..0. The modes stay. */
    void clear();

    /**
     * Inserts a copy of `key` at its place in time and recomputes the curve; nothing is replaced.
     * At the time of the last of several keys it comes before that key, at the time of the first
     * after it.
     *
     * @return the index of the inserted key.
     */
    int addKey(const Key& key);

    /**
     * Inserts copies of all `keys`, each behind every key that is not later: those that stand at
     * one time keep the order in which they come. Times that are no numbers go to the end.
     * Recomputes the curve once; nothing happens without keys.
     */
    void addKeys(const std::vector<Key>& keys);

    /** Whether `first` stands before `second`; a time that is no number is later than all others.
     */
    static bool isEarlier(const Key& first, const Key& second)
    {
        return first.time < second.time || (!std::isnan(first.time) && std::isnan(second.time));
    }

    /** Removes a key. Throws `Exception` when there is no key `index`. */
    void removeKey(int index);

    /**
     * Restores the order after key `index` was changed in place, and recomputes the curve. Throws
     * `Exception` when there is no key `index`.
     *
     * @return the key's index afterwards.
     */
    int updateKey(int index);

    /**
     * Recomputes the value range and, in mode `SMOOTH` with automatic tangents, all tangents. Does
     * the whole curve whatever the arguments, which name the changed key and two flags. To be
     * called after keys, modes or the automatic tangents were changed by other means than
     * `addKey`, `removeKey` and `updateKey`.
     */
    void updateTangents(int index, int left, int right);

    /** Makes the value range the single value `value`. */
    void setMinMax(const T& value) { mMinValue = mMaxValue = value; }

    void setAutoTangents(bool autoTangents) { mAutoTangents = autoTangents; }
    void setInterpolation(InterpolationMode mode) { mIntMode = mode; }
    void setExtrapolationBefore(ExtrapolationMode mode) { mExtModeBefore = mode; }
    void setExtrapolationAfter(ExtrapolationMode mode) { mExtModeAfter = mode; }

    /** A key, whose `index` must be in [0, getNumKeys()). Call `updateKey` after changing it. */
    Key& operator[](int index) { return mKeys[static_cast<std::size_t>(index)]; }
    const Key& operator[](int index) const { return mKeys[static_cast<std::size_t>(index)]; }

    /** The value at `time`; 0 without keys. Allocates nothing. */
    T evaluate(float time) const;

    /**
     * The segment that holds `time`, named by its first key, or one of the three constants above.
     * A curve of one key has no segment: from its time on it answers `AFTER_LAST_KEY`, as a time
     * that is not a number does.
     */
    int getKeyIndex(float time) const;

    bool hasKeys() const { return !mKeys.empty(); }
    int getNumKeys() const { return static_cast<int>(mKeys.size()); }

    /** The times of the first and the last key; 0 without keys. */
    float getMinTime() const { return mKeys.empty() ? 0.0f : mKeys.front().time; }
    float getMaxTime() const { return mKeys.empty() ? 0.0f : mKeys.back().time; }

    /** The time range: x is the first key's time, y the last key's. */
    Vector2f getInterval() const { return {getMinTime(), getMaxTime()}; }

    /** The smallest and greatest value of a key; overshoot between keys is not counted. */
    T getMinValue() const { return mMinValue; }
    T getMaxValue() const { return mMaxValue; }

    bool hasAutoTangents() const { return mAutoTangents; }
    InterpolationMode getInterpolation() const { return mIntMode; }
    ExtrapolationMode getExtrapolationBefore() const { return mExtModeBefore; }
    ExtrapolationMode getExtrapolationAfter() const { return mExtModeAfter; }

private:
    /** A time inside the keys, and what is added to the value there. */
    struct Mapped {
        float time = 0.0f;
        T offset{};
    };

    /** A key as seen from its neighbour: how far away in time, and its value. */
    struct Neighbour {
        float gap = 0.0f;
        T value{};
    };

    static bool isRepeated(ExtrapolationMode mode)
    {
        return mode == EXT_REPEAT || mode == EXT_REPEAT_ADD;
    }
    T evaluateAnywhere(float time) const;
    Mapped mapIntoKeys(float time) const;
    T interpolate(int segment, float time) const;
    const Key& stepAt(int segment, float time) const;
    bool isInSegment(int index, float time) const;
    int findSegment(float time) const;

    void updateMinMax();
    void updateTangentsOf(int index);
    Neighbour leftOf(int index) const;
    Neighbour rightOf(int index) const;

    /** How much `mode` lifts each period. */
    T liftOf(ExtrapolationMode mode) const
    {
        return mode == EXT_REPEAT_ADD ? mKeys.back().value - mKeys.front().value : T{};
    }

    mutable std::int32_t mLastUsedKey = -1; // segment of the last look-up; -1 when none is known
    T mMinValue{};
    T mMaxValue{};
    InterpolationMode mIntMode;
    ExtrapolationMode mExtModeBefore = EXT_CONSTANT;
    ExtrapolationMode mExtModeAfter = EXT_CONSTANT;
    std::vector<Key> mKeys; // by non-decreasing time
    bool mAutoTangents;
};

using SplineFloat = SplineBase<float, SplineBaseKey<float>>;

template <typename T, typename Key>
void SplineBase<T, Key>::clear()
{
    mKeys.clear();
    mLastUsedKey = -1;
    setMinMax(T{});
}

template <typename T, typename Key>
int SplineBase<T, Key>::addKey(const Key& key)
{
    const int segment = getKeyIndex(key.time);
    mLastUsedKey = -1;

    int index = segment + 1;
    if (segment == NO_KEYS || segment == AFTER_LAST_KEY)
        index = getNumKeys();
    mKeys.insert(mKeys.begin() + index, key);
    updateTangents(index, 1, 1);
    return index;
}

template <typename T, typename Key>
void SplineBase<T, Key>::addKeys(const std::vector<Key>& keys)
{
    if (keys.empty())
        return;
    mLastUsedKey = -1;
    const int added = getNumKeys();
    mKeys.insert(mKeys.end(), keys.begin(), keys.end());
    std::ranges::stable_sort(mKeys, isEarlier);
    updateTangents(added, 1, 1);
}

template <typename T, typename Key>
void SplineBase<T, Key>::removeKey(int index)
{
    ZVX_REQUIRE(index >= 0 && index < getNumKeys(), "index>=0 && index<(int)mKeys.size()");
    mKeys.erase(mKeys.begin() + index);
    if (hasKeys())
        updateTangents(index, 1, 1);
    mLastUsedKey = -1;
}

template <typename T, typename Key>
int SplineBase<T, Key>::updateKey(int index)
{
    ZVX_REQUIRE(index >= 0 && index < getNumKeys(), "index>=0 && index<(int)mKeys.size()");
    mLastUsedKey = -1;

    const int last = getNumKeys() - 1;
    const Key key = (*this)[index];
    if ((index == 0 || (*this)[index - 1].time <= key.time) &&
        (index == last || key.time <= (*this)[index + 1].time)) {
        updateTangents(index, 1, 1);
        return index;
    }
    removeKey(index);
    return addKey(key);
}

template <typename T, typename Key>
void SplineBase<T, Key>::updateTangents(int /*index*/, int /*left*/, int /*right*/)
{
    if (!hasKeys())
        return;
    updateMinMax();
    if (!mAutoTangents || mIntMode != SMOOTH)
        return;
    if (getNumKeys() == 1) {
        mKeys.front().tangentIN = mKeys.front().tangentOUT = T{};
        return;
    }
    for (int i = 0; i < getNumKeys(); ++i)
        updateTangentsOf(i);
}

template <typename T, typename Key>
void SplineBase<T, Key>::updateMinMax()
{
    setMinMax(mKeys.front().value);
    for (const Key& key : mKeys) {
        mMinValue = std::min(mMinValue, key.value);
        mMaxValue = std::max(mMaxValue, key.value);
    }
}

template <typename T, typename Key>
void SplineBase<T, Key>::updateTangentsOf(int index)
{
    const int last = getNumKeys() - 1;
    Key& key = (*this)[index];
    if (index == 0 && !isRepeated(mExtModeBefore)) {
        key.tangentIN = T{};
        key.tangentOUT = (*this)[1].value - key.value;
        return;
    }
    if (index == last && !isRepeated(mExtModeAfter)) {
        key.tangentIN = key.value - (*this)[last - 1].value;
        key.tangentOUT = T{};
        return;
    }

    const Neighbour left = leftOf(index);
    const Neighbour right = rightOf(index);
    T slope{};
    if (left.gap > 0.0f && right.gap > 0.0f)
        slope = 0.5f * (key.value - left.value) / left.gap +
                0.5f * (right.value - key.value) / right.gap;
    else if (left.gap > 0.0f)
        slope = (key.value - left.value) / left.gap;
    else if (right.gap > 0.0f)
        slope = (right.value - key.value) / right.gap;
    key.tangentIN = slope * left.gap;
    key.tangentOUT = slope * right.gap;
}

template <typename T, typename Key>
auto SplineBase<T, Key>::leftOf(int index) const -> Neighbour
{
    // Before the first key comes the last but one, one period back.
    const int end = index == 0 ? getNumKeys() - 1 : index;
    const T lift = index == 0 ? liftOf(mExtModeBefore) : T{};
    return {(*this)[end].time - (*this)[end - 1].time, (*this)[end - 1].value - lift};
}

template <typename T, typename Key>
auto SplineBase<T, Key>::rightOf(int index) const -> Neighbour
{
    // After the last key comes the second, one period on.
    const bool isLast = index == getNumKeys() - 1;
    const int start = isLast ? 0 : index;
    const T lift = isLast ? liftOf(mExtModeAfter) : T{};
    return {(*this)[start + 1].time - (*this)[start].time, (*this)[start + 1].value + lift};
}

template <typename T, typename Key>
T SplineBase<T, Key>::evaluate(float time) const
{
    // Time moving forward: what is in the remembered segment is neither mapped nor looked up.
    if (isInSegment(mLastUsedKey, time))
        return interpolate(mLastUsedKey, time);
    return evaluateAnywhere(time);
}

template <typename T, typename Key>
T SplineBase<T, Key>::evaluateAnywhere(float time) const
{
    if (!hasKeys())
        return T{};

    const Mapped mapped = mapIntoKeys(time);
    const int segment = getKeyIndex(mapped.time);
    if (segment == BEFORE_FIRST_KEY)
        return mKeys.front().value;
    if (segment == AFTER_LAST_KEY)
        return mKeys.back().value;
    return interpolate(segment, mapped.time) + mapped.offset;
}

template <typename T, typename Key>
auto SplineBase<T, Key>::mapIntoKeys(float time) const -> Mapped
{
    const float first = mKeys.front().time;
    const float last = mKeys.back().time;
    const float period = last - first;
    if ((time >= first && time <= last) || !(period > 0.0f))
        return {time, T{}};

    // Rounding may carry the mapped time just outside the keys, where their end values would be
    // held without the offset.
    if (time > last && isRepeated(mExtModeAfter)) {
        const double periods = std::floor((static_cast<double>(time) - last) / period) + 1.0;
        const float mapped = static_cast<float>(time - period * periods);
        return {std::clamp(mapped, first, last),
                static_cast<float>(periods) * liftOf(mExtModeAfter)};
    }
    if (time < first && isRepeated(mExtModeBefore)) {
        const double periods = std::floor((static_cast<double>(first) - time) / period) + 1.0;
        const float mapped = static_cast<float>(time + period * periods);
        return {std::clamp(mapped, first, last),
                static_cast<float>(-periods) * liftOf(mExtModeBefore)};
    }
    return {time, T{}};
}

template <typename T, typename Key>
T SplineBase<T, Key>::interpolate(int segment, float time) const
{
    if (mIntMode == SQUARE)
        return stepAt(segment, time).value;

    const Key& first = (*this)[segment];
    const Key& second = (*this)[segment + 1];
    const float length = second.time - first.time;
    if (!(length > 0.0f))
        return first.value;

    const float u = (time - first.time) / length;
    if (mIntMode == LINEAR)
        return u * second.value + (1.0f - u) * first.value;

    const float u2 = u * u;
    const float u3 = u2 * u;
    return (2.0f * u3 - 3.0f * u2 + 1.0f) * first.value + (u3 - 2.0f * u2 + u) * first.tangentOUT +
           (-2.0f * u3 + 3.0f * u2) * second.value + (u3 - u2) * second.tangentIN;
}

/**
 * The key whose step holds at `time`, which is in `segment`. The time of a key that two segments
 * share belongs to the one that starts there, whichever of them the look-up remembered.
 */
template <typename T, typename Key>
const Key& SplineBase<T, Key>::stepAt(int segment, float time) const
{
    while (segment + 2 < getNumKeys() && (*this)[segment + 1].time <= time)
        ++segment;
    return (*this)[segment];
}

template <typename T, typename Key>
int SplineBase<T, Key>::getKeyIndex(float time) const
{
    const int count = getNumKeys();
    if (count == 0)
        return NO_KEYS;
    if (time < mKeys.front().time)
        return BEFORE_FIRST_KEY;
    if (count == 1 || !(time <= mKeys.back().time))
        return AFTER_LAST_KEY;

    const int remembered = mLastUsedKey >= 0 && mLastUsedKey < count ? mLastUsedKey : -1;
    if (count == 2)
        mLastUsedKey = 0;
    else if (isInSegment(remembered, time))
        mLastUsedKey = remembered;
    else if (isInSegment(remembered + 1, time))
        mLastUsedKey = remembered + 1;
    else
        mLastUsedKey = findSegment(time);
    return mLastUsedKey;
}

/** Whether there is a segment `index` and `time` is in it, its ends included. */
template <typename T, typename Key>
bool SplineBase<T, Key>::isInSegment(int index, float time) const
{
    return index >= 0 && index + 1 < getNumKeys() && (*this)[index].time <= time &&
           time <= (*this)[index + 1].time;
}

/** Binary search among three keys or more for a time between the first and the last. */
template <typename T, typename Key>
int SplineBase<T, Key>::findSegment(float time) const
{
    int low = 0;
    int high = getNumKeys() - 1;
    while (low < high) {
        const int middle = (low + high) / 2;
        if (time < (*this)[middle].time)
            high = middle - 1;
        else if (time <= (*this)[middle + 1].time)
            return middle;
        else
            low = middle + 1;
    }
    return std::clamp(low, 0, getNumKeys() - 2);
}

} // namespace zavex::mathbase
