#include "orv/util/IniFile.h"

#include "orv/internal/UnitScan.h"
#include "orv/util/IniFileException.h"
#include "orv/util/internal/IniFileOperation.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>

namespace orv::util {

namespace {

std::u16string_view viewOf(const char16_t* text)
{
    if (text == nullptr) return {};
    return {text, static_cast<std::size_t>(ORVStrLenW(text))};
}

String textOf(std::u16string_view text)
{
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

} // namespace

/// The order as far as both names reach.
std::int32_t IniFile::NameOrder::compare(std::u16string_view a, std::u16string_view b)
{
    const auto common = static_cast<std::int32_t>(std::min(a.size(), b.size()));
    return ::orv::internal::orderOfFoldedUnits(a.data(), b.data(), common);
}

/// Finds the values by a hash of both names, for objects that are asked again and again: the
/// ordered maps take some fifteen steps through as many corners of memory, this takes one or two.
class IniFile::Index {
public:
    explicit Index(const Sets& sets)
    {
        std::size_t count = 0;
        for (const auto& set : sets) count += set.second.size();
        m_slots.resize(std::bit_ceil(2 * count + 1));
        for (const auto& set : sets) {
            const std::uint32_t seed = hashOf(NameOrder::view(set.first), 0);
            for (const auto& key : set.second) {
                put({&set.first, &key, hashOf(NameOrder::view(key.first), seed)});
            }
        }
    }

    /// False where too many names have one hash; then the index has not all.
    bool isComplete() const noexcept { return m_complete; }

    const String* find(std::u16string_view setName, std::u16string_view keyName) const
    {
        const std::uint32_t hash = hashOf(keyName, hashOf(setName, 0));
        for (std::size_t at = hash & mask();; at = (at + 1) & mask()) {
            const Slot& slot = m_slots[at];
            if (slot.key == nullptr) return nullptr;
            if (slot.hash != hash) continue;
            if (!NameOrder::isSame(NameOrder::view(slot.key->first), keyName)) continue;
            if (NameOrder::isSame(NameOrder::view(*slot.set), setName)) return &slot.key->second;
        }
    }

private:
    struct Slot {
        const String* set = nullptr;
        const Keys::value_type* key = nullptr;
        std::uint32_t hash = 0;
    };

    static constexpr int LONGEST_WAY = 64;

    static std::uint32_t hashOf(std::u16string_view name, std::uint32_t seed)
    {
        const auto length = static_cast<std::int32_t>(name.size());
        const std::uint32_t own = ::orv::internal::hashOfFoldedUnits({name.data(), length});
        const std::uint32_t joined = (seed ^ own) * 0x9E3779B1u;
        return joined ^ joined >> 15;
    }

    std::size_t mask() const noexcept { return m_slots.size() - 1; }

    void put(const Slot& slot)
    {
        std::size_t at = slot.hash & mask();
        for (int way = 0; m_complete && m_slots[at].key != nullptr; ++way) {
            at = (at + 1) & mask();
            m_complete = way < LONGEST_WAY;
        }
        if (m_complete) m_slots[at] = slot;
    }

