// Saving: what a run has changed goes back into the settings and the scripts.

#include "am/am_atomicwrite.h"
#include "cadenza/cad_effect.h"
#include "cadenza/cad_main.h"
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

const char* locationName(int location)
{
    constexpr std::array names = {"top", "middle", "bottom"};
    return names.at(static_cast<std::size_t>(location));
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
    if (!saveSettings())
        return;
    // Effects that never read their files would overwrite them with nothing.
    if (!mScriptsLoaded)
        return;
    for (Effect* effect : mEffect)
        effect->save();
}

/** False when the project is not to be saved at all. */
bool Cadenza::saveSettings()
{
    const am::File file = mArchive.readFile(LOCAL_SETUP, -1);
    if (file.isNull())
        return true;

    xml::XmlParser parser;
    try {
        parser.parse(file->data, file->length);
    } catch (const Exception& exception) {
        ZVX_LOG("error", "app", "%s: nothing is saved: %s\n", LOCAL_SETUP, exception.what());
        return false;
    }
    const std::string& root = parser.createIterator("").getRoot().getName();
    if (root != "demo") {
        ZVX_LOG("error", "app", "%s: nothing is saved: the root element is '%s', expected 'demo'\n",
                LOCAL_SETUP, root.c_str());
        return false;
    }

    storeSettings(parser);
    std::string text;
    parser.write(text, "\t");
    std::string reason;
    if (!am::writeFileAtomically(LOCAL_SETUP, text, reason))
        ZVX_LOG("error", "app", "Could not save '%s': %s\n", LOCAL_SETUP, reason.c_str());
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
        osd.setValue("location", locationName(mOsdLocation));
        osd.setValue("delay", secondsText(mOsdDelay));
    });
    forEach(parser, "log",
            [this](xml::XmlTag& log) { log.setValue("console", onOrOff(mLogConsole)); });
}

} // namespace zavex::cadenza
