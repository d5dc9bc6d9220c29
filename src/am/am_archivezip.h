#pragma once

#include "am/am_archive.h"

namespace zavex::am {

/** A zip file; read-only. One that cannot be opened has no files. */
class ArchiveZIP final : public ArchiveBase {
public:
    explicit ArchiveZIP(const std::string& path);
    ArchiveZIP(const ArchiveZIP&) = delete;
    ArchiveZIP& operator=(const ArchiveZIP&) = delete;
    ~ArchiveZIP() override;

    /**
     * One '.' and then one separator in front of the name are ignored. Letters are compared as the
     * system's file names are: on Linux, case matters.
     */
    File read(const std::string& name) override;

    /** Always false. */
    bool write(File file) override;

    const std::string& getLocation() const override { return mPath; }

private:
    std::string mPath;
    void* mZipfile = nullptr; // minizip's handle; null when the file could not be opened
};

} // namespace zavex::am
