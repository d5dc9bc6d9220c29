#include "xml/xml_parser.h"

#include "common/zvx_system.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <streambuf>
#include <string>

namespace zavex::xml {
namespace {

using test::thrownMessage;

std::string written(const XmlParser& parser, const std::string& indent = "\t")
{
    std::string text;
    parser.write(text, indent);
    return text;
}

/** What reading `text` gives when written back without indentation. */
std::string rewritten(const std::string& text)
{
    XmlParser parser;
    parser.parse(text);
    return written(parser, "");
}

std::string readFile(const char* name)
{
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

const std::string SCRIPT = readFile(CADENZA_TEST_SOURCE_DIR "/script.xml");

TEST(Document, IsWrittenByteForByteAsItWasRead)
{
    XmlParser parser;
    parser.parse(SCRIPT);
    EXPECT_EQ(written(parser), SCRIPT);

    std::ostringstream stream;
    parser.write(stream, "\t");
    EXPECT_EQ(stream.str(), SCRIPT);
}

TEST(Document, ReadsOnlyTheBytesItIsGiven)
{
    const std::string text = "<a><b/></a></a>";
    XmlParser parser;
    EXPECT_EQ(thrownMessage([&] { parser.parse(text.data(), 10); }),
              "(error at line 1, col 11); EOF (when reading tag at 1:8)");
    parser.clear();
    parser.parse(text.data(), 11);
    EXPECT_EQ(written(parser, " "), "<a>\n <b/>\n</a>\n");
    EXPECT_EQ(thrownMessage([&] { XmlParser().parse(text.data(), -1); }), "length>=0");
}

TEST(Document, BuiltInMemoryHasNoDeclaration)
{
    XmlParser parser;
    Iterator root = parser.createIterator("");
    root.setRoot(XmlTag("demo"));
    root.addChild(XmlTag("first")).addChild(XmlTag("inner"));
    root.addChild(XmlTag("second"));
    root->setValue("at", 0.1);
    EXPECT_EQ(written(parser),
              "<demo>\n\t<first>\n\t\t<inner/>\n\t</first>\n\t<second at=\"0.1\"/>\n</demo>\n");
}

/** A name, what is read, and what is written. */
using Rewritten = std::array<const char*, 3>;

constexpr Rewritten CONTENTS[] = {
    {"RootWithoutContent",                              "",                             ""                               },
    {"ElementWithoutContentIsShortened",                "<b>\n</b>",                    "<b/>\n"                         },
    {"EmptyElementNamedAsItsParentEndsIt",              "<a/>",                         ""                               },
    {"OpenedElementNamedAsItsParentKeepsItsEndTag",     "<a></a>",                      "<a>\n</a>\n"                    },
    {"DeclarationNamedAsItsParentEndsIt",               "<?a?>",                        ""                               },
    {"EmptyElementNamedAsItsParentWithAttributesStays", "<a x=1/>",                     "<a x=\"1\"/>\n"                 },
    {"StrayEndTagIsAnEmptyChild",                       "<b></c></b>",                  "<b>\n<c/>\n</b>\n"              },
    {"EndTagWithAttributesIsAChild",                    "</a x=1>",                     "<a x=\"1\"/>\n"                 },
    {"LaterValueInFirstPlace",                          "<b a=1 c=2 a=2/>",             "<b a=\"2\" c=\"2\"/>\n"         },
    {"EitherQuoteHidesTheOther",                        "<b x='\"' y=\"'\"/>",          "<b x='\"' y=\"'\"/>\n"          },
    {"TabBecomesSpacesReturnIsDropped",                 "<b x=\"\t1\r2\"/>",            "<b x=\"    12\"/>\n"            },
    {"AngleBracketInAQuotedValue",                      "<b x=\"<&gt;>/\"/>",           "<b x=\"<&gt;>/\"/>\n"           },
    {"AttributeWithoutName",                            "<b =\"1\"/>",                  "<b =\"1\"/>\n"                  },
    {"UnquotedValueMayBeEmpty",                         "<b x= />",                     "<b x=\"\"/>\n"                  },
    {"SpacesAroundEquals",                              "<b x \n=\t'1'/>",              "<b x=\"1\"/>\n"                 },
    {"SlashAnywhereCloses",                             "<b / x=1>",                    "<b x=\"1\"/>\n"                 },
    {"TextLosesLeadingSpaceAndReturns",                 " \n t\tu\r\n v > <b/>",        "'t    u\n v > '\n<b/>\n"        },
    {"ApostrophesOfTextDoNotGrow",                      "'t'\n \t<b/>",                 "'t'\n<b/>\n"                    },
    {"CommentKeepsEveryByte",                           "<!--\t-- >\r\n- -->",          "<!--\t-- >\r\n- -->\n"          },
    {"ShortestComment",                                 "<!--x-->",                     "<!--x-->\n"                     },
    {"CommentMayBeginWithAnglesEnd",                    "<!--->-->",                    "<!--->-->\n"                    },
    {"ExclaimDeclaration",                              "<!DOCTYPE html \"q r\" END >", "<!DOCTYPE html  \"q r\" END >\n"},
    {"EmptyExclaimDeclaration",                         "<!>",                          "<!>\n"                          },
    {"QuestionDeclarationInside",                       "<?style href='s'?>",           "<?style href=\"s\"?>\n"         },
    {"QuestionNameTakesAngleBrackets",                  "<?p>q ?>",                     "<?p>q?>\n"                      },
    {"BytesAboveAsciiInValues",                         "<b x='\xe5\xff'/>",            "<b x=\"\xe5\xff\"/>\n"          },
};

constexpr Rewritten DOCUMENTS[] = {
    {"EndTagMayHaveSpaces",             "< a >< / a >",                                           "<a>\n</a>\n"              },
    {"NameTakesColons",                 "<n:azAZ09></n:azAZ09>",                                  "<n:azAZ09>\n</n:azAZ09>\n"},
    {"NameMayBeMissing",                "<></>",                                                  "<>\n</>\n"                },
    {"PrologueIsDropped",               " text <!DOCTYPE a><!-- c --><?style x=1?><a></a>",       "<a>\n</a>\n"              },
    {"DeclarationsMerge",               "<?xml version='1' a=1?><?xml a=2 encoding='x'?><a></a>",
     "<?xml version=\"1\" a=\"2\" encoding=\"x\"?>\n\n<a>\n</a>\n"                                                           },
    {"WhateverFollowsTheRootIsNotRead", "<a></a><<<",                                             "<a>\n</a>\n"              },
};

TEST(Document, KeepsWhatWasRead)
{
    for (const auto& [name, text, expected] : CONTENTS)
        EXPECT_EQ(rewritten(std::string("<a>") + text + "</a>"),
                  std::string("<a>\n") + expected + "</a>\n")
            << name;
    for (const auto& [name, text, expected] : DOCUMENTS)
        EXPECT_EQ(rewritten(text), expected) << name;
}

TEST(Document, SaysWhetherAnythingStandsOutsideItsRoot)
{
    const auto hasContentOutside = [](const char* text) {
        XmlParser parser;
        parser.parse(text);
        return parser.hasContentOutside();
    };
    EXPECT_FALSE(
        hasContentOutside("\n<?xml a=1?>\t<?xml b=1?>\n<a><!-- c --><!b>t<?c?></a> \t\r\n"));
    for (const char* text : {"<!-- c --><a></a>", "<!DOCTYPE a><a></a>", "<?style?><a></a>",
                             "text <a></a>", "<a></a>\n<!-- c -->", "<a></a></a>"})
        EXPECT_TRUE(hasContentOutside(text)) << text;
}

struct BrokenCase {
    const char* name;
    const char* text;
    int line;
    int column;
    const char* fault;
    const char* tag; // line and column at which it begins
};

constexpr const char* AT_END = "EOF";
constexpr const char* EQUALS = "'=' expected!";
constexpr const char* COMMENT = "Xml: Ill formatted comment!";

constexpr BrokenCase BROKEN_CASES[] = {
    {"Empty",                               "",                                       1, 1,  AT_END,                             "1:1" },
    {"OnlySpace",                           " \t\n \r",                               2, 2,  AT_END,                             "1:1" },
    {"OnlyText",                            "no\ntag",                                2, 4,  AT_END,                             "2:4" },
    {"CutInQuotedValue",                    "<a b=\"c\t",                             1, 12, AT_END,                             "1:1" },
    {"CutInContent",                        "<a>\n\t<b/>\n",                          3, 1,  AT_END,                             "2:9" },
    {"StrayEndTagLeavesTheElementOpen",     "<a><b></c></a>",                         1, 15, AT_END,                             "1:15"},
    {"RootIsEmptyElement",                  "\n <demo/>",                             2, 9,  "Root tag is closed!",              "1:1" },
    {"RootIsEndTag",                        "</demo>",                                1, 8,  "Root tag is closed!",              "1:1" },
    {"WordValueWithPoint",                  "<r x=12.5/>",                            1, 9,  EQUALS,                             "1:1" },
    {"AttributeWithoutValue",               "<r>\r\n<s x/></r>",                      2, 6,  EQUALS,                             "1:4" },
    {"NewlineIsWhereEqualsShouldBeSkipped", "<r x\n\ty=1>",                           2, 6,  EQUALS,                             "1:1" },
    {"NameWithDash",                        "<r-s>",                                  1, 4,  EQUALS,                             "1:1" },
    {"DoubleQuoteOpenAtLineEnd",            "<a>\n <b/>\n  <c d=\"e\n f=\"g\"/></a>", 3, 10,
     "You must close the value using \"",                                                                                        "2:6" },
    {"ApostropheOpenAtLineEnd",             "<a b='\r\n'>",                           1, 7,  "You must close the value using '", "1:1" },
    {"CutBeforeCommentIsKnown",             "<!-",                                    1, 2,  AT_END,                             "1:1" },
    {"CutInComment",                        "<!-- \r\n\tab --",                       2, 10, AT_END,                             "1:1" },
    {"CommentsCountReturns",                "<!-- \r --",                             1, 10, AT_END,                             "1:1" },
    {"EmptyComment",                        "<!---->",                                1, 6,  COMMENT,                            "1:1" },
    {"CommentEndsInThreeDashes",            "<a><!-- b\n --->",                       2, 4,  COMMENT,                            "1:4" },
    {"QuestionClosedByAngle",               "<?xml a=1>",                             1, 10,
     "Xml: Ill formed <?xml?> tag, forgot to close it using '?>'?",                                                              "1:1" },
    {"QuestionWithoutAngle",                "<?xml ? >",                              1, 7,  "Xml: Ill formed <?xml?> tag",      "1:1" },
    {"QuestionIsLastByte",                  "<?xml ?",                                1, 7,  AT_END,                             "1:1" },
    {"QuestionAttributeWithoutValue",       "<?xml a?>",                              1, 9,  EQUALS,                             "1:1" },
    {"ExclaimWithBracket",                  "<!DOCTYPE a [ b ]>",                     1, 14, EQUALS,                             "1:1" },
    {"ExclaimWithEquals",                   "<!a=b>",                                 1, 5,  EQUALS,                             "1:1" },
};

TEST(BrokenDocument, IsRefusedWithItsPosition)
{
    for (const BrokenCase& each : BROKEN_CASES) {
        std::ostringstream expected;
        expected << "(error at line " << each.line << ", col " << each.column << "); " << each.fault
                 << " (when reading tag at " << each.tag << ")";
        EXPECT_EQ(thrownMessage([&] { XmlParser().parse(each.text); }), expected.str())
            << each.name;
    }
}

TEST(BrokenDocument, CutAnywhereItIsRefused)
{
    for (std::size_t length = 0; length < SCRIPT.size() - 1; ++length) {
        XmlParser parser;
        const std::string message = thrownMessage([&] { parser.parse(SCRIPT.substr(0, length)); });
        EXPECT_NE(message.find("; EOF ("), std::string::npos) << length << ": " << message;
    }
}

TEST(BrokenDocument, KeepsWhatWasReadUntilCleared)
{
    XmlParser parser;
    thrownMessage([&] { parser.parse("<?xml a=1?><a><b/><c"); });
    EXPECT_EQ(written(parser, ""), "<?xml a=\"1\"?>\n\n<a>\n<b/>\n</a>\n");
    EXPECT_EQ(thrownMessage([&] { parser.parse("<a></a>"); }),
              "(error at line 1, col 1); Parser has already parsed a xml-file, use clear() first! "
              "(when reading tag at -1:-1)");

    parser.clear();
    parser.parse("<d></d>");
    EXPECT_EQ(written(parser, ""), "<d>\n</d>\n");
}

TEST(LargeDocument, IsReadAndWrittenUpToItsLimits)
{
    const auto nested = [](int depth) {
        std::string text;
        for (int at = 0; at < 2 * depth; ++at)
            text += at < depth ? "<b>" : "</b>";
        return text;
    };
    const std::string text = nested(XmlParser::DEEPEST);
    XmlParser parser;
    parser.parse(text);
    std::string out = written(parser, "");
    XmlParser().parse(out);
    EXPECT_EQ(out.size(), text.size() + 2 * XmlParser::DEEPEST);
    EXPECT_EQ(thrownMessage([&] { XmlParser().parse(nested(XmlParser::DEEPEST + 1)); }),
              "(error at line 1, col 30004); More than 10000 elements lie inside one another (when "
              "reading tag at 1:30001)");

    parser.clear();
    parser.parse("<a><b/></a>");
    const std::string indent(XmlParser::MOST_INDENTATION + 1, ' ');
    EXPECT_EQ(thrownMessage([&] { parser.write(out, indent); }),
              "XmlParser::write; The indentation of elements inside one another takes more than "
              "134217728 bytes");
    EXPECT_EQ(out.size(), text.size() + 2 * XmlParser::DEEPEST);
}

TEST(LargeDocument, UnitesRepeatedAttributesHoweverMany)
{
    const auto declaration = [](const char* seventh, const char* eighth) {
        std::string text = "<?xml";
        for (int each = 0; each < 100'000; ++each) {
            const char* const value = each == 7 ? seventh : each == 8 ? eighth : "1";
            text += " a" + std::to_string(each) + "=\"" + value + '"';
        }
        return text;
    };
    XmlParser parser;
    parser.parse(declaration("1", "2") + " a7=2 a7=3?>" + declaration("4", "5") + " a8=6?><a></a>");
    EXPECT_EQ(written(parser), declaration("4", "6") + "?>\n\n<a>\n</a>\n");
}

/** A document of pieces that readers stumble over, in any order. */
std::string randomDocument(std::mt19937& random)
{
    // clang-format off
    constexpr const char* PIECES[] = {
        "<>", "<a x=1>", "<b1 ='\"' x= >", "<COMMENT y=\"it's\">", "<a/>", "<b1 z='\t< >/\r'/>", "</>",
        "</a>", "</b1 x=1>", "</b1>", "</COMMENT>", "< / / w=a>", "<?b1 x=1 y=\"it's\"?>", "<?a?>", "<!>",
        "<! x y  \"q \" w ''>", "<! 'v''\"'>", "'", "''", "t 'u'\t\r\n", "\n ", "<!---\t->\r\n-->",
        "<!-- -->", "<?xml?>"};
    // clang-format on
    std::string text = "<a>";
    for (int piece = 0; piece < 30; ++piece)
        text += PIECES[random() % std::size(PIECES)];
    for (int last = 0; last < 31; ++last)
        text += "</a></b1></COMMENT></>";
    return text;
}

/** All that a node holds, but for the characters of text, to which writing adds apostrophes. */
std::string dump(const XmlNode& node)
{
    const XmlTag& tag = node.getTag();
    std::string text =
        "(" + std::to_string(tag.getType()) + tag.getName() + (tag.getClosed() ? "/" : "");
    for (const XmlTag::Argument& each : tag.getArg())
        if (tag.getType() != XmlTag::TEXT)
            text += "[" + each.name + "|" + each.value + "]";
    for (int child = 0; child < node.getNumChildren(); ++child)
        text += dump(*node.getChildren(child));
    return text + ")";
}

TEST(Document, IsReadBackAsItWasWritten)
{
    std::mt19937 random(1);
    int documents = 0;
    for (int attempt = 0; attempt < 2'000; ++attempt) {
        const std::string text = randomDocument(random);
        XmlParser first;
        try {
            first.parse(text);
        } catch (const Exception&) {
            continue;
        }
        ++documents;
        XmlParser second;
        second.parse(written(first));
        ASSERT_EQ(dump(*second.createIterator("").getContext()),
                  dump(*first.createIterator("").getContext()))
            << text;
        ASSERT_EQ(written(second), written(first)) << text;
    }
    EXPECT_GT(documents, 1000);
}

TEST(Document, FlushesTheStreamAfterEveryTag)
{
    struct FlushCounter : std::stringbuf {
        int flushes = 0;
        int sync() override { return ++flushes, 0; }
    } counter;
    XmlParser parser;
    parser.parse("<?xml a=1?><a><b><c/></b></a>");
    std::ostream stream(&counter);
    parser.write(stream, "\t");
    EXPECT_EQ(counter.flushes, 4); // the declaration, a, b and c; end tags come with what follows
}

TEST(Document, WithATagThatCouldNotBeReadBackLeavesTheTextAlone)
{
    const std::string value = ": a value with ";
    const std::string control = value + "a tab or the end of a line could not be read back: ";
    const std::string name = ": a name with a byte that none may have could not be read back: ";
    const struct {
        int type;
        const char *name, *attribute, *value;
        std::string fault;
    } rows[] = {
        {XmlTag::NORMAL,           "b",   "x",       "'\"",
         "In 'b'" + value + "both kinds of quotes could not be read back: x='\""           },
        {XmlTag::NORMAL,           "b",   "x",       "1\n2",  "In 'b'" + control + "x=1\n2"},
        {XmlTag::NORMAL,           "b-c", "x",       "",      "In 'b-c'" + name + "b-c"    },
        {XmlTag::SPECIAL_QUESTION, "b",   "x:y",     "",      "In 'b'" + name + "x:y"      },
        {XmlTag::SPECIAL_EXCLAIM,  "",    "x",       "\t",    "In ''" + control + "x=\t"   },
        {XmlTag::COMMENT,          "",    "content", "c-->d",
         "In '': a comment that is empty, ends with '-' or holds its end mark could not be read "
         "back: c-->d"                                                                     },
        {XmlTag::TEXT,             "",    "content", "t<",
         "In '': text with '<', a tab or a carriage return could not be read back: t<"     },
        {XmlTag::TEXT + 1,         "",    "",        "",      "Unknown tagtype!"           },
    };
    for (const auto& row : rows) {
        XmlTag tag(row.name);
        tag.setTagType(row.type);
        tag.setValue(row.attribute, row.value);
        XmlParser parser;
        parser.parse("<a><b/></a>");
        parser.createIterator("").addChild(tag);

        std::string text = "as it was";
        EXPECT_EQ(thrownMessage([&] { parser.write(text, ""); }), "XmlTag::write; " + row.fault);
        std::ostringstream stream;
        EXPECT_THROW(parser.write(stream, ""), Exception);
        EXPECT_EQ(text + stream.str(), "as it was");
    }
}

} // namespace
} // namespace zavex::xml
