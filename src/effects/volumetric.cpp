#include "effects/volumetric.h"

#include "common/zvx_system.h"
#include "display/dis_display.h"
#include "display/dis_texture.h"
#include "display/dis_windowmode.h"
#include "effects/common.h"
#include "effects/effect_factory.h"
#include "effects/light_volume.h"
#include "effects/picture_quad.h"
#include "mathbase/mb_matrix4x4col.h"
#include "mathbase/mb_quat.h"
#include "mathbase/mb_random.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace zavex::effects {

using display::BlendFactor;
using display::DisplayObsolete;
using mathbase::Euler;
using mathbase::Matrix4x4Col;
using mathbase::Quatf;
using mathbase::RotationOrder;
using mathbase::Vector3f;
using mathbase::Vector4f;

namespace {

constexpr float PI = std::numbers::pi_v<float>;
constexpr float FAR_PLANE = 100000.0f;
constexpr Vector3f PATH_SCALE(20.0f, 20.0f, 100.0f); // world units a curve value

constexpr float LAST_CAMERA_MOVE = 0.9955f; // progress from which the camera rests
constexpr float EYE_HEIGHT = 0.4f;
constexpr float TARGET_HEIGHT = 1.8f;
constexpr float ROLL = -8.0f; // radians a curve value of the bend ahead

constexpr float VOLUME_INTENSITY = 0.4f;

constexpr int ROAD_SEGMENTS = 400;
constexpr float ROAD_FADE = 0.035f;    // lost a world unit
constexpr float FAINTEST_ROAD = 0.01f; // where the road ends
constexpr float ROAD_TURN = 40.0f;     // radians a curve value from segment to segment
constexpr float LANE_OFFSET = 0.5f;
constexpr float LANE_HALF_WIDTH = 0.45f;
constexpr float LANE_HALF_HEIGHT = 0.055f;
constexpr float LANE_HALF_LENGTH = 1.9f;    // steps
constexpr float OUTLINE_HALF_LENGTH = 0.9f; // steps
constexpr std::size_t ROAD_RUN = 6;         // segments whose light is added before it is taken

constexpr int GRID_EXTENT = 300;

constexpr std::size_t HOUSE_GROUPS = 8;
constexpr float HOUSE_GROUND = -19.2f;
constexpr float HOUSE_RISE = 0.7f;
constexpr float VOLUME_EXTENT = 1.15f; // of the body's half-extent
constexpr float VOLUME_LIGHT = 0.3f;
constexpr float BODY_LIGHT = 0.08f;
constexpr float LINE_WIDTH = 3.0f; // pixels

constexpr float CREDITS_TOP = 1.1f; // normalised device coordinates

/** The corners of a body between which its outline grows, each edge from the first of the two. */
constexpr int OUTLINE_EDGES[12][2] = {
    {0, 1},
    {5, 4},
    {0, 4},
    {5, 1},
    {2, 3},
    {7, 6},
    {2, 6},
    {7, 3},
    {0, 2},
    {3, 1},
    {5, 7},
    {6, 4},
};

/** How far a stage that is `progress` of its time old has come: it begins fast and ends gently. */
float eased(float progress)
{
    return std::sin(0.5f * PI * progress);
}

} // namespace

float Volumetric::mTime = 0.0f;

Volumetric::Volumetric()
{
    addPlugin("color", mColorRoad);
    addPlugin("color_house_create", mColorHouse);
    addPlugin("path x", mX);
    addPlugin("path y", mY);
    addPlugin("path z", mZ);
    addPlugin("code", mCreditsSpline[0]);
    addPlugin("graphics", mCreditsSpline[1]);
    addPlugin("music", mCreditsSpline[2]);
    addPlugin("support", mCreditsSpline[3]);
}

