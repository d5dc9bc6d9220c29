// The processor's time for one frame of the gallery: batched, against the same shapes with a
// glBegin and a glEnd each, and against Dear ImGui with a screen of as many widgets and letters.
//
#include "vellum/vel_vellum.h"
#include "vellum/vel_workspace.h"

#include "am/am.h"
#include "common/zvx_system.h"
#include "cpu_cost.h"
#include "display/dis_display.h"
#include "display/dis_display_obsolete.h"
#include "display/dis_glinclude.h"
#include "display/dis_immediate.h"
#include "figure.h"
#include "imgui_screen.h"
#include "pictures.h"
#include "plain_render.h"
#include "xml/xml_iteratorconst.h"
#include "xml/xml_parser.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

using zavex::bench::Bound;
using zavex::bench::compare;
using zavex::bench::Comparison;
using zavex::bench::Figures;
using zavex::bench::ImguiScreen;
using zavex::bench::PlainRender;
using zavex::bench::stateCost;
using zavex::display::DisplayGL;
using zavex::display::DisplayObsolete;
using zavex::mathbase::Vector2f;

constexpr int WIDTH = 1024; // pixels
constexpr int HEIGHT = 768;
constexpr int RUNS = 101;
constexpr const char* FONT = "fonthelvete2.png";

/** A document of the archive. */
class Document {
public:
    Document(zavex::am::ArchiveManager& archive, const std::string& name)
    {
        const zavex::am::File file = archive.readFile(name, -1);
        if (file.isNull())
            throw zavex::Exception("Could not find the file '%s'.", name.c_str());
        mParser.parse(file->data, file->length);
    }

    zavex::xml::XmlParser& parser() { return mParser; }

    /** Stands on the first "workspace" element. */
    zavex::xml::IteratorConst workspace() const
    {
        zavex::xml::IteratorConst element = mParser.createIterator("workspace");
        ++element;
        return element;
    }

private:
    zavex::xml::XmlParser mParser;
};

/** The gallery's tree, drawn without batching. */
class PlainGallery final : public zavex::vellum::Workspace {
public:
    PlainGallery(DisplayGL& display, const Document& layout, Document& styles)
    {
        setDisplay(&display);
        mRender.setup(&display, FONT);
        loadStyle(&styles.parser());
        zavex::xml::IteratorConst element = layout.workspace();
        load(element);
        setArea({0.0f, 0.0f, static_cast<float>(WIDTH), static_cast<float>(HEIGHT)});
    }
    ~PlainGallery() override { deleteControls(); }
    PlainGallery(const PlainGallery&) = delete;
    PlainGallery& operator=(const PlainGallery&) = delete;

    zavex::vellum::Render& getRender() override { return mRender; }

    void drawFrame()
    {
        mRender.setupDraw(Vector2f(WIDTH, HEIGHT), Vector2f(0.0f, 0.0f), 0.0f);
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        draw();
        glPopAttrib();
    }

    const PlainRender& render() const { return mRender; }

private:
    using Workspace::draw;
    using Workspace::load;

    PlainRender mRender;
};

template <typename Frame>
std::vector<std::uint8_t> pictureOf(DisplayGL& display, Frame&& frame)
{
    display.resetStates();
    DisplayObsolete::clear({0.0f, 0.0f, 0.0f, 0.0f}, 1.0f);
    frame();
    return zavex::bench::screenshot(display);
}

void measure(DisplayGL& display, Figures& figures)
{
    zavex::am::ArchiveManager& archive = *display.getArchive();
    const Document layout(archive, "gallery.xml");
    Document style(archive, layout.workspace()->getValue("style"));
    zavex::vellum::Vellum gallery(&display);
    gallery.load("gallery.xml");
    PlainGallery plain(display, layout, style);
    ImguiScreen imgui(layout.workspace(), Vector2f(WIDTH, HEIGHT));

    const auto drawGallery = [&] { gallery.onDraw(); };
    const auto drawPlain = [&] { plain.drawFrame(); };
    const auto drawImgui = [&] { imgui.draw(); };

    const auto expected = pictureOf(display, drawPlain);
    figures.report("gallery, difference of the pictures",
                   zavex::bench::differenceOf(expected, pictureOf(display, drawGallery)), 0.0,
                   Bound::AT_MOST);
    imgui.draw();
    imgui.draw(); // windows come to their size with the second frame
    imgui.fillUpTo(plain.render().letters);
    imgui.draw();
    const auto arraysBefore = zavex::display::Immediate::live().drawnArrays();
    zavex::bench::costOf(drawGallery);
    std::printf("gallery: %zu controls and rows, %zu shapes with %zu letters (ImGui %zu), "
                "%lu arrays (stated)\n",
                imgui.widgetCount(), plain.render().primitives, plain.render().letters,
                imgui.letterCount(),
                zavex::display::Immediate::live().drawnArrays() - arraysBefore);

    const Comparison plainly = compare(RUNS, drawGallery, drawPlain);
    const Comparison withImgui = compare(RUNS, drawGallery, drawImgui);
    stateCost("gallery, batched", plainly.frame);
    stateCost("gallery, glBegin each", plainly.reference);
    stateCost("gallery, Dear ImGui", withImgui.reference);
    figures.report("gallery submitting, batched / glBegin each", plainly.ratio.submitting, 0.5,
                   Bound::AT_MOST);
    figures.report("gallery whole, batched / glBegin each", plainly.ratio.whole, 1.0,
                   Bound::AT_MOST);
    std::printf("gallery submitting, ours / Dear ImGui: %.4g (stated)\n",
                withImgui.ratio.submitting);
    figures.report("gallery whole, ours / Dear ImGui", withImgui.ratio.whole, 1.0, Bound::AT_MOST);
}

} // namespace

void zavex::bench::run(Figures& figures)
{
    keepMemory();
    am::ArchiveManager archive;
    archive.addArchive(DEMO_FOLDER);
    const std::unique_ptr<DisplayGL> display(DisplayGL::create());
    display->setArchive(&archive);
    display->open(zavex::display::WindowMode("gallery", WIDTH, HEIGHT, false));
    measure(*display, figures);
    display->close();
}
