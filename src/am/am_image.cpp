#include "am/am_image.h"

#include "am/am_imagemanager.h"
#include "common/zvx_system.h"

#include <cstdint>
#include <utility>

namespace zavex::am {

ImageObject::ImageObject(int width, int height, std::unique_ptr<unsigned char[]> data,
                         ImageManager* manager, std::string id)
    : mId(std::move(id)), mLoader(manager), mImageWidth(width), mImageHeight(height),
      mImageData(std::move(data))
{}

void ImageObject::setData(int width, int height, std::unique_ptr<unsigned char[]> data)
{
    mImageWidth = width;
    mImageHeight = height;
    mImageData = std::move(data);
    mShare.reset();
}

void ImageObject::resize(int width, int height)
{
    const std::size_t size = byteCount(width, height);
    setData(0, 0, nullptr);
    if (size != 0)
        mImageData = std::make_unique_for_overwrite<unsigned char[]>(size);
    mImageWidth = width;
    mImageHeight = height;
}

unsigned char* ImageObject::getWriteData()
{
    if (mLoader != nullptr)
        throw Exception("ImageObbject::getWriteData, Access not allowed!");
    return mImageData.get();
}

std::size_t ImageObject::byteCount(int width, int height)
{
    constexpr std::int64_t mostPixels = MOST_BYTES / BYTES_PER_PIXEL;
    const std::int64_t pixels = std::int64_t{width} * height;
    if (width < 0 || height < 0 || pixels > mostPixels)
        throw Exception("An image cannot have %d x %d pixels, expected at most %lld", width, height,
                        static_cast<long long>(mostPixels));
    return static_cast<std::size_t>(pixels) * BYTES_PER_PIXEL;
}

Image::Image(const Image& other) : mObjectRef(other.mObjectRef)
{
    addRef();
}

Image::Image(Image&& other) noexcept : mObjectRef(std::exchange(other.mObjectRef, nullptr)) {}

Image& Image::operator=(const Image& other)
{
    return *this = Image(other);
}

Image& Image::operator=(Image&& other) noexcept
{
    Image taken(std::move(other));
    std::swap(mObjectRef, taken.mObjectRef);
    return *this;
}

void Image::assign(ImageObject* object)
{
    std::unique_ptr<ImageObject> owned(object);
    decRef();
    if (owned) // handed over once there is memory for the counter
        mObjectRef = new ImageRefCounter{owned.release(), 1};
}

ImageObject* Image::operator->() const
{
    if (isNull())
        throw Exception("Image::operator->() - Attempt to dereference (NULL)ImageObject!");
    return mObjectRef->mObject;
}

ImageObject& Image::operator*() const
{
    if (isNull())
        throw Exception("Image::operator*() Attempt to dereference (NULL)ImageObject!");
    return *mObjectRef->mObject;
}

void Image::addRef()
{
    if (mObjectRef != nullptr)
        ++mObjectRef->mRef;
}

void Image::decRef()
{
    ImageRefCounter* const counter = std::exchange(mObjectRef, nullptr);
    if (counter == nullptr)
        return;

    --counter->mRef;
    ImageObject* const object = counter->mObject;
    if (counter->mRef == 1 && object->getManager() != nullptr) {
        // Only the cache is left: its handle ends the image and this counter.
        object->getManager()->releaseImage(*object);
        return;
    }
    if (counter->mRef == 0) {
        delete object;
        delete counter;
    }
}

} // namespace zavex::am
