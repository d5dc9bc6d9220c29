#include "cadenza/cad_effect.h"

#include "am/am_atomicwrite.h"
#include "cadenza/cad_plugin.h"
#include "common/zvx_system.h"
#include "xml/xml_parser.h"

#include <cstdio>

namespace zavex::cadenza {

namespace {

/** Steps to the first element with this "name"; false when there is none. */
bool stepTo(xml::IteratorConst& element, const std::string& name)
{
    while (++element) {
        if (element->getValue("name") == name)
            return true;
    }
    return false;
}

} // namespace

Effect::Effect()
{
    mContext.addOption("on/off", "");
    mContext.addOption("lock/unlock", "");
}

void Effect::update(float time)
{
    for (PluginBase* plugin : mPlugin)
        plugin->update(time);
}

void Effect::setIdentity(const std::string& type, const std::string& name)
{
    mType = type;
    mName = name;
}

void Effect::addPlugin(const std::string& name, PluginBase& plugin)
{
    std::printf("Adding %s to list of plugins\n", name.c_str());
    plugin.mName = name;
    mPlugin.push_back(&plugin);
}

void Effect::nameFile()
{
    mFilename = "script/" + mType + "." + mName + ".xml";
    mScript.setPath(mFilename);
}

void Effect::load(display::DisplayGL* display)
{
    mDisplay = display;
    nameFile();
    ZVX_LOG("log", "app", "effect::load: filename: %s\n", mFilename.c_str());

    xml::XmlParser script;
    if (!mScript.read(script))
        return;
    readScript(script);

    xml::XmlParser kept;
    writeScript(kept);
    if (!saysAll(kept, script))
        mScript.keepCopy();
}

void Effect::readScript(const xml::XmlParser& parser)
{
    if (parser.createIterator("").getRoot().getName() != "effect")
        return;

    if (xml::IteratorConst option = parser.createIterator("option"); ++option) {
        if (option->getValueInt("inactive") != 0)
            setInactive(true);
        if (option->getValueInt("locked") != 0)
            mLocked = true;
    }
    if (xml::IteratorConst time = parser.createIterator("time"); ++time)
        setSpan(time->getValueFloat("start"), time->getValueFloat("end"));
    readPlugins(parser);
}

void Effect::readPlugins(const xml::XmlParser& parser)
{
    for (PluginBase* plugin : mPlugin) {
        xml::IteratorConst element = parser.createIterator("plugin");
        if (stepTo(element, plugin->mName))
            plugin->load(element);
    }
}

void Effect::save()
{
    am::SaveSet set;
    save(set);
    commitSave(set);
}

void Effect::save(am::SaveSet& set)
{
    nameFile();
    ZVX_LOG("log", "app", "effect::save: filename: %s\n", mFilename.c_str());
    xml::XmlParser script;
    writeScript(script);
    mScript.save(script, set);
}

void Effect::writeScript(xml::XmlParser& parser)
{
    xml::Iterator root = parser.createIterator("");
    root.setRoot(xml::XmlTag("effect"));

    root.addChild(xml::XmlTag("option"));
    root->setValue("inactive", getInactive() ? 1 : 0);
    root->setValue("locked", mLocked ? 1 : 0);

    root.addChild(xml::XmlTag("time"));
    root->setValue("start", mStart);
    root->setValue("end", mEnd);

    for (PluginBase* plugin : mPlugin) {
        xml::XmlTag tag("plugin");
        tag.setValue("type", plugin->mType);
        tag.setValue("name", plugin->mName);
        xml::Iterator body = root.addChild(tag);
        plugin->save(body);
    }
}

} // namespace zavex::cadenza
