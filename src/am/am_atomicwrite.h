#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>

namespace zavex::am {

/**
 * One file on its way to the disk: at every moment the old one or the new one, whole.
 *
 * The bytes go to a file beside it, ".NAME.partN", which is renamed over it. Missing directories
 * are created. Symbolic links, owner and permissions of the old file stay; of a file with several
 * names only this one becomes the new one. What is write-protected or no regular file is not
 * replaced. Where the folder refuses, or the owner could not be kept, a file that may be written is
 * written in place, which is logged: only then a killed program may leave it half written; a write
 * that fails puts the old bytes back.
 */
class FileReplacement {
public:
    enum class Flush {
        ALWAYS,   // the bytes reach the disk before they are put in place
        REPLACED, // only where they replace a file; a new file is not waited for
    };

    FileReplacement(const std::string& path, Flush flush);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    /** Removes the file beside it, unless it was put in place. */
    ~FileReplacement();

    /** Writes the bytes beside the file. False when it cannot be written; errno says why. */
    bool prepare(std::string_view bytes);

    /** Puts what was prepared in place. False when it cannot be; errno says why. */
    bool place();

    /** As it was given. */
    const std::string& getPath() const { return mPath; }

    /** Of the file itself, not of a link to it; ends in a separator. */
    std::string getFolder() const;

private:
    bool prepareBeside(std::string_view bytes);
    int openBeside();
    void dropBeside();
    bool fill(int beside, std::string_view bytes) const;
    bool takeOwner(int beside) const;
    bool writeInPlace();

    std::string mPath;
    std::string mTarget;   // where the links of mPath lead
    std::string mBeside;   // exists; empty when there is none
    std::string mBytes;    // to be written in place; empty otherwise
    bool mInPlace = false; // the folder refuses
    Flush mFlush;
    bool mReplaces = false; // there is an old file
    struct stat mOld {};    // of the old file
};

/** A file that could not be saved, and the reason as the system words it. */
struct SaveFailure {
    std::string path;
    std::string reason;
};

/**
 * Files that are saved together: each is written and flushed beside its place, then all are put in
 * place. A file that fails does not keep the others from being saved. What was not committed is
 * gone with the object.
 */
class SaveSet {
public:
    /** Adds a file and writes its bytes beside it. */
    void add(const std::string& path, std::string_view bytes);

    /** Counts a file as failed. */
    void refuse(const std::string& path, const std::string& reason);

    /** Puts all files in place, in the order in which they were added. @return what failed. */
    std::vector<SaveFailure> commit();

private:
    std::deque<FileReplacement> mFiles; // prepared
    std::vector<SaveFailure> mFailures;
};

/**
 * Writes one file as `FileReplacement` does; a new one is not waited for.
 *
 * @param reason  Receives why it failed, as the system words it; left alone on success.
 * @return False when the file could not be written; the old one is whole then.
 */
bool writeFileAtomically(const std::string& path, std::string_view bytes, std::string& reason);

/** Removes what killed programs left beside this file when they were about to replace it. */
void removeLeftovers(const std::string& path);

} // namespace zavex::am
