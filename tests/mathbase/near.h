#pragma once

#include "mathbase/mb_matrix4x4col.h"

#include <gtest/gtest.h>

#include <string>

namespace zavex::test {

inline constexpr float PI = 3.14159265f;
inline constexpr float ROUNDING = 1e-5f;

inline std::string text(const float* components, int count)
{
    std::string result = "(";
    for (int i = 0; i < count; ++i)
        result += (i > 0 ? ", " : "") + std::to_string(components[i]);
    return result + ")";
}

inline testing::AssertionResult isNear(const float* actual, const float* expected, int count,
                                       float tolerance)
{
    for (int i = 0; i < count; ++i) {
        if (!(std::abs(actual[i] - expected[i]) <= tolerance))
            return testing::AssertionFailure()
                   << text(actual, count) << " is not " << text(expected, count);
    }
    return testing::AssertionSuccess();
}

inline testing::AssertionResult isNear(const mathbase::Vector3f& actual,
                                       const mathbase::Vector3f& expected,
                                       float tolerance = ROUNDING)
{
    return isNear(actual, expected, 3, tolerance);
}

inline testing::AssertionResult isNear(const mathbase::Matrix4x4Col& actual,
                                       const mathbase::Matrix4x4Col& expected,
                                       float tolerance = ROUNDING)
{
    return isNear(actual.mData, expected.mData, 16, tolerance);
}

} // namespace zavex::test
