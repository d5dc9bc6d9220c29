#pragma once

#include "am/am_file.h"
#include "am/am_image.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>

namespace zavex::am {

class ImageCodec;
struct ImageSize;

/**
 * Decodes and encodes pictures by the extension of their names, and keeps those in use by name so
 * that a picture used twice is decoded once.
 */
class ImageManager {
public:
    /** What all pictures that one manager decoded may take while they live: four of the largest. */
    static constexpr std::size_t MOST_BYTES_TOGETHER = 4 * ImageObject::MOST_BYTES;

    /**
     * Knows "png", "jpg" and "tga".
     *
     * @param mostBytes  That all pictures may take together.
     */
    explicit ImageManager(std::size_t mostBytes = MOST_BYTES_TOGETHER);
    ImageManager(const ImageManager&) = delete;
    ImageManager& operator=(const ImageManager&) = delete;
    ~ImageManager();

    /**
     * Decodes a file, or gives the image that is cached under `name`.
     *
     * Throws Exception when no codec serves the extension or the file cannot be decoded; before
     * memory is taken when the picture would have more than ImageObject::MOST_BYTES, or all that
     * live would have more together than this manager allows.
     *
     * @param file      Must not be null, unless the image is cached.
     * @param uncached  Decode in any case, into a private, writable image.
     */
    Image loadImage(const std::string& name, const File& file, bool uncached);

    /**
     * The picture as a file called `name`; null when no codec writes its extension.
     *
     * Throws Exception when the image is null or shared through a cache.
     */
    File encodeImage(const std::string& name, Image& image);

    /** The cached image of that name, or a null one. */
    Image getImage(const std::string& name);

    /**
     * Takes an image out of the cache; for those that still hold it, it becomes private and
     * writable. Throws Exception when there is none of that name.
     *
     * @return 0.
     */
    int removeImage(const std::string& name);

    /** As `removeImage`, but for this very image; does nothing when it is not in the cache. */
    void releaseImage(const ImageObject& object) noexcept;

    /** Removes every image. */
    void empty();

    /** What follows the last '.', empty when there is none. */
    static std::string getExtension(const std::string& name);

private:
    using ImageCache = std::map<std::string, Image>;

    void drop(ImageCache::iterator entry);
    std::shared_ptr<void> takeShare(const std::string& name, ImageSize size);
    ImageCodec* findCodec(const std::string& name) const;
    void addCodec(std::unique_ptr<ImageCodec> codec);

    ImageCache mImageCache;
    std::size_t mMostBytes;
    std::shared_ptr<std::size_t> mBytesHeld = std::make_shared<std::size_t>(0); // by all that live
    std::map<std::string, std::unique_ptr<ImageCodec>> mImageCodecs; // by lower-case extension
};

} // namespace zavex::am
