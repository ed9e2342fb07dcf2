#include "orv/util/MTCharBuffer.h"

#include "orv/util/MTByteBuffer.h"
#include "platform/threads.h"

#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace orv::util {
namespace {

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
    const auto read = [&] {
        EXPECT_EQ(*buffer.getReadLock(), u'a');
        buffer.releaseReadLock();
    };
    const auto write = [&] {
        *buffer.getWriteLock(99) = u'a';
        buffer.releaseWriteLock(-1);
    };
    EXPECT_TRUE(buffer.isWritable());
    buffer.getReadLock();
    std::thread(read).join();
    EXPECT_TRUE(waitsFor(write, [&] { buffer.releaseReadLock(); }));
    buffer.getReadLock();
    EXPECT_TRUE(waitsFor([&] { buffer.freeExtra(); }, [&] { buffer.releaseReadLock(); }));
    buffer.getWriteLock(1);
    EXPECT_TRUE(waitsFor(read, [&] { buffer.releaseWriteLock(-1); }));
}

TEST(MTByteBuffer, keepsContentWholeAmongThreads)
{
    MTByteBuffer buffer;
    const auto work = [&](signed char mark) {
        for (int i = 1; i < 2'000; ++i) {
            const std::int32_t length = i % 100;
            std::fill_n(buffer.getWriteLock(length), length, mark);
            buffer.releaseWriteLock(length);
            if (i % 50 == 0) buffer.freeExtra();

            const signed char* const data = buffer.getReadLock();
            const std::int32_t found = buffer.getLength();
            EXPECT_EQ(std::count(data, data + found, found == 0 ? 0 : *data), found);
            buffer.releaseReadLock();
        }
    };
    std::thread first(work, 1), second(work, 2), third(work, 3);
    for (std::thread* thread : {&first, &second, &third}) thread->join();
}

} // namespace
} // namespace orv::util
