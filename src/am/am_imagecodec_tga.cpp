#include "am/am_imagecodec_tga.h"

#include "common/zvx_system.h"

namespace zavex::am {

void ImageCodecTGA::decodeImage(const unsigned char* /*data*/, std::size_t /*size*/,
                                ImageObject& /*out*/)
{
    throw Exception("[ImageCodec] TGA-reader is not done yet!");
}

} // namespace zavex::am
