#include "orv/io/PrintWriter.h"
#include "orv/io/StringWriter.h"
#include "tests/orv/io/Streams.h"

namespace orv::io {
namespace {

TEST(PrintWriter, printsEachTypeAsText)
{
    const auto text = makeReference<StringWriter>(100);
    PrintWriter out(text.get(), false);
    out.print(String(u"s"));
    out.print("\u00E9");
    out.print(u"w");
    out.print(2.5);
    out.print(0.1f);
    out.print(-7);
    out.print(u'c');
    out.print(true);
    EXPECT_EQ(text->toString(), u"s\u00E9w2.50.1-7ctrue");
    out.println(1e6);
    out.println(false);
    EXPECT_EQ(text->toString(), u"s\u00E9w2.50.1-7ctrue1e+06\nfalse\n");
}

} // namespace
} // namespace orv::io
