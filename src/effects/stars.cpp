#include "effects/stars.h"

#include "effects/common.h"
#include "effects/effect_factory.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_random.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace zavex::effects {

using display::DisplayObsolete;
using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

constexpr float PI = std::numbers::pi_v<float>;
constexpr float FAR_PLANE = 100000.0f;
constexpr float DISTANCE = 50000.0f;
constexpr float BRIGHTEST = 0.4f;
constexpr float POINT_SIZE = 2.0f; // pixels

using Random = mathbase::RandomGen_LCG<69069, 5>;

/** A direction, uniform over the upper half of the unit sphere. */
Vector3f directionAbove(Random& random)
{
    const float z = 2.0f * random.nextFloat() - 1.0f;
    const float radius = std::sqrt(1.0f - z * z);
    const float angle = 2.0f * PI * random.nextFloat();
    const Vector3f direction(radius * std::cos(angle), radius * std::sin(angle), z);
    return direction.y < 0.0f ? -direction : direction;
}

} // namespace

Stars::Stars()
{
    addPlugin("not fast enough", mNotFastEnough);
}

void Stars::setup()
{
    mStar = std::make_unique<Star[]>(COUNT);
    mVertices.resize(COUNT);
    Random random(mathbase::initialSeed());
    for (std::size_t i = 0; i < COUNT; ++i) {
        Star& star = mStar[i];
        const float grey = BRIGHTEST * std::sin(random.nextFloat() * 0.5f * PI);
        star.mColor = {grey, grey, grey};
        star.mPos = directionAbove(random) * DISTANCE;
        mVertices[i].position = star.mPos;
    }
}

void Stars::drawFrame(float time, float /*delta*/, float /*progress*/)
{
    setPerspective(FAR_PLANE);
    ds.setCamera(mCommon->from, mCommon->to, mCommon->roll);
    ds.setTransform();
    DisplayObsolete::setDepthTest(true);
    DisplayObsolete::setDepthWriting(false);
    DisplayObsolete::setFaceCulling(true);
    DisplayObsolete::setPointSize(POINT_SIZE);

    const float brightness = unit(mNotFastEnough.get(time));
    for (std::size_t i = 0; i < COUNT; ++i) {
        const Vector3f light = mStar[i].mColor * brightness;
        mVertices[i].color = Vector4f(light.x, light.y, light.z, 1.0f);
    }
    DisplayObsolete::drawPoints(mVertices.data(), mVertices.size());
}

void Stars::leave(DrawingStates& left) const
{
    left.addLight();
    left.state.depthTest = true;
    left.state.depthWriting = false;
    left.state.faceCulling = true;
}

template cadenza::EffectFactoryBase& factoryOf<Stars>();

} // namespace zavex::effects
