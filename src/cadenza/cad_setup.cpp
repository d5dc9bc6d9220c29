// The configuration: what each element of the setup file does.

#include "cadenza/cad_main.h"
#include "cadenza/cad_position_bar.h"
#include "common/zvx_process.h"
#include "common/zvx_system.h"
#include "xml/xml_parser.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace zavex::cadenza {

namespace {

constexpr const char* SHARED_SETUP = "setup.xml";
constexpr std::string_view SCHEME_END = "://"; // of an archive's path

constexpr float DEFAULT_OSD_DELAY = 2.0f;  // seconds
constexpr float DEFAULT_DUMP_RATE = 60.0f; // frames per second
constexpr int MOST_DUMP_RATE = 1000000;    // frames per second
constexpr const char* DEFAULT_DUMP_NAME = "untitled";
constexpr const char* DEFAULT_DUMP_EXTENSION = ".png";

bool isOn(const xml::XmlTag& tag, const char* attribute)
{
    return tag.getValue(attribute) == "on";
}

/** Whether an archive's path leads to anything; "zip://" may stand before it. */
bool isThere(std::string_view path)
{
    if (const std::size_t scheme = path.find(SCHEME_END); scheme != std::string_view::npos)
        path.remove_prefix(scheme + SCHEME_END.size());
    std::error_code unreadable;
    return std::filesystem::exists(path, unreadable);
}

} // namespace

void Cadenza::setup(float aspect)
{
    mAspect = aspect;
    if (mSetup)
        return;

    mArchive.addArchive("./");
    takeFolder();
    xml::XmlParser parser;
    mSettings.setPath(LOCAL_SETUP);
    mSetupFilename = LOCAL_SETUP;
    if (!mSettings.read(parser)) {
        DocumentFile shared;
        shared.setPath(SHARED_SETUP);
        mSetupFilename = SHARED_SETUP;
        if (!shared.read(parser, DocumentFile::Links::ANYWHERE))
            throw Exception("[Cadenza] Could not load 'setup.[local.]xml'");
    }

    const std::string& root = parser.createIterator("").getRoot().getName();
    if (root != "demo") {
        ZVX_LOG("log", "app", "%s: the root element is '%s', expected 'demo'\n",
                mSetupFilename.c_str(), root.c_str());
        return;
    }
    applySections(parser);
    mSetup = true;
}

/** One program at a time saves in a folder: two would take turns in undoing each other's work. */
void Cadenza::takeFolder()
{
    mFolderIsOurs = mFolderLock.take(".");
    if (mFolderIsOurs)
        return;
    ZVX_LOG("log", "app", "Another program has this folder open; this one saves nothing\n");
    reportFailure("another program has this folder open; this one saves nothing");
}

void Cadenza::applySections(const xml::XmlParser& parser)
{
    struct Section {
        const char* name;
        void (Cadenza::*apply)(const xml::XmlTag&);
    };
    // The order matters: a recording, when there is one, switches the music off.
    static constexpr Section sections[] = {
        {"time",    &Cadenza::applyTime   },
        {"archive", &Cadenza::applyArchive},
        {"display", &Cadenza::applyDisplay},
        {"osd",     &Cadenza::applyOsd    },
        {"dump",    &Cadenza::applyDump   },
        {"music",   &Cadenza::applyMusic  },
        {"log",     &Cadenza::applyLog    },
    };

    for (const Section& section : sections) {
        for (xml::IteratorConst element = parser.createIterator(section.name); ++element;)
            (this->*section.apply)(*element.operator->());
    }
    announceDump();
}

void Cadenza::applyTime(const xml::XmlTag& tag)
{
    mStartTime = tag.getValueFloat("start");
    mLoop = isOn(tag, "loop");
    mFpsMode = tag.getValue("mode") == "vsync" ? display::WindowMode::FPS_VSYNC
                                               : display::WindowMode::FPS_VARIABLE;
}

void Cadenza::applyArchive(const xml::XmlTag& tag)
{
    const std::string& path = tag.getValue("path");
    ZVX_LOG("log", "app", "Cadenza: Adding archive: %s\n", path.c_str());
    const int index = mArchive.addArchive(path);
    if (!path.empty() && (index < 0 || !isThere(path)))
        ZVX_LOG("log", "app", "%s: there is no archive '%s', a directory or zip file\n",
                mSetupFilename.c_str(), path.c_str());
}

void Cadenza::applyDisplay(const xml::XmlTag& tag)
{
    mWidth = tag.getValueInt("width");
    mHeight = tag.getValueInt("height");
    mFullscreen = isOn(tag, "fullscreen");
    mTitle = tag.getValue("title");
    mFoundDisplay = true;
}

void Cadenza::applyOsd(const xml::XmlTag& tag)
{
    if (!isOn(tag, "show"))
        mOsd = false;

    mOsdLocation = osdLocation(tag.getValue("location"));
    mOsdDelay = tag.getValueFloat("delay");
    if (mOsdDelay == 0.0f)
        mOsdDelay = DEFAULT_OSD_DELAY;
}

void Cadenza::applyDump(const xml::XmlTag& tag)
{
    std::string name = tag.getValue("name");
    mDumpRate = tag.getValue("rate").empty() ? DEFAULT_DUMP_RATE : tag.getValueFloat("rate");
    mDumpLength = tag.getValueDouble("length");
    if (!(mDumpRate > 0.0f && mDumpRate <= static_cast<float>(MOST_DUMP_RATE)))
        throw Exception("%s: the dump rate must be positive and at most %d, found '%s'",
                        mSetupFilename.c_str(), MOST_DUMP_RATE, tag.getValue("rate").c_str());

    // Only a name with an extension says what kind of files to write.
    std::string target = name;
    if (name.empty()) {
        name = DEFAULT_DUMP_NAME;
        target = name + DEFAULT_DUMP_EXTENSION;
    }
    am::VideoFile::Format format;
    format.frameRate = static_cast<int>(mDumpRate);
    format.frameRateBase = 1;
    mDumpVideo.reset(am::VideoFile::createForWrite(target, format, &mArchive));
    ZVX_LOG("log", "app", "Dumping to '%s' (rate='%f'fps)", name.c_str(), double{mDumpRate});
}

/** A show may come from anywhere: where it writes is its author's business only in its folder. */
void Cadenza::announceDump() const
{
    if (mDumpVideo == nullptr)
        return;
    const std::string target = am::leadsOutside(mDumpVideo->getPath());
    if (!target.empty())
        reportFailure("the frames are recorded outside this folder: '%s' and on", target.c_str());
}

void Cadenza::applyMusic(const xml::XmlTag& tag)
{
    const std::string& mute = tag.getValue("mute");
    if (mute == "nosound" || mDumpVideo != nullptr)
        mNosound = true;
    if (mute == "on")
        mMuted = true;
    mMusicFilename = tag.getValue("filename");
}

void Cadenza::applyLog(const xml::XmlTag& tag)
{
    mLogConsole = isOn(tag, "console");
}

} // namespace zavex::cadenza
