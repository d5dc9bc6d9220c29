#include "effects/ascii.h"

#include "display/dis_display.h"
#include "display/dis_texture.h"
#include "display/dis_windowmode.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_random.h"

#include <algorithm>
#include <cstddef>

namespace zavex::effects {

using display::BlendFactor;
using display::DisplayObsolete;
using display::Texture;
using mathbase::Matrix4x4Col;
using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

constexpr float CELL_TEXELS = 8.0f;
constexpr float SLIDING_SPEED = 2.0f; // half screen heights a second
constexpr float LARGEST_SHARE = 0.5f; // of a cell's offset that is drawn by chance
constexpr float ROW_SHARE = 0.5f;     // and that each row adds
constexpr std::size_t CORNERS = 4;

} // namespace

Ascii::Ascii()
{
    addPlugin("done", mDone);
}

void Ascii::setup()
{
    Texture::TextureDeclaration declaration;
    declaration.useMipmaps = false;
    mTexture = mDisplay->createTexture("ascii/ascii.png", declaration, false);

    constexpr std::size_t CELLS = std::size_t{ROWS} * COLUMNS;
    mChar = std::make_unique<Char[]>(CELLS);
    mathbase::RandomGen_LCG<69069, 5> random(mathbase::initialSeed());
    for (std::size_t cell = 0; cell < CELLS; ++cell) {
        const auto row = static_cast<float>(cell / COLUMNS);
        mChar[cell].mOffset = LARGEST_SHARE * random.nextFloat() + ROW_SHARE * row;
    }
    const DisplayObsolete::Vertex white{{}, {}, Vector4f(1.0f, 1.0f, 1.0f, 1.0f)};
    mVertices.assign(CORNERS * CELLS, white);
}

void Ascii::draw(float time, float /*delta*/, float /*progress*/)
{
    DisplayObsolete::setProject(Matrix4x4Col());
    ds.setCamera();
    Matrix4x4Col downwards;
    downwards.setScale(Vector3f(1.0f, -1.0f, 0.0f));
    ds.setTransform(downwards);

    DisplayObsolete::setBlending(true);
    DisplayObsolete::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
    DisplayObsolete::setTexturing(true);
    mDisplay->setTexture(mTexture, 0);

    placeCells(time);
    DisplayObsolete::drawQuads(mVertices.data(), mVertices.size());

    mDisplay->setTexture(nullptr, 0);
    DisplayObsolete::setTexturing(false);
}

/** The grid has the size of the picture, in the middle of the window. */
void Ascii::placeCells(float time)
{
    const Texture::TextureDeclaration& picture = mTexture->getDeclaration();
    const display::WindowMode& mode = mDisplay->getWindowMode();
    const Vector2f texels(static_cast<float>(picture.width), static_cast<float>(picture.height));
    const Vector2f step(CELL_TEXELS / texels.x, CELL_TEXELS / texels.y);
    const float width = 2.0f * (texels.x / static_cast<float>(mode.width)) / COLUMNS;
    const float height = 2.0f * (texels.y / static_cast<float>(mode.height)) / ROWS;

    for (int row = 0; row < ROWS; ++row) {
        for (int column = 0; column < COLUMNS; ++column) {
            const auto cell = static_cast<std::size_t>(row * COLUMNS + column);
            const float offset = std::max(mChar[cell].mOffset - SLIDING_SPEED * time, 0.0f);
            const float x = width * static_cast<float>(column - COLUMNS / 2);
            const float y = height * static_cast<float>(row - ROWS / 2) + offset;
            const float u = step.x * static_cast<float>(column);
            const float v = step.y * static_cast<float>(row);
            const auto place = [&](std::size_t corner, float right, float down) {
                DisplayObsolete::Vertex& vertex = mVertices[CORNERS * cell + corner];
                vertex.position = {x + right * width, y + down * height, 0.0f};
                vertex.texcoord = {u + right * step.x, v + down * step.y};
            };
            place(0, 0.0f, 0.0f);
            place(1, 1.0f, 0.0f);
            place(2, 1.0f, 1.0f);
            place(3, 0.0f, 1.0f);
        }
    }
}

} // namespace zavex::effects
