#pragma once

#include "orv/Object.h"

#include <atomic>

namespace orv::test {

/// An object that knows how many of its kind live: the way to show that nothing leaks or dies
/// twice. Counts from 0 in each test that asks for the difference.
///
///     const int before = Living::count();
///     { Reference<Object> held = makeReference<Living>(7); ... }
///     EXPECT_EQ(Living::count(), before);
class Living : public Object {
public:
    explicit Living(int tag = 0) : m_tag(tag) { ++s_count; }
    Living(const Living& other) : Object(other), m_tag(other.m_tag) { ++s_count; }
    Living& operator=(const Living&) = default;
    ~Living() override { --s_count; }

    /// What the test told it, to tell them apart.
    int tag() const noexcept { return m_tag; }

    /// How many live now.
    static int count() noexcept { return s_count.load(); }

private:
    int m_tag;
    static inline std::atomic<int> s_count{0};
};

} // namespace orv::test
