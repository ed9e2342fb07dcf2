#pragma once

#include "orv/util/IniFile.h"
#include "orv/util/IniFileIterators.h"

#include "tests/support/SharedNames.h"
#include "tests/support/Text.h"

#include <optional>
#include <string>

namespace orv::test {

/// A value of up to 600 units, none where there is no such key.
inline std::optional<std::u16string> lookUp(util::IniFile& file, const char16_t* set,
                                            const char16_t* key)
{
    char16_t value[600];
    if (file.GetValue(set, key, value, 600) != S_OK) return std::nullopt;
    return value;
}

inline std::optional<std::u16string> lookUp(util::IniFile&& file, const char16_t* set,
                                            const char16_t* key)
{
    return lookUp(file, set, key);
}

/// All that is in the file: "[set]key=value;key=value;[set]...", readable.
inline std::string contentOf(util::IniFile& file)
{
    std::string text;
    for (util::IniFileSetIterator sets(file, u""); sets.hasNext();) {
        const String set = sets.next();
        text += "[" + readable(units(set)) + "]";
        for (util::IniFileKeyIterator keys(file, set.getData()); keys.hasNext();) {
            const String key = keys.next();
            const auto value = lookUp(file, set.getData(), key.getData());
            text += readable(units(key)) + "=" + (value ? readable(*value) : "(none)") + ";";
        }
    }
    return text;
}

} // namespace orv::test
