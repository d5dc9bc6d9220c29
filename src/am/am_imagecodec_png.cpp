#include "am/am_imagecodec_png.h"

#include "am/am_deflate.h"
#include "common/zvx_system.h"

#include <png.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace zavex::am {

namespace {

constexpr std::size_t SIGNATURE_SIZE = 8; // bytes
constexpr unsigned char OPAQUE = 255;
constexpr std::size_t BYTES_PER_PIXEL = ImageObject::BYTES_PER_PIXEL;

// libpng reports an error by a jump out of its own frames. The functions that it jumps to hold
// nothing with a destructor; everything they need is owned by their callers.

[[noreturn]] void failQuietly(png_structp png, png_const_charp /*message*/)
{
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

/** The bytes not read yet. */
struct Source {
    const unsigned char* data;
    std::size_t size;
};

void readBytes(png_structp png, png_bytep out, png_size_t count)
{
    auto* const source = static_cast<Source*>(png_get_io_ptr(png));
    if (count > source->size)
        png_error(png, "end of file");
    std::memcpy(out, source->data, count);
    source->data += count;
    source->size -= count;
}

class Reader {
public:
    Reader()
        : mPng(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, failQuietly, ignoreWarning))
    {
        if (mPng == nullptr)
            throw Exception("[loadPNG] Could not setup libpng (pngstruct)!");
        mInfo = png_create_info_struct(mPng);
        if (mInfo == nullptr) {
            png_destroy_read_struct(&mPng, nullptr, nullptr);
            throw Exception("[loadPNG] Could not setup libpng (pnginfo)!");
        }
    }

    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { png_destroy_read_struct(&mPng, &mInfo, nullptr); }

    /** Everything up to the first pixel. */
    bool readHeader(Source& source)
    {
        if (setjmp(png_jmpbuf(mPng)) != 0)
            return false;
        png_set_read_fn(mPng, &source, readBytes);
        png_set_sig_bytes(mPng, static_cast<int>(SIGNATURE_SIZE));
        png_read_info(mPng, mInfo);
        return true;
    }

    /** The pixels as they are stored, and what follows them. */
    bool readPixels(png_bytepp rows)
    {
        if (setjmp(png_jmpbuf(mPng)) != 0)
            return false;
        png_read_image(mPng, rows);
        png_read_end(mPng, nullptr);
        return true;
    }

    int width() const { return static_cast<int>(png_get_image_width(mPng, mInfo)); }
    int height() const { return static_cast<int>(png_get_image_height(mPng, mInfo)); }
    int colourType() const { return png_get_color_type(mPng, mInfo); }
    int bitDepth() const { return png_get_bit_depth(mPng, mInfo); }
    /** Of the pixels as they are stored. */
    std::size_t rowBytes() const { return png_get_rowbytes(mPng, mInfo); }

private:
    png_structp mPng = nullptr;
    png_infop mInfo = nullptr;
};

void requireFormat(const Reader& reader)
{
    const int type = reader.colourType();
    const int depth = reader.bitDepth();
    if (type == PNG_COLOR_TYPE_GRAY && depth == 8)
        throw Exception("[loadPNG] No support for grayscale images yet");
    if (depth != 8 || (type != PNG_COLOR_TYPE_RGB && type != PNG_COLOR_TYPE_RGB_ALPHA))
        throw Exception("[loadPNG] Bad color format of image (type %d, %d bits per channel)", type,
                        depth);
}

/** Whether the rest of the file can hold as many pixels as its header claims. */
bool isPlausible(const Reader& reader, std::size_t bytesLeft)
{
    const std::size_t claimed = reader.rowBytes() * static_cast<std::size_t>(reader.height());
    return canInflateTo(claimed, bytesLeft);
}

/** @param rowBytes  width x 3 for red, green and blue; width x 4 with alpha. */
std::unique_ptr<unsigned char[]> toBgra(const unsigned char* stored, std::size_t rowBytes,
                                        int width, int height)
{
    const std::size_t size = ImageObject::byteCount(width, height);
    auto pixels = std::make_unique_for_overwrite<unsigned char[]>(size);
    const std::size_t channels = rowBytes / static_cast<std::size_t>(width);
    for (std::size_t at = 0; at < size; at += BYTES_PER_PIXEL, stored += channels) {
        pixels[at] = stored[2];
        pixels[at + 1] = stored[1];
        pixels[at + 2] = stored[0];
        pixels[at + 3] = channels == BYTES_PER_PIXEL ? stored[3] : OPAQUE;
    }
    return pixels;
}

void appendBytes(png_structp png, png_bytep bytes, png_size_t count)
{
    auto* const file = static_cast<std::vector<unsigned char>*>(png_get_io_ptr(png));
    try {
        file->insert(file->end(), bytes, bytes + count);
    } catch (const std::exception&) {
        // Nothing may be thrown through the library's frames; its own way out is a jump.
        png_error(png, "out of memory");
    }
}

void flushNothing(png_structp /*png*/) {}

class Writer {
public:
    Writer()
        : mPng(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, failQuietly, ignoreWarning)),
          mInfo(mPng == nullptr ? nullptr : png_create_info_struct(mPng))
    {}

    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { png_destroy_write_struct(&mPng, &mInfo); }

