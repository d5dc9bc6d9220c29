#include "effects/plasma.h"

#include "display/dis_display.h"
#include "display/dis_shader.h"
#include "effects/common.h"
#include "effects/effect_factory.h"
#include "effects/picture_quad.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_quat.h"

#include <array>
#include <cmath>
#include <numbers>

namespace zavex::effects {

using display::DisplayObsolete;
using mathbase::Euler;
using mathbase::Matrix4x4Col;
using mathbase::Quatf;
using mathbase::RotationOrder;
using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

constexpr float PI = std::numbers::pi_v<float>;
constexpr float FAR_PLANE = 10000.0f;
constexpr float CAMERA_RADIUS = 40.0f;
constexpr float DROP_HEIGHT = 10.0f;

constexpr float FADE_RATE = 0.3f; // level per second at speed 1
constexpr float BEAT_SCALE = 0.1f;
constexpr float SWELL_AT_REST = 1.01f;
constexpr float DRAWN_LEVEL = 0.01f;   // above it a cell has a box
constexpr float OUTLINED_LEVEL = 0.7f; // above it also an outline
constexpr float OUTLINE_SIZE = 1.4f;   // of the box's half-extent
constexpr float BOX_LIGHT = 0.05f;
constexpr float OUTLINE_LIGHT = 0.02f;

constexpr float PANEL_DISTANCE = 22.0f;
constexpr float PANEL_WIDTH = 20.0f;  // half
constexpr float PANEL_HEIGHT = 10.0f; // half

} // namespace

Plasma::Plasma()
{
    addPlugin("invite", mSplineInvite);
    addPlugin("color", mColor);
    addPlugin("stop", mStop);
    addPlugin("drop", mDrop);
    addPlugin("camera", mCamera);
    addPlugin("logo1", mLogo1);
    addPlugin("logo2", mLogo2);
    addPlugin("beat trigger", mBeatTrigger);
    addPlugin("beat spline", mBeatSpline);
    addPlugin("hammertime", mHammertime);
}

void Plasma::setup()
{
    mLogoTexture[0] = mDisplay->createTexture("plasma/intro.png", false);
    mLogoTexture[1] = mDisplay->createTexture("plasma/intro2.png", false);
    mInvite = mDisplay->createTexture("plasma/invites.png", false);
    mShader = mDisplay->createShader(nullptr);
    mShader->attach("plasma/plasma.vert", "plasma/plasma.frag");
}

void Plasma::drawFrame(float time, float delta, float /*progress*/)
{
    const float pulse = beat(time);
    advanceCells(time, delta);
    drawScene(time, pulse);
}

/** Lit cells, whatever the curves say: with boxes and outlines. */
void Plasma::drawUnseen(float time)
{
    const PlasmaField kept = mPlasma;
    mPlasma.advance(mCurrent, 0.0f, 1.0f);
    drawScene(time, 0.0f);
    mPlasma = kept;
}

void Plasma::drawScene(float time, float beat)
{
    mDisplay->setFBO(mCommon->mVaddr[0]);
    placeCamera(time);
    drawCells(time, beat);
    drawPanels(time);
    drawInvitation(time);
}

void Plasma::leave(DrawingStates& left) const
{
    left.addLight();
    left.state.blending = false;
    left.state.faceCulling = false;
    left.target = mCommon->mVaddr[0];
}

float Plasma::beat(float time)
{
    if (mBeatTrigger.get(time) != 0)
        mBeatTime = time;
    // The plugin divides by the effect's duration: the beat curve's axis is seconds.
    return BEAT_SCALE * mBeatSpline.get((mEnd - mStart) * (time - mBeatTime));
}

void Plasma::advanceCells(float time, float delta)
{
    const float speed = mStop.get(time);
    mCurrent += speed * delta;
    const float fade = delta > 0.0f ? FADE_RATE * speed * delta : 0.0f;
    mPlasma.advance(mCurrent, fade, mHammertime.get(time));
}

void Plasma::placeCamera(float time)
{
    const float swing = std::sin(0.5f * PI * mCamera.get(time));
    const float angle = 0.5f * PI * swing + 0.5f * PI;
    const Vector3f eye(CAMERA_RADIUS * std::sin(angle), 0.0f, CAMERA_RADIUS * std::cos(angle));
    const Vector3f target(0.0f, DROP_HEIGHT * mDrop.get(time), 0.0f);
    ds.setCamera(eye, target, 0.0f);

    setPerspective(FAR_PLANE);
}

void Plasma::drawCells(float time, float beat)
{
    Quatf rotation;
    rotation.setEuler(Euler(Vector3f(0.5f * mCurrent, std::sin(0.6f * mCurrent), 0.7f * mCurrent),
                            RotationOrder::XYZ));
    Matrix4x4Col transform;
    transform.buildPRS(Vector3f(0.0f, 0.0f, 0.0f), rotation, Vector3f(1.0f, 1.0f, 1.0f));
    ds.setTransform(transform);

    const Vector3f colour = mColor.get(time) * BOX_LIGHT;
    const Vector3f glint(0.02f * beat, 0.02f * beat, 0.2f * beat);
    const float swell = beat + SWELL_AT_REST;

    // Light adds up in any order: all boxes and then all outlines make two batches.
    for (int index = 0; index < PlasmaField::COUNT; ++index) {
        if (mPlasma.level(index) <= DRAWN_LEVEL)
            continue;
        const PlasmaField::Cell cell = mPlasma.cell(index, swell);
        // Not every driver cuts a vertex colour off at 0, and light below it would eat other light.
        DisplayObsolete::setColor(
            (colour * cell.brightness + glint).max(Vector3f(0.0f, 0.0f, 0.0f)));
        DisplayObsolete::drawBoxAround(cell.position, Vector3f(cell.level, cell.level, cell.level));
    }
    DisplayObsolete::setColor(Vector4f(OUTLINE_LIGHT, OUTLINE_LIGHT, OUTLINE_LIGHT, 1.0f));
    for (int index = 0; index < PlasmaField::COUNT; ++index) {
        if (mPlasma.level(index) <= OUTLINED_LEVEL)
            continue;
        const PlasmaField::Cell cell = mPlasma.cell(index, swell);
        const float extent = OUTLINE_SIZE * cell.level;
        DisplayObsolete::drawBoxWireAround(cell.position, Vector3f(extent, extent, extent));
    }
}

void Plasma::drawPanels(float time)
{
    mDisplay->setShader(mShader);
    DisplayObsolete::setTexturing(true);

    const std::array brightness = {mLogo1.get(time), mLogo2.get(time)};
    for (std::size_t panel = 0; panel < mLogoTexture.size(); ++panel) {
        const float side = panel == 0 ? 1.0f : -1.0f;
        Matrix4x4Col transform;
        transform.buildPRS(Vector3f(0.0f, 0.0f, PANEL_DISTANCE * side),
                           Quatf(1.0f, 0.0f, 0.0f, 0.0f),
                           Vector3f(PANEL_WIDTH * side, -PANEL_HEIGHT, 1.0f));
        ds.setTransform(transform);
        mDisplay->setTexture(mLogoTexture[panel], 0);
        drawPicture(-1.0f, -1.0f, 1.0f, 1.0f, brightness[panel]);
    }
}

void Plasma::drawInvitation(float time)
{
    beginOverlay(ds);
    drawPictureCentred(*mInvite, mSplineInvite.get(time));
}

template cadenza::EffectFactoryBase& factoryOf<Plasma>();

} // namespace zavex::effects
