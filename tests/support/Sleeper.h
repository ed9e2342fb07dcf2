#pragma once

#include "platform/threads.h"
#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <thread>

namespace orv::test {

/// Starts a thread that is asleep in `body` on return.
template <class Body>
std::jthread sleeperIn(Body body)
{
    std::atomic<std::uint32_t> id{0};
    std::jthread thread([&id, body] {
        id = orvcore::currentThreadId();
        body();
    });
    EXPECT_TRUE(awaitTrue([&] { return id != 0; }) && awaitSleepOf(id));
    return thread;
}

} // namespace orv::test
