#include "orv/util/MTCharBuffer.h"

#include "orv/util/MTByteBuffer.h"
#include "platform/threads.h"

#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <string_view>
#include <thread>

namespace orv::util {
namespace {

std::u16string textOf(const MTCharBuffer& buffer)
{
    const char16_t* const data = buffer.getReadLock();
    std::u16string text(data, static_cast<std::size_t>(buffer.getLength()));
    buffer.releaseReadLock();
    return text;
}

void write(MTCharBuffer& buffer, std::u16string_view text)
{
    const auto length = static_cast<std::int32_t>(text.size());
    std::copy(text.begin(), text.end(), buffer.getWriteLock(length));
    buffer.releaseWriteLock(length);
}

/// Whether `operation` on another thread has to wait until `release` is called here.
template <class Operation, class Release>
bool waitsFor(Operation operation, Release release)
{
    std::atomic<std::uint32_t> id{0};
    std::atomic<bool> done{false};
    std::thread other([&] {
        id = orvcore::currentThreadId();
        operation();
        done = true;
    });
    const bool slept = test::awaitTrue([&] { return id != 0; }) && test::awaitSleepOf(id) && !done;
    release();
    other.join();
    return slept;
}

TEST(MTCharBuffer, readersShareAndWritersWait)
{
    MTCharBuffer buffer(u"abc", 3, 0);
    EXPECT_TRUE(buffer.isWritable());
    buffer.getReadLock();
    std::thread([&] { EXPECT_EQ(textOf(buffer), u"abc"); }).join();
    EXPECT_TRUE(waitsFor([&] { write(buffer, u"longer than the granule of units"); },
                         [&] { buffer.releaseReadLock(); }));

    buffer.getWriteLock(1);
    EXPECT_TRUE(waitsFor([&] { textOf(buffer); }, [&] { buffer.releaseWriteLock(-1); }));
    EXPECT_EQ(textOf(buffer), u"longer than the granule of units");

    buffer.getReadLock();
    EXPECT_TRUE(waitsFor([&] { buffer.freeExtra(); }, [&] { buffer.releaseReadLock(); }));
}

TEST(MTByteBuffer, keepsContentWholeAmongThreads)
{
    MTByteBuffer buffer;
    const auto write = [&](signed char mark) {
        for (int i = 1; i < 2'000; ++i) {
            const std::int32_t length = i % 100;
            std::fill_n(buffer.getWriteLock(length), length, mark);
            buffer.releaseWriteLock(length);
            if (i % 50 == 0) buffer.freeExtra();
        }
    };
    const auto read = [&] {
        for (int i = 0; i < 4'000; ++i) {
            const signed char* const data = buffer.getReadLock();
            const std::int32_t length = buffer.getLength();
            EXPECT_EQ(std::count(data, data + length, length == 0 ? 0 : *data), length);
            buffer.releaseReadLock();
        }
    };
    std::thread threads[] = {std::thread(write, 1), std::thread(write, 2), std::thread(read),
                             std::thread(read)};
    for (std::thread& thread : threads) thread.join();
}

} // namespace
} // namespace orv::util
