#include "orv/util/CommandLineParser.h"

#include "compat/CORVCmdLineParser.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace orv::util {
namespace {

/// The two classes of command lines, which behave alike.
template <class Line>
struct CommandLineParserTest : testing::Test {
};
using Lines = testing::Types<CommandLineParser, CORVCmdLineParser>;
TYPED_TEST_SUITE(CommandLineParserTest, Lines);

/// The elements of a parsed line: "name=value,value" for options, "value" for parameters, joined
/// by blanks, with | around each value.
template <class Line>
String elementsOf(const Line& line)
{
    String text;
    for (std::int32_t i = 0; i < line.getElementCount(); ++i) {
        const auto element = line.getElement(i);
        EXPECT_EQ(element->getPosition(), i);
        if (i > 0) text.append(u' ');
        if (element->getName().getLength() > 0) text.append(element->getName()).append(u'=');
        for (std::int32_t k = 0; k < element->getValueCount(); ++k) {
            text.append(u'|').append(element->getValueString(k)).append(u'|');
        }
    }
    return text;
}

TYPED_TEST(CommandLineParserTest, splitsByItsGrammar)
{
    const std::pair<const char16_t*, const char16_t*> rows[] = {
        {u"", u""},
        {u"a -b c", u"|a| b= |c|"},
        {u"-x=1,2,3", u"x=|1||2||3|"},
        {u"-x=\"a,b\",c", u"x=|a,b||c|"},
        {u"-x=,,a,,", u"x=|a|"},
        {u"-x=\"a b\"", u"x=|a| |b\"|"},
        {u"\"-x=a b\"", u"x=|a b|"},
        {u"a  \"b c\"", u"|a| |\"b| |c\"|"},
        {u"\"a b\"  \"c d\"", u"|a b| |c d|"},
        {u"\"\" a \"b\"", u"| a | |b\"|"},
        {u"--x /-y -z-", u"x= y= z-="},
        {u"-d x", u"d=|x|"},
        {u"-d -e", u"d=|one||two| e="},
        {u"-d  -e", u"d="},
        {u"-t x -b y", u"t=|x| |y|"},
    };
    TypeParam line;
    line.defineOption(u"d", 1, u"one, two");
    line.defineOption(u"t", 2, nullptr);
    for (const auto& [text, elements] : rows) {
        line.parse(text);
        EXPECT_EQ(elementsOf(line), elements) << test::readable(text);
    }
}

TYPED_TEST(CommandLineParserTest, theLastOptionOfANameAnswersOrElseItsDefault)
{
    TypeParam line;
    line.defineOption(u"x", 1, u"7");
    line.defineOption(u"empty", 1, u"");
    line.defineOption(u"none", 1, nullptr);
    line.parse(u"-X=3");
    EXPECT_FALSE(line.isPresent(u"x"));
    EXPECT_EQ(line.getValueLong(u"x", 0), 7);
    EXPECT_EQ(line.getOption(u"x")->getPosition(), -1);
    EXPECT_EQ(line.getOption(u"empty")->getValueCount(), 0);
    EXPECT_EQ(line.getOption(u"none"), nullptr);
    EXPECT_EQ(line.getOption(u"unknown"), nullptr);
    line.parse(u"/x=1 p -x=2 -X=3");
    EXPECT_EQ(line.getValueLong(u"x", 0), 2);
    line.setIgnoreCase(true);
    EXPECT_EQ(line.getValueLong(u"x", 0), 3);
    EXPECT_EQ(line.getParameterCount(), 1);
    EXPECT_EQ(line.getParameter(0)->getPosition(), 1);
}

TYPED_TEST(CommandLineParserTest, readsNumbersByTheirPrefix)
{
    TypeParam line;
    line.parse(u"-n=0x10,010,12x,-7,word -d=2.5e1z,.,");
    for (const auto& [index, number] : {std::pair{0, 16}, {1, 8}, {2, 12}, {3, -7}}) {
        EXPECT_EQ(line.getValueLong(u"n", index), number);
    }
    EXPECT_EQ(line.getValueDouble(u"d", 0), 25.0);

    const auto wordsOf = [](auto ask) { return test::refusalOf(ask).second; };
    EXPECT_EQ(wordsOf([&] { line.getValueLong(u"n", 4); }), "Unable to convert string to long");
    EXPECT_EQ(wordsOf([&] { line.getValueDouble(u"d", 1); }), "Unable to convert string to double");
    EXPECT_EQ(wordsOf([&] { line.getValueLong(u"no", 0); }), "Invalid vector index");
}

} // namespace
} // namespace orv::util
