#pragma once

#include "orv/ComObject.h"
#include "orv/Reference.h"
#include "orv/String.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace orv::components::textbundle {

/// The texts of a message catalogue, by key; docs/message-catalogues.md tells the form.
///
/// Threads: a catalogue never changes, so any number may read it.
class Catalogue : public ComObject {
public:
    /// A key and its text, valid as long as the catalogue.
    struct Entry {
        std::u16string_view key, text;
    };
    /// Told of each line that gives no text: its number, counted from 1, and what is wrong.
    using TellBroken = std::function<void(std::int32_t line, const char16_t* reason)>;

    /// Larger files are refused, in bytes.
    static constexpr std::int32_t MOST_BYTES = 1 << 28;

    /// The catalogue in the file at `path`. Throws ResultException with the code of the system, and
    /// with 0x800700DF for a file above MOST_BYTES.
    static Reference<const Catalogue> read(const String& path, const TellBroken& tell);

    /// The catalogue of these bytes, at most MOST_BYTES of them. Broken lines are left out.
    Catalogue(std::string_view bytes, const TellBroken& tell);
    Catalogue(const Catalogue&) = delete;
    Catalogue& operator=(const Catalogue&) = delete;
    ~Catalogue() noexcept(false) override;

    /// The entry of `key`, null where there is none.
    const Entry* find(std::u16string_view key) const noexcept;

    /// All entries, in the order of their lines.
    const std::vector<Entry>& entries() const noexcept { return m_entries; }

private:
    class Parser;

    std::size_t slotOf(std::u16string_view key) const noexcept;
    bool add(const Entry& entry);
    void growSlots();

    std::unique_ptr<char16_t[]> m_units; ///< what the entries are views of
    std::vector<Entry> m_entries;
    /// Numbers of entries plus 1, by the hash of the key, and 0 for a free place: at least two
    /// places for each entry, in a power of two.
    std::vector<std::uint32_t> m_slots;
};

} // namespace orv::components::textbundle
