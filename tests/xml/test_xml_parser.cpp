#include "xml/xml_parser.h"

#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <ostream>
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

const std::string SCRIPT = "<?xml version=\"1.0\"?>\n"
                           "\n"
                           "<effect type=\"plasma\" name=\"one\">\n"
                           "\t<option enabled=\"on\"/>\n"
                           "\t<time start=\"1.5\" end=\"20\"/>\n"
                           "\t<plugin name=\"beat\">\n"
                           "\t\t<key time=\"0\" value=\"-1e-05\"/>\n"
                           "\t\t<group/>\n"
                           "\t\t<!-- tuned\n\tby ear -->\n"
                           "\t</plugin>\n"
                           "\t<plugin name=\"a &amp; b\"/>\n"
                           "</effect>\n";

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
    Iterator first = root.addChild(XmlTag("first"));
    first.addChild(XmlTag("inner"));
    root.addChild(XmlTag("second"));
    root->setValue("at", 0.1);

    EXPECT_EQ(written(parser), "<demo>\n"
                               "\t<first>\n"
                               "\t\t<inner/>\n"
                               "\t</first>\n"
                               "\t<second at=\"0.1\"/>\n"
                               "</demo>\n");
}

struct RewriteCase {
    const char* name;
    const char* text;
    const char* expected;

    friend void PrintTo(const RewriteCase& each, std::ostream* out) { *out << each.name; }
};

constexpr RewriteCase REWRITE_CASES[] = {
    {"RootWithoutContent",                              "<a></a>",                                                "<a>\n</a>\n"                      },
    {"ElementWithoutContentIsShortened",                "<a><b>\n</b></a>",                                       "<a>\n<b/>\n</a>\n"                },
    {"EndTagMayHaveSpaces",                             "< a >< / a >",                                           "<a>\n</a>\n"                      },
    {"EmptyElementNamedAsItsParentEndsIt",              "<a><a/></a>",                                            "<a>\n</a>\n"                      },
    {"EmptyElementNamedAsItsParentWithAttributesStays", "<a><a x=1/></a>",
     "<a>\n<a x=\"1\"/>\n</a>\n"                                                                                                                     },
    {"DeclarationNamedAsItsParentEndsIt",               "<a><?a?></a>",                                           "<a>\n</a>\n"                      },
    {"StrayEndTagIsAnEmptyChild",                       "<a><b></c></b></a>",                                     "<a>\n<b>\n<c/>\n</b>\n</a>\n"     },
    {"EndTagWithAttributesIsAChild",                    "<a></a x=1></a>",                                        "<a>\n<a x=\"1\"/>\n</a>\n"        },
    {"NameTakesColons",                                 "<n:a></n:a>",                                            "<n:a>\n</n:a>\n"                  },
    {"NameMayBeMissing",                                "<></>",                                                  "<>\n</>\n"                        },
    {"LaterValueInFirstPlace",                          "<a><b a=1 c=2 a=2/></a>",                                "<a>\n<b a=\"2\" c=\"2\"/>\n</a>\n"},
    {"EitherQuoteHidesTheOther",                        "<a><b x='\"' y=\"'\"/></a>",
     "<a>\n<b x=\"\"\" y=\"'\"/>\n</a>\n"                                                                                                            },
    {"TabBecomesSpacesReturnIsDropped",                 "<a><b x=\"\t1\r2\"/></a>",
     "<a>\n<b x=\"    12\"/>\n</a>\n"                                                                                                                },
    {"AngleBracketInAQuotedValue",                      "<a><b x=\"<&gt;>/\"/></a>",                              "<a>\n<b x=\"<&gt;>/\"/>\n</a>\n"  },
    {"AttributeWithoutName",                            "<a><b =\"1\"/></a>",                                     "<a>\n<b =\"1\"/>\n</a>\n"         },
    {"UnquotedValueMayBeEmpty",                         "<a><b x= /></a>",                                        "<a>\n<b x=\"\"/>\n</a>\n"         },
    {"SpacesAroundEquals",                              "<a><b x \n=\t'1'/></a>",                                 "<a>\n<b x=\"1\"/>\n</a>\n"        },
    {"SlashAnywhereCloses",                             "<a><b / x=1></a>",                                       "<a>\n<b x=\"1\"/>\n</a>\n"        },
    {"TextLosesLeadingSpaceAndReturns",                 "<a> \n t\tu\r\n v > <b/></a>",
     "<a>\n't    u\n v > '\n<b/>\n</a>\n"                                                                                                            },
    {"CommentKeepsEveryByte",                           "<a><!--\t-- >\r\n- --></a>",                             "<a>\n<!--\t-- >\r\n- -->\n</a>\n" },
    {"ShortestComment",                                 "<a><!--x--></a>",                                        "<a>\n<!--x-->\n</a>\n"            },
    {"CommentMayBeginWithAnglesEnd",                    "<a><!--->--></a>",                                       "<a>\n<!--->-->\n</a>\n"           },
    {"ExclaimDeclaration",                              "<a><!DOCTYPE html \"q r\" END ></a>",
     "<a>\n<!DOCTYPE html  q r END >\n</a>\n"                                                                                                        },
    {"EmptyExclaimDeclaration",                         "<a><!></a>",                                             "<a>\n<!>\n</a>\n"                 },
    {"QuestionDeclarationInside",                       "<a><?style href='s'?></a>",                              "<a>\n<?style href=\"s\"?>\n</a>\n"},
    {"QuestionNameTakesAngleBrackets",                  "<a><?p>q ?></a>",                                        "<a>\n<?p>q?>\n</a>\n"             },
    {"PrologueIsDropped",                               " text <!DOCTYPE a><!-- c --><?style x=1?><a></a>",       "<a>\n</a>\n"                      },
    {"DeclarationsMerge",                               "<?xml version='1' a=1?><?xml a=2 encoding='x'?><a></a>",
     "<?xml version=\"1\" a=\"2\" encoding=\"x\"?>\n\n<a>\n</a>\n"                                                                                   },
    {"WhateverFollowsTheRootIsNotRead",                 "<a></a><<<",                                             "<a>\n</a>\n"                      },
    {"BytesAboveAsciiInValues",                         "<a><b x='\xe5\xff'/></a>",                               "<a>\n<b x=\"\xe5\xff\"/>\n</a>\n" },
};

