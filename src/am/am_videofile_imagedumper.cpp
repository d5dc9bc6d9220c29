#include "am/am_videofile_imagedumper.h"

#include "am/am.h"

#include <cstdio>

namespace zavex::am {

namespace {

constexpr std::size_t NAME_SIZE = 1024; // bytes, terminator included

} // namespace

void VideoFileImageDumper::writeFrame()
{
    char name[NAME_SIZE];
    std::snprintf(name, NAME_SIZE, "%s.%06d.%s", mFilename.c_str(), mFrameNumber,
                  mExtension.c_str());
    ++mFrameNumber;
    if (mArchive == nullptr || !mArchive->writeImage(name, mImage))
        ++mLostFrames;
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
    mFilename = name.substr(0, dot);
    mExtension = name.substr(dot + 1);
    return true;
}

} // namespace zavex::am
