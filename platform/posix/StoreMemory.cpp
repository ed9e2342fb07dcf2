#include "platform/posix/internal/StoreMemory.h"

#include "platform/posix/internal/Results.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <new>

#include <sqlite3.h>

namespace orvcore {
namespace {

constexpr std::uint32_t indexVersion = 3'007'000;

/// Whether the file says that it is used with a log; asking for the index would make one otherwise.
bool hasLog(sqlite3_file* file) noexcept
{
    constexpr sqlite3_int64 formatOffset = 18;
    unsigned char format[2] = {};
    return file->pMethods->xRead(file, format, sizeof format, formatOffset) == SQLITE_OK &&
           format[0] == 2 && format[1] == 2;
}

} // namespace

StoreMemory::~StoreMemory()
{
    deallocateRaw(m_slots);
}

void StoreMemory::watch(sqlite3* database) noexcept
{
    constexpr int indexPage = 32 * 1024;
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database, nullptr, SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file));
    if (file == nullptr || file->pMethods == nullptr || file->pMethods->iVersion < 2) return;
    void volatile* index = nullptr;
    if (!hasLog(file) || file->pMethods->xShmMap(file, 0, indexPage, 0, &index) != SQLITE_OK)
        return;
    m_index = static_cast<const volatile std::uint32_t*>(index);
}

/// False, and nothing is known any more, when the header differs from the one noted, which is then
/// the new one; also while it is being written, which makes its two copies differ.
bool StoreMemory::isUnchanged() noexcept
{
    std::uint32_t first[headerWords];
    std::uint32_t second[headerWords];
    // The first copy is read as a whole before the second, which its writers fill first.
    for (std::size_t i = 0; i < headerWords; ++i) {
        first[i] = __atomic_load_n(m_index + i, __ATOMIC_ACQUIRE);
    }
    std::copy_n(m_index + headerWords, headerWords, second);
    const bool isWhole =
        first[0] == indexVersion && std::equal(std::begin(first), std::end(first), second);
    if (isWhole && std::equal(std::begin(first), std::end(first), m_header)) return true;
    forget();
    if (isWhole) {
        std::copy(std::begin(first), std::end(first), m_header);
    } else {
        m_header[0] = 0;
    }
    return false;
}

void StoreMemory::forget() noexcept
{
    m_entries.clear();
    if (++m_age != 0) return;
    if (m_slots != nullptr) std::fill_n(m_slots, slotCount, Slot{});
    m_age = 1;
}

std::size_t StoreMemory::slotOf(std::string_view key, std::string_view name) noexcept
{
    const std::hash<std::string_view> hash;
    return (hash(key) * 31 + hash(name)) % slotCount;
}

bool StoreMemory::find(std::string_view key, std::string_view name, StoredValue* out) noexcept
{
    if (m_index == nullptr || !isUnchanged() || m_slots == nullptr) return false;
    const Slot slot = m_slots[slotOf(key, name)];
    if (slot.age != m_age) return false;
    const std::string_view entry = m_entries.view().substr(slot.offset);
    Head head;
    std::memcpy(&head, entry.data(), sizeof head);
    const std::string_view bytes = entry.substr(sizeof head);
    if (bytes.substr(0, head.keySize) != key) return false;
    if (bytes.substr(head.keySize, head.nameSize) != name) return false;
    *out = {head.isThere, head.type, bytes.substr(head.keySize + head.nameSize, head.valueSize)};
    return true;
}

void StoreMemory::add(std::string_view key, std::string_view name,
                      const StoredValue& value) noexcept
{
    const std::size_t size = key.size() + name.size() + value.bytes.size();
    if (m_header[0] == 0 || size > largestValue) return;
    if (m_slots == nullptr) {
        void* const memory = allocateRaw(slotCount * sizeof(Slot));
        if (memory == nullptr) return;
        m_slots = static_cast<Slot*>(memory);
        std::uninitialized_fill_n(m_slots, slotCount, Slot{});
    }
    if (m_entries.view().size() + sizeof(Head) + size > mostBytes) forget();
    const auto offset = static_cast<std::uint32_t>(m_entries.view().size());
    const auto narrow = [](std::size_t count) { return static_cast<std::uint32_t>(count); };
    const Head head{narrow(key.size()), narrow(name.size()), narrow(value.bytes.size()), value.type,
                    value.isThere};
    m_entries.append(&head, sizeof head);
    for (const std::string_view part : {key, name, value.bytes}) m_entries.append(part);
    if (!m_entries.failed()) m_slots[slotOf(key, name)] = {m_age, offset};
}

} // namespace orvcore
