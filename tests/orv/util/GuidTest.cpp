#include "orv/util/Guid.h"

#include "orv/IORVComparable.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace orv::util {
namespace {

TEST(Guid, readsWhatItPrints)
{
    const Guid guid(IORVComparable::IID);
    EXPECT_EQ(guid.toString(), u"{72038029-FA65-4255-A916-1C5680ACFEBF}");
    EXPECT_TRUE(Guid(u"{72038029-fa65-4255-a916-1c5680acfebf}") == IORVComparable::IID);
    EXPECT_EQ(Guid().toString(), u"{00000000-0000-0000-0000-000000000000}");
    const std::u16string whole = u"{72038029-FA65-4255-A916-1C5680ACFEBF}";
    std::vector<std::u16string> bad{whole + u" "};
    for (std::size_t i = 0; i < whole.size(); ++i) {
        bad.push_back(whole.substr(0, i));
        bad.push_back(whole);
        bad.back()[i] = u'g';
    }
    for (const std::u16string& text : bad) {
        EXPECT_EQ(test::refusalOf([&] { Guid made(text.c_str()); }),
                  test::Refusal(E_FAIL, "invalid GUID string"))
            << test::readable(text);
    }
}

TEST(Guid, ordersByItsBytes)
{
    const Guid small(u"{00000001-0000-0000-0000-000000000001}");
    const Guid great(u"{00000001-0000-0000-0000-000000000002}");
    const GUID& plain = great;
    EXPECT_TRUE(small < great && small <= great && small != great);
    EXPECT_TRUE(plain > small && plain >= small && small < plain);
    EXPECT_TRUE(great == plain && plain == great && great >= plain && great <= plain);
    EXPECT_FALSE(great != plain || great < plain || great > plain || small == plain);
}

TEST(Guid, generatesRandomOnes)
{
    const std::unique_ptr<Guid> one(Guid::Generate());
    const std::unique_ptr<Guid> two(Guid::Generate());
    EXPECT_TRUE(*one != *two);
    const String text = one->toString();
    EXPECT_EQ(text.getCharAt(15), u'4') << "the version";
    EXPECT_NE(String(u"89AB").indexOf(text.getCharAt(20)), -1) << "the variant";
}

} // namespace
} // namespace orv::util
