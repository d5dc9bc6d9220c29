#include "am/am_imagecodec_tga.h"

#include "common/zvx_system.h"

namespace zavex::am {

namespace {

[[noreturn]] void refuse()
{
    throw Exception("[ImageCodec] TGA-reader is not done yet!");
}

} // namespace

void ImageCodecTGA::decodeImage(const unsigned char* /*data*/, std::size_t /*size*/,
                                ImageObject& /*out*/)
{
    refuse();
}

ImageSize ImageCodecTGA::readSize(const unsigned char* /*data*/, std::size_t /*size*/)
{
    refuse();
}

} // namespace zavex::am
