#include "vellum/vel_control.h"
#include "vellum/vel_control_factory.h"

#include "common/zvx_system.h"
#include "display/dis_display_obsolete.h"
#include "xml/xml_iteratorconst.h"
#include "xml/xml_node.h"

#include <memory>
#include <string_view>
#include <vector>

namespace zavex::vellum {

namespace {

using ColorSet = style::colorInfo;

constexpr const char* CHILD_GROUP = "child"; // the element around an element's child controls

/** How many controls may lie inside one another: a style that contains its own type has no end. */
constexpr int DEEPEST_NESTING = 256;

/**
 * How many elements a load may read, those of styles as often as they serve: styles that each hold
 * two of the next double with every level. A screen of 10,000 controls stays far below.
 */
constexpr int MOST_ELEMENTS = 100'000;

/** Which member of a pair the rest of a colour's name selects, in both members. */
struct ColorPair {
    std::string_view name;
    style::Color ColorSet::*first;
    style::Color ColorSet::*second;
};

constexpr ColorPair COLOR_PAIRS[] = {
    {"border",    &ColorSet::mBorder1,    &ColorSet::mBorder2   },
    {"color",     &ColorSet::mColor1,     &ColorSet::mColor2    },
    {"highlight", &ColorSet::mHighlight1, &ColorSet::mHighlight2},
    {"pushed",    &ColorSet::mPushed1,    &ColorSet::mPushed2   },
    {"inactive",  &ColorSet::mInactive1,  &ColorSet::mInactive2 },
};

struct ColorPrefix {
    std::string_view name;
    ColorSet style::*set;
};

constexpr ColorPrefix COLOR_PREFIXES[] = {
    {"back.",    &style::mBack   },
    {"caption.", &style::mCaption},
    {"text.",    &style::mText   },
};

void setColorPair(ColorSet& set, std::string_view name, const style::Color& first,
                  const style::Color& second)
{
    for (const ColorPair& pair : COLOR_PAIRS) {
        if (pair.name == name) {
            set.*pair.first = first;
            set.*pair.second = second;
        }
    }
}

void setNamedColors(style& colors, std::string_view name, const style::Color& first,
                    const style::Color& second)
{
    for (const ColorPrefix& prefix : COLOR_PREFIXES)
        if (name.starts_with(prefix.name))
            setColorPair(colors.*prefix.set, name.substr(prefix.name.size()), first, second);
}

void checkNesting(const Control& control)
{
    int depth = 0;
    for (const Control* outer = control.getParent(); outer; outer = outer->getParent())
        ++depth;
    if (depth > DEEPEST_NESTING)
        throw Exception("Control::load: a '%s' lies inside more than %d controls",
                        control.getType().c_str(), DEEPEST_NESTING);
}

/** How many elements there are, without what "child" elements hold; counts no further than `most`.
 */
int countElements(const xml::XmlNode& outermost, int most)
{
    int count = 0;
    std::vector<const xml::XmlNode*> pending{&outermost};
    while (!pending.empty() && count <= most) {
        const xml::XmlNode& node = *pending.back();
        pending.pop_back();
        ++count;
        for (int index = 0; index < node.getNumChildren(); ++index)
            if (node.getChildren(index)->getTag().getName() != CHILD_GROUP)
                pending.push_back(node.getChildren(index));
    }
    return count;
}

} // namespace

/** What the outermost load under way around a control has read; lives as long as that load. */
class Control::LoadCount {
public:
    explicit LoadCount(Control& control) : mControl(control)
    {
        for (Control* outer = &control; outer && !mOutermost; outer = outer->mParent)
            mOutermost = outer->mLoading;
        if (!mOutermost)
            mOutermost = control.mLoading = this;
    }
    LoadCount(const LoadCount&) = delete;
    LoadCount(LoadCount&&) = delete;
    LoadCount& operator=(const LoadCount&) = delete;
    LoadCount& operator=(LoadCount&&) = delete;
    ~LoadCount()
    {
        if (mControl.mLoading == this)
            mControl.mLoading = nullptr;
    }

    void add(const xml::IteratorConst& element)
    {
        int& read = mOutermost->mRead;
        read += countElements(*element.createIterator("").getContext(), MOST_ELEMENTS - read);
        if (read > MOST_ELEMENTS)
            throw Exception("Control::load: more than %d elements, those of styles counted as "
                            "often as they serve, up to a '%s'",
                            MOST_ELEMENTS, element->getName().c_str());
    }

private:
    Control& mControl;
    LoadCount* mOutermost = nullptr;
    int mRead = 0; // elements
};

mathbase::Vector4f Control::hex2vec(const std::string& text) const
{
    return display::DisplayObsolete::hex2vec(text);
}

void Control::load(xml::IteratorConst& element)
{
    checkNesting(*this);
    LoadCount count(*this);
    count.add(element);
    mId = element->getValue("id");
    mVisible = element->getValue("hidden") != "true" && element->getValue("visible") != "false";
    loadChildren(element);
    setMaximized(true);
    for (xml::IteratorConst area = element.createIterator("area"); ++area;)
        loadArea(area);
    loadStyle(element);
}

void Control::loadStyle(xml::IteratorConst& element)
{
    for (xml::IteratorConst color = element.createIterator("color"); ++color;)
        setNamedColors(mStyle, color->getValue("name"), hex2vec(color->getValue("first")),
                       hex2vec(color->getValue("second")));
}

xml::IteratorConst Control::getStyle(const std::string& name) const
{
    static const xml::XmlNode noStyles{nullptr};
    return mParent ? mParent->getStyle(name) : noStyles.createIterator(name);
}

void Control::loadChildArea(Control&, xml::IteratorConst&) {}

void Control::loadChildren(xml::IteratorConst& element)
{
    for (xml::IteratorConst group = element.createIterator(CHILD_GROUP); ++group;)
        for (xml::IteratorConst child = group.createIterator(""); ++child;)
            if (child->getType() == xml::XmlTag::NORMAL)
                loadChild(child);
}

void Control::loadChild(xml::IteratorConst& element)
{
    const std::string type = element->getName();
    ZVX_LOG("log", "app", "Creating control: %s.", type.c_str());
    std::unique_ptr<Control> created(controlFactory.create(type));
    if (!created) {
        ZVX_LOG("log", "app", " -> Control type '%s' not found", type.c_str());
        return;
    }
    addControl(created.get(), -1);
    Control* const child = created.release();

    const std::string styleClass = element->getValue("class");
    xml::IteratorConst childStyle = getStyle(styleClass.empty() ? type : styleClass);
    if (++childStyle)
        child->load(childStyle);
    child->load(element);
    for (xml::IteratorConst area = element.createIterator("area"); ++area;)
        loadChildArea(*child, area);
}

void Control::loadArea(xml::IteratorConst& element)
{
    const float x = element->getValueFloat("x");
    const float y = element->getValueFloat("y");
    const float width = element->getValueFloat("width") + element->getValueFloat("w");
    const float height = element->getValueFloat("height") + element->getValueFloat("h");
    setMaximized(element->getValue("maximized") == "true");
    setArea(Area(x, y, x + width, y + height));
}

} // namespace zavex::vellum
