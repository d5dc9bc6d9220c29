#include "am/am_videofile_imagedumper.h"

#include "am/am.h"
#include "am/am_diskfile.h"
#include "am/am_imagecodec_png.h"
#include "common/zvx_process.h"

#include <cstdio>
#include <utility>

#include <sys/stat.h>

namespace zavex::am {

namespace {

constexpr std::size_t NAME_SIZE = 1024; // bytes, terminator included

/** Why a frame must not take the place of what is at `path`; empty when it may. */
std::string obstacle(const std::string& path)
{
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0 || leadsOutside(path).empty())
        return {};
    if (S_ISLNK(status.st_mode))
        return "Is a symbolic link";
    const DiskRead old = readDiskFile(path, path);
    if (old.file.isNull())
        return old.failure;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(old.file->data);
    if (ImageCodecPNG::isEncoded(bytes, old.file->bytes().size()))
        return {};
    return "Not a recorded picture";
}

} // namespace

std::string VideoFileImageDumper::getFrameName() const
{
    char name[NAME_SIZE];
    std::snprintf(name, NAME_SIZE, "%s.%06d.%s", mFilename.c_str(), mFrameNumber,
                  mExtension.c_str());
    return name;
}

std::string VideoFileImageDumper::getPath() const
{
    return mArchive == nullptr ? "" : mArchive->getWritePath(getFrameName());
}

void VideoFileImageDumper::writeFrame()
{
    const std::string name = getFrameName();
    const std::string path = getPath();
    ++mFrameNumber;
    if (!mImage.isNull()) {
        const std::string reason = obstacle(path);
        if (!reason.empty())
            return refuse(path, reason);
    }
    if (mArchive == nullptr || !mArchive->writeImage(name, mImage))
        ++mLostFrames;
}

void VideoFileImageDumper::refuse(const std::string& path, const std::string& reason)
{
    ++mLostFrames;
    if (std::exchange(mRefused, true))
        return;
    reportFailure("'%s' is kept and the frame lost: %s", path.c_str(), reason.c_str());
}

bool VideoFileImageDumper::openForWrite(const std::string& name, const Format& format,
                                        ArchiveManager* archive)
{
    const std::size_t dot = name.rfind('.');
    if (archive == nullptr || dot == std::string::npos || name.substr(dot + 1) != "png")
        return false;

    mArchive = archive;
    mFormat = format;
    mFrameNumber = 0;
    mLostFrames = 0;
    mRefused = false;
    mFilename = name.substr(0, dot);
    mExtension = name.substr(dot + 1);
    return true;
}

} // namespace zavex::am