void Volumetric::setup()
{
    if (!mDisplay->hasExtension("GL_EXT_blend_subtract") &&
        !mDisplay->hasExtension("GL_ARB_imaging"))
        throw Exception("Your graphics card does not support blending equations! "
                        "[GL_EXT_blend_subtract or GL_ARB_imaging]");

    mShader = createVolumeShader(*mDisplay);
    mTexShader = mDisplay->createShader(nullptr);
    mTexShader->attach("volumetric/tex.vert", "volumetric/tex.frag");
    const char* const credits[] = {"creds/code.png", "creds/graphics.png", "creds/music.png",
                                   "creds/support.png"};
    for (std::size_t i = 0; i < mCredits.size(); ++i)
        mCredits[i] = mDisplay->createTexture(credits[i], false);
    placeHouses();
    mIce = mDisplay->createTexture("volumetric/threads.png", false);

    mRoad.reserve(ROAD_SEGMENTS);
    mNear.reserve(HOUSES);
    const Vector4f light(0.0051f, 0.007f, 0.01f, 1.0f);
    const auto extent = static_cast<float>(GRID_EXTENT);
    mGrid.clear();
    for (int line = -GRID_EXTENT; line < GRID_EXTENT; ++line) {
        const auto k = static_cast<float>(line);
        mGrid.push_back({Vector3f(k, 0.0f, -extent), {}, light});
        mGrid.push_back({Vector3f(k, 0.0f, extent), {}, light});
        mGrid.push_back({Vector3f(-extent, 0.0f, k), {}, light});
        mGrid.push_back({Vector3f(extent, 0.0f, k), {}, light});
    }
}

void Volumetric::placeHouses()
{
    mathbase::RandomGen_LCG<69069, 5> random(mathbase::initialSeed());
    const float duration = mEnd - mStart;
    mHouse = std::make_unique<Star[]>(HOUSES);
    mShyness.resize(HOUSES);
    for (int h = 0; h < HOUSES; ++h) {
        const auto index = static_cast<float>(h);
        const float share = index / HOUSES; // of the way
        const float side = h % 2 == 0 ? 1.0f : -1.0f;
        const float grey = 0.6f * random.nextFloat() + 0.2f;
        const float offset =
            (static_cast<float>(h % 3) * 1.7f + 1.0f) * side * (1.5f * random.nextFloat() + 2.5f);
        const float height =
            std::sin(0.5f * PI * share) * (5.0f * random.nextFloat() + 0.5f) + 0.5f;
        mHouse[h].mColor = {grey, grey, grey};
        mHouse[h].mPos = pathAt(duration * share) + Vector3f(offset, 0.0f, 0.0f);
        mHouse[h].mSize = {1.0f, height, 1.0f};
        mShyness[static_cast<std::size_t>(h)] = std::abs(0.2f * std::sin(index));
    }
}

Vector3f Volumetric::pathAt(float time) const
{
    return Vector3f(mX.get(time), mY.get(time), mZ.get(time)).multiply(PATH_SCALE);
}

float Volumetric::getSlice(float x, float a, float b)
{
    if (x <= a)
        return 0.0f;
    return x >= b ? 1.0f : (x - a) / (b - a);
}

Volumetric::Stages Volumetric::stagesAt(float closeness)
{
    return {getSlice(closeness, 0.0f, 0.1f), getSlice(closeness, 0.1f, 0.2f),
            getSlice(closeness, 0.2f, 0.5f)};
}

void Volumetric::drawFrame(float time, float /*delta*/, float progress)
{
    if (progress < LAST_CAMERA_MOVE)
        moveCamera(time);
    mTime = time;

    setPerspective(FAR_PLANE);
    ds.setCamera(mCommon->from, mCommon->to, mCommon->roll);
    ds.setTransform();
    drawRoad();
    drawGrid();
    findHouses(time);
    drawHouses();
    drawCredits(time);
}

void Volumetric::drawUnseen(float time)
{
    const float kept = mTime;
    CommonEffect::drawUnseen(time);
    mTime = kept;
}

void Volumetric::moveCamera(float time)
{
    mCommon->from = pathAt(time) + Vector3f(0.0f, EYE_HEIGHT, 0.0f);
    mCommon->to = pathAt(time + 1.0f) + Vector3f(0.0f, TARGET_HEIGHT, 0.0f);
    mCommon->roll = ROLL * (mX.get(time + 1.0f) - mX.get(time + 1.5f));
}

