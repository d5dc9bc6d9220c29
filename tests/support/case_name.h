#pragma once

#include <string>

namespace zavex::test {

/** Names a test after its row, for INSTANTIATE_TEST_SUITE_P. */
inline constexpr auto caseName = [](const auto& each) { return std::string{each.param.name}; };

} // namespace zavex::test
