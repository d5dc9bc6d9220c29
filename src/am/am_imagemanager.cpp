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

ImageManager::ImageManager(std::size_t mostBytes) : mMostBytes(mostBytes)
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

    const auto* const bytes = reinterpret_cast<const unsigned char*>(file->data);
    const std::size_t length = file->bytes().size();
    std::shared_ptr<void> share = takeShare(name, codec->readSize(bytes, length));
    auto object = std::make_unique<ImageObject>();
    codec->decodeImage(bytes, length, *object);
    object->setShare(std::move(share));
    if (uncached)
        return Image(object.release());

    object->setManager(this);
    object->setId(name);
    Image image(object.release());
    mImageCache.emplace(name, image);
    return image;
}

/** Counts a picture in before it is decoded, until what is returned goes. */
std::shared_ptr<void> ImageManager::takeShare(const std::string& name, ImageSize size)
{
    const std::size_t bytes = std::size_t{static_cast<unsigned>(size.width)} *
                              static_cast<unsigned>(size.height) * ImageObject::BYTES_PER_PIXEL;
    if (bytes > ImageObject::MOST_BYTES || bytes > mMostBytes - *mBytesHeld)
        throw Exception("Picture '%s' has %d x %d pixels, %zu bytes: one may take at most %zu, all "
                        "together %zu, of which %zu are taken",
                        name.c_str(), size.width, size.height, bytes, ImageObject::MOST_BYTES,
                        mMostBytes, *mBytesHeld);
    *mBytesHeld += bytes;
    return {mBytesHeld.get(), [held = mBytesHeld, bytes](void*) { *held -= bytes; }};
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
