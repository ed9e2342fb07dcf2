#pragma once

#include "orv/i18n/IORVLocale.h"

#include <cstdint>

namespace orv::i18n {

/// Texts by key in one language, as they are known across the binary interface. A component
/// implements it to bring texts along.
///
/// Each operation returns a result, negative for failure.
class ORV_API IORVResourceBundle : public IORVUnknown {
public:
    /// {0861D18E-197F-4E3A-A03F-7CD02F9A5C75}
    static constexpr GUID IID{
        0x0861D18E, 0x197F, 0x4E3A, {0xA0, 0x3F, 0x7C, 0xD0, 0x2F, 0x9A, 0x5C, 0x75}};

    /// Fills `text` with the text of `key`.
    virtual Result LoadCharBuffer(const char16_t* key, util::ICharBuffer* text) const = 0;

    /// Copies the text of `key` into `*length` units at `buffer`. A text of that many units or more
    /// is cut and not terminated. `*length` receives the units written, the terminator among them.
    virtual Result LoadStringW(const char16_t* key, char16_t* buffer,
                               std::uint32_t* length) const = 0;

    /// Stores the number of texts.
    virtual Result GetCount(std::int32_t* count) const = 0;

    /// Fills `key` with the key at `index`, and `text` with its text unless it is null.
    virtual Result GetResource(std::int32_t index, util::ICharBuffer* key,
                               util::ICharBuffer* text) const = 0;

    /// Stores the locale of the texts, with a count taken.
    virtual Result GetLocale(IORVLocale** locale) const = 0;

protected:
    ~IORVResourceBundle() = default;
};

} // namespace orv::i18n
