#include "effects/lightspeed.h"

#include "display/dis_display.h"
#include "effects/effect_factory.h"
#include "effects/light_volume.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_quat.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace zavex::effects {

using display::BlendFactor;
using display::DisplayObsolete;
using mathbase::Euler;
using mathbase::Matrix4x4Col;
using mathbase::Quatf;
using mathbase::RotationOrder;
using mathbase::Vector2f;
using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

constexpr float PI = std::numbers::pi_v<float>;
constexpr float FAR_PLANE = 10000.0f;

constexpr float NEAREST_RADIUS = 3.0f; // of a streak from the tunnel's axis
constexpr float RADIUS_RANGE = 13.0f;
constexpr float TUNNEL_LENGTH = 20.0f;
constexpr float STREAK_SPEED = 34.0f; // units a second
constexpr float LARGEST_STEP = 1.0f;  // seconds; a jump in time moves no streak
constexpr float RE_ENTRY = 18.0f;     // how far a streak is put back at least
constexpr float RE_ENTRY_RANGE = 4.0f;
constexpr float HALF_THICKNESS = 0.1f;
constexpr float HALF_LENGTH = 1.5f;
constexpr float STREAK_LIGHT = 3.0f; // at distance 1

constexpr float FIRST_PLATE = 48.5f;
constexpr float PLATE_SPACING = 4.75f;
constexpr float CAMERA_SPEED = 5.0f; // units a second
constexpr float CAMERA_START = -10.0f;
constexpr float VIEW_DISTANCE = 10.0f; // from the camera to its target
constexpr float VISIBLE_DISTANCE = 20.0f;
constexpr float PLATE_LIGHT = 25.0f;     // at distance 1
constexpr float NEAREST_PLATE = 1.0e-3f; // keeps the light of a plate at the camera finite
constexpr float VOLUME_INTENSITY = 1.4f;

} // namespace

Lightspeed::Lightspeed() : mRandom(mathbase::initialSeed())
{
    addPlugin("not fast enough", mNotFastEnough);
    addPlugin("greetings (to)", mSplineGreetings);
    addPlugin("explode", mExplode);
    addPlugin("rot x", mSplineRotX);
    addPlugin("rot y", mSplineRotY);
    addPlugin("triggerexplode", mTriggerExplode);
}

void Lightspeed::setup()
{
    mShader = createVolumeShader(*mDisplay);
    mTexture = mDisplay->createTexture("lightspeed/greets.png", false);
    mGreetings = mDisplay->createTexture("lightspeed/greetings.png", false);

    mStar = std::make_unique<Star[]>(STREAKS);
    for (int i = 0; i < STREAKS; ++i) {
        const float angle = 2.0f * PI * mRandom.mGen.nextFloat();
        const float radius = RADIUS_RANGE * mRandom.mGen.nextFloat() + NEAREST_RADIUS;
        mDirection[static_cast<std::size_t>(i)] = {std::sin(angle), std::cos(angle)};
        mStar[i].mColor = {1.0f, 1.0f, 1.0f};
        mStar[i].mPos = {radius * std::sin(angle), radius * std::cos(angle),
                         TUNNEL_LENGTH * mRandom.mGen.nextFloat()};
    }
    mCube = std::make_unique<Star[]>(PLATES);
    for (int i = 0; i < PLATES; ++i) {
        mCube[i].mColor = {1.0f, 0.5f, 0.2f};
        mCube[i].mPos = {0.0f, 0.0f, FIRST_PLATE + PLATE_SPACING * static_cast<float>(i)};
    }
}

void Lightspeed::drawFrame(float time, float delta, float /*progress*/)
{
    setPerspective(FAR_PLANE);
    drawStreaks(time, delta);
    drawPlates(time);

    beginOverlay(ds);
    drawPictureCentred(*mGreetings, mSplineGreetings.get(time));
}

/**
 * All streaks are turned by the same two angles and then, about the tunnel's axis, by their own,
 * whose cosine and sine are those of the place that they fly at.
 */
