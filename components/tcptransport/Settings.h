#pragma once

#include "orv/String.h"
#include "orv/util/PropertySet.h"

#include <cstdint>

namespace orv::components::tcptransport {

/// The names of the properties; README.md tells what each means.
inline constexpr char16_t HOST[] = u"host";
inline constexpr char16_t PORT[] = u"port";
inline constexpr char16_t BACKLOG[] = u"backlog";
inline constexpr char16_t TIMEOUT[] = u"timeout";
inline constexpr char16_t ACCEPT_TIMEOUT[] = u"acceptTimeout";
inline constexpr char16_t LOCAL_PORT[] = u"localPort";

/// What the properties say. All of them are read in the constructor.
struct Settings {
    /// Throws ResultException: E_NOT_FOUND without a port, E_INVALIDARG for a number that is none
    /// or out of its range, and what the set itself reports.
    explicit Settings(const util::PropertySet& properties);

    String host;                    ///< empty for none
    std::uint16_t port = 0;         ///< in host byte order
    std::int32_t backlog = 0;       ///< 0 for the greatest
    std::int32_t timeout = 0;       ///< of a connection, in milliseconds; 0 for ever
    std::int32_t acceptTimeout = 0; ///< of accept(), the same
};

} // namespace orv::components::tcptransport
