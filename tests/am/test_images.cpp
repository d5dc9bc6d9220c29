#include "am/am.h"
#include "am/am_fixture.h"
#include "am/am_imagecodec_png.h"
#include "am/am_videofile.h"
#include "am/am_videofile_imagedumper.h"

#include "support/log_capture.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <tuple>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

namespace zavex::am {
namespace {

using test::makeFile;
using test::thrownMessage;

/** A PNG written with the library's plain means. */
std::string encodePng(int type, int depth, std::uint32_t width, std::uint32_t height,
                      const std::string& row, int interlace = PNG_INTERLACE_NONE)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    std::string file;
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep bytes, png_size_t count) {
            static_cast<std::string*>(png_get_io_ptr(writer))
                ->append(reinterpret_cast<const char*>(bytes), count);
        },
        nullptr);
    png_set_IHDR(png, info, width, height, depth, type, interlace, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    const int passes = png_set_interlace_handling(png);
    for (std::uint32_t y = 0; y < height * static_cast<std::uint32_t>(passes); ++y)
        png_write_row(png, reinterpret_cast<png_const_bytep>(row.data()));
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return file;
}

const std::string RED_AND_BLUE("\xff\0\0\0\0\xff", 6);
const std::string DAMAGED = "[loadPNG] Error when decoding png-file!";

std::string smallPng()
{
    return encodePng(PNG_COLOR_TYPE_RGB, 8, 2, 3, RED_AND_BLUE);
}

/** A picture of one colour, (0xe0, 0x40, 0x10), that lies beside this test. */
std::string jpegFile(const std::string& name)
{
    std::ifstream file(CADENZA_TEST_SOURCE_DIR "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

const std::string PLAIN = jpegFile("plain.jpg");             // 17 x 9 pixels
const std::string ARITHMETIC = jpegFile("arithmetic.jpg");   // 2048 x 2048 pixels
const std::string PROGRESSIVE = jpegFile("progressive.jpg"); // 65 scans of 16 x 16 pixels

std::string bigEndian(std::size_t number)
{
    std::string bytes;
    for (const unsigned shift : {24u, 16u, 8u, 0u})
        bytes += static_cast<char>(number >> shift & 0xffu);
    return bytes;
}

Image decode(const std::string& name, const std::string& bytes)
{
    ImageManager manager;
    return manager.loadImage(name, makeFile(name, bytes), true);
}

std::string refusal(const std::string& name, const std::string& bytes)
{
    return thrownMessage([&] { decode(name, bytes); });
}

std::string pixelsOf(const Image& image)
{
    return {reinterpret_cast<const char*>(image->getData()),
            static_cast<std::size_t>(image->getWidth()) *
                static_cast<std::size_t>(image->getHeight()) * 4};
}

TEST(Png, DecodesToBlueGreenRedAlphaFromTheTop)
{
    EXPECT_EQ(pixelsOf(decode("a.png", encodePng(PNG_COLOR_TYPE_RGB, 8, 2, 1, RED_AND_BLUE))),
              std::string("\0\0\xff\xff\xff\0\0\xff", 8));
    EXPECT_EQ(
        pixelsOf(decode("A.PNG", encodePng(PNG_COLOR_TYPE_RGBA, 8, 1, 2, "\x10\x20\x30\x40"))),
        "\x30\x20\x10\x40\x30\x20\x10\x40");
    const std::string interlaced =
        encodePng(PNG_COLOR_TYPE_RGB, 8, 2, 9, "\1\2\3\4\5\6", PNG_INTERLACE_ADAM7);
    EXPECT_EQ(pixelsOf(decode("a.png", interlaced)).substr(64), "\3\2\1\xff\6\5\4\xff");
}

TEST(Png, OtherThanColourOfEightBitsSaysWhatItIs)
{
    const std::string start = "[loadPNG] Bad color format of image (type ";
    const std::tuple<int, int, std::string> rows[] = {
        {PNG_COLOR_TYPE_GRAY,       8,  "[loadPNG] No support for grayscale images yet"},
        {PNG_COLOR_TYPE_GRAY,       16, start + "0, 16 bits per channel)"              },
        {PNG_COLOR_TYPE_GRAY,       1,  start + "0, 1 bits per channel)"               },
        {PNG_COLOR_TYPE_GRAY_ALPHA, 8,  start + "4, 8 bits per channel)"               },
        {PNG_COLOR_TYPE_RGB,        16, start + "2, 16 bits per channel)"              },
    };
    for (const auto& [type, depth, message] : rows) {
        const std::string png = encodePng(type, depth, 1, 1, std::string(8, '\0'));
        EXPECT_EQ(refusal("a.png", png), message);
        EXPECT_EQ(refusal("a.png", png.substr(0, png.size() - 1)), DAMAGED);
    }
}

TEST(Jpeg, DecodesWithinItsLossAndOpaqueHoweverSmallItsArithmeticCode)
{
    const std::tuple<std::string, int, int> rows[] = {
        {PLAIN,      17,   9   },
        {ARITHMETIC, 2048, 2048}
    };
    for (const auto& [bytes, width, height] : rows) {
        const Image image = decode("a.jpg", bytes);
        ASSERT_EQ(image->getWidth(), width);
        ASSERT_EQ(image->getHeight(), height);
        const unsigned char* const last = image->getData() + (width * height - 1) * 4;
        EXPECT_NEAR(last[0], 0x10, 3);
        EXPECT_NEAR(last[1], 0x40, 3);
        EXPECT_NEAR(last[2], 0xe0, 3);
        EXPECT_EQ(last[3], 255);
    }
}

TEST(Images, CutAtAnyByteAreRefused)
{
    const std::string png = smallPng();
    for (std::size_t size = 0; size < png.size(); ++size)
        EXPECT_EQ(refusal("a.png", png.substr(0, size)),
                  size < 8 ? "[loadPNG] Not a png-file! Header is wrong!" : DAMAGED)
            << size;
    for (std::size_t size = 0; size < PLAIN.size(); ++size)
        EXPECT_TRUE(refusal("a.jpg", PLAIN.substr(0, size)).starts_with("Internal jpeglib error; "))
            << size;
}

std::string chunk(const std::string& type, const std::string& content, std::size_t claimed)
{
    const std::string text = type + content;
    const auto check =
        crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size()));
    return bigEndian(claimed) + text + bigEndian(check);
}

