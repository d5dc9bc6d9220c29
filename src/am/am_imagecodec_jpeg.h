#pragma once

#include "am/am_imagecodec.h"

namespace zavex::am {

/**
 * JPEG, read only. A file that is cut short is refused, and one that would take an unreasonable
 * time or memory: more than 64 scans, 16 for the largest pictures, or more than
 * ImageObject::MOST_BYTES beside the pixels.
 */
class ImageCodecJPEG final : public ImageCodec {
public:
    void decodeImage(const unsigned char* data, std::size_t size, ImageObject& out) override;
    std::string getFormatString() const override { return "jpg"; }
    ImageSize readSize(const unsigned char* data, std::size_t size) override;
};

} // namespace zavex::am
