#include "vellum/vel_checkbox.h"

namespace zavex::vellum {

namespace {

constexpr float MARK_INSET = 3.0f; // pixels

} // namespace

Checkbox::Checkbox()
{
    mType = mId = mCaption = "checkbox";
}

void Checkbox::setChecked(int index, bool checked)
{
    switchOption(index, checked);
}

void Checkbox::chooseOption(int index)
{
    const bool checked = !isChecked(index);
    setChecked(index, checked);
    sendAction(checked ? ACTION_CHECKBOX_ON : ACTION_CHECKBOX_OFF);
}

void Checkbox::drawMark(const Area& box, Look look, bool checked, bool focused)
{
    Render& render = getRender();
    vellum::drawField(render, mStyle, box, look, focused);
    Area mark = box;
    mark.expand(-MARK_INSET);
    if (checked)
        fillBox(render, pick(mStyle.mCaption, look), mark);
}

} // namespace zavex::vellum
