#include "am/am_archivezip.h"

#include "am/am_deflate.h"
#include "am/am_diskfile.h"
#include "common/zvx_system.h"

#include <minizip/unzip.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include <unistd.h>

namespace zavex::am {

namespace {

constexpr int CASE_BY_SYSTEM = 0; // minizip: compare names as the system's file names are
constexpr std::size_t NAME_SIZE = 512;
constexpr unsigned long ENCRYPTED = 1; // flag of an entry

std::string entryName(const std::string& name)
{
    std::size_t first = 0;
    if (first < name.size() && name[first] == '.')
        ++first;
    if (first < name.size() && (name[first] == '/' || name[first] == '\\'))
        ++first;
    return name.substr(first);
}

/** @param opaque  Holds the file that was opened. */
voidpf givenFile(voidpf opaque, const void* /*name*/, int /*mode*/)
{
    return *static_cast<std::FILE**>(opaque);
}

int closeGiven(voidpf opaque, voidpf /*stream*/)
{
    return std::fclose(std::exchange(*static_cast<std::FILE**>(opaque), nullptr));
}

/** Why an entry is not to be read; empty when it may be. A size field may lie. */
std::string refusal(const unz_file_info& info, std::uint64_t zipSize)
{
    if ((info.flag & ENCRYPTED) != 0)
        return "It is encrypted";
    if (info.uncompressed_size > ArchiveZIP::MOST_BYTES)
        return "It has " + std::to_string(info.uncompressed_size) + " bytes, expected at most " +
               std::to_string(ArchiveZIP::MOST_BYTES);
    if (info.compressed_size > zipSize ||
        !canInflateTo(info.uncompressed_size, info.compressed_size))
        return "It claims " + std::to_string(info.uncompressed_size) + " bytes in " +
               std::to_string(info.compressed_size) + ", in a file of " + std::to_string(zipSize);
    return {};
}

/** Reads the open entry. False when it has fewer bytes. */
bool readAll(unzFile zip, char* bytes, std::size_t size)
{
    while (size > 0) {
        const int count = unzReadCurrentFile(zip, bytes, static_cast<unsigned>(size));
        if (count <= 0)
            return false;
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace

ArchiveZIP::ArchiveZIP(const std::string& path) : mPath(path)
{
    OpenedFile opened = openRegularFile(path);
    mSize = opened.size;
    if (opened.descriptor >= 0)
        mFile = fdopen(opened.descriptor, "rb");
    if (opened.descriptor >= 0 && mFile == nullptr) {
        opened.failure = std::strerror(errno);
        close(opened.descriptor);
    }
    if (mFile != nullptr) {
        zlib_filefunc64_def functions{};
        fill_fopen64_filefunc(&functions);
        functions.zopen64_file = givenFile;
        functions.zclose_file = closeGiven;
        functions.opaque = &mFile;
        mZipfile = unzOpen2_64(path.c_str(), &functions);
        if (mZipfile == nullptr && mFile != nullptr)
            std::fclose(std::exchange(mFile, nullptr));
        if (mZipfile == nullptr)
            opened.failure = "It is damaged, or no zip file";
    }
    if (!opened.failure.empty())
        ZVX_LOG("log", "app", "Zip '%s' cannot be read: %s\n", path.c_str(),
                opened.failure.c_str());
}

ArchiveZIP::~ArchiveZIP()
{
    if (mZipfile != nullptr)
        unzClose(mZipfile);
}

File ArchiveZIP::read(const std::string& name)
{
    if (mZipfile == nullptr ||
        unzLocateFile(mZipfile, entryName(name).c_str(), CASE_BY_SYSTEM) != UNZ_OK)
        return {};
    std::string failure = "It is damaged";
    File file = readEntry(name, failure);
    if (file.isNull())
        ZVX_LOG("log", "app", "'%s' in '%s' cannot be read: %s\n", name.c_str(), mPath.c_str(),
                failure.c_str());
    return file;
}

/** @param failure  Changed where there is more to say. */
File ArchiveZIP::readEntry(const std::string& name, std::string& failure)
{
    unz_file_info info{};
    char storedName[NAME_SIZE];
    if (unzGetCurrentFileInfo(mZipfile, &info, storedName, NAME_SIZE, nullptr, 0, nullptr, 0) !=
        UNZ_OK)
        return {};
    if (std::string reason = refusal(info, mSize); !reason.empty()) {
        failure = std::move(reason);
        return {};
    }
    auto bytes = std::make_unique_for_overwrite<char[]>(info.uncompressed_size);
    if (unzOpenCurrentFilePassword(mZipfile, nullptr) != UNZ_OK)
        return {};
    const bool whole = readAll(mZipfile, bytes.get(), info.uncompressed_size);
    // The check sum is verified when a whole entry is closed.
    if (unzCloseCurrentFile(mZipfile) != UNZ_OK || !whole)
        return {};
    return File(new FileStructure(name, std::move(bytes),
                                  static_cast<std::int32_t>(info.uncompressed_size)));
}

bool ArchiveZIP::write(File /*file*/)
{
    return false;
}

} // namespace zavex::am
