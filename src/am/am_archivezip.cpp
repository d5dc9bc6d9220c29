#include "am/am_archivezip.h"

#include "am/am_deflate.h"

#include <minizip/unzip.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace zavex::am {

namespace {

constexpr int CASE_BY_SYSTEM = 0; // minizip: compare names as the system's file names are
constexpr std::size_t NAME_SIZE = 512;
constexpr std::size_t CHUNK = 1U << 18U; // bytes

std::string entryName(const std::string& name)
{
    std::size_t first = 0;
    if (first < name.size() && name[first] == '.')
        ++first;
    if (first < name.size() && (name[first] == '/' || name[first] == '\\'))
        ++first;
    return name.substr(first);
}

/** Whether an entry can be as large as it claims: a size field may lie. */
bool isPlausible(const unz_file_info& info)
{
    return info.uncompressed_size <=
               static_cast<unsigned long>(std::numeric_limits<std::int32_t>::max()) &&
           canInflateTo(info.uncompressed_size, info.compressed_size);
}

/** Reads the open entry. Memory grows with what really comes. False when it is not `size` bytes. */
bool readEntry(unzFile zip, std::size_t size, std::vector<char>& bytes)
{
    while (bytes.size() < size) {
        const std::size_t start = bytes.size();
        bytes.resize(start + std::min(CHUNK, size - start));
        const int count =
            unzReadCurrentFile(zip, &bytes[start], static_cast<unsigned>(bytes.size() - start));
        bytes.resize(start + static_cast<std::size_t>(std::max(count, 0)));
        if (count <= 0)
            return false;
    }
    // The check sum is verified when a whole entry is closed.
    return true;
}

} // namespace

ArchiveZIP::ArchiveZIP(const std::string& path) : mPath(path), mZipfile(unzOpen(path.c_str())) {}

ArchiveZIP::~ArchiveZIP()
{
    if (mZipfile != nullptr)
        unzClose(mZipfile);
}

File ArchiveZIP::read(const std::string& name)
{
    unz_file_info info{};
    char storedName[NAME_SIZE];
    if (mZipfile == nullptr ||
        unzLocateFile(mZipfile, entryName(name).c_str(), CASE_BY_SYSTEM) != UNZ_OK ||
        unzGetCurrentFileInfo(mZipfile, &info, storedName, NAME_SIZE, nullptr, 0, nullptr, 0) !=
            UNZ_OK ||
        !isPlausible(info) || unzOpenCurrentFilePassword(mZipfile, nullptr) != UNZ_OK)
        return {};

    std::vector<char> bytes;
    const bool whole = readEntry(mZipfile, info.uncompressed_size, bytes);
    if (unzCloseCurrentFile(mZipfile) != UNZ_OK || !whole)
        return {};

    auto data = std::make_unique_for_overwrite<char[]>(bytes.size());
    std::ranges::copy(bytes, data.get());
    return File(new FileStructure(name, std::move(data), static_cast<std::int32_t>(bytes.size())));
}

bool ArchiveZIP::write(File /*file*/)
{
    return false;
}

} // namespace zavex::am
