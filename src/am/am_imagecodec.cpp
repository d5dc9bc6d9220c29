#include "am/am_imagecodec.h"

namespace zavex::am {

bool ImageCodec::encodeImage(unsigned char** /*data*/, std::size_t* /*size*/, ImageObject& /*in*/)
{
    return false;
}

} // namespace zavex::am
