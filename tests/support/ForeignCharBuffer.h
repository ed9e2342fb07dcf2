#pragma once

#include "orv/util/ICharBuffer.h"

#include <atomic>
#include <string_view>
#include <vector>

namespace orv::test {

/// A character buffer that is no class of the library: it counts the locks taken on it and fails
/// as it is told. It lives on the stack, with a count of 1 that stands for the test:
///
///     test::ForeignCharBuffer buffer(u"text\0"sv); // a String takes it with its terminator
///     buffer.failWith = E_FAIL;                    // each lock now fails
///     EXPECT_EQ(buffer.openLocks(), 0);            // every bracket was closed
///
/// Releasing the last count destroys nothing.
class ForeignCharBuffer final : public util::IORVCharBuffer {
public:
    explicit ForeignCharBuffer(std::u16string_view content)
        : m_units(content.begin(), content.end()), m_length(content.size())
    {
    }

    /// The units in use.
    std::u16string_view text() const noexcept { return {m_units.data(), m_length}; }

    Result QueryInterface(const GUID& iid, void** out) override
    {
        const bool known = equalGuid(iid, IORVUnknown::IID) || equalGuid(iid, IID);
        *out = known ? static_cast<void*>(this) : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    std::uint32_t AddRef() const override { return ++m_count; }
    std::uint32_t Release() const override { return --m_count; }

    std::int32_t GetLength() const override { return static_cast<std::int32_t>(m_length); }
    const char16_t* GetData() const override { return m_units.data(); }
    Result GetReadLock(const char16_t** data) const override
    {
        *data = nullptr;
        if (failed(failWith)) return failWith;
        ++readLocks;
        ++m_open;
        *data = m_units.data();
        return S_OK;
    }
    Result ReleaseReadLock() const override
    {
        --m_open;
        return S_OK;
    }
    std::int16_t IsWritable() const override { return 1; }
    Result GetWriteLock(std::int32_t capacity, char16_t** data) override
    {
        *data = nullptr;
        if (failed(failWith)) return failWith;
        const Result grown = EnsureCapacity(capacity, data);
        if (failed(grown)) return grown;
        ++writeLocks;
        ++m_open;
        return S_OK;
    }
    Result EnsureCapacity(std::int32_t capacity, char16_t** data) override
    {
        *data = nullptr;
        const auto room = static_cast<std::size_t>(capacity);
        if (m_units.size() < room) {
            if (failed(growFailsWith)) return growFailsWith;
            m_units.resize(room);
        }
        *data = m_units.data();
        return S_OK;
    }
    Result ReleaseWriteLock(std::int32_t length) override
    {
        --m_open;
        if (length >= 0) m_length = static_cast<std::size_t>(length);
        return S_OK;
    }
    Result FreeExtra() override { return S_OK; }

    /// Locks taken and not yet given back.
    int openLocks() const noexcept { return m_open; }
    /// Counts taken, one of them the test's.
    std::uint32_t count() const noexcept { return m_count; }

    Result failWith = S_OK;      ///< given by every lock when it is a failure
    Result growFailsWith = S_OK; ///< given instead of growing when it is a failure
    mutable int readLocks = 0;   ///< taken so far
    int writeLocks = 0;          ///< taken so far

private:
    mutable std::atomic<std::uint32_t> m_count{1};
    mutable int m_open = 0;
    std::vector<char16_t> m_units;
    std::size_t m_length;
};

} // namespace orv::test
