#include "orv/collections/quark/ArrayList.h"

#include "orv/collections/DropAll.h"
#include "orv/collections/internal/Index.h"
#include "orv/collections/internal/ListMemory.h"

#include <algorithm>
#include <cstring>

namespace orv::collections::quark {

using internal::checkIndex;
using internal::checkPlace;

namespace {

constexpr std::size_t bytesOf(std::int64_t items) noexcept
{
    return static_cast<std::size_t>(items) * sizeof(void*);
}

} // namespace

ArrayList::ArrayList() = default;

ArrayList::ArrayList(const IORVComparator* comparator) : AbstractList(comparator) {}

// A constructor that throws runs no destructor of its own, but one that delegates does: what was
// added is released with the list.
ArrayList::ArrayList(const Collection& source) : ArrayList()
{
    ArrayList::addAll(source);
}

ArrayList::ArrayList(const Collection& source, const IORVComparator* comparator)
    : ArrayList(comparator)
{
    ArrayList::addAll(source);
}

ArrayList::ArrayList(const ArrayList& other) : ArrayList(other, other.m_comparator.get()) {}

ArrayList& ArrayList::operator=(const ArrayList&) noexcept
{
    return *this;
}

ArrayList::~ArrayList() noexcept(false)
{
    const internal::OwnedStorage storage(m_items);
    internal::dropAll([this] {
        if (m_size == 0) return false;
        const auto element = Reference<IORVUnknown>::adopt(m_items[--m_size]);
        return true;
    });
}

void ArrayList::grow()
{
    const std::int64_t half = std::int64_t{m_capacity} + m_capacity / 2;
    const std::int64_t wanted = std::max(half, std::int64_t{m_size} + 1);
    if (wanted > INT32_MAX) throwOutOfMemory();

    const auto bytes = bytesOf(wanted);
    auto** const items = static_cast<IORVUnknown**>(internal::allocateStorage(bytes));
    std::copy_n(m_items, m_size, items);
    orvcore::deallocate(m_items);
    m_items = items;
    m_capacity = static_cast<std::int32_t>(wanted);
}

void ArrayList::insert(std::int32_t index, IORVUnknown* element)
{
    if (m_size == m_capacity) grow();
    if (element != nullptr) element->AddRef();
    IORVUnknown** const place = m_items + index;
    std::memmove(place + 1, place, bytesOf(m_size - index));
    *place = element;
    ++m_size;
}

bool ArrayList::add(IORVUnknown* element)
{
    if (m_size == m_capacity) grow();
    if (element != nullptr) element->AddRef();
    m_items[m_size++] = element;
    return true;
}

bool ArrayList::add(std::int32_t index, IORVUnknown* element)
{
    checkPlace(index, m_size);
    insert(index, element);
    ++m_modCount;
    return true;
}

void ArrayList::clear()
{
    for (std::int32_t index = m_size - 1; index >= 0; --index) remove(index);
    ++m_modCount;
}

Reference<IORVUnknown> ArrayList::get(std::int32_t index)
{
    checkIndex(index, m_size);
    return m_items[index];
}

std::int32_t ArrayList::getSize() const
{
    return m_size;
}

Reference<IORVUnknown> ArrayList::remove(std::int32_t index)
{
    checkIndex(index, m_size);
    IORVUnknown** const place = m_items + index;
    auto removed = Reference<IORVUnknown>::adopt(*place);
    --m_size;
    std::memmove(place, place + 1, bytesOf(m_size - index));
    ++m_modCount;
    return removed;
}

Reference<IORVUnknown> ArrayList::set(std::int32_t index, IORVUnknown* element)
{
    checkIndex(index, m_size);
    if (element != nullptr) element->AddRef();
    auto replaced = Reference<IORVUnknown>::adopt(m_items[index]);
    m_items[index] = element;
    ++m_modCount;
    return replaced;
}

} // namespace orv::collections::quark
