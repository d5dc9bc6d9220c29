#include "vellum/vel_radio_button.h"

#include "vellum/vel_area.h"

#include "display/dis_font.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <cmath>

namespace zavex::vellum {

using mathbase::Vector2f;

namespace {

constexpr float ROW_HEIGHT = 20.0f; // pixels
constexpr float MARK_LEFT = 4.0f;   // pixels
constexpr float MARK_SIZE = 12.0f;  // pixels
constexpr float TEXT_LEFT = 22.0f;  // pixels
constexpr float DOT_INSET = 3.0f;   // pixels

/** Room for one row; what lies below the control's rectangle is cut off when it is drawn. */
Render::Area rowArea(const Render::Area& area, int index)
{
    const float top = area.mMin.y + static_cast<float>(index) * ROW_HEIGHT;
    return {area.mMin.x, top, area.mMax.x, top + ROW_HEIGHT};
}

Render::Area shrunk(Render::Area box, float margin)
{
    box.expand(-margin);
    return box;
}

} // namespace

RadioButton::RadioButton()
{
    mType = mId = mCaption = "radiobutton";
}

void RadioButton::load(xml::IteratorConst& element)
{
    Widget::load(element);
    std::vector<Option> before;
    before.swap(mOptions);
    for (xml::IteratorConst option = element.createIterator("option"); ++option;)
        addOption(option->getValue("name"), option->getValue("checked") == "true");
    if (mOptions.empty())
        mOptions.swap(before);
    else
        mCurrent = -1;
}

void RadioButton::draw(Area area, Area parent, Area clip)
{
    for (int i = 0; i < getOptionCount(); ++i)
        if (sharedArea(rowArea(area, i), clip).getHeight() > 0.0f)
            drawRow(rowArea(area, i), i);
    Widget::draw(area, parent, clip);
}

void RadioButton::addOption(const std::string& name, bool checked)
{
    mOptions.push_back({name, false});
    if (checked)
        setChecked(getOptionCount() - 1, true);
}

int RadioButton::getOptionCount() const
{
    return static_cast<int>(mOptions.size());
}

std::string RadioButton::getOption(int index) const
{
    return isOption(index) ? mOptions[static_cast<std::size_t>(index)].name : std::string();
}

bool RadioButton::isChecked(int index) const
{
    return isOption(index) && mOptions[static_cast<std::size_t>(index)].checked;
}

void RadioButton::setChecked(int index, bool checked)
{
    if (!isOption(index))
        return;
    if (checked)
        for (Option& option : mOptions)
            option.checked = false;
    switchOption(index, checked);
}

int RadioButton::getSelected() const
{
    const auto found = std::ranges::find(mOptions, true, &Option::checked);
    return found != mOptions.end() ? static_cast<int>(found - mOptions.begin()) : -1;
}

void RadioButton::hover(const Event& event)
{
    mPointed = rowAt(event);
}

void RadioButton::press(const Event& event)
{
    Widget::press(event);
    mPointed = mPressedRow = rowAt(event);
    if (isOption(mPressedRow))
        mCurrent = mPressedRow;
}

bool RadioButton::release(const Event& event)
{
    drop();
    if (const int row = rowAt(event); isOption(row) && row == mPressedRow)
        chooseOption(row);
    return false;
}

bool RadioButton::pressKey(const Event& event)
{
    if (mOptions.empty())
        return false;
    switch (event.key) {
        case display::KEY_UP:
        case display::KEY_LEFT: moveTo(cursor() - 1); return true;
        case display::KEY_DOWN:
        case display::KEY_RIGHT: moveTo(cursor() + 1); return true;
        case display::KEY_HOME: moveTo(0); return true;
        case display::KEY_END: moveTo(getOptionCount() - 1); return true;
        case display::KEY_SPACE:
        case display::KEY_ENTER:
        case display::KEY_KP_ENTER:
            mCurrent = cursor();
            chooseOption(mCurrent);
            return true;
        default: return false;
    }
}

void RadioButton::chooseOption(int index)
{
    if (isChecked(index))
        return;
    setChecked(index, true);
    sendAction(ACTION_RADIOBUTTON_CHANGED);
}

void RadioButton::drawMark(const Area& box, Look look, bool checked, bool focused)
{
    Render& render = getRender();
    fillCircle(render, borderOf(focused ? mStyle.mCaption : mStyle.mBack), box);
    fillCircle(render, pick(mStyle.mBack, look), shrunk(box, 1.0f));
    if (checked)
        fillCircle(render, pick(mStyle.mCaption, look), shrunk(box, DOT_INSET));
}

void RadioButton::switchOption(int index, bool checked)
{
    if (isOption(index))
        mOptions[static_cast<std::size_t>(index)].checked = checked;
}

/** The row under a local position; -1 when there is none. */
int RadioButton::rowAt(const Event& event) const
{
    const float row = std::floor(event.mousePos.y / ROW_HEIGHT);
    const bool exists = isInside(event) && row < static_cast<float>(getOptionCount());
    return exists ? static_cast<int>(row) : -1;
}

/** The option that keys start from, if there is any at all. */
int RadioButton::cursor() const
{
    return mCurrent >= 0 ? mCurrent : std::max(getSelected(), 0);
}

void RadioButton::moveTo(int index)
{
    mCurrent = std::clamp(index, 0, getOptionCount() - 1);
    moveOn(mCurrent);
}

Look RadioButton::rowLook(int index) const
{
    if (mInactive)
        return Look::INACTIVE;
    if (mPointed != index || !mMouseOver)
        return Look::NORMAL;
    if (mPressed)
        return mPressedRow == index ? Look::PRESSED : Look::NORMAL;
    return Look::HOVERED;
}

void RadioButton::drawRow(const Area& row, int index)
{
    const Option& option = mOptions[static_cast<std::size_t>(index)];
    const Look look = rowLook(index);
    if (look == Look::HOVERED)
        fillBox(getRender(), pick(mStyle.mBack, look), row);
    const float middle = row.getCenter().y;
    const float left = row.mMin.x + MARK_LEFT;
    const Area box(left, middle - MARK_SIZE / 2.0f, left + MARK_SIZE, middle + MARK_SIZE / 2.0f);
    drawMark(box, look, option.checked, index == cursor() && hasKeyboardFocus(*this));
    drawLabel(option.name,
              {Vector2f(row.mMin.x + TEXT_LEFT, middle), row.getWidth() - TEXT_LEFT,
               display::Font::ALIGN_LEFT},
              look);
}

} // namespace zavex::vellum
