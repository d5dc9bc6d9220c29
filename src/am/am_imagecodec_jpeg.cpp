#include "am/am_imagecodec_jpeg.h"

#include "common/zvx_system.h"

#include <cstdio> // jpeglib.h needs it before

#include <jpeglib.h>

#include <algorithm>
#include <csetjmp>
#include <cstdint>

namespace zavex::am {

namespace {

// A Huffman code cannot hold more pixels than this per byte: even an empty block of 16 x 16 takes
// six bits.
constexpr std::int64_t MOST_PIXELS_PER_BYTE = 2048;

// An arithmetic code has no such limit; this is beyond what a picture of one colour reaches that is
// not made to be huge.
constexpr std::int64_t MOST_PIXELS_PER_ARITHMETIC_BYTE = 65536;

// What a progressive picture may take beside its pixels while it is put together.
constexpr long MOST_WORKING_BYTES = long{ImageObject::MOST_BYTES};

// Each scan of a progressive picture costs as much time as the first. Common encoders write ten.
// The largest picture may have sixteen.
constexpr std::int64_t MOST_SCANS = 64;
constexpr std::int64_t MOST_SCANNED_PIXELS =
    std::int64_t{16} * (ImageObject::MOST_BYTES / ImageObject::BYTES_PER_PIXEL);

/** The library's error handler and where it jumps to; the handler must stand first. */
struct ErrorExit {
    jpeg_error_mgr handler;
    std::jmp_buf target;
    char message[JMSG_LENGTH_MAX];
};

// The library reports an error by calling this, also for a warning such as a file that ends too
// early. The functions that it jumps to hold nothing with a destructor.
[[noreturn]] void leave(j_common_ptr info)
{
    auto* const exit = reinterpret_cast<ErrorExit*>(info->err);
    exit->handler.format_message(info, exit->message);
    std::longjmp(exit->target, 1);
}

void requireFewScans(j_common_ptr info)
{
    const auto* const reading = reinterpret_cast<j_decompress_ptr>(info);
    const std::int64_t pixels = std::int64_t{reading->image_width} * reading->image_height;
    const std::int64_t most = std::min(MOST_SCANS, MOST_SCANNED_PIXELS / pixels);
    if (reading->input_scan_number <= most)
        return;
    auto* const exit = reinterpret_cast<ErrorExit*>(info->err);
    std::snprintf(exit->message, JMSG_LENGTH_MAX, "More than %d scans", static_cast<int>(most));
    std::longjmp(exit->target, 1);
}

class Decoder {
public:
    Decoder()
    {
        mInfo.err = jpeg_std_error(&mExit.handler);
        mExit.handler.error_exit = leave;
        mExit.handler.output_message = leave;
        mProgress.progress_monitor = requireFewScans;
    }

    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() { jpeg_destroy_decompress(&mInfo); }

    bool start(const unsigned char* data, std::size_t size)
    {
        if (setjmp(mExit.target) != 0)
            return false;
        jpeg_create_decompress(&mInfo);
        mInfo.progress = &mProgress;
        mInfo.mem->max_memory_to_use = MOST_WORKING_BYTES;
        jpeg_mem_src(&mInfo, data, static_cast<unsigned long>(size));
        jpeg_read_header(&mInfo, TRUE);
        // Red, green and blue as ever, laid out as blue, green, red and an opaque alpha.
        mInfo.out_color_space = JCS_EXT_BGRA;
        jpeg_calc_output_dimensions(&mInfo);
        return true;
    }

    bool readPixels(unsigned char* pixels)
    {
        if (setjmp(mExit.target) != 0)
            return false;
        jpeg_start_decompress(&mInfo);
        while (mInfo.output_scanline < mInfo.output_height) {
            JSAMPROW row = pixels + std::size_t{mInfo.output_scanline} * mInfo.output_width *
                                        ImageObject::BYTES_PER_PIXEL;
            jpeg_read_scanlines(&mInfo, &row, 1);
        }
        jpeg_finish_decompress(&mInfo);
        return true;
    }

    /** False when `size` bytes cannot hold as many pixels as the header claims. */
    bool isPlausible(std::size_t size) const
    {
        const std::int64_t pixels = std::int64_t{width()} * height();
        const std::int64_t most =
            mInfo.arith_code ? MOST_PIXELS_PER_ARITHMETIC_BYTE : MOST_PIXELS_PER_BYTE;
        return pixels / most <= static_cast<std::int64_t>(size);
    }

    int width() const { return static_cast<int>(mInfo.output_width); }
    int height() const { return static_cast<int>(mInfo.output_height); }
    const char* message() const { return mExit.message; }

private:
    jpeg_decompress_struct mInfo{};
    ErrorExit mExit{};
    jpeg_progress_mgr mProgress{};
};

/** Reads the header. Throws Exception when the file cannot be such a picture. */
void openFile(Decoder& decoder, const unsigned char* data, std::size_t size)
{
    if (!decoder.start(data, size))
        throw Exception("Internal jpeglib error; %s", decoder.message());
    if (!decoder.isPlausible(size))
        throw Exception("Internal jpeglib error; %d x %d pixels cannot be in %zu bytes",
                        decoder.width(), decoder.height(), size);
}

} // namespace

void ImageCodecJPEG::decodeImage(const unsigned char* data, std::size_t size, ImageObject& out)
{
    Decoder decoder;
    openFile(decoder, data, size);

    auto pixels = std::make_unique_for_overwrite<unsigned char[]>(
        ImageObject::byteCount(decoder.width(), decoder.height()));
    if (!decoder.readPixels(pixels.get()))
        throw Exception("Internal jpeglib error; %s", decoder.message());
    out.setData(decoder.width(), decoder.height(), std::move(pixels));
}

ImageSize ImageCodecJPEG::readSize(const unsigned char* data, std::size_t size)
{
    Decoder decoder;
    openFile(decoder, data, size);
    return {decoder.width(), decoder.height()};
}

} // namespace zavex::am
