#pragma once

#include "am/am_archive.h"
#include "am/am_image.h"
#include "am/am_imagemanager.h"

#include <memory>
#include <string>
#include <vector>

namespace zavex::am {

/**
 * All file access: an ordered list of archives, the first of which that has a file answers.
 *
 * Owns its archives, which are never removed, and the cache of loaded images. Files and images are
 * handles that may outlive it.
 */
class ArchiveManager {
public:
    ArchiveManager();
    ArchiveManager(const ArchiveManager&) = delete;
    ArchiveManager& operator=(const ArchiveManager&) = delete;
    ~ArchiveManager();

    /**
     * Adds a directory or a zip file behind those that are there.
     *
     * The kind is what stands before "://", else the extension of the last component: none for a
     * directory, "zip" in any case of letters for a zip file.
     *
     * @return The index of the archive; -1 for an empty path or another kind.
     */
    int addArchive(const std::string& path);

    /**
     * The file's bytes, null when no archive has it.
     *
     * @param archive  Index of an archive that is asked before the others; -1 for none.
     */
    File readFile(const std::string& name, int archive);

    /** Where a file of that name is written in the first archive; empty when there is none. */
    std::string getWritePath(const std::string& name) const;

    /** Writes to one archive, the first when `archive` is -1. False when it cannot. */
    bool writeFile(File file, int archive);

    /** Flushes one archive, or each of them in order when `archive` is negative. */
    void flush(int archive);

    /** Does nothing; true. */
    bool writeAllToArchive(const std::string& name);

    /**
     * A picture by name, shared through the cache unless `uncached`.
     *
     * Throws Exception when there is no such file or it cannot be decoded.
     */
    Image loadImage(const std::string& name, int archive, bool uncached);

    /** Encodes a picture by the extension of `name` and writes it to the first archive. */
    bool writeImage(const std::string& name, Image& image);

    ImageManager& getImageManager() { return *mImageManager; }

    /** The locations of the archives in the order in which they are searched, for messages. */
    std::string describeSearch() const;

private:
    ArchiveBase* find(int archive) const;

    std::unique_ptr<ImageManager> mImageManager; // outlives the archives
    std::vector<std::unique_ptr<ArchiveBase>> mArchives;
};

} // namespace zavex::am
