#pragma once

#include "am/am_file.h"

#include <cstdint>
#include <string>

namespace zavex::am {

/** What became of opening a file. */
struct OpenedFile {
    int descriptor = -1;    // to be closed by the caller; -1 when there is nothing to read
    std::uint64_t size = 0; // bytes
    std::string failure;    // why it cannot be opened; empty when it is open or missing
};

/** Opens a regular file for reading. A pipe, a device or a folder is refused, not waited for. */
OpenedFile openRegularFile(const std::string& path);

/** What became of reading a file: the file, or why there is none. */
struct DiskRead {
    File file;           // null when it is missing or cannot be read
    std::string failure; // why it cannot be read; empty when it was read or is missing

    /** Nothing has this name, or a part of the path is no folder. */
    bool isMissing() const { return file.isNull() && failure.empty(); }
};

/**
 * Reads a regular file whole. A file of 2^31 bytes or more cannot be read.
 *
 * @param path  Where the file is.
 * @param name  What the file is called from then on.
 */
DiskRead readDiskFile(const std::string& path, const std::string& name);

/** Where symbolic links lead, to a file or to where one is to be; anything else is itself. */
std::string followLinks(const std::string& path);

/**
 * Where `path` leads when links are followed, if that lies outside the working directory; empty
 * when it lies inside. What is missing counts as what it would be. So does, as inside, a path that
 * cannot be followed: it cannot be opened either.
 */
std::string leadsOutside(const std::string& path);

/**
 * A folder that one program at a time works in: an advisory lock on the folder itself, which leaves
 * nothing behind however the program ends.
 */
class FolderLock {
public:
    FolderLock() = default;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /** Lets the folder go. */
    ~FolderLock();

    /**
     * Takes the folder until the object ends.
     *
     * @return False when another holds it. True also where the file system knows no locks, which is
     *         logged.
     */
    bool take(const std::string& folder);

    /** Whether no other program can take the folder. */
    bool isHeld() const { return mHeld; }

private:
    int mDescriptor = -1; // of the folder
    bool mHeld = false;
};

} // namespace zavex::am
