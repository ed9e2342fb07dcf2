#pragma once

#include "orv/String.h"
#include "orv/collections/Set.h"

#include <cstdint>

namespace orv::net {

/// A name in the query of a URI: a text that is found without regard to case and keeps its
/// spelling.
///
/// Only the operations of Object are blind to case, those by which collections work; the others of
/// String are not. Keep a key as it is once it was compared or hashed, for its lower case is
/// remembered. Threads: the first comparison writes; compare a key once before sharing it.
class ORV_API QueryKey : public String {
public:
    QueryKey() = default;
    explicit QueryKey(const String& key) : String(key) {}
    /// Copies `length` units; -1 measures.
    explicit QueryKey(const char16_t* key, std::int32_t length = -1) : String(key, length) {}
    QueryKey(const QueryKey& other) : String(other) {}
    QueryKey& operator=(const QueryKey& other);
    ~QueryKey() noexcept(false) override;

    /// The order of this text and that of `other`, case ignored. Throws CastFailedException where
    /// `other` is no String.
    std::int32_t compareTo(const Object& other) const override;
    /// Whether `other` is a String of the same text, case ignored.
    bool equals(const Object& other) const override;
    /// The hash of the lower case.
    std::uint32_t hashCode() const override;

private:
    const String& lowerCase() const;

    mutable String m_lowerCase; ///< empty until it is asked for
};

} // namespace orv::net

namespace orv::collections {

extern template class ConstIterator<net::QueryKey>;
extern template class Iterator<net::QueryKey>;
extern template class Collection<net::QueryKey>;
extern template class Set<net::QueryKey>;

} // namespace orv::collections
