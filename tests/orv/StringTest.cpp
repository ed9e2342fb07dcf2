#include "orv/String.h"

#include "orv/Exceptions.h"
#include "orv/Reference.h"
#include "tests/support/ForeignCharBuffer.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <thread>

namespace orv {
namespace {

using namespace std::string_view_literals;
using test::units;

TEST(String, isMadeFromManySources)
{
    constexpr STRUCT_ORV_STR_LIT_INFO literal{u"literal", 7};
    const String base(u"abcdef");
    util::RWCharBuffer buffer(u"buf", 3, 0);
    using Row = std::pair<String, const char16_t*>;
    const Row rows[] = {
        {String(u"abc", 2), u"ab"},
        {String(literal), u"literal"},
        {String(u'x', 0, 0), u""},
        {String(u'x', -1, 8), u""},
        {String(&buffer), u"buf"},
        {String(AcquireMode::AcquireCopyUpper, &buffer), u"BUF"},
        {String(AcquireMode::AcquireCopyUpper, base, 4, 99), u"EF"},
        {String(AcquireMode::AcquireAddRef, base, 1, 3), u"abcdef"},
        {String(AcquireMode::AcquireAlias, base, 2, -1), u"cdef"},
        {u"a" + base + u"z", u"aabcdefz"},
    };
    for (const auto& [made, expected] : rows) {
        EXPECT_EQ(made, expected);
        EXPECT_EQ(made.getData()[made.getLength()], u'\0');
    }
}

TEST(String, anAliasViewsItsSource)
{
    char16_t memory[] = u"abc";
    String alias(AcquireMode::AcquireAlias, memory);
    const String region(AcquireMode::AcquireAlias, alias, 0, 2);
    memory[0] = u'x';
    EXPECT_EQ(alias, u"xbc");
    EXPECT_EQ(region.getLength(), 2);
    EXPECT_EQ(region.getData()[2], u'c') << "a region has no zero unit of its own";
    alias.append(u"d");
    memory[1] = u'y';
    EXPECT_EQ(alias, u"xbcd") << "the first write copies";
}

TEST(String, assignmentCopiesAndSetAddRefShares)
{
    const String text(u"abc");
    String assigned;
    assigned = text;
    EXPECT_EQ(assigned, text);
    EXPECT_NE(assigned.getData(), text.getData());
    assigned.setAddRef(text);
    EXPECT_EQ(assigned.getData(), text.getData());
    assigned = text; // from a text that shares the buffer
    EXPECT_EQ(assigned, u"abc");
    EXPECT_NE(assigned.getData(), text.getData());

    EXPECT_EQ(assigned.setTo(AcquireMode::AcquireCopy, assigned, 1, 2), u"b");
    EXPECT_EQ(assigned.setTo(AcquireMode::AcquireAddRef, text).getData(), text.getData());
    EXPECT_EQ(text, u"abc");
}

TEST(String, replacesARegion)
{
    using Row = std::tuple<const char16_t*, std::int32_t, std::int32_t, const char16_t*,
                           std::int32_t, const char16_t*>;
    const Row rows[] = {
        {u"abc", -1, 0, u"de", 0, u"abcde"}, {u"abc", 99, 99, u"d", 0, u"abcd"},
        {u"abc", 1, 1, u"xyz", 0, u"axyzc"}, {u"abc", 1, 99, u"xyz", 1, u"ayz"},
        {u"abc", 1, 1, u"xyz", 99, u"ac"},
    };
    for (const auto& [text, start, count, with, offset, expected] : rows) {
        String byPointer(text);
        byPointer.replace(start, count, with, -1, offset);
        EXPECT_EQ(byPointer, expected);
        const String shared(text);
        String byText(shared);
        byText.replace(start, count, String(with), offset);
        EXPECT_EQ(byText, expected);
        EXPECT_EQ(shared, text);
    }
}

TEST(String, resizesTrimsAndCuts)
{
    using Row = std::tuple<const char16_t*, TrimType, const char16_t*>;
    for (const auto& [text, type, expected] : {Row{u"  a b\t", String::TrimBoth, u"a b"},
                                               {u"  a b\t", String::TrimLeading, u"a b\t"},
                                               {u"\r\na ", String::TrimTrailing, u"\r\na"},
                                               {u" \t\r\n", String::TrimBoth, u""}}) {
        String trimmed(text);
        trimmed.trim(type);
        EXPECT_EQ(trimmed, expected) << test::readable(text);
    }
    String dashes(u"--a-b--");
    dashes.trim(u'-', String::TrimTrailing);
    EXPECT_EQ(dashes, u"--a-b");
    String set(u"xyabxy");
    set.trim(u"xy", 1, String::TrimBoth); // the length is not looked at
    EXPECT_EQ(set, u"ab");

    using Region = std::tuple<std::int32_t, std::int32_t, const char16_t*>;
    for (const auto& [start, end, expected] :
         {Region{1, 3, u"bc"}, {3, 1, u""}, {-1, 2, u"ab"}, {0, 99, u"abcd"}}) {
        EXPECT_EQ(String(u"abcd").substring(start, end), expected) << start << ".." << end;
    }
}

TEST(String, speaksOfLengthsWithoutTheTerminator)
{
    String text(u"abc");
    util::ICharBuffer& buffer = text;
    EXPECT_EQ(buffer.GetLength(), 3);
    EXPECT_EQ(buffer.IsWritable(), 1);

    char16_t* data = nullptr;
    ASSERT_EQ(buffer.GetWriteLock(10, &data), S_OK);
    std::copy_n(u"0123456789", 10, data);
    ASSERT_EQ(buffer.EnsureCapacity(200, &data), S_OK);
    std::fill_n(data + 10, 190, u'x');
    ASSERT_EQ(buffer.ReleaseWriteLock(200), S_OK);
    EXPECT_EQ(text, String(u"0123456789").append(u'x', 190)) << "growing keeps what was written";

    data = text.getWriteLock(0);
    data[4] = u'\0';
    text.releaseWriteLock(-1);
    EXPECT_EQ(text, u"0123") << "-1 measures";

    // A wrapped String counts its text as if the last unit were the terminator.
    EXPECT_EQ(String(AcquireMode::AcquireAddRef, new String(u"abc")), u"ab");
}

TEST(String, locksTheBufferItWraps)
{
    test::ForeignCharBuffer buffer(u"abc\0"sv);
    {
        String text(AcquireMode::AcquireAddRef, &buffer);
        buffer.Release(); // the String's count is the only one now
        EXPECT_EQ(text.getLength(), 3);
        EXPECT_EQ(text[1], u'b');
        EXPECT_TRUE(text.equals(u"ABC", true));
        EXPECT_EQ(buffer.readLocks, 2);
        text.append(u"defghijklmnopqrstuvwxyz");
        EXPECT_EQ(text.replace(1, 2, text, 20), u"auvwxyzdefghijklmnopqrstuvwxyz");
        text.resize(3, u' ');
        EXPECT_EQ(buffer.text(), u"auv\0"sv) << "alone with the buffer, it writes there";
        EXPECT_GT(buffer.writeLocks, 0);

        const int writes = buffer.writeLocks;
        String copy(text);
        copy.append(text);
        EXPECT_EQ(copy, u"auvauv");
        EXPECT_EQ(buffer.writeLocks, writes) << "sharing it, it copies";

        buffer.failWith = E_ALREADY_EXISTS;
        try {
            (void)copy.indexOf(text);
            FAIL() << "the lock failed";
        } catch (const ResultException& failure) {
            EXPECT_EQ(failure.getResult(), E_ALREADY_EXISTS);
        }
        buffer.failWith = S_OK;
        EXPECT_EQ(text, u"auv");
        buffer.AddRef();
    }
    EXPECT_EQ(buffer.count(), 1u);
    EXPECT_EQ(buffer.openLocks(), 0);
}

/// A random edit of a String and of the model that judges it.
class Edits {
public:
    explicit Edits(unsigned seed) : m_random(seed) {}

