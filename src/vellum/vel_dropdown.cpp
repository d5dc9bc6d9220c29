#include "vellum/vel_dropdown.h"

#include "vellum/vel_render.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float MARGIN = 5.0f;      // pixels beside the name
constexpr float MARKER_SIZE = 8.0f; // pixels
constexpr int MARKER_SEGMENTS = 3;  // a triangle that points down

} // namespace

/** The keys may have taken the mark away from the pointer. */
void DropdownList::press(const Event& event)
{
    mSelected = rowAt(event.mousePos);
    Context::press(event);
}

bool DropdownList::pressKey(const Event& event)
{
    switch (event.key) {
        case display::KEY_UP: moveMark(-1); break;
        case display::KEY_DOWN: moveMark(1); break;
        case display::KEY_SPACE:
        case display::KEY_ENTER:
        case display::KEY_KP_ENTER:
            moveMark(0);
            chooseRow();
            break;
        case display::KEY_ESC: resetContext(); break;
        default: return false;
    }
    return true;
}

void DropdownList::moveMark(std::int32_t rows)
{
    const std::int32_t from = mSelected >= 0 ? mSelected : mCurrent;
    mSelected = std::clamp(from + rows, 0, getChildCount() - 1);
}

Dropdown::Dropdown()
{
    mType = mId = mCaption = "dropdown";
    mList.setCaption("dropdown");
}

void Dropdown::load(xml::IteratorConst& element)
{
    Widget::load(element);
    for (xml::IteratorConst option = element.createIterator("option"); ++option;) {
        addOption(option->getValue("id"), option->getValue("name"));
        if (option->getValue("default") == "true")
            mSelected = getOptionCount() - 1;
    }
}

void Dropdown::draw(Area area, Area parent, Area clip)
{
    Render& render = getRender();
    const Look shown = look();
    drawField(area, shown);
    const float middle = area.getCenter().y;
    const float markerLeft = area.mMax.x - MARGIN - MARKER_SIZE;
    drawLabel(getValueName(),
              {Vector2f(area.mMin.x + MARGIN, middle), markerLeft - area.mMin.x - 2.0f * MARGIN,
               display::Font::ALIGN_LEFT},
              shown);
    const style::Color& color = pick(mStyle.mCaption, shown).first;
    render.setColor(color, color);
    render.drawCircle(Area(markerLeft, middle - MARKER_SIZE / 2.0f, markerLeft + MARKER_SIZE,
                           middle + MARKER_SIZE / 2.0f),
                      MARKER_SEGMENTS, 0.0f);
    Control::draw(area, parent, clip);
}

void Dropdown::addOption(const std::string& id, const std::string& name)
{
    mOptions.push_back({id, name});
    mSelected = std::max(mSelected, 0);
}

void Dropdown::deleteOptions()
{
    mOptions.clear();
    mSelected = -1;
}

void Dropdown::select(std::int32_t index)
{
    index = std::min(std::max(index, 0), getOptionCount() - 1);
    if (index == mSelected)
        return;
    mSelected = index;
    sendAction(ACTION_DROPDOWN_CHANGED);
}

void Dropdown::press(const Event&)
{
    // Not held: the release goes to the list alone.
    openList();
}

bool Dropdown::pressKey(const Event& event)
{
    if (event.key == display::KEY_UP || event.key == display::KEY_DOWN) {
        select(mSelected + (event.key == display::KEY_UP ? -1 : 1));
        return true;
    }
    if (event.key != display::KEY_ENTER && event.key != display::KEY_SPACE)
        return false;
    openList();
    return true;
}

void Dropdown::choose(const std::string&)
{
    select(mList.getSelected());
}

const Dropdown::Option& Dropdown::selected() const
{
    static const Option none;
    return mSelected < 0 ? none : mOptions[static_cast<std::size_t>(mSelected)];
}

/** Opens the list below the field, at least as wide as it. */
void Dropdown::openList()
{
    if (mOptions.empty())
        return;
    fillList();
    const Area world = getAreaWorld();
    mList.setPosition(Vector2f(world.mMin.x, world.mMax.y));
    mList.setParent(this);
    mList.setFixedWidth(-1.0f);
    mList.resize(Vector2f(0.0f, 0.0f));
    mList.setFixedWidth(std::max(mList.getArea().getWidth(), world.getWidth()));
    setContext(&mList);
}

void Dropdown::fillList()
{
    mList.deleteOptions();
    mList.setColors(mStyle);
    for (const Option& option : mOptions)
        mList.addOption(option.name, option.id);
    mList.setHighlight(getValueName());
    mList.setCurrent(mSelected);
}

} // namespace zavex::vellum
