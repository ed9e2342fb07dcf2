#pragma once

#include "orv/String.h"

#include <cstdint>

namespace orv::util {

/// Folds ".", ".." and repeated separators out of a path, without a look at the file system.
///
/// `a\\b` and `a\.\b` give `a\b`, `a\b\..\c` gives `a\c`; ".." at the start stays, and so does a
/// separator at the end. Both slashes separate; the result has the kind chosen.
///
/// A ".." that takes the last name away also takes the separator before it, so `\a\..\b` gives the
/// relative `b`. Expand a path with ORVPathExpand() first where that matters.
///
/// Threads: one at a time.
class ORV_API PathNormalizer : public Object {
public:
    /// The separator of the result.
    enum SLASH_TYPE : std::int32_t {
        SLASH_BACK = 0,
        SLASH_FORWARD = 1,
        SLASH_NATIVE = 2, ///< the backslash
    };

    /// Throws Exception "Invalid slash type specified." for any other number.
    explicit PathNormalizer(SLASH_TYPE type);
    ~PathNormalizer() noexcept(false) override;

    /// Chooses the separator; throws as the constructor does, leaving the former one.
    void setSlashType(SLASH_TYPE type);

    /// The normal form of `path`.
    String normalize(const String& path);

private:
    void step(std::int32_t kind);
    std::int32_t transition(std::int32_t next);
    void cutToSeparator(bool keepSeparator);

    char16_t m_separator = u'\\';
    std::int32_t m_state = 0;
    String m_input;
    String m_output;
};

} // namespace orv::util
