#include "orv/ipc/Semaphore.h"

#include "orv/Exception.h"
#include "orv/ipc/SemaphoreR.h"

#include "tests/support/Processes.h"
#include "tests/support/SharedNames.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace orv::ipc {
namespace {

using test::awaitTrue;
using test::ForkedChild;
using test::SharedPage;
using test::uniqueName;

template <class Body>
void onAnotherThread(Body body)
{
    std::thread(body).join();
}

TEST(SemaphoreR, givesItsCountBackAtTheLastSignalOfItsHolder)
{
    const std::string name = uniqueName();
    SemaphoreR semaphore(name.c_str(), 1);
    Semaphore other(name.c_str(), 5); // the count is that of the first
    semaphore.wait();
    semaphore.wait();
    EXPECT_TRUE(semaphore.tryWait());
    for (int holds = 3; holds > 0; --holds) {
        onAnotherThread([&] {
            EXPECT_FALSE(semaphore.tryWait());
            semaphore.signal();
        });
        EXPECT_FALSE(other.tryWait());
        EXPECT_EQ(semaphore.getValue(), 0) << holds;
        semaphore.signal();
    }
    semaphore.signal();
    EXPECT_EQ(other.getValue(), 1) << "nobody holds it";
    onAnotherThread([&] {
        EXPECT_TRUE(semaphore.tryWait());
        semaphore.signal();
    });
    other.wait();
    EXPECT_FALSE(semaphore.tryWait());
    other.signal();
    EXPECT_TRUE(other.tryWait());
}

TEST(SemaphoreR, tellsAHoldThatCameFromADeathAndItsNote)
{
    const std::string name = uniqueName();
    SemaphoreR semaphore(name.c_str(), 1);
    semaphore.wait();
    EXPECT_FALSE(semaphore.isAfterDeath());
    semaphore.signal();
    {
        const SharedPage<std::atomic<int>> step;
        ForkedChild child([&] {
            SemaphoreR own(name.c_str(), 1);
            own.wait();
            own.noteFileSize(12'345'678'901);
            *step = 1;
            for (;;) ::pause();
            return 0;
        });
        EXPECT_TRUE(awaitTrue([&] { return *step == 1; }));
        EXPECT_FALSE(semaphore.tryWait());
    }
    semaphore.wait();
    semaphore.wait();
    EXPECT_TRUE(semaphore.isAfterDeath());
    EXPECT_EQ(semaphore.recallFileSize(), 12'345'678'901);
    semaphore.noteFileSize(-1);
    semaphore.signal();
    semaphore.signal();

    semaphore.wait();
    EXPECT_FALSE(semaphore.isAfterDeath());
    EXPECT_EQ(semaphore.recallFileSize(), -1);
    semaphore.signal();
}

} // namespace
} // namespace orv::ipc
