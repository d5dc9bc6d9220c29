// A document that is read can be written, and what is written reads as the same document.

#include "common/zvx_system.h"
#include "fuzz/fuzz_target.h"
#include "xml/xml_parser.h"

namespace zavex::fuzz {

namespace {

std::string rewritten(const std::string& text)
{
    xml::XmlParser parser;
    parser.parse(text);
    std::string out;
    parser.write(out, "\t");
    return out;
}

} // namespace

void documents(Bytes input)
{
    std::string first;
    try {
        first = rewritten(textOf(input));
    } catch (const Exception&) {
        return;
    }
    try {
        expect(rewritten(first) == first, "a document written twice differs");
    } catch (const Exception&) {
        expect(false, "a written document is refused");
    }
}

} // namespace zavex::fuzz