void Lightspeed::drawStreaks(float time, float delta)
{
    ds.setCamera(Vector3f(0.0f, 0.0f, 0.0f), Vector3f(0.0f, 0.0f, VIEW_DISTANCE), 0.0f);
    ds.setTransform();

    const float brightness = unit(mNotFastEnough.get(time));
    const float spread = 3.0f + 2.0f * mExplode.get(time);
    Quatf turn;
    turn.setEuler(Euler(mSplineRotX.get(time), mSplineRotY.get(time), 0.0f, RotationOrder::ZXY));
    Matrix4x4Col rotation;
    rotation.setRot(turn);
    const Vector3f across = rotation.multiplyVector(Vector3f(0.0f, HALF_THICKNESS, 0.0f));
    const Vector3f along = rotation.multiplyVector(Vector3f(0.0f, 0.0f, HALF_LENGTH));

    for (int i = 0; i < STREAKS; ++i) {
        Star& streak = mStar[i];
        const Vector3f& place = streak.mPos;
        const Vector2f& direction = mDirection[static_cast<std::size_t>(i)];
        const auto turned = [&](const Vector3f& v) {
            return Vector3f(direction.x * v.x - direction.y * v.y,
                            direction.y * v.x + direction.x * v.y, v.z);
        };
        const Vector3f centre(spread * place.x, spread * place.y, place.z);
        const Vector3f up = turned(across);
        const Vector3f far = turned(along);
        // Grows without bound towards 0, where alone it would not be finite.
        const float distance = place.z == 0.0f ? std::numeric_limits<float>::min() : place.z;
        const Vector3f light = streak.mColor * (brightness * (STREAK_LIGHT / distance));
        const Vector4f colour(light.x, light.y, light.z, 1.0f);
        DisplayObsolete::drawQuad({
            {centre - up + far, {}, colour},
            {centre + up + far, {}, colour},
            {centre + up - far, {}, colour},
            {centre - up - far, {}, colour},
        });
        advance(streak, delta);
    }
}

void Lightspeed::advance(Star& streak, float delta)
{
    if (!(delta > 0.0f && delta < LARGEST_STEP))
        return;
    float& z = streak.mPos.z;
    z -= STREAK_SPEED * delta;
    if (z < 0.0f)
        z += RE_ENTRY + RE_ENTRY_RANGE * mRandom.mGen.nextFloat();
}

void Lightspeed::drawPlates(float time)
{
    ds.setCamera(Vector3f(0.0f, 0.0f, CAMERA_SPEED * time + CAMERA_START),
                 Vector3f(0.0f, 0.0f, CAMERA_SPEED * time), 0.0f);
    ds.setTransform();
    DisplayObsolete::setTexturing(true);
    mDisplay->setTexture(mTexture, 0);

    findPlates(time);
    setupVolumetric(*mDisplay, *mShader, VOLUME_INTENSITY);
    drawPlateBodies();
    changeVolumetric();
    drawPlateBodies();
    endVolumetric(*mDisplay);
    drawGreetingsLines();
}

void Lightspeed::findPlates(float time)
{
    const float camera = CAMERA_SPEED * time + CAMERA_START;
    const float swing = std::sin(time);
    mVisibleCount = 0;
    for (int i = 0; i < PLATES; ++i) {
        const Vector3f& place = mCube[i].mPos;
        const float distance = std::abs(place.z - camera);
        if (!(distance <= VISIBLE_DISTANCE))
            continue;
        const auto index = static_cast<float>(i);
        const float tumble = std::max(4.0f * std::sin(0.5f * distance - 1.0f), 0.0f);
        Quatf turn;
        turn.setEuler(Euler(0.5f * PI + tumble * std::sin(index), tumble * std::cos(index),
                            PI + tumble * swing, RotationOrder::XYZ));
        Matrix4x4Col transform;
        transform.buildPRS(place, turn, Vector3f(1.0f, 0.1f, 0.1f));
        const float nearness = std::max(distance, NEAREST_PLATE);
        mVisible[static_cast<std::size_t>(mVisibleCount++)] = {
            DisplayObsolete::boxCorners(transform, Vector3f(0.0f, 0.0f, 0.0f),
                                        Vector3f(1.0f, 1.0f, 1.0f)),
            PLATE_LIGHT / (nearness * nearness), i};
    }
}

void Lightspeed::drawPlateBodies()
{
    for (int i = 0; i < mVisibleCount; ++i) {
        const Plate& plate = mVisible[static_cast<std::size_t>(i)];
        DisplayObsolete::setColor(0.6f * plate.light, 0.2f * plate.light, 0.1f * plate.light, 1.0f);
        DisplayObsolete::drawBox(plate.corners);
    }
}

void Lightspeed::drawGreetingsLines()
{
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
    for (int i = 0; i < mVisibleCount; ++i) {
        const Plate& plate = mVisible[static_cast<std::size_t>(i)];
        const float grey = 0.1f * plate.light;
        const Vector4f colour(grey, grey, grey, 1.0f);
        const float top = static_cast<float>(plate.line) / PLATES;
        const float bottom = static_cast<float>(plate.line + 1) / PLATES;
        const DisplayObsolete::BoxCorners& corners = plate.corners;
        DisplayObsolete::drawQuad({
            {corners[2], Vector2f(0.0f, top),    colour},
            {corners[3], Vector2f(1.0f, top),    colour},
            {corners[7], Vector2f(1.0f, bottom), colour},
            {corners[6], Vector2f(0.0f, bottom), colour},
        });
    }
}

template cadenza::EffectFactoryBase& factoryOf<Lightspeed>();

} // namespace zavex::effects
