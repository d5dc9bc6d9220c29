#pragma once

#include "am/am_imagecodec.h"

namespace zavex::am {

/** PNG: reads 8 bits a channel, RGB or RGBA; writes RGBA without interlacing. */
class ImageCodecPNG final : public ImageCodec {
public:
    void decodeImage(const unsigned char* data, std::size_t size, ImageObject& out) override;
    bool encodeImage(unsigned char** data, std::size_t* size, ImageObject& in) override;
    std::string getFormatString() const override { return "png"; }
    bool canWrite() const override { return true; }
    ImageSize readSize(const unsigned char* data, std::size_t size) override;

    /**
     * Whether these bytes are built as `encodeImage` builds a picture: nothing but
     * header, pixels and end, the pixels compressed by default and cut as it cuts them. What other
     * programs write nearly always holds other chunks as well, such as colours, times and names.
     */
    static bool isEncoded(const unsigned char* data, std::size_t size);
};

} // namespace zavex::am
