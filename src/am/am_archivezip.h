#pragma once

#include "am/am_archive.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace zavex::am {

/**
 * A zip file; read-only. One that cannot be opened has no files; unless it is missing, the reason
 * is logged. A pipe, a device or a folder is not opened and not waited for.
 */
class ArchiveZIP final : public ArchiveBase {
public:
    /** What one entry may take: 50 minutes of music as plain samples. */
    static constexpr std::size_t MOST_BYTES = std::size_t{1} << 29U;

    explicit ArchiveZIP(const std::string& path);
    ArchiveZIP(const ArchiveZIP&) = delete;
    ArchiveZIP& operator=(const ArchiveZIP&) = delete;
    ~ArchiveZIP() override;

    /**
     * One '.' and then one separator in front of the name are ignored. Letters are compared as the
     * system's file names are: on Linux, case matters.
     *
     * Null also for an entry that is encrypted or damaged, that claims more than the file can hold,
     * or has more than MOST_BYTES; that is logged with the reason.
     */
    File read(const std::string& name) override;

    /** Always false. */
    bool write(File file) override;

    const std::string& getLocation() const override { return mPath; }

private:
    File readEntry(const std::string& name, std::string& failure);

    std::string mPath;
    std::uint64_t mSize = 0;    // of the zip file, bytes
    std::FILE* mFile = nullptr; // open until minizip closes it; it leaves it open without memory
    void* mZipfile = nullptr;   // minizip's handle; null when the file could not be opened
};

} // namespace zavex::am