class Rewrite : public testing::TestWithParam<RewriteCase> {};

TEST_P(Rewrite, KeepsWhatWasRead)
{
    EXPECT_EQ(rewritten(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, Rewrite, testing::ValuesIn(REWRITE_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct BrokenCase {
    const char* name;
    const char* text;
    const char* message;

    friend void PrintTo(const BrokenCase& each, std::ostream* out) { *out << each.name; }
};

#define EQUALS "'=' expected!"
#define QUESTION "Xml: Ill formed <?xml?> tag"

constexpr BrokenCase BROKEN_CASES[] = {
    {"Empty",                               "",                                       "(error at line 1, col 1); EOF (when reading tag at 1:1)"       },
    {"OnlySpace",                           " \t\n \r",                               "(error at line 2, col 2); EOF (when reading tag at 1:1)"       },
    {"OnlyText",                            "no\ntag",                                "(error at line 2, col 4); EOF (when reading tag at 2:4)"       },
    {"OnlyAngleBracket",                    "<",                                      "(error at line 1, col 2); EOF (when reading tag at 1:1)"       },
    {"CutInName",                           "<ab",                                    "(error at line 1, col 4); EOF (when reading tag at 1:1)"       },
    {"CutInQuotedValue",                    "<a b=\"c\t",                             "(error at line 1, col 12); EOF (when reading tag at 1:1)"      },
    {"CutInContent",                        "<a>\n\t<b/>\n",                          "(error at line 3, col 1); EOF (when reading tag at 2:9)"       },
    {"StrayEndTagLeavesTheElementOpen",     "<a><b></c></a>",
     "(error at line 1, col 15); EOF (when reading tag at 1:15)"                                                                                      },
    {"RootIsEmptyElement",                  "\n <demo/>",
     "(error at line 2, col 9); Root tag is closed! (when reading tag at 1:1)"                                                                        },
    {"RootIsEndTag",                        "</demo>",
     "(error at line 1, col 8); Root tag is closed! (when reading tag at 1:1)"                                                                        },
    {"WordValueWithPoint",                  "<r x=12.5/>",
     "(error at line 1, col 9); " EQUALS " (when reading tag at 1:1)"                                                                                 },
    {"AttributeWithoutValue",               "<r>\r\n<s x/></r>",
     "(error at line 2, col 6); " EQUALS " (when reading tag at 1:4)"                                                                                 },
    {"NewlineIsWhereEqualsShouldBeSkipped", "<r x\n\ty=1>",
     "(error at line 2, col 6); " EQUALS " (when reading tag at 1:1)"                                                                                 },
    {"NameWithDash",                        "<r-s>",                                  "(error at line 1, col 4); " EQUALS " (when reading tag at 1:1)"},
    {"DoubleQuoteOpenAtLineEnd",            "<a>\n <b/>\n  <c d=\"e\n f=\"g\"/></a>",
     "(error at line 3, col 10); You must close the value using \" (when reading tag at 2:6)"                                                         },
    {"ApostropheOpenAtLineEnd",             "<a b='\r\n'>",
     "(error at line 1, col 7); You must close the value using ' (when reading tag at 1:1)"                                                           },
    {"CutBeforeCommentIsKnown",             "<!-",                                    "(error at line 1, col 2); EOF (when reading tag at 1:1)"       },
    {"CutInComment",                        "<!-- \r\n\tab --",
     "(error at line 2, col 10); EOF (when reading tag at 1:1)"                                                                                       },
    {"CommentsCountReturns",                "<!-- \r --",
     "(error at line 1, col 10); EOF (when reading tag at 1:1)"                                                                                       },
    {"EmptyComment",                        "<!---->",
     "(error at line 1, col 6); Xml: Ill formatted comment! (when reading tag at 1:1)"                                                                },
    {"CommentEndsInThreeDashes",            "<a><!-- b\n --->",
     "(error at line 2, col 4); Xml: Ill formatted comment! (when reading tag at 1:4)"                                                                },
    {"QuestionClosedByAngle",               "<?xml a=1>",
     "(error at line 1, col 10); " QUESTION
     ", forgot to close it using '?>'? (when reading tag at 1:1)"                                                                                     },
    {"QuestionWithoutAngle",                "<?xml ? >",
     "(error at line 1, col 7); " QUESTION " (when reading tag at 1:1)"                                                                               },
    {"QuestionIsLastByte",                  "<?xml ?",                                "(error at line 1, col 7); EOF (when reading tag at 1:1)"       },
    {"QuestionAttributeWithoutValue",       "<?xml a?>",
     "(error at line 1, col 9); " EQUALS " (when reading tag at 1:1)"                                                                                 },
    {"CutInQuestion",                       "<?xml",                                  "(error at line 1, col 6); EOF (when reading tag at 1:1)"       },
    {"ExclaimWithBracket",                  "<!DOCTYPE a [ b ]>",
     "(error at line 1, col 14); " EQUALS " (when reading tag at 1:1)"                                                                                },
    {"ExclaimWithEquals",                   "<!a=b>",
     "(error at line 1, col 5); " EQUALS " (when reading tag at 1:1)"                                                                                 },
    {"CutInExclaim",                        "<!a b",                                  "(error at line 1, col 6); EOF (when reading tag at 1:1)"       },
};

#undef EQUALS
#undef QUESTION

class BrokenDocument : public testing::TestWithParam<BrokenCase> {};

TEST_P(BrokenDocument, IsRefusedWithItsPosition)
{
    XmlParser parser;
    EXPECT_EQ(thrownMessage([&] { parser.parse(GetParam().text); }), GetParam().message);

    parser.clear();
    EXPECT_NO_THROW(parser.parse(SCRIPT));
    EXPECT_EQ(written(parser), SCRIPT);
}

INSTANTIATE_TEST_SUITE_P(Cases, BrokenDocument, testing::ValuesIn(BROKEN_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST(BrokenDocument, CutAnywhereItIsRefused)
{
    for (std::size_t length = 0; length < SCRIPT.size() - 1; ++length) {
        XmlParser parser;
        const std::string message = thrownMessage([&] { parser.parse(SCRIPT.substr(0, length)); });
        EXPECT_NE(message.find("; EOF ("), std::string::npos) << length << ": " << message;
    }
}

TEST(BrokenDocument, LogsTheFaultWithAndWithoutItsPosition)
{
    test::clearLog();
    thrownMessage([] { XmlParser().parse("<a/>"); });
    ASSERT_EQ(test::logLines().size(), 2u);
    EXPECT_EQ(test::logLines()[0].message, "Root tag is closed!");
    EXPECT_EQ(test::logLines()[1].message,
              "(error at line 1, col 5); Root tag is closed! (when reading tag at 1:1)");
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

std::string repeated(const std::string& part, int count)
{
    std::string text;
    for (int each = 0; each < count; ++each)
        text += part;
    return text;
}

constexpr int DEPTH = 100'000;

TEST(DeepDocument, IsReadWrittenAndCleared)
{
    const std::string text =
        "<a>\n" + repeated("<b>\n", DEPTH) + repeated("</b>\n", DEPTH) + "</a>\n";
    XmlParser parser;
    parser.parse(text);
    // The innermost element has no content of its own and is closed.
    EXPECT_EQ(written(parser, "").size(), text.size() - std::string("</b>").size());

    parser.clear();
    EXPECT_EQ(parser.createIterator("").getRoot().getName(), "");
    EXPECT_FALSE(++parser.createIterator(""));
}

TEST(DeepDocument, IsRefusedWhenCutAndDestroyedWithItsParser)
{
    XmlParser parser;
    EXPECT_EQ(thrownMessage([&] { parser.parse(repeated("<b>", DEPTH)); }),
              "(error at line 1, col 300001); EOF (when reading tag at 1:300001)");
}

/** Counts the flushes of the stream that writes to it. */
class FlushCounter : public std::stringbuf {
public:
    int flushes = 0;

protected:
    int sync() override
    {
        ++flushes;
        return 0;
    }
};

TEST(Document, FlushesTheStreamAfterEveryTag)
{
    XmlParser parser;
    parser.parse("<?xml a=1?><a><b><c/></b></a>");
    FlushCounter counter;
    std::ostream stream(&counter);
    parser.write(stream, "\t");
    EXPECT_EQ(counter.flushes, 4); // the declaration, a, b and c; end tags come with what follows
}

TEST(Document, OfAnUnknownTagTypeLeavesTheTextAlone)
{
    XmlParser parser;
    parser.parse("<a><b/></a>");
    Iterator child = parser.createIterator("");
    ++child;
    child->setTagType(XmlTag::TEXT + 1);

    std::string text = "as it was";
    EXPECT_EQ(thrownMessage([&] { parser.write(text, ""); }), "XmlTag::write; Unknown tagtype!");
    EXPECT_EQ(text, "as it was");
}

} // namespace
} // namespace zavex::xml
