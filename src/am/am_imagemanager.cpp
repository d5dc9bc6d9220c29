#include "am/am_imagemanager.h"

#include "am/am_imagecodec_jpeg.h"
#include "am/am_imagecodec_png.h"
#include "am/am_imagecodec_tga.h"
#include "am/am_text.h"
#include "common/zvx_system.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zavex::am {

ImageManager::ImageManager()
{
    addCodec(std::make_unique<ImageCodecPNG>());
    addCodec(std::make_unique<ImageCodecJPEG>());
    addCodec(std::make_unique<ImageCodecTGA>());
}

ImageManager::~ImageManager()
{
    empty();
}

void ImageManager::addCodec(std::unique_ptr<ImageCodec> codec)
{
    mImageCodecs[codec->getFormatString()] = std::move(codec);
}

ImageCodec* ImageManager::findCodec(const std::string& name) const
{
    const auto found = mImageCodecs.find(lowerCase(getExtension(name)));
    return found == mImageCodecs.end() ? nullptr : found->second.get();
}

Image ImageManager::loadImage(const std::string& name, const File& file, bool uncached)
{
    if (!uncached) {
        const auto cached = mImageCache.find(name);
        if (cached != mImageCache.end())
            return cached->second;
    }

    ImageCodec* const codec = findCodec(name);
    if (codec == nullptr)
        throw Exception("ImageManager::loadImage, No decoder found for %s", name.c_str());
    ZVX_REQUIRE(!file.isNull(), "!file.isNull()");

    auto object = std::make_unique<ImageObject>();
    codec->decodeImage(reinterpret_cast<const unsigned char*>(file->data),
                       static_cast<std::size_t>(file->length), *object);
    if (uncached)
        return Image(object.release());

    object->setManager(this);
    object->setId(name);
    Image image(object.release());
    mImageCache.emplace(name, image);
    return image;
}

File ImageManager::encodeImage(const std::string& name, Image& image)
{
    ImageCodec* const codec = findCodec(name);
    if (codec == nullptr || !codec->canWrite())
        return {};

    unsigned char* bytes = nullptr;
    std::size_t size = 0;
    if (!codec->encodeImage(&bytes, &size, *image))
        return {};
    std::unique_ptr<char[]> owned(reinterpret_cast<char*>(bytes));
    if (size > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        return {};
    return File(new FileStructure(name, std::move(owned), static_cast<std::int32_t>(size)));
}

Image ImageManager::getImage(const std::string& name)
{
    const auto cached = mImageCache.find(name);
    return cached == mImageCache.end() ? Image() : cached->second;
}

int ImageManager::removeImage(const std::string& name)
{
    const auto found = mImageCache.find(name);
    if (found == mImageCache.end())
        throw Exception("ImageManager::removeImage, Image %s not found!", name.c_str());
    drop(found);
    return 0;
}

void ImageManager::releaseImage(const ImageObject& object) noexcept
{
    const auto found = mImageCache.find(object.getId());
    if (found != mImageCache.end() && &*found->second == &object)
        drop(found);
}

/** Detaches the image, so that its handles do not come back here when they go. */
void ImageManager::drop(ImageCache::iterator entry)
{
    const Image image = std::move(entry->second);
    mImageCache.erase(entry);
    image->setManager(nullptr);
    image->setId("");
}

void ImageManager::empty()
{
    while (!mImageCache.empty())
        drop(mImageCache.begin());
}

std::string ImageManager::getExtension(const std::string& name)
{
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? "" : name.substr(dot + 1);
}

} // namespace zavex::am