/** A PNG with a header that fits its claims; its pixels are no pixels. */
std::string claimingPng(std::size_t width, std::size_t height, std::size_t deflated,
                        const std::string& between = "")
{
    const std::string header =
        bigEndian(width) + bigEndian(height) + std::string("\x08\6\0\0\0", 5);
    return "\x89PNG\r\n\x1a\n" + chunk("IHDR", header, 13) + between +
           chunk("IDAT", std::string(deflated, '\0'), deflated) + chunk("IEND", "", 0);
}

/** That picture with a height and a width of 32639 pixels. */
std::string claimingJpeg(std::string jpeg)
{
    const std::size_t frame = std::min(jpeg.find("\xff\xc0"), jpeg.find("\xff\xc9"));
    return jpeg.replace(frame + 5, 4, "\x7f\x7f\x7f\x7f");
}

long peakMegabytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST(Images, ThatClaimTooMuchAreRefusedBeforeMemoryIsTaken)
{
    const std::string other = chunk("teXt", std::string(500000, ' '), 500000);
    const std::string lying = chunk("iTXt", "short", 0x7a000000);
    const std::string most =
        " bytes: one may take at most 268435456, all together 1073741824, of which 0 are taken";
    const std::string implausible = "error; 32639 x 32639 pixels cannot be in ";
    const std::string largeJpeg = claimingJpeg(PLAIN) + std::string(600000, ' ');
    // clang-format off
    const std::tuple<const char*, std::string, std::string> rows[] = {
        {"no side.png", claimingPng(0, 0, 100), DAMAGED},
        {"few deflated.png", claimingPng(10000, 10000, 100), DAMAGED},
        {"much else.png", claimingPng(10000, 10000, 100, other), DAMAGED},
        {"longest.png", claimingPng(0x7fffffff, 0x7fffffff, 100), DAMAGED},
        {"beyond end.png", claimingPng(1, 1, 100, lying), DAMAGED},
        {"large.png", claimingPng(8193, 8192, 300000), "x 8192 pixels, 268468224" + most},
        {"few bits.jpg", claimingJpeg(PLAIN), implausible},
        {"arithmetic.jpg", claimingJpeg(ARITHMETIC), implausible},
        {"large.jpg", largeJpeg, " 4261217284" + most},
        {"scans.jpg", PROGRESSIVE, "error; More than 64 scans"},
    };
    // clang-format on
    const long before = peakMegabytes();
    for (const auto& [name, bytes, expected] : rows) {
        SCOPED_TRACE(name);
        const std::string message = refusal(name, bytes);
        EXPECT_NE(message.find(expected), std::string::npos) << message;
        EXPECT_LT(peakMegabytes(), before + 50);
    }
    const std::string allowed = PROGRESSIVE.substr(0, PROGRESSIVE.rfind("\xff\xda")) + "\xff\xd9";
    EXPECT_EQ(decode("a.jpg", allowed)->getWidth(), 16);
}

