#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <type_traits>

namespace zavex::test {

inline constexpr float PI = 3.14159265f;

/** Compares vectors, quaternions, boxes and matrices: whatever is made of floats only. */
template <typename T>
testing::AssertionResult isNear(const T& actual, const std::type_identity_t<T>& expected,
                                float tolerance = 1e-5f)
{
    using Components = std::array<float, sizeof(T) / sizeof(float)>;
    const auto found = std::bit_cast<Components>(actual);
    const auto wanted = std::bit_cast<Components>(expected);
    const auto isSame = [&](float a, float b) { return std::abs(a - b) <= tolerance; };
    if (std::ranges::equal(found, wanted, isSame))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << testing::PrintToString(found) << " is not " << testing::PrintToString(wanted);
}

} // namespace zavex::test
