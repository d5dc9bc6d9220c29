#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

namespace zavex::am {

class ImageManager;

/**
 * A picture: 4 bytes a pixel in the order blue, green, red, alpha, rows from the top down, not
 * padded.
 *
 * One that belongs to a manager is shared through its cache and read-only.
 */
class ImageObject {
public:
    static constexpr std::size_t BYTES_PER_PIXEL = 4;

    /**
     * What one picture may take: 8,192 x 8,192 pixels, twice the largest screens and as large as
     * the textures that every display can be counted on to take.
     */
    static constexpr std::size_t MOST_BYTES = std::size_t{1} << 28U;

    ImageObject() = default;

    /**
     * @param data     width x height x 4 bytes, owned from here on; null for no pixels.
     * @param manager  Whose cache the image is in, not owned; null for a private, writable image.
     * @param id       Name in the cache.
     */
    ImageObject(int width, int height, std::unique_ptr<unsigned char[]> data, ImageManager* manager,
                std::string id);

    ImageObject(const ImageObject&) = delete;
    ImageObject& operator=(const ImageObject&) = delete;
    ~ImageObject() = default;

    /** Takes new pixels and frees the old ones; as for the constructor. */
    void setData(int width, int height, std::unique_ptr<unsigned char[]> data);

    /**
     * Frees the pixels and makes room for others, whose bytes are not set; none when a side is 0.
     *
     * Throws Exception when a side is negative or the picture would have more than MOST_BYTES.
     */
    void resize(int width, int height);

    int getWidth() const { return mImageWidth; }   // pixels
    int getHeight() const { return mImageHeight; } // pixels
    const unsigned char* getData() const { return mImageData.get(); }

    /** Throws Exception when the image is shared through a cache. */
    unsigned char* getWriteData();

    const std::string& getId() const { return mId; }
    void setId(const std::string& id) { mId = id; }

    ImageManager* getManager() const { return mLoader; }
    void setManager(ImageManager* manager) { mLoader = manager; }

    /** Keeps what stands for these pixels in an account until they go. */
    void setShare(std::shared_ptr<void> share) { mShare = std::move(share); }

    /** width x height x 4. Throws Exception when that is negative or more than MOST_BYTES. */
    static std::size_t byteCount(int width, int height);

private:
    std::string mId;                 // empty when not cached
    ImageManager* mLoader = nullptr; // not owned
    int mImageWidth = 0;             // pixels
    int mImageHeight = 0;            // pixels
    std::unique_ptr<unsigned char[]> mImageData;
    std::shared_ptr<void> mShare;
};

/** What all handles on one image share. */
struct ImageRefCounter {
    ImageObject* mObject = nullptr; // owned
    int mRef = 0;
};

/**
 * A reference-counted handle on an image, or null. Dropping the last handle deletes the image; an
 * image in a cache goes when its cache's handle is the last.
 */
class Image {
public:
    Image() = default;

    /** @param object  Owned from here on; null gives a null handle. */
    explicit Image(ImageObject* object) { assign(object); }

    Image(const Image& other);
    Image(Image&& other) noexcept;
    Image& operator=(const Image& other);
    Image& operator=(Image&& other) noexcept;
    ~Image() { decRef(); }

    /** Lets go of what is held and takes `object`, which is owned from here on and may be null. */
    void assign(ImageObject* object);

    bool isNull() const { return mObjectRef == nullptr; }

    /** Both throw Exception on a null handle. */
    ImageObject* operator->() const;
    ImageObject& operator*() const;

private:
    void addRef();
    void decRef();

    ImageRefCounter* mObjectRef = nullptr;
};

} // namespace zavex::am
