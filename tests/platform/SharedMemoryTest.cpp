#include "platform/orvcore.h"

#include "tests/support/Processes.h"
#include "tests/support/SharedNames.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace {

using orv::test::awaitTrue;
using orv::test::filesOf;
using orv::test::ForkedChild;
using orv::test::uniqueName;

constexpr std::uint32_t create = 0x100;
constexpr std::uint32_t readAndWrite = 0xC0000000;
constexpr ORVResult absent = ORVMakeResult(0x80070002u);

class Memory {
public:
    Memory(const std::string& name, std::uint32_t size, std::uint32_t flags = create)
        : m_opened(ORVSharedMemOpen(name.c_str(), flags, 0600, size, &m_handle))
    {
        void* base = nullptr;
        if (m_opened >= 0) {
            EXPECT_EQ(ORVSharedMemAttach(m_handle, readAndWrite, &base), S_OK);
        }
        m_bytes = static_cast<char*>(base);
    }
    ~Memory()
    {
        if (m_bytes != nullptr) {
            EXPECT_EQ(ORVSharedMemDetach(m_bytes), S_OK);
        }
        if (m_handle != ORV_NO_HANDLE) {
            EXPECT_EQ(ORVSharedMemClose(m_handle), S_OK);
        }
    }
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;

    ORVResult opened() const { return m_opened; }
    char* bytes() const { return m_bytes; }

private:
    ORVHandle m_handle = ORV_NO_HANDLE;
    ORVResult m_opened;
    char* m_bytes = nullptr;
};

TEST(SharedMemory, isRefusedWhereItIsAbsentOrTooSmall)
{
    const std::string name = uniqueName();
    EXPECT_EQ(Memory(name, 10, 0).opened(), absent);
    EXPECT_EQ(Memory(name, 0).opened(), E_INVALIDARG);
    {
        const Memory memory(name, 10);
        EXPECT_EQ(Memory(name, 11).opened(), E_INVALIDARG);
        EXPECT_EQ(Memory(name, 5, 0).opened(), S_OK);
    }
    EXPECT_EQ(filesOf(name), 0);
    EXPECT_EQ(Memory(name, 10, 0).opened(), absent);
}

TEST(SharedMemory, ofAKilledProcessIsMadeAnew)
{
    const std::string name = uniqueName();
    {
        const orv::test::SharedPage<std::atomic<int>> step;
        ForkedChild child([&] {
            const Memory own(name, 100);
            own.bytes()[0] = 'o';
            *step = 1;
            for (;;) ::pause();
            return 0;
        });
        EXPECT_TRUE(awaitTrue([&] { return *step == 1; }));
    }
    EXPECT_EQ(Memory(name, 100, 0).opened(), absent);
    const Memory memory(name, 200);
    ASSERT_EQ(memory.opened(), S_OK);
    EXPECT_EQ(memory.bytes()[0], 0);
}

} // namespace
