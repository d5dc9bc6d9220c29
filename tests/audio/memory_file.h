#pragma once

#include "audio/aud_file.h"

#include <memory>
#include <utility>
#include <vector>

namespace zavex::test {

/** A file that owns its bytes. */
inline std::shared_ptr<audio::File> fileOf(std::vector<std::byte> bytes)
{
    const auto holder = std::make_shared<std::vector<std::byte>>(std::move(bytes));
    return audio::createMemoryFile({holder, holder->data()}, holder->size());
}

} // namespace zavex::test
