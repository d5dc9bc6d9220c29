#include "display/dis_resource.h"

#include "am/am.h"
#include "common/zvx_system.h"
#include "display/dis_display.h"

#include <limits>

namespace zavex::display {

namespace {

/** What files are looked for in, in a line of its own: what failed is the next one's message. */
void logArchives(const am::ArchiveManager& archive)
{
    ZVX_LOG("log", "app", "The archives are searched in this order: %s",
            archive.describeSearch().c_str());
}

} // namespace

Resource::Resource(DisplayGL* display) : mDisplay{display}
{
    ZVX_REQUIRE(display, "display");
}

void Resource::destroy()
{
    mDisplay->destroy(this);
}

bool Resource::canLoad() const
{
    return mDisplay->getArchive() != nullptr;
}

am::File Resource::loadFile(const std::string& name) const
{
    if (!canLoad())
        throw Exception{"Display::Resource; This resource can not load files (when loading '%s')",
                        name.c_str()};

    am::File file = mDisplay->getArchive()->readFile(name, -1);
    if (file.isNull()) {
        logArchives(*mDisplay->getArchive());
        throw Exception{"Display::Resource; File '%s' could not be read", name.c_str()};
    }
    return file;
}

namespace {

/** A file over bytes that somebody else keeps. */
class BorrowedFile {
public:
    BorrowedFile(const std::string& name, const unsigned char* data, std::size_t size)
    {
        if (size > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
            throw Exception{"Display::Resource; '%s' has too many bytes (%zu)", name.c_str(), size};
        mFile.attach(new am::FileStructure);
        mFile->filename = name;
        mFile->length = static_cast<std::int32_t>(size);
        // Decoders only read; a file has no other place for its bytes.
        mFile->data = const_cast<char*>(reinterpret_cast<const char*>(data));
    }
    ~BorrowedFile() { mFile->data = nullptr; }
    BorrowedFile(const BorrowedFile&) = delete;
    BorrowedFile& operator=(const BorrowedFile&) = delete;

    const am::File& file() const { return mFile; }

private:
    am::File mFile;
};

/** Runs `load`, and says which picture it was that could not be loaded. */
template <typename Load>
am::Image loadedImage(const Resource& resource, const std::string& name, Load load)
{
    if (!resource.canLoad())
        throw Exception{
            "Display::Resource; This resource can not load files (when loading image '%s')",
            name.c_str()};

    am::ArchiveManager& archive = *resource.getDisplay()->getArchive();
    try {
        return load(archive);
    } catch (const Exception& exception) {
        logArchives(archive);
        throw Exception{
            "Display::Resource; Could not read (or decode) image '%s' (am msg was '%s')",
            name.c_str(), exception.what()};
    }
}

} // namespace

am::Image Resource::loadImage(const std::string& name, bool uncached) const
{
    return loadedImage(*this, name, [&](am::ArchiveManager& archive) {
        return archive.loadImage(name, -1, uncached);
    });
}

am::Image Resource::loadImage(const std::string& name, const unsigned char* data,
                              std::size_t size) const
{
    return loadedImage(*this, name, [&](am::ArchiveManager& archive) {
        const BorrowedFile borrowed{name, data, size};
        return archive.getImageManager().loadImage(name, borrowed.file(), false);
    });
}

} // namespace zavex::display
