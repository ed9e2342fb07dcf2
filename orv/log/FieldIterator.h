#pragma once

#include "orv/Object.h"
#include "orv/Reference.h"
#include "orv/collections/Fwd.h"
#include "orv/log/quark/IFieldIterator.h"
#include "orv/quark/Implements.h"

namespace orv::log {

/// Gives a walk over texts to components.
class ORV_API FieldIterator final : public ::orv::quark::Implements<Object, quark::IFieldIterator> {
public:
    /// Takes over the walk of `names` where it stands.
    explicit FieldIterator(Reference<collections::ConstIterator<String>> names);
    ~FieldIterator() noexcept(false) override;

    Result HasNext() override;
    Result Next(util::ICharBuffer* name) override;

private:
    Reference<collections::ConstIterator<String>> m_names;
};

} // namespace orv::log
