#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace zavex::test {

/** Pixels in red, green, blue bytes, top row first, rows not padded. */
struct Picture {
    int width = 0;  // pixels
    int height = 0; // pixels
    std::vector<std::uint8_t> rgb;
};

/** A pixel's colour as 0xRRGGBB; (0, 0) is the top-left one. */
inline unsigned pixelAt(const Picture& picture, int x, int y)
{
    const auto index = static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
                       static_cast<std::size_t>(x);
    const std::uint8_t* const rgb = &picture.rgb[index * 3];
    return static_cast<unsigned>(rgb[0] << 16 | rgb[1] << 8 | rgb[2]);
}

/** How far two pictures are apart, in 0..255. */
struct PictureDifference {
    double mean = 0.0; // of the channel that differs most on average
    int maximum = 0;   // of any channel of any pixel
};

/** Throws std::runtime_error, naming the file, when there is no such picture. */
Picture readPicture(const std::string& path);

/** Throws std::runtime_error, naming the file, when it cannot be written. */
void writePicture(const std::string& path, const Picture& picture);

bool isBlack(const Picture& picture);

/** The pictures must be of the same size. */
PictureDifference differenceOf(const Picture& actual, const Picture& expected);

/** Succeeds when the pictures are of one size and no further apart than `tolerance`. */
testing::AssertionResult isSamePicture(const Picture& actual, const Picture& expected,
                                       const PictureDifference& tolerance);

/** Where a test executable keeps its pictures; see `looksLike`. */
struct PictureFolders {
    std::string stored; // in the source tree
    std::string actual; // in the build folder
};

/**
 * Compares with the stored picture called `name`. The actual picture is left behind, as a PNG file
 * that the failure names, when they are too far apart. With CADENZA_UPDATE_PICTURES=1 in the
 * environment the stored picture is replaced instead.
 */
testing::AssertionResult looksLike(const Picture& actual, const std::string& name,
                                   const PictureDifference& tolerance,
                                   const PictureFolders& folders);

/** What two releases of a driver may differ in: rounding, and the weight of a smoothed edge. */
constexpr PictureDifference DRIVER_TOLERANCE{0.5, 64};

} // namespace zavex::test

/**
 * EXPECT_TRUE(LOOKS_LIKE(picture, "name")): `looksLike` with the pictures of the test's own folder,
 * tests/<folder>/pictures.
 */
#define LOOKS_LIKE(actual, name)                                                                   \
    ::zavex::test::looksLike(                                                                      \
        actual, name, ::zavex::test::DRIVER_TOLERANCE,                                             \
        {CADENZA_TEST_SOURCE_DIR "/pictures", CADENZA_TEST_BINARY_DIR "/pictures"})