TEST(Images, TogetherTakeNoMoreThanTheirManagerAllows)
{
    const File file = makeFile("a.png", smallPng());
    ImageManager manager(3 * 2 * 3 * 4);
    const Image kept = manager.loadImage("a.png", file, false);
    Image own = manager.loadImage("a.png", file, true);
    Image changed = manager.loadImage("a.png", file, true);
    EXPECT_EQ(thrownMessage([&] { manager.loadImage("b.png", file, false); }),
              "Picture 'b.png' has 2 x 3 pixels, 24 bytes: one may take at most 268435456, all "
              "together 72, of which 72 are taken");
    own = Image();
    EXPECT_THROW(
        manager.loadImage("b.png", makeFile("b.png", smallPng().replace(45, 1, "?")), false),
        Exception);
    const Image other = manager.loadImage("b.png", file, false);
    changed->resize(1, 1);
    EXPECT_EQ(manager.loadImage("c.png", file, false)->getWidth(), 2);
}

/** A manager and the file that it takes for "a.png". */
class SharedImages : public testing::Test {
protected:
    Image load(bool uncached = false) { return manager->loadImage("a.png", file, uncached); }

    std::unique_ptr<ImageManager> manager = std::make_unique<ImageManager>();
    const File file = makeFile("a.png", smallPng());
};

TEST_F(SharedImages, AreRefusedByName)
{
    Image none;
    Image shared = load();
    ArchiveManager archives;
    const std::string access = "ImageObbject::getWriteData, Access not allowed!";
    // clang-format off
    const std::pair<std::function<void()>, std::string> rows[] = {
        {[] { decode("picture", "x"); }, "ImageManager::loadImage, No decoder found for picture"},
        {[] { decode("a.tga", "x"); }, "[ImageCodec] TGA-reader is not done yet!"},
        {[] { decode("a.jpg", smallPng()); }, "Internal jpeglib error; "},
        {[&] { shared->getWriteData(); }, access},
        {[&] { manager->encodeImage("b.png", shared); }, access},
        {[&] { none->getWidth(); }, "Image::operator->() - Attempt to dereference (NULL)ImageObject!"},
        {[&] { manager->encodeImage("b.png", none); }, "Image::operator*() Attempt to dereference (NULL)ImageObject!"},
        {[&] { archives.loadImage("gone.png", -1, false); }, "loadImage, File not found (gone.png)"},
        {[&] { manager->removeImage("b.png"); }, "ImageManager::removeImage, Image b.png not found!"},
    };
    // clang-format on
    for (const auto& [action, message] : rows) {
        const std::string thrown = thrownMessage(action);
        EXPECT_TRUE(thrown.starts_with(message)) << thrown;
    }
    Image image = load(true);
    EXPECT_TRUE(manager->encodeImage("a.jpg", image).isNull());
    EXPECT_TRUE(manager->encodeImage("a", image).isNull());
    EXPECT_EQ(pixelsOf(decode("b.png", test::textOf(manager->encodeImage("b.png", image)))),
              pixelsOf(image));
}

