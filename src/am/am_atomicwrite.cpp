#include "am/am_atomicwrite.h"

#include "am/am_archivedirectory.h"
#include "am/am_diskfile.h"
#include "common/zvx_system.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace zavex::am {

namespace {

constexpr mode_t NEW_FILE_MODE = 0666; // before the umask
constexpr mode_t PERMISSIONS = 07777;
constexpr std::string_view PART = ".part";
constexpr std::size_t MOST_DIGITS = 10; // of the number behind it

std::string folderOf(const std::string& target)
{
    const std::string folder = target.substr(0, target.rfind('/') + 1);
    return folder.empty() ? "./" : folder;
}

/** How the names of the files beside this one begin; a name may be as long as the system allows. */
std::string partName(const std::string& target)
{
    const std::string name = target.substr(target.rfind('/') + 1);
    return "." + name.substr(0, NAME_MAX - 1 - PART.size() - MOST_DIGITS) + std::string(PART);
}

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

/** Closes `descriptor`; errno stays what it was when `done` is false. */
bool closeAfter(int descriptor, bool done)
{
    const int error = errno;
    const bool closed = close(descriptor) == 0;
    if (!done)
        errno = error;
    return done && closed;
}

/** Whether the folder, and not the disk or the file, is what refuses. */
bool isFolderRefusal(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

/** Room for what is about to be written, where the file system can promise it. */
bool reserve(int descriptor, std::size_t size)
{
    const int error = posix_fallocate(descriptor, 0, static_cast<off_t>(size));
    errno = error;
    return error == 0 || (error != ENOSPC && error != EFBIG);
}

/** Makes an open file hold these bytes and no others, on the disk. */
bool overwrite(int descriptor, std::string_view bytes)
{
    return lseek(descriptor, 0, SEEK_SET) == 0 && writeAll(descriptor, bytes) &&
           ftruncate(descriptor, static_cast<off_t>(bytes.size())) == 0 && fsync(descriptor) == 0;
}

/** Makes a folder remember its files on the disk. Where a file system cannot, nothing happens. */
void flush(const std::string& folder)
{
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

} // namespace

FileReplacement::FileReplacement(const std::string& path, Flush flush)
    : mPath(path), mTarget(followLinks(path)), mFlush(flush)
{}

FileReplacement::~FileReplacement()
{
    dropBeside();
}

void FileReplacement::dropBeside()
{
    if (!mBeside.empty())
        unlink(mBeside.c_str());
    mBeside.clear();
}

bool FileReplacement::prepare(std::string_view bytes)
{
    mReplaces = stat(mTarget.c_str(), &mOld) == 0;
    if (!mReplaces && errno != ENOENT)
        return false;
    if (mReplaces && !S_ISREG(mOld.st_mode)) {
        errno = S_ISDIR(mOld.st_mode) ? EISDIR : EINVAL;
        return false;
    }
    // Renaming over a write-protected file would work.
    if (mReplaces && faccessat(AT_FDCWD, mTarget.c_str(), W_OK, AT_EACCESS) != 0)
        return false;
    if (prepareBeside(bytes))
        return true;
    const int error = errno;
    dropBeside();
    errno = error;
    mInPlace = mReplaces && isFolderRefusal(error);
    if (mInPlace)
        mBytes = bytes;
    return mInPlace;
}

bool FileReplacement::prepareBeside(std::string_view bytes)
{
    int beside = openBeside();
    if (beside < 0 && errno == ENOENT && createFullDirectory(mTarget))
        beside = openBeside();
    return beside >= 0 && closeAfter(beside, fill(beside, bytes));
}

/** Creates a file in the folder of the target, under a name that nothing has. -1 when it cannot. */
int FileReplacement::openBeside()
{
    const std::string start = folderOf(mTarget) + partName(mTarget);
    int descriptor = -1;
    for (int number = 0; descriptor < 0 && (number == 0 || errno == EEXIST); ++number) {
        std::string beside = start + std::to_string(number);
        descriptor = open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, NEW_FILE_MODE);
        if (descriptor >= 0)
            mBeside = std::move(beside);
    }
    return descriptor;
}

bool FileReplacement::fill(int beside, std::string_view bytes) const
{
    if (!writeAll(beside, bytes) || (mReplaces && !takeOwner(beside)))
        return false;
    return (!mReplaces && mFlush == Flush::REPLACED) || fsync(beside) == 0;
}

/** Owner and permissions of the old file. */
bool FileReplacement::takeOwner(int beside) const
{
    struct stat status {};
    if (fstat(beside, &status) != 0)
        return false;
    if ((status.st_uid != mOld.st_uid || status.st_gid != mOld.st_gid) &&
        fchown(beside, mOld.st_uid, mOld.st_gid) != 0)
        return false;
    return fchmod(beside, mOld.st_mode & PERMISSIONS) == 0;
}

bool FileReplacement::place()
{
    if (!mInPlace && std::rename(mBeside.c_str(), mTarget.c_str()) == 0) {
        mBeside.clear();
        return true;
    }
    if (!mInPlace && !(mReplaces && isFolderRefusal(errno)))
        return false;
    return writeInPlace();
}

bool FileReplacement::writeInPlace()
{
    if (!mBeside.empty()) {
        const DiskRead beside = readDiskFile(mBeside, mBeside);
        if (beside.file.isNull())
            return false;
        mBytes = beside.file->bytes();
    }
    const DiskRead old = readDiskFile(mTarget, mTarget);
    const int descriptor = open(mTarget.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return false;
    bool done = reserve(descriptor, mBytes.size()) && overwrite(descriptor, mBytes);
    if (!done && !old.file.isNull()) {
        const int error = errno;
        overwrite(descriptor, old.file->bytes());
        errno = error;
    }
    done = closeAfter(descriptor, done);
    if (done)
        ZVX_LOG("log", "app", "'%s' was written in place: its folder takes no file beside it\n",
                mPath.c_str());
    return done;
}

std::string FileReplacement::getFolder() const
{
    return folderOf(mTarget);
}

void SaveSet::add(const std::string& path, std::string_view bytes)
{
    if (mFiles.emplace_back(path, FileReplacement::Flush::ALWAYS).prepare(bytes))
        return;
    const int error = errno;
    mFiles.pop_back();
    refuse(path, std::strerror(error));
}

void SaveSet::refuse(const std::string& path, const std::string& reason)
{
    mFailures.push_back({path, reason});
}

std::vector<SaveFailure> SaveSet::commit()
{
    for (FileReplacement& file : mFiles)
        if (!file.place())
            refuse(file.getPath(), std::strerror(errno));
    std::set<std::string> folders;
    for (const FileReplacement& file : mFiles)
        folders.insert(file.getFolder());
    for (const std::string& folder : folders)
        flush(folder);
    mFiles.clear();
    return std::exchange(mFailures, {});
}

bool writeFileAtomically(const std::string& path, std::string_view bytes, std::string& reason)
{
    FileReplacement file(path, FileReplacement::Flush::REPLACED);
    const bool written = file.prepare(bytes) && file.place();
    if (!written)
        reason = std::strerror(errno);
    return written;
}

void removeLeftovers(const std::string& path)
{
    const std::string target = followLinks(path);
    const std::string folder = folderOf(target);
    const std::string start = partName(target);
    // The standard library's own walk through a folder does not bear a failing allocation.
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.c_str()), closedir);
    while (const dirent* const entry = entries ? readdir(entries.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name.size() <= start.size() || !name.starts_with(start) ||
            name.find_first_not_of("0123456789", start.size()) != std::string_view::npos)
            continue;
        const std::string left = folder + entry->d_name;
        if (unlink(left.c_str()) == 0)
            ZVX_LOG("log", "app", "Removed '%s', left by a save that was cut short\n",
                    left.c_str());
    }
}

} // namespace zavex::am
