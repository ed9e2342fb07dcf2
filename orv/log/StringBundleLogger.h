#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/collections/Fwd.h"
#include "orv/log/ILevelLogger.h"

#include <cstdint>

namespace orv::i18n {
class StringBundle;
}

namespace orv::log {

/// Logs the texts of a bundle, by their keys.
///
///     StringBundleLogger log(texts.get(), logger.get());
///     log.log(3, u"user.added", arguments);    // "{0} was added" with the first argument in it
///
/// A key that the bundle does not have is logged as the text itself; nothing that goes wrong with
/// the bundle or the arguments keeps an entry from being logged.
///
/// Threads: as many as the target takes.
class ORV_API StringBundleLogger : public Object {
public:
    /// Takes a count on both. Throws ResultException with E_POINTER for null.
    StringBundleLogger(const i18n::StringBundle* bundle, ILevelLogger* target);
    ~StringBundleLogger() noexcept(false) override;

    /// Logs the text of `key` with each `{0}`, `{1}` ... replaced by the toString() of that
    /// argument. Numbering stops at the first number that does not occur in the text, and what was
    /// put in is not looked at again. Where the text asks for an argument that is not there, or for
    /// one that is null or cannot be printed, it is logged with all its placeholders. What the
    /// target throws goes to the caller.
    virtual void log(std::int32_t level, const String& key,
                     const collections::List<Object>& arguments);
    /// Logs the text of `key` as it stands.
    virtual void log(std::int32_t level, const String& key);

private:
    Reference<ILevelLogger> m_target;
    Reference<i18n::StringBundle> m_bundle;
};

} // namespace orv::log
