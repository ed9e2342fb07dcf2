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
using test::filesOf;
using test::ForkedChild;
using test::SharedPage;
using test::uniqueName;

template <class Body>
void onAnotherThread(Body body)
{
    std::thread(body).join();
}

TEST(IpcSemaphore, isSharedByItsName)
{
    const std::string name = uniqueName();
    {
        Semaphore semaphore(name.c_str(), 1);
        ForkedChild child([&] {
            Semaphore own(name.c_str(), 5);
            if (own.getValue() != 1 || !own.tryWait() || own.tryWait()) return 1;
            own.signal();
            own.signal();
            return 0;
        });
        EXPECT_EQ(child.exitCode(), 0);
        EXPECT_EQ(semaphore.getValue(), 2);
        semaphore.wait();
        EXPECT_EQ(semaphore.getValue(), 1);
    }
    EXPECT_EQ(filesOf(name), 0);
}

TEST(SemaphoreR, givesTheCountBackAtTheLastSignal)
{
    const std::string name = uniqueName();
    SemaphoreR semaphore(name.c_str(), 1);
    semaphore.wait();
    semaphore.wait();
    EXPECT_TRUE(semaphore.tryWait());
    for (int holds = 3; holds > 0; --holds) {
        EXPECT_EQ(semaphore.getValue(), 0) << holds;
        semaphore.signal();
    }
    EXPECT_EQ(semaphore.getValue(), 1);
    semaphore.signal();
    EXPECT_EQ(semaphore.getValue(), 1) << "nobody holds it";
}

TEST(SemaphoreR, mindsItsHolderAlone)
{
    const std::string name = uniqueName();
    SemaphoreR semaphore(name.c_str(), 1);
    semaphore.wait();
    onAnotherThread([&] {
        EXPECT_FALSE(semaphore.tryWait());
        semaphore.signal();
    });
    EXPECT_EQ(semaphore.getValue(), 0);
    semaphore.signal();
    onAnotherThread([&] {
        EXPECT_TRUE(semaphore.tryWait());
        semaphore.signal();
    });
    EXPECT_EQ(semaphore.getValue(), 1);
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