TEST_F(SharedImages, StayCachedWhileTheyAreHeldAndLeaveTheirSuccessorThere)
{
    Image first = load();
    Image second = load();
    EXPECT_EQ(first->getData(), second->getData());
    Image own = load(true);
    EXPECT_NE(own->getData(), first->getData());
    EXPECT_NE(own->getWriteData(), nullptr);
    first = Image();
    EXPECT_FALSE(manager->getImage("a.png").isNull());
    second = Image();
    EXPECT_TRUE(manager->getImage("a.png").isNull());

    Image removed = load();
    Image other = removed;
    manager->removeImage("a.png");
    EXPECT_EQ(removed->getId(), "");
    const Image successor = load();
    other = Image();
    EXPECT_FALSE(manager->getImage("a.png").isNull());
    removed = Image();
    EXPECT_EQ(load()->getData(), successor->getData());
}

TEST_F(SharedImages, OutliveTheirManager)
{
    Image removed = load();
    manager->removeImage("a.png");
    Image cached = load();
    manager.reset();
    for (Image* const image : {&cached, &removed}) {
        Image other = *image;
        other = Image();
        EXPECT_NE((*image)->getWriteData(), nullptr);
    }
}

class Dumping : public testing::Test, protected test::TemporaryFolder {
protected:
    std::unique_ptr<VideoFile> open(const std::string& name)
    {
        std::unique_ptr<VideoFile> video(
            VideoFile::createForWrite(name, VideoFile::Format(4, 2, 25), &mArchives));
        video->attach(mPicture);
        return video;
    }

    /** How many frames of two are lost where `file` is; that is said once, if there is a reason. */
    int lostBy(const std::string& base, const std::string& file, const std::string& reason)
    {
        const std::unique_ptr<VideoFile> video = open(base + ".png");
        testing::internal::CaptureStderr();
        video->writeFrame();
        video->writeFrame();
        const std::string said =
            "cadenza: '" + path(file) + "' is kept and the frame lost: " + reason + "\n";
        EXPECT_EQ(testing::internal::GetCapturedStderr(), reason.empty() ? "" : said);
        return video->getLostFrames();
    }

    void SetUp() override
    {
        mArchives.addArchive(path(""));
        mPicture->resize(4, 2);
        std::fill_n(mPicture->getWriteData(), 32, static_cast<unsigned char>(99));
    }

    ArchiveManager mArchives;
    Image mPicture{new ImageObject};
};

TEST_F(Dumping, NumbersItsFramesAndCountsTheLostOnes)
{
    const std::unique_ptr<VideoFile> video = open("frames/a.b.png");
    video->writeFrame();
    std::filesystem::create_directories(path("frames/a.b.000001.png/in the way"));
    video->writeFrame();
    video->writeFrame();
    EXPECT_EQ(video->getLostFrames(), 1);
    EXPECT_EQ(video->getWidth(), 4);
    EXPECT_EQ(files(),
              (std::vector<std::string>{"frames/a.b.000000.png", "frames/a.b.000002.png"}));
    const Image written = mArchives.loadImage("frames/a.b.000002.png", -1, true);
    EXPECT_EQ(pixelsOf(written), pixelsOf(mPicture));
}

