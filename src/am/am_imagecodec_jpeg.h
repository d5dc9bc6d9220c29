#pragma once

#include "am/am_imagecodec.h"

namespace zavex::am {

/** JPEG, read only. A file that is cut short is refused. */
class ImageCodecJPEG final : public ImageCodec {
public:
    void decodeImage(const unsigned char* data, std::size_t size, ImageObject& out) override;
    std::string getFormatString() const override { return "jpg"; }
};

} // namespace zavex::am
