#include "am/am.h"

#include "am/am_archivedirectory.h"
#include "am/am_archivezip.h"
#include "am/am_text.h"
#include "common/zvx_system.h"

#include <string_view>
#include <utility>

namespace zavex::am {

namespace {

constexpr std::string_view SCHEME_MARK = "://";

struct ArchivePath {
    std::string type; // lower case; empty for a directory
    std::string location;
};

ArchivePath split(const std::string& path)
{
    const std::size_t mark = path.find(SCHEME_MARK);
    const std::size_t separator = path.find_first_of("/\\");
    if (mark != std::string::npos && (separator == std::string::npos || mark < separator))
        return {lowerCase(path.substr(0, mark)), path.substr(mark + SCHEME_MARK.size())};

    const std::size_t stop = path.find_last_of("/\\.");
    if (stop == std::string::npos || path[stop] != '.')
        return {"", path};
    return {lowerCase(path.substr(stop + 1)), path};
}

} // namespace

ArchiveManager::ArchiveManager() : mImageManager(std::make_unique<ImageManager>()) {}

ArchiveManager::~ArchiveManager() = default;

int ArchiveManager::addArchive(const std::string& path)
{
    if (path.empty())
        return -1;

    const ArchivePath parts = split(path);
    if (parts.type.empty()) {
        mArchives.push_back(std::make_unique<ArchiveDirectory>(parts.location));
    } else if (parts.type == "zip") {
        ZVX_LOG("log", "app", "Adding zip: %s", parts.location.c_str());
        mArchives.push_back(std::make_unique<ArchiveZIP>(parts.location));
    } else {
        return -1;
    }
    return static_cast<int>(mArchives.size()) - 1;
}

ArchiveBase* ArchiveManager::find(int archive) const
{
    const auto index = static_cast<std::size_t>(archive);
    return archive < 0 || index >= mArchives.size() ? nullptr : mArchives[index].get();
}

File ArchiveManager::readFile(const std::string& name, int archive)
{
    ArchiveBase* const preferred = find(archive);
    File file = preferred != nullptr ? preferred->read(name) : File();
    for (std::size_t index = 0; index < mArchives.size() && file.isNull(); ++index) {
        if (mArchives[index].get() != preferred)
            file = mArchives[index]->read(name);
    }
    return file;
}

std::string ArchiveManager::getWritePath(const std::string& name) const
{
    return mArchives.empty() ? "" : mArchives.front()->getLocation() + name;
}

bool ArchiveManager::writeFile(File file, int archive)
{
    ArchiveBase* const target = find(archive == -1 ? 0 : archive);
    return target != nullptr && target->write(std::move(file));
}

void ArchiveManager::flush(int archive)
{
    if (archive >= 0) {
        if (ArchiveBase* const one = find(archive))
            one->flush();
        return;
    }
    for (const std::unique_ptr<ArchiveBase>& each : mArchives)
        each->flush();
}

bool ArchiveManager::writeAllToArchive(const std::string& /*name*/)
{
    return true;
}

Image ArchiveManager::loadImage(const std::string& name, int archive, bool uncached)
{
    const File file = readFile(name, archive);
    if (file.isNull())
        throw Exception("loadImage, File not found (%s)", name.c_str());
    return mImageManager->loadImage(name, file, uncached);
}

bool ArchiveManager::writeImage(const std::string& name, Image& image)
{
    File file = mImageManager->encodeImage(name, image);
    return !file.isNull() && writeFile(std::move(file), -1);
}

std::string ArchiveManager::describeSearch() const
{
    std::string list;
    for (const std::unique_ptr<ArchiveBase>& each : mArchives)
        list += (list.empty() ? "" : ", ") + each->getLocation();
    return list;
}

} // namespace zavex::am
