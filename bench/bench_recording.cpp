// Recording frames as numbered PNG files against what libpng alone reaches with the same pictures
// and settings in the same folder.

#include "am/am.h"
#include "am/am_videofile.h"
#include "common/zvx_system.h"
#include "figure.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <png.h>

namespace {

using zavex::am::ArchiveManager;
using zavex::am::Image;
using zavex::am::ImageObject;
using zavex::am::VideoFile;

constexpr int WIDTH = 1024;
constexpr int HEIGHT = 768;
constexpr int FRAMES = 8; // of one measured run

/** A frame as the show has it: a soft gradient, a disc of light, grain in it, black elsewhere. */
void paint(Image& image, int frame)
{
    std::uint32_t random = 12345u + static_cast<std::uint32_t>(frame);
    unsigned char* pixel = image->getWriteData();
    for (int y = 0; y < HEIGHT; ++y) {
        for (int x = 0; x < WIDTH; ++x, pixel += 4) {
            random = random * 69069u + 5u;
            const double distance = std::hypot(x - 400.0 - 9.0 * frame, y - 384.0);
            const double light = std::max(0.0, 1.0 - distance / 330.0);
            const double grain = light > 0.0 ? static_cast<double>(random >> 29u) : 0.0;
            pixel[0] = static_cast<unsigned char>(225.0 * light + grain);
            pixel[1] = static_cast<unsigned char>(180.0 * light * light + grain);
            pixel[2] = static_cast<unsigned char>(60.0 * light * light + grain);
            pixel[3] = 255;
        }
    }
}

/** The plain way: libpng's standard output to a file, row by row. */
void writeWithLibrary(const std::string& path, const Image& image)
{
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_IHDR(png, info, WIDTH, HEIGHT, 8, PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_set_bgr(png);
    for (int y = 0; y < HEIGHT; ++y)
        png_write_row(png, image->getData() + static_cast<std::ptrdiff_t>(y) * WIDTH * 4);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    std::fclose(file);
}

} // namespace

void zavex::bench::run(Figures& figures)
{
    std::string folder = (std::filesystem::temp_directory_path() / "recording-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr)
        throw Exception("No scratch folder '%s'", folder.c_str());

    ArchiveManager archives;
    archives.addArchive(folder);
    const std::unique_ptr<VideoFile> video(
        VideoFile::createForWrite("ours.png", VideoFile::Format(WIDTH, HEIGHT, 25), &archives));
    std::vector<Image> frames;
    for (int frame = 0; frame < FRAMES; ++frame) {
        frames.emplace_back(new ImageObject);
        frames.back()->resize(WIDTH, HEIGHT);
        paint(frames.back(), frame);
    }

    int number = 0;
    const double ratio = medianRatio(
        5,
        [&] {
            for (const Image& frame : frames)
                writeWithLibrary(folder + "/theirs." + std::to_string(number++) + ".png", frame);
        },
        [&] {
            for (Image& frame : frames) {
                video->attach(frame);
                video->writeFrame();
            }
        });
    std::filesystem::remove_all(folder);

    figures.report("recording_rate_of_libpng_alone", ratio, 0.8, Bound::AT_LEAST);
    figures.report("recording_lost_frames", video->getLostFrames(), 0.0, Bound::AT_MOST);
}
