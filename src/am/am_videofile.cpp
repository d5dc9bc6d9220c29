#include "am/am_videofile.h"

#include "am/am_videofile_imagedumper.h"
#include "common/zvx_system.h"

#include <memory>

namespace zavex::am {

VideoFile* VideoFile::createForWrite(const std::string& name, const Format& format,
                                     ArchiveManager* archive)
{
    auto file = std::make_unique<VideoFileImageDumper>();
    if (!file->openForWrite(name, format, archive))
        throw Exception("Could not find something that could write to '%s'", name.c_str());
    return file.release();
}

VideoFile* VideoFile::createForRead(const std::string& name)
{
    auto file = std::make_unique<VideoFileImageDumper>();
    if (!file->openForRead(name))
        throw Exception("Could not find something that could read from '%s'", name.c_str());
    return file.release();
}

VideoFile* VideoFile::createForRead(const unsigned char* data, int size)
{
    auto file = std::make_unique<VideoFileImageDumper>();
    if (!file->openForRead(data, size))
        throw Exception("Could not find something that could read from buffer");
    return file.release();
}

bool VideoFile::openForRead(const std::string& /*name*/)
{
    return false;
}

bool VideoFile::openForRead(const unsigned char* /*data*/, int /*size*/)
{
    return false;
}

bool VideoFile::openForWrite(const std::string& /*name*/, const Format& /*format*/,
                             ArchiveManager* /*archive*/)
{
    return false;
}

} // namespace zavex::am