TEST_F(Dumping, ReplacesOnlyWhatWasRecorded)
{
    const auto encoded = [](int width, int height) {
        Image noise{new ImageObject};
        noise->resize(width, height);
        std::minstd_rand random;
        std::generate_n(noise->getWriteData(), width * height * 4,
                        [&] { return static_cast<unsigned char>(random()); });
        return test::textOf(ImageManager().encodeImage("a.png", noise));
    };
    const std::string own = encoded(4, 2);
    std::string commented = own;
    commented.insert(33, chunk("tEXt", "Title", 5)); // behind the header
    const std::string opaque = encodePng(PNG_COLOR_TYPE_RGB, 8, 4, 2, std::string(12, 'x'));
    const std::string turned = encoded(2, 4);
    const std::string cut = own.substr(0, own.size() - 1);
    const std::tuple<const char*, std::string, bool> rows[] = {
        {"own",        own,       true },
        {"comment",    commented, false},
        {"other size", turned,    true },
        {"no alpha",   opaque,    false},
        {"longer",     own + " ", false},
        {"cut",        cut,       false},
        {"empty",      "",        false},
    };
    for (const auto& [name, bytes, isReplaced] : rows) {
        SCOPED_TRACE(name);
        const std::string file = name + std::string(".000000.png");
        write(file, bytes);
        EXPECT_EQ(lostBy(name, file, isReplaced ? "" : "Not a recorded picture"), !isReplaced);
        EXPECT_EQ(read(file) == bytes, !isReplaced);
    }
    std::filesystem::create_symlink("own.000000.png", path("link.000000.png"));
    EXPECT_EQ(lostBy("link", "link.000000.png", "Is a symbolic link"), 1);
    ASSERT_EQ(mkfifo(path("pipe.000000.png").c_str(), 0600), 0);
    EXPECT_EQ(lostBy("pipe", "pipe.000000.png", "Not a regular file"), 1);

    // Several chunks of pixels; joined into one, they are somebody else's.
    const std::string large = encoded(90, 90);
    const auto isOwn = [](const std::string& bytes) {
        return ImageCodecPNG::isEncoded(reinterpret_cast<const unsigned char*>(bytes.data()),
                                        bytes.size());
    };
    EXPECT_TRUE(isOwn(large));
    const std::string joined =
        large.substr(0, 33) + chunk("IDAT", large.substr(41, 20000), 20000) + chunk("IEND", "", 0);
    EXPECT_FALSE(isOwn(joined));
}

TEST_F(Dumping, GoesOnAfterAPictureThatIsNotThereOrNotItsOwn)
{
    VideoFileImageDumper video;
    EXPECT_EQ(video.getFormat().frameRateBase, 1);
    video.writeFrame();
    EXPECT_EQ(video.getLostFrames(), 1);

    ASSERT_TRUE(video.openForWrite("a.png", VideoFile::Format(4, 2, 25), &mArchives));
    EXPECT_EQ(thrownMessage([&] { video.writeFrame(); }),
              "Image::operator*() Attempt to dereference (NULL)ImageObject!");
    ImageManager manager;
    Image cached = manager.loadImage("a.png", makeFile("a.png", smallPng()), false);
    video.attach(cached);
    EXPECT_EQ(thrownMessage([&] { video.writeFrame(); }),
              "ImageObbject::getWriteData, Access not allowed!");
    video.attach(mPicture);
    video.writeFrame();
    EXPECT_EQ(files(), std::vector<std::string>{"a.000002.png"});
}

TEST_F(Dumping, RefusesWhatItCannotWriteOrRead)
{
    const std::string start = "Could not find something that could ";
    for (const char* name : {"frame", "run.PNG", "run.jpg", ""})
        EXPECT_EQ(thrownMessage([&] { open(name); }), start + "write to '" + name + "'");
    const std::pair<std::function<void()>, std::string> rows[] = {
        {[] { VideoFile::createForWrite("a.png", {}, nullptr); }, "write to 'a.png'" },
        {[] { VideoFile::createForRead("a.png"); },               "read from 'a.png'"},
        {[] { VideoFile::createForRead(nullptr, 0); },            "read from buffer" },
    };
    for (const auto& [action, message] : rows)
        EXPECT_EQ(thrownMessage(action), start + message);
}

} // namespace
} // namespace zavex::am
