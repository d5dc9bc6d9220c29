#include "support/picture.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace zavex::test {

namespace {

constexpr std::size_t CHANNELS = 3;

bool isUpdateWanted()
{
    const char* const value = std::getenv("CADENZA_UPDATE_PICTURES");
    return value != nullptr && std::string_view(value) == "1";
}

png_image emptyImage()
{
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.format = PNG_FORMAT_RGB;
    return image;
}

} // namespace

Picture readPicture(const std::string& path)
{
    png_image image = emptyImage();
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0)
        throw std::runtime_error(path + ": " + image.message);
    image.format = PNG_FORMAT_RGB;

    Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    picture.rgb.resize(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, picture.rgb.data(), 0, nullptr) == 0)
        throw std::runtime_error(path + ": " + image.message);
    return picture;
}

void writePicture(const std::string& path, const Picture& picture)
{
    png_image image = emptyImage();
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    if (png_image_write_to_file(&image, path.c_str(), 0, picture.rgb.data(), 0, nullptr) == 0)
        throw std::runtime_error(path + ": " + image.message);
}

bool isBlack(const Picture& picture)
{
    return std::ranges::all_of(picture.rgb, [](std::uint8_t level) { return level == 0; });
}

PictureDifference differenceOf(const Picture& actual, const Picture& expected)
{
    std::array<double, CHANNELS> sums{};
    int maximum = 0;
    for (std::size_t i = 0; i < actual.rgb.size(); ++i) {
        const int difference = std::abs(actual.rgb[i] - expected.rgb[i]);
        sums[i % CHANNELS] += difference;
        maximum = std::max(maximum, difference);
    }
    const double pixels = std::max(1.0, static_cast<double>(actual.rgb.size() / CHANNELS));
    return {*std::max_element(sums.begin(), sums.end()) / pixels, maximum};
}

testing::AssertionResult isSamePicture(const Picture& actual, const Picture& expected,
                                       const PictureDifference& tolerance)
{
    if (actual.width != expected.width || actual.height != expected.height)
        return testing::AssertionFailure()
               << "the picture is " << actual.width << "x" << actual.height << ", expected "
               << expected.width << "x" << expected.height;

    const PictureDifference difference = differenceOf(actual, expected);
    if (difference.mean > tolerance.mean || difference.maximum > tolerance.maximum)
        return testing::AssertionFailure()
               << "the pictures differ by " << difference.mean << " on average (allowed "
               << tolerance.mean << ") and by " << difference.maximum << " at most (allowed "
               << tolerance.maximum << ")";
    return testing::AssertionSuccess();
}

testing::AssertionResult looksLike(const Picture& actual, const std::string& name,
                                   const PictureDifference& tolerance,
                                   const PictureFolders& folders)
{
    const std::string storedPath = folders.stored + "/" + name + ".png";
    if (isUpdateWanted()) {
        writePicture(storedPath, actual);
        return testing::AssertionSuccess() << storedPath << " was replaced";
    }

    testing::AssertionResult result = testing::AssertionFailure();
    try {
        result = isSamePicture(actual, readPicture(storedPath), tolerance);
    } catch (const std::runtime_error& error) {
        result << error.what();
    }
    if (!result) {
        const std::string actualPath = folders.actual + "/" + name + ".png";
        writePicture(actualPath, actual);
        result << "; expected " << storedPath << ", actual " << actualPath;
    }
    return result;
}

} // namespace zavex::test