    std::vector<Slot> m_slots; ///< at least half of them free
    bool m_complete = true;
};

IniFile::IniFile(const char16_t* fileName, const char* semaphoreName, std::int16_t mustExist)
    : m_fileName(textOf(viewOf(fileName)))
{
    if (semaphoreName != nullptr) m_semaphore = makeReference<ipc::Semaphore>(semaphoreName, 1u);
    const Hold hold(m_semaphore.get());
    if (load() == -1 && mustExist != 0) {
        throw IniFileException(IniFileException::TYPE_LOAD_FAILED, m_fileName);
    }
}

IniFile::IniFile(const IniFile& other)
    : Object(other), m_semaphore(other.m_semaphore), m_fileName(other.m_fileName),
      m_sets(other.m_sets), m_lastModified(other.m_lastModified)
{
}

IniFile& IniFile::operator=(const IniFile& other)
{
    if (this == &other) return *this;
    dropIndex();
    m_semaphore = other.m_semaphore;
    m_fileName = other.m_fileName;
    m_sets = other.m_sets;
    m_lastModified = other.m_lastModified;
    return *this;
}

IniFile::~IniFile() noexcept(false) = default;

Result IniFile::AddKey(const char16_t* setName, const char16_t* keyName, const char16_t* value,
                       bool overwrite)
{
    const Operation operation(*this);
    const std::u16string_view set = viewOf(setName);
    const std::u16string_view key = viewOf(keyName);
    if (!overwrite && KeyExists(set, key)) return E_ALREADY_EXISTS;

    const String newValue = textOf(viewOf(value));
    auto place = m_sets.find(set);
    if (place == m_sets.end()) place = m_sets.try_emplace(textOf(set)).first;
    Keys& keys = place->second;
    const auto existing = keys.find(key);
    if (existing != keys.end()) {
        existing->second.setAddRef(newValue);
    } else {
        dropIndex();
        keys.try_emplace(textOf(key), newValue);
    }
    WriteToFile(nullptr);
    return S_OK;
}

Result IniFile::DeleteKey(const char16_t* setName, const char16_t* keyName)
{
    const Operation operation(*this);
    const std::u16string_view key = viewOf(keyName);
    if (!KeyExists(viewOf(setName), key)) return E_NOT_FOUND;
    Keys& keys = m_sets.find(viewOf(setName))->second;
    dropIndex();
    keys.erase(keys.find(key));
    WriteToFile(nullptr);
    return S_OK;
}

Result IniFile::DeleteSet(const char16_t* setName)
{
    const Operation operation(*this);
    dropIndex();
    internalDeleteSet(textOf(viewOf(setName)));
    WriteToFile(nullptr);
    return S_OK;
}

Result IniFile::GetValue(const char16_t* setName, const char16_t* keyName, char16_t* buffer,
                         std::uint64_t bufferSize)
{
    const Operation operation(*this);
    const String* const value = findValue(viewOf(setName), viewOf(keyName));
    if (value == nullptr) return E_NOT_FOUND;
    const std::uint64_t needed = static_cast<std::uint64_t>(value->getLength()) + 1;
    const std::uint64_t count = std::min(needed, bufferSize);
    if (count > 0) ORVStrNCpyW(buffer, value->getData(), static_cast<std::int32_t>(count));
    return needed > bufferSize ? E_BUFFER_TOO_SMALL : S_OK;
}

/// Null where there is no such key.
const String* IniFile::findValue(std::u16string_view setName, std::u16string_view keyName)
{
    if (m_index != nullptr) return m_index->find(setName, keyName);
    // The second search in the same keys shows that more may come.
    if (m_searches < 2 && ++m_searches == 2) {
        auto index = std::make_unique<Index>(m_sets);
        if (index->isComplete()) m_index = std::move(index);
    }
    const auto set = m_sets.find(setName);
    if (set == m_sets.end()) return nullptr;
    const auto key = set->second.find(keyName);
    return key == set->second.end() ? nullptr : &key->second;
}

/// To be called before any name comes or goes.
void IniFile::dropIndex()
{
    m_index.reset();
    m_searches = 0;
}

bool IniFile::KeyExists(std::u16string_view setName, std::u16string_view keyName)
{
    return findValue(setName, keyName) != nullptr;
}

bool IniFile::SetExists(const String& setName) const
{
    return m_sets.count(setName) != 0 || !ListSubsets(setName).empty();
}

std::vector<String> IniFile::ListSets() const
{
    std::vector<String> names;
    for (const auto& set : m_sets) names.push_back(set.first);
    return names;
}

std::vector<String> IniFile::ListKeys(const String& setName) const
{
    std::vector<String> names;
    const auto set = m_sets.find(setName);
    if (set == m_sets.end()) return names;
    for (const auto& key : set->second) names.push_back(key.first);
    return names;
}

/// Whether a set counts as one below another, whose name and a backslash are `prefix`. The region
/// has a unit less than the prefix, so none ever does: each set stands for itself.
bool IniFile::isBelow(const String& setName, const String& prefix)
{
    const std::int32_t length = prefix.getLength();
    return (setName + u"\\").regionCompare(0, length - 1, prefix.getData(), length, 0, false) == 0;
}

std::vector<String> IniFile::ListSubsets(const String& setName) const
{
    const String prefix = setName + u"\\";
    std::vector<String> names;
    for (const auto& set : m_sets) {
        if (isBelow(set.first, prefix)) names.push_back(set.first);
    }
    return names;
}

void IniFile::internalDeleteSet(const String& setName)
{
    m_sets.erase(setName);
    for (const String& subset : ListSubsets(setName)) internalDeleteSet(subset);
}

} // namespace orv::util
