// A JPEG is refused or decoded.

#include "am/am_imagecodec_jpeg.h"
#include "common/zvx_system.h"
#include "fuzz/fuzz_target.h"

namespace zavex::fuzz {

void jpeg(Bytes input)
{
    am::ImageObject picture;
    try {
        am::ImageCodecJPEG().decodeImage(input.data(), input.size(), picture);
    } catch (const Exception&) {
    }
}

} // namespace zavex::fuzz
