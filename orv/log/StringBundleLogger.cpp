#include "orv/log/StringBundleLogger.h"

#include "orv/Failure.h"
#include "orv/String.h"
#include "orv/collections/List.h"
#include "orv/i18n/StringBundle.h"

#include <map>

namespace orv::log {

namespace {

using Arguments = collections::List<Object>;

String placeholder(std::int32_t number)
{
    return u"{" + String::valueOf(number) + u"}";
}

/// Finds the placeholders: their numbers by place. False where one asks for an argument that is
/// not there.
bool findPlaceholders(const String& pattern, std::int32_t argumentCount,
                      std::map<std::int32_t, std::int32_t>& out)
{
    for (std::int32_t number = 0;; ++number) {
        const String token = placeholder(number);
        std::int32_t place = pattern.indexOf(token);
        if (place < 0) return true;
        if (number >= argumentCount) return false;
        for (; place >= 0; place = pattern.indexOf(token, place + token.getLength())) {
            out.emplace(place, number);
        }
    }
}

String formatted(const String& pattern, Arguments& arguments)
{
    std::map<std::int32_t, std::int32_t> places;
    if (!findPlaceholders(pattern, arguments.getSize(), places)) return pattern;
    String text(pattern);
    std::int32_t start = 0;
    for (const auto& [place, number] : places) {
        const Reference<Object> argument = arguments.get(number);
        if (!argument) throwResult(E_POINTER);
        const String token = placeholder(number);
        const String value = argument->toString();
        const std::int32_t found = text.indexOf(token, start);
        text.replace(found, token.getLength(), value);
        start = found + value.getLength();
    }
    return text;
}

} // namespace

// Looking up changes no bundle.
StringBundleLogger::StringBundleLogger(const i18n::StringBundle* bundle, ILevelLogger* target)
    : m_target(target), m_bundle(const_cast<i18n::StringBundle*>(bundle))
{
    if (bundle == nullptr || target == nullptr) throwResult(E_POINTER);
}

StringBundleLogger::~StringBundleLogger() noexcept(false) = default;

void StringBundleLogger::log(std::int32_t level, const String& key, const Arguments& arguments)
{
    String text(key);
    static_cast<void>(resultOf([&] {
        text.setAddRef(m_bundle->getString(key));
        // Reading a list is no const operation, but changes nothing.
        text.setAddRef(formatted(text, const_cast<Arguments&>(arguments)));
    }));
    m_target->log(level, text);
}

void StringBundleLogger::log(std::int32_t level, const String& key)
{
    String text(key);
    static_cast<void>(resultOf([&] { text.setAddRef(m_bundle->getString(key)); }));
    m_target->log(level, text);
}

} // namespace orv::log
