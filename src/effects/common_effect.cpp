#include "effects/common_effect.h"

#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_texture.h"
#include "display/dis_windowmode.h"
#include "effects/common.h"
#include "effects/picture_quad.h"
#include "mathbase/mb_matrix4x4col.h"

namespace zavex::effects {

namespace {

constexpr float FIELD_OF_VIEW = 1.3962634f; // radians, vertical
constexpr float NEAR_PLANE = 0.1f;

} // namespace

void CommonEffect::rehearse()
{
    const mathbase::Vector3f from = mCommon->from;
    const mathbase::Vector3f to = mCommon->to;
    const float roll = mCommon->roll;
    mDisplay->resetStates();
    mDisplay->setFBO(mCommon->mVaddr[0]);
    drawUnseen(0.5f * (mEnd - mStart));

    mCommon->clearTargets();
    mCommon->from = from;
    mCommon->to = to;
    mCommon->roll = roll;
}

void CommonEffect::setPerspective(float farPlane) const
{
    const display::WindowMode& mode = mDisplay->getWindowMode();
    const float aspect = static_cast<float>(mode.width) / static_cast<float>(mode.height);
    mathbase::Matrix4x4Col projection;
    projection.setProject(FIELD_OF_VIEW, aspect, NEAR_PLANE, farPlane);
    display::DisplayObsolete::setProject(projection);
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