    bool write(const ImageObject& image, png_bytepp rows, std::vector<unsigned char>& file)
    {
        if (mInfo == nullptr)
            return false;
        if (setjmp(png_jmpbuf(mPng)) != 0)
            return false;
        png_set_write_fn(mPng, &file, appendBytes, flushNothing);
        png_set_IHDR(mPng, mInfo, static_cast<png_uint_32>(image.getWidth()),
                     static_cast<png_uint_32>(image.getHeight()), 8, PNG_COLOR_TYPE_RGB_ALPHA,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(mPng, mInfo);
        png_set_bgr(mPng);
        png_write_image(mPng, rows);
        png_write_end(mPng, nullptr);
        return true;
    }

private:
    png_structp mPng;
    png_infop mInfo;
};

/** @param stride  Bytes from one row to the next. */
std::vector<png_bytep> rowsOf(unsigned char* pixels, std::size_t stride, int height)
{
    std::vector<png_bytep> rows(static_cast<std::size_t>(height));
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] = pixels + y * stride;
    return rows;
}

} // namespace

void ImageCodecPNG::decodeImage(const unsigned char* data, std::size_t size, ImageObject& out)
{
    if (size < SIGNATURE_SIZE || png_sig_cmp(data, 0, SIGNATURE_SIZE) != 0)
        throw Exception("[loadPNG] Not a png-file! Header is wrong!");

    Reader reader;
    Source source{data + SIGNATURE_SIZE, size - SIGNATURE_SIZE};
    if (!reader.readHeader(source))
        throw Exception("[loadPNG] Error when decoding png-file!");
    if (!isPlausible(reader, size))
        throw Exception("[loadPNG] Error when decoding png-file!");

    // A damaged file is called so, whatever its format: the format is looked at when all is read.
    const int width = reader.width();
    const int height = reader.height();
    const auto stored = std::make_unique_for_overwrite<unsigned char[]>(
        reader.rowBytes() * static_cast<std::size_t>(height));
    std::vector<png_bytep> rows = rowsOf(stored.get(), reader.rowBytes(), height);
    if (!reader.readPixels(rows.data()))
        throw Exception("[loadPNG] Error when decoding png-file!");
    requireFormat(reader);
    out.setData(width, height, toBgra(stored.get(), reader.rowBytes(), width, height));
}

bool ImageCodecPNG::encodeImage(unsigned char** data, std::size_t* size, ImageObject& in)
{
    unsigned char* const pixels = in.getWriteData();
    if (pixels == nullptr)
        return false;
    const std::size_t stride = static_cast<std::size_t>(in.getWidth()) * BYTES_PER_PIXEL;
    std::vector<png_bytep> rows = rowsOf(pixels, stride, in.getHeight());
    std::vector<unsigned char> file;
    if (!Writer().write(in, rows.data(), file))
        return false;

    *size = file.size();
    *data = new unsigned char[file.size()];
    std::ranges::copy(file, *data);
    return true;
}

} // namespace zavex::am
