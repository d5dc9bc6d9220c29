#include "common/zvx_system.h"
#include "figure.h"
#include "xml/xml_parser.h"

#include <tinyxml2.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

namespace zavex {

namespace {

constexpr std::size_t DOCUMENT_SIZE = 5'000'000; // bytes
constexpr int KEYS_PER_PLUGIN = 500;
constexpr int RUNS = 15;
constexpr double BOUND = 1.0; // our time divided by the peer's

std::string attribute(const char* name, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, " %s=\"%.6g\"", name, value);
    return text;
}

/** A plugin's element with its keys, as an effect's script holds them. */
std::string pluginText(int number)
{
    std::string text = "\t<plugin name=\"plugin" + std::to_string(number) + "\" type=\"spline\">\n";
    for (int key = 0; key < KEYS_PER_PLUGIN; ++key) {
        text += "\t\t<key" + attribute("time", key / 499.0) +
                attribute("value", (key * 37 % 101) / 50.5 - 1.0) + "/>\n";
    }
    return text + "\t</plugin>\n";
}

std::string scriptText()
{
    std::string text = "<effect>\n"
                       "\t<option enabled=\"on\"/>\n"
                       "\t<time start=\"12.5\" end=\"98.25\"/>\n";
    for (int number = 0; text.size() < DOCUMENT_SIZE; ++number)
        text += pluginText(number);
    return text + "</effect>\n";
}

/** The peer's printer with our indentation. */
class TabPrinter : public tinyxml2::XMLPrinter {
protected:
    void PrintSpace(int depth) override
    {
        for (int level = 0; level < depth; ++level)
            Write("\t", 1);
    }
};

/** The peer reads and writes raw characters too: no entities. */
constexpr bool PROCESS_ENTITIES = false;

std::string written(const xml::XmlParser& parser)
{
    std::string text;
    parser.write(text, "\t");
    return text;
}

/** Leaves the text in the printer, where the peer's users find it. */
std::unique_ptr<TabPrinter> printed(const tinyxml2::XMLDocument& document)
{
    auto printer = std::make_unique<TabPrinter>();
    document.Print(printer.get());
    return printer;
}

} // namespace
} // namespace zavex

void zavex::bench::run(Figures& figures)
{
    const std::string text = scriptText();

    xml::XmlParser parser;
    parser.parse(text);
    tinyxml2::XMLDocument document(PROCESS_ENTITIES);
    document.Parse(text.data(), text.size());
    if (written(parser) != text || text != printed(document)->CStr())
        throw Exception("A written document differs from the one that was read.");

    // Reading includes releasing what was read.
    const auto read = [&] { xml::XmlParser().parse(text); };
    const auto readByPeer = [&] {
        tinyxml2::XMLDocument(PROCESS_ENTITIES).Parse(text.data(), text.size());
    };
    const auto write = [&] { written(parser); };
    const auto writeByPeer = [&] { printed(document); };
    const auto both = [&] {
        xml::XmlParser own;
        own.parse(text);
        written(own);
    };
    const auto bothByPeer = [&] {
        tinyxml2::XMLDocument own(PROCESS_ENTITIES);
        own.Parse(text.data(), text.size());
        printed(own);
    };

    const auto ratio = [&](const auto& ours, const auto& peers) {
        return medianRatio(RUNS, ours, peers);
    };
    figures.report("xml parse", ratio(read, readByPeer), BOUND, Bound::AT_MOST);
    figures.report("xml write", ratio(write, writeByPeer), BOUND, Bound::AT_MOST);
    figures.report("xml parse and write", ratio(both, bothByPeer), BOUND, Bound::AT_MOST);
}
