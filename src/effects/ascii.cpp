#include "effects/ascii.h"

#include "display/dis_display.h"
#include "display/dis_texture.h"
#include "display/dis_windowmode.h"
#include "effects/effect_factory.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_random.h"

#include <algorithm>
#include <cstddef>

namespace zavex::effects {

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
constexpr int CELLS = Ascii::ROWS * Ascii::COLUMNS;
constexpr int MIDDLE_ROW = Ascii::ROWS / 2;
constexpr int MIDDLE_COLUMN = Ascii::COLUMNS / 2;
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

    mChar = std::make_unique<Char[]>(CELLS);
    mathbase::RandomGen_LCG<69069, 5> random(mathbase::initialSeed());
    for (int cell = 0; cell < CELLS; ++cell) {
        const int row = cell / COLUMNS;
        mChar[cell].mOffset =
            LARGEST_SHARE * random.nextFloat() + ROW_SHARE * static_cast<float>(row);
    }
    const DisplayObsolete::Vertex white{{}, {}, Vector4f(1.0f, 1.0f, 1.0f, 1.0f)};
    mVertices.assign(CORNERS * CELLS, white);
    mCellSize = {};
}

void Ascii::drawFrame(float time, float /*delta*/, float /*progress*/)
{
    beginOverlay(ds);
    Matrix4x4Col downwards;
    downwards.setScale(Vector3f(1.0f, -1.0f, 0.0f));
    ds.setTransform(downwards);

    DisplayObsolete::setTexturing(true);
    mDisplay->setTexture(mTexture, 0);

    layOutCells();
    slideCells(time);
    DisplayObsolete::drawQuads(mVertices.data(), mVertices.size());
}

/** The grid has the size of the picture, in the middle of the window. */
void Ascii::layOutCells()
{
    const Texture::TextureDeclaration& picture = mTexture->getDeclaration();
    const display::WindowMode& mode = mDisplay->getWindowMode();
    const Vector2f texels(static_cast<float>(picture.width), static_cast<float>(picture.height));
    const Vector2f size(2.0f * (texels.x / static_cast<float>(mode.width)) / COLUMNS,
                        2.0f * (texels.y / static_cast<float>(mode.height)) / ROWS);
    if (size == mCellSize)
        return;
    mCellSize = size;

    const Vector2f step(CELL_TEXELS / texels.x, CELL_TEXELS / texels.y);
    for (std::size_t i = 0; i < mVertices.size(); ++i) {
        const int cell = static_cast<int>(i / CORNERS);
        const std::size_t corner = i % CORNERS; // from the top left one on, clockwise
        const int right = cell % COLUMNS + (corner == 1 || corner == 2 ? 1 : 0);
        const int down = cell / COLUMNS + (corner >= 2 ? 1 : 0);
        mVertices[i].position.x = size.x * static_cast<float>(right - MIDDLE_COLUMN);
        mVertices[i].texcoord = {step.x * static_cast<float>(right),
                                 step.y * static_cast<float>(down)};
    }
}

void Ascii::slideCells(float time)
{
    for (int cell = 0; cell < CELLS; ++cell) {
        const int row = cell / COLUMNS - MIDDLE_ROW;
        const float offset = std::max(mChar[cell].mOffset - SLIDING_SPEED * time, 0.0f);
        const float top = mCellSize.y * static_cast<float>(row) + offset;
        DisplayObsolete::Vertex* const corners =
            &mVertices[CORNERS * static_cast<std::size_t>(cell)];
        for (std::size_t corner = 0; corner < CORNERS; ++corner)
            corners[corner].position.y = corner < 2 ? top : top + mCellSize.y;
    }
}

template cadenza::EffectFactoryBase& factoryOf<Ascii>();

} // namespace zavex::effects