    void run(int count)
    {
        String text;
        std::u16string model;
        String shared;
        for (int i = 0; i < count; ++i) {
            const std::u16string before = model;
            edit(text, model);
            ASSERT_EQ(units(text), model) << "edit " << i;
            ASSERT_EQ(text.getData()[text.getLength()], u'\0');
            if (below(4) == 0) shared.setAddRef(text);
            if (shared.getData() == text.getData()) m_shared = model;
            ASSERT_EQ(units(shared), m_shared) << "a sharer saw edit " << i;
        }
    }

private:
    std::size_t below(std::size_t bound) { return m_random() % bound; }

    void edit(String& text, std::u16string& model)
    {
        if (model.size() > 600) model.clear(), text.clear();
        const std::size_t start = below(model.size() + 1);
        const std::size_t count = below(model.size() - start + 1);
        const auto first = static_cast<std::int32_t>(start);
        const auto length = static_cast<std::int32_t>(count);
        const std::u16string with(below(30), static_cast<char16_t>(u'a' + below(26)));
        switch (below(7)) {
        case 0:
            text.replace(first, length, with.data(), static_cast<std::int32_t>(with.size()));
            model.replace(start, count, with);
            break;
        case 1:
            text.replace(first, length, u'\0', 3);
            model.replace(start, count, 3, u'\0');
            break;
        case 2: { // its own units are the source
            const std::u16string own = model.substr(start, count);
            const std::size_t to = below(model.size() + 1);
            const std::size_t gone = below(std::min<std::size_t>(model.size() - to, 20) + 1);
            text.replace(static_cast<std::int32_t>(to), static_cast<std::int32_t>(gone),
                         text.getData() + start, length);
            model.replace(to, gone, own);
            break;
        }
        case 3:
            text.append(u'z');
            model += u'z';
            break;
        case 4:
            text.insert(first, text);
            model.insert(start, std::u16string(model));
            break;
        case 5:
            text.setTo(text.getData() + start, length);
            model = model.substr(start, count);
            break;
        default:
            text.setTo(text.substring(first, first + length));
            model = model.substr(start, count);
        }
    }

    std::mt19937 m_random;
    std::u16string m_shared;
};

TEST(String, editsAsAPlainTextDoes)
{
    for (unsigned seed = 1; seed <= 20; ++seed) Edits(seed).run(300);
}

TEST(String, twoThreadsMayShareABuffer)
{
    for (int round = 0; round < 200; ++round) {
        String first(u"shared text of two threads");
        String second(first);
        const auto work = [](String& text, char16_t mark) {
            const String another(text);
            text.setCharAt(0, mark);
            text.append(mark);
            EXPECT_EQ(another, u"shared text of two threads");
        };
        std::thread other([&] { work(second, u'2'); });
        work(first, u'1');
        other.join();
        EXPECT_EQ(first, u"1hared text of two threads1");
        EXPECT_EQ(second, u"2hared text of two threads2");
    }
}

} // namespace
} // namespace orv
