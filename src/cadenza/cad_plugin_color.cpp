#include "cadenza/cad_plugin_color.h"

#include "xml/xml_iterator.h"

namespace zavex::cadenza {

Color::Color()
    : PluginBase("color"), mR(Curve::SMOOTH, true), mG(Curve::SMOOTH, true), mB(Curve::SMOOTH, true)
{
    Control::mType = PluginBase::mType;
    mArea = {0, 0, 100, 30};
    mContextAdd.addOption("add", "");
    mContextDel.addOption("edit", "");
    mContextDel.addOption("delete", "");
}

void Color::load(xml::IteratorConst& it)
{
    for (xml::IteratorConst key = it.createIterator("key"); ++key;) {
        const float time = key->getValueFloat("time");
        mR.addKey({time, key->getValueFloat("r"), 0.0f, 0.0f});
        mG.addKey({time, key->getValueFloat("g"), 0.0f, 0.0f});
        mB.addKey({time, key->getValueFloat("b"), 0.0f, 0.0f});
    }
}

void Color::save(xml::Iterator& it)
{
    for (int i = 0; i < mR.getNumKeys(); ++i) {
        xml::XmlTag key("key");
        key.setValue("time", mR[i].time);
        key.setValue("r", mR[i].value);
        key.setValue("g", mG[i].value);
        key.setValue("b", mB[i].value);
        it.addChild(key);
    }
}

void Color::setupControl(float width)
{
    fitControl(width);

    // A control keeps its observers, and this runs at every change of the bar: observe it once.
    vellum::Control* pickerOk = getRoot()->findControl("picker_ok");
    if (pickerOk != nullptr && pickerOk != mPickerOk)
        pickerOk->setCallback(this);
    mPickerOk = pickerOk;
}

vellum::Control* Color::clone()
{
    return new Color;
}

void Color::controlAction(vellum::Control* control, vellum::Action /*action*/)
{
    if (control->getId() == "picker_ok")
        mSelectedIndex = -1;
}

mathbase::Vector3f Color::get(float time) const
{
    const float position = positionAt(mArea, time);
    return {mR.evaluate(position), mG.evaluate(position), mB.evaluate(position)};
}

bool Color::acceptEvents(vellum::Event& event)
{
    return Control::acceptEvents(event) || mPushed || mHighlight >= 0;
}

} // namespace zavex::cadenza
