#pragma once

#include <cstddef>
#include <string>

namespace zavex::vellum {

/** A number as it is drawn. Kept from frame to frame, so that writing it allocates nothing. */
class NumberText {
public:
    static constexpr std::size_t LONGEST = 9; // characters; what is longer is cut off

    /** `value` with `decimals` places. Holds until the next call. */
    const std::string& write(float value, int decimals);

private:
    std::string mText;
};

} // namespace zavex::vellum