/** The segments from the camera on, up to the first that is too faint. */
void Volumetric::findRoad()
{
    const float step = (mEnd - mStart) / ROAD_SEGMENTS;
    mRoad.clear();
    for (int i = 0; i < ROAD_SEGMENTS; ++i) {
        const float time = static_cast<float>(i) * step;
        if (PATH_SCALE.z * mZ.get(time) < mCommon->from.z)
            continue;
        const Vector3f position = pathAt(time);
        const float fade = 1.0f - ROAD_FADE * (mCommon->from - position).length();
        if (!(fade >= FAINTEST_ROAD))
            break;
        Quatf turn;
        turn.setEuler(Euler(0.0f, ROAD_TURN * (mX.get(time) - mX.get(time - step)), 0.0f,
                            RotationOrder::XYZ));
        Segment segment;
        segment.transform.buildPRS(position, turn, Vector3f(1.0f, 1.0f, 1.0f));
        segment.color = mColorRoad.get(time);
        segment.fade = fade;
        mRoad.push_back(segment);
    }
}

void Volumetric::drawRoad()
{
    findRoad();
    setupVolumetric(*mDisplay, *mShader, VOLUME_INTENSITY);
    for (std::size_t first = 0; first < mRoad.size(); first += ROAD_RUN) {
        const std::size_t end = std::min(first + ROAD_RUN, mRoad.size());
        repeatVolumetric();
        drawRoadLight(first, end);
        changeVolumetric();
        drawRoadLight(first, end);
    }
    endVolumetric(*mDisplay);
    drawRoadOutline();
}

void Volumetric::drawRoadLight(std::size_t first, std::size_t end) const
{
    const float step = (mEnd - mStart) / ROAD_SEGMENTS;
    const Vector3f half(LANE_HALF_WIDTH, LANE_HALF_HEIGHT, LANE_HALF_LENGTH * step);
    for (std::size_t i = first; i < end; ++i) {
        const Segment& segment = mRoad[i];
        const Vector3f light = segment.color * segment.fade;
        DisplayObsolete::setColor(light.x, light.y, light.z, 0.2f * segment.fade);
        for (const float side : {-LANE_OFFSET, LANE_OFFSET})
            DisplayObsolete::drawBox(
                DisplayObsolete::boxCorners(segment.transform, Vector3f(side, 0.0f, 0.0f), half));
    }
}

void Volumetric::drawRoadOutline() const
{
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setLineWidth(LINE_WIDTH);
    const float step = (mEnd - mStart) / ROAD_SEGMENTS;
    const Vector3f half(LANE_HALF_WIDTH, LANE_HALF_HEIGHT, OUTLINE_HALF_LENGTH * step);
    for (const Segment& segment : mRoad) {
        const Vector3f& light = segment.color;
        DisplayObsolete::setColor(light.x, light.y, light.z, 0.1f * segment.fade);
        for (const float side : {-LANE_OFFSET, LANE_OFFSET})
            DisplayObsolete::drawBoxWire(
                DisplayObsolete::boxCorners(segment.transform, Vector3f(side, 0.0f, 0.0f), half));
    }
}

void Volumetric::drawGrid()
{
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
    DisplayObsolete::setLineWidth(1.0f);
    Matrix4x4Col transform;
    transform.buildPRS(Vector3f(0.0f, -29.0f, 0.0f), Quatf(1.0f, 0.0f, 0.0f, 0.0f),
                       Vector3f(1.0f, 1.4f, 1.0f));
    ds.setTransform(transform);
    DisplayObsolete::drawLines(mGrid.data(), mGrid.size());
    ds.setTransform();
}

void Volumetric::findHouses(float time)
{
    const Vector3f camera = pathAt(time) + Vector3f(0.0f, EYE_HEIGHT, 0.0f);
    mNear.clear();
    for (std::size_t h = 0; h < HOUSES; ++h) {
        const Star& house = mHouse[h];
        const float ahead = house.mPos.z - camera.z;
        const float wave = (std::sin(0.2f * time + ahead) + 2.0f) * 0.3f;
        const Vector3f position(house.mPos.x, house.mSize.y + HOUSE_GROUND + wave, house.mPos.z);
        const float closeness =
            std::min(1.5f - 0.06f * (position - camera).length() - mShyness[h], 1.0f);
        if (!(closeness >= 0.0f))
            continue;
        House near;
        near.transform.buildPRS(
            position, Quatf(1.0f, 0.0f, 0.0f, 0.0f),
            Vector3f(house.mSize.x, house.mSize.y + wave + HOUSE_RISE, house.mSize.z));
        near.corners = DisplayObsolete::boxCorners(near.transform, Vector3f(0.0f, 0.0f, 0.0f),
                                                   Vector3f(1.0f, 1.0f, 1.0f));
        near.stages = stagesAt(closeness);
        mNear.push_back(near);
    }
}

