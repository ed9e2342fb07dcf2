#include "orv/log/FieldIterator.h"

#include "orv/String.h"
#include "orv/collections/Iterators.h"

#include <utility>

namespace orv::log {

FieldIterator::FieldIterator(Reference<collections::ConstIterator<String>> names)
    : m_names(std::move(names))
{
}

FieldIterator::~FieldIterator() noexcept(false) = default;

Result FieldIterator::HasNext()
{
    bool hasNext = false;
    const Result result = resultOf([&] { hasNext = m_names->hasNext(); });
    if (failed(result)) return result;
    return hasNext ? 0 : 1;
}

Result FieldIterator::Next(util::ICharBuffer* name)
{
    if (name == nullptr) return E_POINTER;
    Result copied = S_OK;
    const Result result = resultOf([&] {
        const Reference<String> next = m_names->next();
        copied = ORVCopyCharBuffer(name, next.get());
    });
    return failed(result) ? result : copied;
}

} // namespace orv::log
