#include "am/am_imagecodec_png.h"

#include "am/am_deflate.h"
#include "common/zvx_system.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace zavex::am {

namespace {

constexpr std::size_t SIGNATURE_SIZE = 8;      // bytes
constexpr std::size_t CHUNK_FRAME = 12;        // bytes: length, type and check sum of a chunk
constexpr std::size_t WRITTEN_CHUNK = 8192;    // bytes of pixels in a chunk that is not the last
constexpr unsigned DEFAULT_COMPRESSION = 0x80; // in the two upper bits of the second deflated byte
constexpr unsigned char OPAQUE = 255;
constexpr std::size_t BYTES_PER_PIXEL = ImageObject::BYTES_PER_PIXEL;

using Bytes = std::span<const unsigned char>;

struct Chunk {
    std::string_view type; // four letters; empty when there is no whole chunk
    Bytes content;
};

/** Takes the chunk that `rest` begins with off it. */
Chunk takeChunk(Bytes& rest)
{
    if (rest.size() < CHUNK_FRAME)
        return {};
    const std::size_t length = png_get_uint_32(rest.data());
    if (length > rest.size() - CHUNK_FRAME)
        return {};
    const auto* const type = reinterpret_cast<const char*>(rest.data()) + 4;
    const Chunk chunk{
        {type, 4},
        rest.subspan(8, length)
    };
    rest = rest.subspan(length + CHUNK_FRAME);
    return chunk;
}

bool isPng(Bytes file)
{
    return file.size() >= SIGNATURE_SIZE && png_sig_cmp(file.data(), 0, SIGNATURE_SIZE) == 0;
}

/** How many bytes hold the pixels; empty when a chunk claims more than the file has. */
std::optional<std::size_t> deflatedBytes(Bytes chunks)
{
    std::size_t sum = 0;
    for (Chunk chunk = takeChunk(chunks); chunk.type != "IEND"; chunk = takeChunk(chunks)) {
        if (chunk.type.empty())
            return std::nullopt;
        if (chunk.type == "IDAT")
            sum += chunk.content.size();
    }
    return sum;
}

// libpng reports an error by a jump out of its own frames. The functions that it jumps to hold
// nothing with a destructor; everything they need is owned by their callers.

[[noreturn]] void failQuietly(png_structp png, png_const_charp /*message*/)
{
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

void readBytes(png_structp png, png_bytep out, png_size_t count)
{
    auto* const rest = static_cast<Bytes*>(png_get_io_ptr(png));
    if (count > rest->size())
        png_error(png, "end of file");
    std::memcpy(out, rest->data(), count);
    *rest = rest->subspan(count);
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

    /**
     * Everything up to the first pixel.
     *
     * @param rest  What follows the signature; what was not read yet, from then on.
     */
    bool readHeader(Bytes& rest)
    {
        if (setjmp(png_jmpbuf(mPng)) != 0)
            return false;
        png_set_read_fn(mPng, &rest, readBytes);
        // Chunks that are not needed are skipped unread, the known ones among them, too.
        png_set_keep_unknown_chunks(mPng, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_set_sig_bytes(mPng, static_cast<int>(SIGNATURE_SIZE));
        png_read_info(mPng, mInfo);
        return true;
    }

    /**
     * The pixels and what follows them. Red, green and blue of 8 bits, with or without alpha,
     * become blue, green, red and alpha; others stay as they are stored.
     */
    bool readPixels(png_bytepp rows)
    {
        if (setjmp(png_jmpbuf(mPng)) != 0)
            return false;
        if (isColour()) {
            png_set_bgr(mPng);
            png_set_add_alpha(mPng, OPAQUE, PNG_FILLER_AFTER); // where there is none
        }
        png_read_image(mPng, rows);
        png_read_end(mPng, nullptr);
        return true;
    }

    int width() const { return static_cast<int>(png_get_image_width(mPng, mInfo)); }
    int height() const { return static_cast<int>(png_get_image_height(mPng, mInfo)); }
    int colourType() const { return png_get_color_type(mPng, mInfo); }
    int bitDepth() const { return png_get_bit_depth(mPng, mInfo); }
    bool isColour() const
    {
        return bitDepth() == 8 && (colourType() & ~PNG_COLOR_MASK_ALPHA) == PNG_COLOR_TYPE_RGB;
    }
    std::size_t storedRowBytes() const { return png_get_rowbytes(mPng, mInfo); }
    std::size_t storedBytes() const
    {
        return storedRowBytes() * static_cast<std::size_t>(height());
    }

private:
    png_structp mPng = nullptr;
    png_infop mInfo = nullptr;
};

/** Throws Exception unless the pixels are of a kind that is read. */
void requireFormat(const Reader& reader)
{
    if (reader.isColour())
        return;
    if (reader.colourType() == PNG_COLOR_TYPE_GRAY && reader.bitDepth() == 8)
        throw Exception("[loadPNG] No support for grayscale images yet");
    throw Exception("[loadPNG] Bad color format of image (type %d, %d bits per channel)",
                    reader.colourType(), reader.bitDepth());
}

[[noreturn]] void refuseFile()
{
    throw Exception("[loadPNG] Error when decoding png-file!");
}

/**
 * Reads everything up to the first pixel off `file`. Throws Exception unless the file holds all its
 * chunks and they as many pixels as its header claims.
 */
void openFile(Reader& reader, Bytes& file)
{
    if (!isPng(file))
        throw Exception("[loadPNG] Not a png-file! Header is wrong!");

    file = file.subspan(SIGNATURE_SIZE);
    const std::optional<std::size_t> deflated = deflatedBytes(file);
    if (!deflated || !reader.readHeader(file) || !canInflateTo(reader.storedBytes(), *deflated))
        refuseFile();
}

void appendBytes(png_structp png, png_bytep bytes, png_size_t count)
{
    auto* const file = static_cast<std::vector<unsigned char>*>(png_get_io_ptr(png));
    bool kept = true;
    try {
        file->insert(file->end(), bytes, bytes + count);
    } catch (const std::exception&) {
        kept = false;
    }
    // Nothing may be thrown through the library's frames; its own way out is a jump, which must not
    // leave a handler.
    if (!kept)
        png_error(png, "out of memory");
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
        png_set_compression_buffer_size(mPng, WRITTEN_CHUNK);
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
    Reader reader;
    Bytes file{data, size};
    openFile(reader, file);

    const int width = reader.width();
    const int height = reader.height();
    // A damaged file is called so, whatever its format: the format is looked at when all is read.
    // What will be refused then is read over and over into one row.
    const bool kept = reader.isColour();
    const std::size_t count = ImageObject::byteCount(width, height);
    auto pixels =
        std::make_unique_for_overwrite<unsigned char[]>(kept ? count : reader.storedRowBytes());
    const std::size_t stride = kept ? static_cast<std::size_t>(width) * BYTES_PER_PIXEL : 0;
    std::vector<png_bytep> rows = rowsOf(pixels.get(), stride, height);
    if (!reader.readPixels(rows.data()))
        refuseFile();
    requireFormat(reader);
    out.setData(width, height, std::move(pixels));
}

ImageSize ImageCodecPNG::readSize(const unsigned char* data, std::size_t size)
{
    Reader reader;
    Bytes file{data, size};
    openFile(reader, file);
    return {reader.width(), reader.height()};
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

bool ImageCodecPNG::isEncoded(const unsigned char* data, std::size_t size)
{
    Bytes rest{data, size};
    if (!isPng(rest))
        return false;
    rest = rest.subspan(SIGNATURE_SIZE);
    // Behind width and height: depth, colours, and the standard's only compression, filter, order.
    constexpr std::array<unsigned char, 5> form{8, PNG_COLOR_TYPE_RGB_ALPHA};
    constexpr std::size_t formAt = 8;
    Chunk chunk = takeChunk(rest);
    if (chunk.type != "IHDR" || chunk.content.size() != formAt + form.size() ||
        !std::ranges::equal(chunk.content.subspan(formAt), form))
        return false;

    chunk = takeChunk(rest);
    if (chunk.content.size() < 2 || (chunk.content[1] & 0xc0U) != DEFAULT_COMPRESSION)
        return false;
    std::size_t before = WRITTEN_CHUNK;
    for (; chunk.type == "IDAT" && before == WRITTEN_CHUNK; chunk = takeChunk(rest))
        before = chunk.content.size();
    return chunk.type == "IEND" && rest.empty() && before <= WRITTEN_CHUNK;
}

} // namespace zavex::am
