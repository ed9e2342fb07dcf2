#pragma once

#include "orv/Reference.h"
#include "orv/collections/internal/DirectOrder.h"

namespace orv::collections::internal {

/// Compares the elements of a collection with one that is looked for.
class ElementMatch {
public:
    ElementMatch(const IORVComparator* comparator, const IORVUnknown* wanted) noexcept
        : m_comparator(comparator), m_wanted(wanted)
    {
        if (!isDirect(comparator)) return;
        m_text = exactly<String>(wanted);
        m_number = exactly<Integer32>(wanted);
    }

    /// Whether the stored `element`, which is held meanwhile, equals the wanted one. Throws as
    /// compareBy() does.
    bool operator()(IORVUnknown* element) const
    {
        // Between two texts or two numbers nobody else has a say, so that nothing can go.
        if (m_text != nullptr && exactly<String>(element) != nullptr) {
            return equalBy(m_comparator, true, element, m_wanted);
        }
        if (const auto* const number =
                m_number != nullptr ? exactly<Integer32>(element) : nullptr) {
            return std::int32_t{*number} == std::int32_t{*m_number};
        }
        const Reference<IORVUnknown> held(element);
        return equalBy(m_comparator, element, m_wanted);
    }

private:
    const IORVComparator* m_comparator;
    const IORVUnknown* m_wanted;
    const String* m_text = nullptr;
    const Integer32* m_number = nullptr;
};

} // namespace orv::collections::internal
