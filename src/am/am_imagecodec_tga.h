#pragma once

#include "am/am_imagecodec.h"

namespace zavex::am {

/** TGA: known by name, refused with a message of its own. */
class ImageCodecTGA final : public ImageCodec {
public:
    void decodeImage(const unsigned char* data, std::size_t size, ImageObject& out) override;
    std::string getFormatString() const override { return "tga"; }
    ImageSize readSize(const unsigned char* data, std::size_t size) override;
};

} // namespace zavex::am
