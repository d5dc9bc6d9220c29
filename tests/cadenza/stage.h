#pragma once

#include "cadenza/cad_factory.h"
#include "cadenza/cad_gui.h"
#include "cadenza/cad_main.h"
#include "cadenza/probe_effect.h"
#include "cadenza/scratch.h"
#include "display/dis_event.h"
#include "support/log_capture.h"
#include "vellum/vel_control_watch.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <list>
#include <memory>
#include <string>

namespace zavex::test {

/** The application with its state in view. */
class OpenCadenza : public cadenza::Cadenza {
public:
    using Cadenza::mDisplay;
    using Cadenza::mDumpVideo;
    using Cadenza::mEffect;
    using Cadenza::mGui;
    using Cadenza::mMusicTime;
    using Cadenza::mNosound;
    using Cadenza::mOsd;
    using Cadenza::mOsdLocation;
    using Cadenza::mOsdTime;
    using Cadenza::mPaused;
    using Cadenza::mSongLength;
    using Cadenza::mStartTime;
    using Cadenza::mSystemTime;
};

/** The application in a folder of its own. Its clock stands still unless it is moved. */
class Stage : public testing::Test {
protected:
    Stage() { clearLog(); }

    ~Stage() override
    {
        cadenza.reset();
        for (Added& each : mAdded) // those that no timeline took
            if (!each.watch.isGone())
                delete each.effect;
    }

    /** Sets another application up. @param sections  Of its setup file. */
    OpenCadenza& start(const std::string& sections)
    {
        writeText("setup.xml", "<demo>" + sections + "</demo>");
        cadenza.reset();
        cadenza = std::make_unique<OpenCadenza>();
        cadenza->setup(-1.0f);
        cadenza->addFactory("probe", &mFactory);
        return *cadenza;
    }

    /** Adds the effect of "script/probe.NAME.xml". */
    ProbeEffect& add(const std::string& name = "it")
    {
        auto* const effect = static_cast<ProbeEffect*>(cadenza->addEffect("probe", name));
        mAdded.emplace_front(effect);
        return *effect;
    }

    int press(display::Key key, int modifiers = display::KEYMOD_NONE)
    {
        display::KeyEvent event;
        event.key = key;
        event.control = modifiers;
        return cadenza->onKeyDown(event);
    }

    void drawAt(float time)
    {
        cadenza->setTime(time);
        cadenza->onDraw();
    }

    std::string runFailure()
    {
        return thrownMessage([this] { cadenza->run(); });
    }

    /**
     * Writes the font of the show and a small editor, without colours of its own, in a window of
     * 400 x 300 pixels: "main_window" at (0, 100) is 400 x 200 large, its scroll area 400 x 174.
     *
     * @param inFront  Elements that are found before those of the editor.
     * @param without  Identifier of a control that is called something else.
     */
    static void writeEditor(const std::string& inFront = "", const std::string& without = "")
    {
        std::string layout = readText(CADENZA_TEST_SOURCE_DIR "/layout.xml");
        const std::string children = "<child>";
        layout.insert(layout.find(children) + children.size(), inFront);
        const std::string id = "id=\"" + without + "\"";
        if (const std::size_t at = layout.find(id); at != std::string::npos)
            layout.replace(at, id.size(), "id=\"other\"");
        writeText("layout.xml", layout);
        std::filesystem::copy_file(CADENZA_TEST_SOURCE_DIR "/../../demo/fonthelvete2.png",
                                   "fonthelvete2.png",
                                   std::filesystem::copy_options::overwrite_existing);
    }

    ScratchFolder folder;
    std::unique_ptr<OpenCadenza> cadenza;

private:
    struct Added {
        explicit Added(ProbeEffect* added) : effect(added), watch(*added) {}

        ProbeEffect* effect;
        vellum::ControlWatch watch;
    };

    cadenza::EffectFactory<ProbeEffect> mFactory;
    std::list<Added> mAdded; // the latest first
};

} // namespace zavex::test
