#include "effects/common_effect.h"

#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_texture.h"
#include "display/dis_windowmode.h"
#include "effects/common.h"
#include "effects/picture_quad.h"
#include "mathbase/mb_matrix4x4col.h"

namespace zavex::effects {

using display::Immediate;

namespace {

constexpr float FIELD_OF_VIEW = 1.3962634f; // radians, vertical
constexpr float NEAR_PLANE = 0.1f;

} // namespace

void DrawingStates::addLight()
{
    state.blending = true;
    state.blendSource = display::BlendFactor::ONE;
    state.blendDestination = display::BlendFactor::ONE;
}

void CommonEffect::draw(float time, float delta, float progress)
{
    const Immediate& immediate = Immediate::live();
    DrawingStates left{immediate.state(), immediate.color(), mDisplay->getFBO()};
    beginStates();
    drawFrame(time, delta, progress);
    leave(left);
    putBack(left);
}

/** Matrices and scissor stay: the one is nobody's, the other keeps the window's margins black. */
void CommonEffect::beginStates()
{
    Immediate& immediate = Immediate::live();
    const Immediate::State& found = immediate.state();
    DrawingStates begun{};
    begun.addLight();
    begun.state.projection = found.projection;
    begun.state.modelView = found.modelView;
    begun.state.scissor = found.scissor;
    begun.state.scissorTest = found.scissorTest;
    immediate.change() = begun.state;
    immediate.setColor(1.0f, 1.0f, 1.0f, 1.0f);
}

/** Binds first: what is bound is bound by drawing what waits, in the states that it waits for. */
void CommonEffect::putBack(const DrawingStates& left) const
{
    mDisplay->setVBO(nullptr);
    mDisplay->setIBO(nullptr);
    mDisplay->setShader(nullptr);
    mDisplay->setTexture(nullptr, 0);
    mDisplay->setFBO(left.target);

    Immediate& immediate = Immediate::live();
    immediate.change() = left.state;
    const auto& [red, green, blue, alpha] = left.color;
    immediate.setColor(red, green, blue, alpha);
}

void CommonEffect::rehearse()
{
    const mathbase::Vector3f from = mCommon->from;
    const mathbase::Vector3f to = mCommon->to;
    const float roll = mCommon->roll;
    mDisplay->resetStates();
    mDisplay->setFBO(mCommon->mVaddr[0]);
    beginStates();
    drawUnseen(0.5f * (mEnd - mStart));

    mCommon->clearTargets();
    mCommon->from = from;
    mCommon->to = to;
    mCommon->roll = roll;
}

void CommonEffect::beginOverlay(display::DisplayObsolete& matrices)
{
    display::DisplayObsolete::setProject(mathbase::Matrix4x4Col());
    matrices.setCamera();
    matrices.setTransform();
}

void CommonEffect::setPerspective(float farPlane) const
{
    mathbase::Matrix4x4Col projection;
    projection.setProject(FIELD_OF_VIEW, aspect(), NEAR_PLANE, farPlane);
    display::DisplayObsolete::setProject(projection);
}

float CommonEffect::aspect() const
{
    const display::WindowMode& mode = mDisplay->getWindowMode();
    return static_cast<float>(mode.width) / static_cast<float>(mode.height);
}

void CommonEffect::drawPictureCentred(display::Texture& picture, float brightness) const
{
    mDisplay->setTexture(&picture, 0);
    const display::WindowMode& mode = mDisplay->getWindowMode();
    const display::Texture::TextureDeclaration& size = picture.getDeclaration();
    const float x = static_cast<float>(size.width) / static_cast<float>(mode.width);
    const float y = static_cast<float>(size.height) / static_cast<float>(mode.height);
    drawPicture(-x, y, x, -y, brightness);
}

} // namespace zavex::effects
