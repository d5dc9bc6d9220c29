#include "display/dis_font.h"

#include "am/am.h"
#include "am/am_image.h"
#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_immediate.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

namespace zavex::display {

namespace {

using mathbase::Vector3f;

constexpr int GLYPHS_PER_ROW = 16;
constexpr std::size_t BYTES_PER_PIXEL = am::ImageObject::BYTES_PER_PIXEL;
constexpr int SPACE = ' ';
constexpr int OPAQUE = 255; // coverage of a whole pixel

/** A column belongs to a glyph when it holds a pixel with more coverage than this. */
constexpr int COVERED = 200;

/** Space between two glyphs in pixels of the sheet, the last column of the left one included. */
constexpr float GAP = 2.0f;

constexpr float SPACE_WIDTH = 0.3f; // of a cell

am::Image loadSheet(DisplayGL& display, const std::string& file)
{
    am::ArchiveManager* const archive = display.getArchive();
    if (archive == nullptr)
        throw Exception("Cannot load font from '%s', no archive added to the display!",
                        file.c_str());
    const am::File found = archive->readFile(file, -1);
    if (found.isNull())
        throw Exception("Could not load font from '%s'", file.c_str());
    return archive->getImageManager().loadImage(file, found, true);
}

/** Turns the sheet's brightness, taken from red, into the coverage of white pixels. */
void makeMask(am::Image& sheet)
{
    unsigned char* pixel = sheet->getWriteData();
    const std::size_t count =
        static_cast<std::size_t>(sheet->getWidth()) * static_cast<std::size_t>(sheet->getHeight());
    for (std::size_t i = 0; i < count; ++i, pixel += BYTES_PER_PIXEL) {
        pixel[3] = pixel[2];
        pixel[0] = pixel[1] = pixel[2] = 255;
    }
}

/**
 * Takes the move out of a matrix that does nothing else, leaving the identity, and returns it: made
 * here instead of by the driver, it lets texts all over the window share one array.
 */
Vector3f takeTranslation(mathbase::Matrix4x4Col& matrix)
{
    const Vector3f move{matrix[12], matrix[13], matrix[14]};
    mathbase::Matrix4x4Col translation;
    translation.setTranslation(move);
    if (matrix != translation)
        return {};
    matrix.setIdentity();
    return move;
}

template <typename Edges>
void appendQuad(Immediate& immediate, const Vector3f& origin, const Edges& place,
                const Edges& texcoords, const mathbase::Vector4f& color)
{
    Immediate::Vertex* const corners = immediate.appendQuad();
    const auto write = [&](std::size_t corner, float x, float y, float u, float v) {
        corners[corner] = {origin.x + x, origin.y + y, origin.z, u,      v,
                           color.x,      color.y,      color.z,  color.w};
    };
    write(0, place.left, place.bottom, texcoords.left, texcoords.bottom);
    write(1, place.right, place.bottom, texcoords.right, texcoords.bottom);
    write(2, place.right, place.top, texcoords.right, texcoords.top);
    write(3, place.left, place.top, texcoords.left, texcoords.top);
}

/** Puts the state for what is drawn next back to what it was, also when drawing fails. */
class StateKeeper {
public:
    explicit StateKeeper(Immediate& immediate) : mImmediate(immediate), mState(immediate.state()) {}
    ~StateKeeper() { mImmediate.change() = mState; }
    StateKeeper(const StateKeeper&) = delete;
    StateKeeper& operator=(const StateKeeper&) = delete;

private:
    Immediate& mImmediate;
    Immediate::State mState;
};

} // namespace

struct Font::Edges {
    float left, bottom, right, top;
};

Font::Font(DisplayGL* display) : mDisplay(display)
{
    ZVX_REQUIRE(display != nullptr, "display");
}

Font::~Font()
{
    release();
}

void Font::load(const std::string& file, bool /*flag*/, const mathbase::Vector2f& size)
{
    am::Image sheet = loadSheet(*mDisplay, file);
    makeMask(sheet);
    release();

    const WindowMode& mode = mDisplay->getWindowMode();
    mUnitSizeX = size.x / static_cast<float>(mode.width);
    mUnitSizeY = size.y / static_cast<float>(mode.height);
    mWidth = static_cast<unsigned>(sheet->getWidth());
    mHeight = static_cast<unsigned>(sheet->getHeight());
    mCharWidth = sheet->getWidth() / GLYPHS_PER_ROW;
    mCharHeight = sheet->getHeight() / GLYPHS_PER_ROW;
    mLetterWidth = 1.0f / GLYPHS_PER_ROW;
    mLetterHeight = 1.0f / GLYPHS_PER_ROW;
    mExact = std::has_single_bit(mWidth) && std::has_single_bit(mHeight);
    measureGlyphs(sheet);
    findInk(sheet);
    mTexture = mDisplay->createTexture(sheet, Texture::TextureDeclaration{});
    mSolid = findSolid(sheet);
}

std::optional<Font::Solid> Font::findSolid(const am::Image& sheet) const
{
    if (!mExact)
        return {};
    const unsigned char* pixel = sheet->getData();
    for (unsigned y = 0; y < mHeight; ++y)
        for (unsigned x = 0; x < mWidth; ++x, pixel += BYTES_PER_PIXEL)
            if (pixel[3] == OPAQUE)
                return Solid{
                    mTexture,
                    {(static_cast<float>(x) + 0.5f) / static_cast<float>(mWidth),
                      (static_cast<float>(y) + 0.5f) / static_cast<float>(mHeight)}
                };
    return {};
}

void Font::findInk(const am::Image& sheet)
{
    const unsigned char* const pixels = sheet->getData();
    mInk.fill({std::numeric_limits<float>::max(), std::numeric_limits<float>::max(), 0.0f, 0.0f});
    for (int y = 0; y < GLYPHS_PER_ROW * mCharHeight; ++y)
        for (int x = 0; x < GLYPHS_PER_ROW * mCharWidth; ++x) {
            const auto index = static_cast<std::size_t>(y) * mWidth + static_cast<unsigned>(x);
            if (pixels[BYTES_PER_PIXEL * index + 3] == 0)
                continue;
            const int glyph = y / mCharHeight * GLYPHS_PER_ROW + x / mCharWidth;
            const mathbase::Vector2f corner(static_cast<float>(x % mCharWidth),
                                            static_cast<float>(y % mCharHeight));
            mInk[static_cast<std::size_t>(glyph)].setUnion(
                {corner, corner + mathbase::Vector2f(1.0f, 1.0f)});
        }
}

void Font::measureGlyphs(const am::Image& sheet)
{
    const unsigned char* const pixels = sheet->getData();
    const auto isCovered = [&](int x, int y) {
        const std::size_t index = static_cast<std::size_t>(y) * mWidth + static_cast<unsigned>(x);
        return pixels[BYTES_PER_PIXEL * index + 3] > COVERED;
    };
    const auto isColumnCovered = [&](int x, int top) {
        for (int y = top; y < top + mCharHeight; ++y)
            if (isCovered(x, y))
                return true;
        return false;
    };

    for (int glyph = 0; glyph < static_cast<int>(mKerning.size()); ++glyph) {
        const int left = glyph % GLYPHS_PER_ROW * mCharWidth;
        const int top = glyph / GLYPHS_PER_ROW * mCharHeight;
        int column = mCharWidth - 1;
        while (column > 0 && !isColumnCovered(left + column, top))
            --column;
        const float width = glyph == SPACE ? SPACE_WIDTH * static_cast<float>(mCharWidth)
                                           : static_cast<float>(std::max(column, 0));
        mKerning[static_cast<std::size_t>(glyph)] = (width + GAP) * mUnitSizeX;
    }
}

void Font::draw(const std::string& text, const mathbase::Vector2f& scale,
                const mathbase::Vector4f& color)
{
    if (mTexture == nullptr)
        return;

    mDisplay->setTexture(nullptr, 0);
    Immediate& immediate = Immediate::live();
    const StateKeeper keeper(immediate);
    Immediate::State& state = immediate.change();
    state.texture = mTexture;
    state.texturing = true;
    state.blending = true;
    const Vector3f origin = takeTranslation(state.modelView);

    placeCells(text, scale, [&](unsigned char glyph, const Edges& place) {
        const int column = glyph % GLYPHS_PER_ROW;
        const int row = glyph / GLYPHS_PER_ROW;
        const float u = static_cast<float>(column) * mLetterWidth;
        const float v = static_cast<float>(row) * mLetterHeight;
        const Edges texcoords{u, v + mLetterHeight, u + mLetterWidth, v};
        appendQuad(immediate, origin, place, texcoords, color);
    });
}

/** Calls `place(glyph, edges)` with where the cell of each byte of the text is drawn. */
template <typename Place>
void Font::placeCells(const std::string& text, const mathbase::Vector2f& scale, Place place) const
{
    const float width = static_cast<float>(mCharWidth) * mUnitSizeX * scale.x;
    const float height = static_cast<float>(mCharHeight) * mUnitSizeY * scale.y;
    const float bottom = std::round(-height / 2.0f);
    const float top = std::round(height / 2.0f);
    float x = startOf(text, scale.x);
    for (const char letter : text) {
        const auto glyph = static_cast<unsigned char>(letter);
        place(glyph, Edges{std::round(x), bottom, std::round(x + width), top});
        x += mKerning[glyph] * scale.x;
    }
}

/** Where the text's first glyph begins, in drawing units from the origin. */
float Font::startOf(const std::string& text, float scale) const
{
    switch (mAlign) {
        case ALIGN_RIGHT: return -getLength(text, scale);
        case ALIGN_CENTER: return -getLength(text, scale) / 2.0f;
        default: return 0.0f;
    }
}

void Font::setSizeOfSpace(float width)
{
    mKerning[SPACE] = width * mUnitSizeX;
}

float Font::getLength(const std::string& text, float scale) const
{
    float length = 0.0f;
    for (const char letter : text)
        length += mKerning[static_cast<unsigned char>(letter)];
    return length * scale;
}

float Font::getHeight() const
{
    return static_cast<float>(mCharHeight) * mUnitSizeY;
}

/** Texels that are as large as pixels stay within the pixels of their glyph; others spread. */
mathbase::Box2 Font::getBounds(const std::string& text, const mathbase::Vector2f& scale) const
{
    const mathbase::Vector2f cell(static_cast<float>(mCharWidth), static_cast<float>(mCharHeight));
    mathbase::Box2 bounds;
    placeCells(text, scale, [&](unsigned char glyph, const Edges& place) {
        const float width = place.right - place.left;
        const float height = place.bottom - place.top; // along the rows of the sheet
        const bool fits = mExact && std::abs(width) == cell.x && std::abs(height) == cell.y;
        const mathbase::Box2 ink = fits ? mInk[glyph] : mathbase::Box2({0.0f, 0.0f}, cell);
        if (ink.getWidth() <= 0.0f)
            return;
        const auto pointOf = [&](const mathbase::Vector2f& texel) {
            return mathbase::Vector2f(place.left + texel.x * width / cell.x,
                                      place.top + texel.y * height / cell.y);
        };
        bounds.setUnion(pointOf(ink.mMin));
        bounds.setUnion(pointOf(ink.mMax));
    });
    return bounds;
}

/** Gives the sheet back; a display that is gone has taken it along. */
void Font::release()
{
    mSolid.reset();
    Texture* const texture = std::exchange(mTexture, nullptr);
    if (texture != nullptr && Immediate::isLive())
        mDisplay->destroy(texture);
}

} // namespace zavex::display
