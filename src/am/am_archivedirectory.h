#pragma once

#include "am/am_archive.h"

namespace zavex::am {

/**
 * Creates one directory, open to everyone before the umask. True when there is one afterwards, else
 * errno says why not.
 */
bool CreateDirectory(const std::string& path);

/**
 * Creates every directory that `path` names before its last separator ('/' or '\\'). Dots and
 * separators that lead the path are not created. Stops, and is false, at the first that cannot be;
 * errno says why.
 */
bool createFullDirectory(const std::string& path);

/** A directory of the file system. Names are relative to it. */
class ArchiveDirectory final : public ArchiveBase {
public:
    /** @param path  Empty for the working directory as it is when a file is named. */
    explicit ArchiveDirectory(const std::string& path);

    /** Null also for what `readDiskFile` cannot read; that is logged with the reason. */
    File read(const std::string& name) override;

    /** As `writeFileAtomically`. False also for a null file. */
    bool write(File file) override;

    const std::string& getLocation() const override { return mPath; }

private:
    std::string mPath; // ends in a separator, or is empty
};

} // namespace zavex::am
