#pragma once

#include "am/am_file.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace zavex::test {

inline am::File makeFile(const std::string& name, std::string_view content)
{
    std::unique_ptr<char[]> bytes(new char[content.size()]);
    std::ranges::copy(content, bytes.get());
    return am::File(
        new am::FileStructure(name, std::move(bytes), static_cast<std::int32_t>(content.size())));
}

inline std::string textOf(const am::File& file)
{
    return file.isNull() ? "(null)" : std::string(file->bytes());
}

} // namespace zavex::test
