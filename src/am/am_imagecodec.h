#pragma once

#include "am/am_image.h"

#include <cstddef>
#include <string>

namespace zavex::am {

/** How large a picture is. */
struct ImageSize {
    int width = 0;  // pixels
    int height = 0; // pixels
};

/** Reads, and perhaps writes, one picture format. */
class ImageCodec {
public:
    ImageCodec() = default;
    ImageCodec(const ImageCodec&) = delete;
    ImageCodec& operator=(const ImageCodec&) = delete;
    virtual ~ImageCodec() = default;

    /**
     * Replaces the pixels of `out`. Throws Exception when the bytes are not such a picture, or one
     * of more than ImageObject::MOST_BYTES; `out` is then as it was.
     */
    virtual void decodeImage(const unsigned char* data, std::size_t size, ImageObject& out) = 0;

    /**
     * Encodes `in`, which must be writable.
     *
     * @param data  Receives a new array of `size` bytes, owned by the caller.
     * @return False when the format is not written or encoding fails; nothing is received then.
     */
    virtual bool encodeImage(unsigned char** data, std::size_t* size, ImageObject& in);

    /** The extension that the codec serves, lower case. */
    virtual std::string getFormatString() const = 0;

    virtual bool canWrite() const { return false; }

    /**
     * The size that the bytes claim, found without taking memory for it. Throws Exception when they
     * are not such a picture or too few to hold one of that size.
     */
    virtual ImageSize readSize(const unsigned char* data, std::size_t size) = 0;
};

} // namespace zavex::am