void Volumetric::drawHouses()
{
    drawHouseLight();
    drawBodies();
    drawOutlines();
}

/** Houses of one group stand apart, so that few of them cover each other. */
void Volumetric::drawHouseLight()
{
    setupVolumetric(*mDisplay, *mShader, VOLUME_INTENSITY);
    for (std::size_t group = 0; group < HOUSE_GROUPS; ++group) {
        repeatVolumetric();
        drawVolumes(group);
        changeVolumetric();
        drawVolumes(group);
    }
    endVolumetric(*mDisplay);
}

void Volumetric::drawVolumes(std::size_t group)
{
    const float duration = mEnd - mStart;
    for (std::size_t i = group; i < mNear.size(); i += HOUSE_GROUPS) {
        const House& house = mNear[i];
        const float progress = house.stages.volume;
        DisplayObsolete::setColor(mColorHouse.get(duration * progress) * VOLUME_LIGHT);
        const Vector3f half(VOLUME_EXTENT, VOLUME_EXTENT * eased(progress), VOLUME_EXTENT);
        DisplayObsolete::drawBox(
            DisplayObsolete::boxCorners(house.transform, Vector3f(0.0f, 0.0f, 0.0f), half));
    }
}

void Volumetric::drawBodies()
{
    DisplayObsolete::setTexturing(true);
    DisplayObsolete::setBlending(true);
    DisplayObsolete::setBlendFunction(BlendFactor::ONE, BlendFactor::ONE);
    mDisplay->setTexture(mIce, 0);
    mDisplay->setShader(mTexShader);
    setUniform(*mTexShader, "texture", 0);
    setUniform(*mTexShader, "percent", mTime);
    for (const House& house : mNear) {
        DisplayObsolete::setColor(BODY_LIGHT * eased(house.stages.body));
        DisplayObsolete::drawBoxTex(house.corners);
    }
    mDisplay->setTexture(nullptr, 0);
    mDisplay->setShader(nullptr);
    DisplayObsolete::setTexturing(false);
}

void Volumetric::drawOutlines()
{
    const Vector4f amber(0.18f, 0.09f, 0.0f, 1.0f);
    DisplayObsolete::setLineWidth(LINE_WIDTH);
    for (const House& house : mNear) {
        std::array<DisplayObsolete::Vertex, 24> ends;
        auto* end = ends.data();
        for (const auto& edge : OUTLINE_EDGES) {
            const Vector3f& from = house.corners[static_cast<std::size_t>(edge[0])];
            const Vector3f& to = house.corners[static_cast<std::size_t>(edge[1])];
            *end++ = {from, {}, amber};
            *end++ = {from + (to - from) * house.stages.outline, {}, amber};
        }
        DisplayObsolete::drawLines(ends.data(), ends.size());
    }
}

void Volumetric::drawCredits(float time)
{
    DisplayObsolete::setTexturing(true);
    beginOverlay(ds);
    const display::WindowMode& mode = mDisplay->getWindowMode();
    for (std::size_t i = 0; i < mCredits.size(); ++i) {
        mDisplay->setTexture(mCredits[i], 0);
        const display::Texture::TextureDeclaration& picture = mCredits[i]->getDeclaration();
        const float left =
            1.0f - 2.0f * static_cast<float>(picture.width) / static_cast<float>(mode.width);
        const float bottom = CREDITS_TOP - 2.0f * static_cast<float>(picture.height) /
                                               static_cast<float>(mode.height);
        drawPicture(left, CREDITS_TOP, 1.0f, bottom, mCreditsSpline[i].get(time));
    }
}

template cadenza::EffectFactoryBase& factoryOf<Volumetric>();

} // namespace zavex::effects
