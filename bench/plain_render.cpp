#include "plain_render.h"

#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_texture_gl.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zavex::bench {

using mathbase::Vector2f;
using mathbase::Vector4f;

namespace {

constexpr int GLYPHS_PER_ROW = 16;
constexpr float GLYPH_SIDE = 1.0f / GLYPHS_PER_ROW; // in texture coordinates

void vertex(float x, float y, const Vector4f& color)
{
    glColor4f(color.x, color.y, color.z, color.w);
    glVertex2f(x, y);
}

void texturedQuad(const vellum::Render::Area& place, const vellum::Render::Area& texcoords)
{
    glTexCoord2f(texcoords.mMin.x, texcoords.mMin.y);
    glVertex2f(place.mMin.x, place.mMin.y);
    glTexCoord2f(texcoords.mMax.x, texcoords.mMin.y);
    glVertex2f(place.mMax.x, place.mMin.y);
    glTexCoord2f(texcoords.mMax.x, texcoords.mMax.y);
    glVertex2f(place.mMax.x, place.mMax.y);
    glTexCoord2f(texcoords.mMin.x, texcoords.mMax.y);
    glVertex2f(place.mMin.x, place.mMax.y);
}

} // namespace

void PlainRender::setup(display::DisplayGL* display, const std::string& fontFile)
{
    Render::setup(display, fontFile);
    for (std::size_t letter = 0; letter < mAdvance.size(); ++letter)
        mAdvance[letter] = getTextLength(std::string(1, static_cast<char>(letter)));
    mCell = getFontHeight();
    mSheet = std::make_unique<display::Font>(display);
    mSheet->load(fontFile, false, {1.0f, 1.0f});
}

void PlainRender::setupDraw(Vector2f windowSize, Vector2f pan, float unused)
{
    Render::setupDraw(windowSize, pan, unused);
    display::DisplayObsolete::flush();
    mWindowSize = windowSize;
    primitives = 0;
    letters = 0;
    bindSheet();
}

void PlainRender::setColor(const Vector4f& first, const Vector4f& second)
{
    mFirst = first;
    mSecond = second.w < 0.0f ? first : second;
}

void PlainRender::setLineWidth(float width)
{
    glLineWidth(width);
}

void PlainRender::setAlign(int align)
{
    Render::setAlign(align);
    mAlign = align;
}

void PlainRender::drawBox(const Area& box, int mode)
{
    ++primitives;
    const bool sideways = mode == GRADIENT_HORISONTAL;
    glBegin(GL_QUADS);
    vertex(box.mMin.x, box.mMin.y, mFirst);
    vertex(box.mMax.x, box.mMin.y, sideways ? mSecond : mFirst);
    vertex(box.mMax.x, box.mMax.y, mSecond);
    vertex(box.mMin.x, box.mMax.y, sideways ? mFirst : mSecond);
    glEnd();
}

void PlainRender::drawBorder(const Area& box)
{
    ++primitives;
    Area centres = box; // of the outermost pixels
    centres.expand(-0.5f);
    glLineWidth(1.0f);
    glBegin(GL_LINE_LOOP);
    vertex(centres.mMin.x, centres.mMin.y, mFirst);
    vertex(centres.mMax.x, centres.mMin.y, mFirst);
    vertex(centres.mMax.x, centres.mMax.y, mSecond);
    vertex(centres.mMin.x, centres.mMax.y, mSecond);
    glEnd();
}

void PlainRender::drawLine(const Vector2f& from, const Vector2f& to)
{
    ++primitives;
    glBegin(GL_LINES);
    vertex(from.x, from.y, mFirst);
    vertex(to.x, to.y, mSecond);
    glEnd();
}

void PlainRender::drawCircle(const Area& box, int segments, float start)
{
    ++primitives;
    const float pi = std::numbers::pi_v<float>;
    const int bySize = static_cast<int>((box.getWidth() + box.getHeight()) * pi * 0.5f);
    const int count = std::max(segments == -1 ? bySize : segments, 3);
    const Vector2f centre = box.getCenter();
    const Vector2f radius = box.getHalfSize();
    glBegin(GL_TRIANGLE_FAN);
    vertex(centre.x, centre.y, mFirst);
    for (int i = 1; i <= count + 1; ++i) {
        const float turns = static_cast<float>(i % count) / static_cast<float>(count) + start;
        vertex(centre.x + radius.x * std::sin(2.0f * pi * turns),
               centre.y + radius.y * std::cos(2.0f * pi * turns), mFirst);
    }
    glEnd();
}

void PlainRender::drawImage(display::Texture& texture, const Area& box)
{
    ++primitives;
    glEnable(GL_TEXTURE_2D);
    static_cast<display::Texture_GL&>(texture).bind();
    glColor4f(mFirst.x, mFirst.y, mFirst.z, mFirst.w);
    glBegin(GL_QUADS);
    texturedQuad(box, {0.0f, 0.0f, 1.0f, 1.0f});
    glEnd();
    glDisable(GL_TEXTURE_2D);
    bindSheet();
}

void PlainRender::drawText(const std::string& text, Vector2f position)
{
    const float length = getTextLength(text);
    const float left = std::floor(position.x);
    const float top = std::floor(position.y) - std::round(mCell / 2.0f);
    float x = mAlign == 0 ? 0.0f : (mAlign == 1 ? -length : -length / 2.0f);

    glEnable(GL_TEXTURE_2D);
    glColor4f(mFirst.x, mFirst.y, mFirst.z, mFirst.w);
    for (const char character : text) {
        const auto glyph = static_cast<unsigned char>(character);
        const int row = glyph / GLYPHS_PER_ROW;
        const float u = GLYPH_SIDE * static_cast<float>(glyph % GLYPHS_PER_ROW);
        const float v = GLYPH_SIDE * static_cast<float>(row);
        glBegin(GL_QUADS);
        texturedQuad({left + std::round(x), top, left + std::round(x + mCell), top + mCell},
                     {u, v, u + GLYPH_SIDE, v + GLYPH_SIDE});
        glEnd();
        ++primitives;
        x += mAdvance[glyph];
        letters += character == ' ' ? 0 : 1;
    }
    glDisable(GL_TEXTURE_2D);
}

void PlainRender::setClipArea(Area area)
{
    if (area.mMin.x == -1.0f) {
        glDisable(GL_SCISSOR_TEST);
        return;
    }
    glEnable(GL_SCISSOR_TEST);
    glScissor(static_cast<int>(area.mMin.x), static_cast<int>(mWindowSize.y - area.mMax.y),
              std::max(static_cast<int>(area.getWidth()), 0),
              std::max(static_cast<int>(area.getHeight()), 0));
}

void PlainRender::bindSheet() const
{
    static_cast<display::Texture_GL*>(mSheet->getSolid().value().texture)->bind();
}

} // namespace zavex::bench
