// Saving: what a run has changed goes back into the settings and the scripts.

#include "am/am_atomicwrite.h"
#include "am/am_diskfile.h"
#include "cadenza/cad_document.h"
#include "cadenza/cad_effect.h"
#include "cadenza/cad_main.h"
#include "cadenza/cad_position_bar.h"
#include "common/zvx_system.h"
#include "xml/xml_parser.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>

namespace zavex::cadenza {

namespace {

constexpr int DECIMALS = 2; // of seconds

const char* onOrOff(bool on)
{
    return on ? "on" : "off";
}

/** As `printf("%.2f")` in the C locale. */
std::string secondsText(float seconds)
{
    std::array<char, 64> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(),
                                       double{seconds}, std::chars_format::fixed, DECIMALS);
    return {digits.data(), written.ptr};
}

/** Calls `change` with every element of this name directly below the root. */
template <typename Change>
void forEach(xml::XmlParser& parser, std::string_view name, Change change)
{
    for (xml::Iterator element = parser.createIterator(name); ++element;)
        change(*element.operator->());
}

/** The first element of this name; a new one, the first of all, when there is none. */
xml::XmlTag& firstOrNew(xml::XmlParser& parser, std::string_view name)
{
    xml::Iterator element = parser.createIterator(name);
    if (++element)
        return *element.operator->();
    xml::Iterator front = parser.createIterator("");
    front.addChild(xml::XmlTag(name));
    return *front.operator->();
}

} // namespace

void Cadenza::saveXml()
{
    if (!mFolderIsOurs) {
        ZVX_LOG("log", "app", "Nothing is saved: another program has this folder\n");
        return;
    }
    am::SaveSet set;
    // Effects that never read their files would overwrite them with nothing.
    if (saveSettings(set) && mScriptsLoaded)
        for (Effect* effect : mEffect)
            effect->save(set);
    if (!commitSave(set))
        mSaveFailed = true;
}

/** False when the project is not to be saved at all. */
bool Cadenza::saveSettings(am::SaveSet& set)
{
    const am::DiskRead found = am::readDiskFile(LOCAL_SETUP, LOCAL_SETUP);
    if (found.isMissing())
        return true;
    if (!found.failure.empty()) {
        set.refuse(LOCAL_SETUP, found.failure);
        return true;
    }

    xml::XmlParser parser;
    try {
        parser.parse(found.file->data, found.file->length);
    } catch (const Exception& exception) {
        set.refuse(LOCAL_SETUP, std::string("nothing is saved: ") + exception.what());
        return false;
    }
    const std::string& root = parser.createIterator("").getRoot().getName();
    if (root != "demo") {
        set.refuse(LOCAL_SETUP,
                   "nothing is saved: the root element is '" + root + "', expected 'demo'");
        return false;
    }

    // Settings of one's own that were made while the show ran are saved as any others.
    if (mSettings.wasMissing())
        mSettings.forget();
    if (parser.hasContentOutside())
        mSettings.keepCopy();
    storeSettings(parser);
    mSettings.save(parser, set);
    return true;
}

void Cadenza::storeSettings(xml::XmlParser& parser) const
{
    if (xml::Iterator window = parser.createIterator("display"); ++window)
        window->setValue("fullscreen", onOrOff(mFullscreen));

    xml::XmlTag& time = firstOrNew(parser, "time");
    time.setValue("start", secondsText(mStartTime));
    time.setValue("loop", onOrOff(mLoop));

    forEach(parser, "music", [this](xml::XmlTag& music) {
        music.setValue("mute", mNosound ? "nosound" : onOrOff(mMuted));
    });
    forEach(parser, "osd", [this](xml::XmlTag& osd) {
        osd.setValue("show", onOrOff(mOsd));
        osd.setValue("location", OSD_LOCATIONS.at(static_cast<std::size_t>(mOsdLocation)));
        osd.setValue("delay", secondsText(mOsdDelay));
    });
    forEach(parser, "log",
            [this](xml::XmlTag& log) { log.setValue("console", onOrOff(mLogConsole)); });
}

} // namespace zavex::cadenza
