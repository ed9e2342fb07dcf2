#include "orv/text/charset/EncInfo.h"

#include "orv/Str1Family.h"
#include "orv/Str1HashMap.h"
#include "orv/text/charset/internal/CodecTables.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace orv::text::charset {

namespace {

constexpr std::int32_t CAPACITY = 101;
constexpr float LOAD_FACTOR = 0.75F;
constexpr std::int32_t LONGEST_NUMBER = 34; ///< units of ORVLToStrW(), with the terminator

/// Room for a key that is only looked up.
using LookupKey = Str1Fixed<128>;

void toKey(Str1& key, const char16_t* name)
{
    key = name;
    key.toUpper();
}

void toKey(Str1& key, std::uint32_t codePage)
{
    char16_t digits[LONGEST_NUMBER];
    ORVLToStrW(static_cast<std::int32_t>(codePage), digits, 10);
    key = digits;
}

/// The records of the encodings that have a code page, found by name, alias and number.
class EncInfoTable {
public:
    EncInfoTable()
    {
        for (const internal::CodecRow& row : internal::builtInCodecs()) addRecord(row);
        for (const internal::CodecRow& row : internal::externalCodecs()) addRecord(row);
        for (const EncInfo& record : m_records) addKeys(record);
        for (const internal::CodecRow& row : internal::builtInCodecs()) addAliases(row);
        for (const internal::CodecRow& row : internal::externalCodecs()) addAliases(row);
    }

    const std::vector<EncInfo>& records() const noexcept { return m_records; }

    const EncInfo* find(const Str1& key) const
    {
        void* record = nullptr;
        m_byKey.get(key, record);
        return static_cast<const EncInfo*>(record);
    }

private:
    void addRecord(const internal::CodecRow& row)
    {
        if (row.codePage != 0) m_records.push_back({row.name, row.codePage, 0});
    }

    template <class Name>
    void addKey(Name name, const EncInfo& record)
    {
        Str1 key;
        toKey(key, name);
        m_byKey.put(key, const_cast<EncInfo*>(&record), nullptr);
    }

    void addKeys(const EncInfo& record)
    {
        addKey(record.name, record);
        addKey(record.codePage, record);
    }

    void addAliases(const internal::CodecRow& row)
    {
        LookupKey name;
        toKey(name, row.name);
        const EncInfo* const record = find(name);
        if (record == nullptr) return;
        for (const char16_t* const* alias = row.aliases; *alias != nullptr; ++alias) {
            addKey(*alias, *record);
        }
    }

    std::vector<EncInfo> m_records;
    Str1HashMap<void*> m_byKey{CAPACITY, LOAD_FACTOR}; ///< keys are in upper case
};

EncodingInfo infoOf(const internal::CodecRow& row) noexcept
{
    return {row.name, row.codePage, row.encoderClass != nullptr ? 1u : 0u, row.aliases};
}

constinit EncInfoTable* table = nullptr;

template <class Name>
Result lookUp(Name name, EncInfo* out) noexcept
{
    const EncInfo* record = nullptr;
    const Result result = resultOf([&] {
        LookupKey key;
        toKey(key, name);
        if (table != nullptr) record = table->find(key);
    });
    if (failed(result)) return result;
    if (record == nullptr) return E_FAIL;
    *out = *record;
    return S_OK;
}

} // namespace

void internal::buildEncInfo()
{
    if (table == nullptr) table = new EncInfoTable;
}

void internal::freeEncInfo() noexcept
{
    delete table;
    table = nullptr;
}

} // namespace orv::text::charset

using namespace orv::text::charset;

orv::Result ORVEnumerateEncInfo(std::uint32_t* count, EncInfo* out) noexcept
{
    if (count == nullptr || (*count != 0 && out == nullptr)) return E_INVALIDARG;
    const std::uint32_t room = *count;
    *count = table == nullptr ? 0 : static_cast<std::uint32_t>(table->records().size());
    if (room < *count) return orv::E_BUFFER_TOO_SMALL;
    if (table != nullptr) std::copy(table->records().begin(), table->records().end(), out);
    return S_OK;
}

orv::Result ORVGetEncInfoByCodePage(std::uint32_t codePage, EncInfo* out) noexcept
{
    if (out == nullptr) return E_INVALIDARG;
    return lookUp(codePage, out);
}

orv::Result ORVGetEncInfoByName(const char16_t* name, EncInfo* out) noexcept
{
    if (name == nullptr || out == nullptr) return E_INVALIDARG;
    return lookUp(name, out);
}

orv::Result ORVEnumerateEncodings(std::uint32_t* count, EncodingInfo* out) noexcept
{
    if (count == nullptr || (*count != 0 && out == nullptr)) return E_INVALIDARG;
    const std::span<const internal::CodecRow> builtIn = internal::builtInCodecs();
    const std::span<const internal::CodecRow> external = internal::externalCodecs();
    const std::uint32_t room = *count;
    *count = static_cast<std::uint32_t>(builtIn.size() + external.size());
    if (room < *count) return orv::E_BUFFER_TOO_SMALL;
    out = std::transform(builtIn.begin(), builtIn.end(), out, &infoOf);
    std::transform(external.begin(), external.end(), out, &infoOf);
    return S_OK;
}
