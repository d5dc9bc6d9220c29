#pragma once

#include "am/am_smartptr.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zavex::am {

/** The bytes of a file and the name under which it was read or is to be written. */
struct FileStructure {
    FileStructure() = default;

    /** Takes over an array of `size` bytes, at most 2^31 - 1. */
    FileStructure(std::string name, std::unique_ptr<char[]> bytes, std::int32_t size)
        : filename(std::move(name)), length(size), data(bytes.release())
    {}

    FileStructure(const FileStructure&) = delete;
    FileStructure& operator=(const FileStructure&) = delete;

    ~FileStructure()
    {
        delete[] data;
        data = nullptr;
        length = 0;
    }

    std::string_view bytes() const { return {data, static_cast<std::size_t>(length)}; }

    std::string filename;    // relative to its archive
    std::int32_t length = 0; // bytes
    char* data = nullptr;    // owned, allocated as an array
};

/** A handle on a file in memory, and the only kind of owner it has; null: there is no such file. */
using File = TSmartPtr<FileStructure, TRefCount<FileStructure>>;

} // namespace zavex::am
