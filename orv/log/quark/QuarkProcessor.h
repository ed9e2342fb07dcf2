#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/log/ILogProcessor.h"
#include "orv/log/quark/ILogProcessor.h"
#include "orv/quark/Implements.h"

namespace orv::log::quark {

/// Hands entries to a processor that works in result codes, as one of a component does.
class ORV_API QuarkProcessor final
    : public ::orv::quark::Implements<Object, ::orv::log::ILogProcessor> {
public:
    /// Throws ResultException with E_POINTER for null.
    [[nodiscard]] static Reference<::orv::log::ILogProcessor>
    create(::orv::log::quark::ILogProcessor* target);
    ~QuarkProcessor() noexcept(false) override;

    /// Throws ResultException with E_NOINTERFACE for an entry that is no quark::ILogEntry, without
    /// calling the target, and with the target's own failure.
    void process(const ::orv::log::ILogEntry* entry) override;

private:
    explicit QuarkProcessor(::orv::log::quark::ILogProcessor* target);

    Reference<::orv::log::quark::ILogProcessor> m_target;
};

} // namespace orv::log::quark
