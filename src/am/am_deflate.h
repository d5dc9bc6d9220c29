#pragma once

#include <cstddef>

namespace zavex::am {

/** Whether `deflated` bytes can hold `size` bytes: a size in a damaged file may claim anything. */
constexpr bool canInflateTo(std::size_t size, std::size_t deflated)
{
    constexpr std::size_t mostPerByte = 1032; // the limit of the deflate format
    return size / mostPerByte <= deflated;
}

} // namespace zavex::am
