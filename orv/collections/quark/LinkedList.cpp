#include "orv/collections/quark/LinkedList.h"

#include "orv/collections/DropAll.h"
#include "orv/collections/internal/Index.h"

#include <utility>

namespace orv::collections::quark {

namespace {

using internal::checkIndex;
using internal::checkPlace;

} // namespace

LinkedList::LinkedList() = default;

LinkedList::LinkedList(const IORVComparator* comparator) : AbstractList(comparator) {}

// A constructor that throws runs no destructor of its own, but one that delegates does: what was
// added is released with the list.
LinkedList::LinkedList(const Collection& source) : LinkedList()
{
    LinkedList::addAll(source);
}

LinkedList::LinkedList(const Collection& source, const IORVComparator* comparator)
    : LinkedList(comparator)
{
    LinkedList::addAll(source);
}

LinkedList::LinkedList(const LinkedList& other) : LinkedList(other, other.m_comparator.get()) {}

LinkedList& LinkedList::operator=(const LinkedList&) noexcept
{
    return *this;
}

LinkedList::~LinkedList() noexcept(false)
{
    releaseAll();
}

const ListNode* LinkedList::internalGet(std::int32_t index) const
{
    const ListNode* node = m_sentinel.next;
    while (index-- > 0) node = node->next;
    return node;
}

ListNode* LinkedList::internalGet(std::int32_t index)
{
    return const_cast<ListNode*>(std::as_const(*this).internalGet(index));
}

void LinkedList::link(ListNode* before, IORVUnknown* element)
{
    if (m_size == INT32_MAX) throwOutOfMemory();
    ListNode* const node = m_nodes.take();
    if (element != nullptr) element->AddRef();
    *node = {before, before->previous, element};
    before->previous->next = node;
    before->previous = node;
    ++m_size;
}

IORVUnknown* LinkedList::unlink(ListNode* node)
{
    node->previous->next = node->next;
    node->next->previous = node->previous;
    --m_size;

    IORVUnknown* const element = node->element;
    m_nodes.give(node);
    if (m_size == 0) m_nodes.reset();
    return element;
}

void LinkedList::releaseAll()
{
    internal::dropAll([this] {
        if (m_size == 0) return false;
        const auto element = Reference<IORVUnknown>::adopt(unlink(m_sentinel.next));
        return true;
    });
}

bool LinkedList::add(IORVUnknown* element)
{
    link(&m_sentinel, element);
    return true;
}

bool LinkedList::add(std::int32_t index, IORVUnknown* element)
{
    checkPlace(index, m_size);
    link(internalGet(index), element);
    ++m_modCount;
    return true;
}

void LinkedList::clear()
{
    ++m_modCount;
    releaseAll();
}

Reference<IORVUnknown> LinkedList::get(std::int32_t index)
{
    checkIndex(index, m_size);
    return internalGet(index)->element;
}

std::int32_t LinkedList::getSize() const
{
    return m_size;
}

Reference<IORVUnknown> LinkedList::remove(std::int32_t index)
{
    checkIndex(index, m_size);
    auto removed = Reference<IORVUnknown>::adopt(unlink(internalGet(index)));
    ++m_modCount;
    return removed;
}

Reference<IORVUnknown> LinkedList::set(std::int32_t index, IORVUnknown* element)
{
    checkIndex(index, m_size);
    if (element != nullptr) element->AddRef();
    auto replaced =
        Reference<IORVUnknown>::adopt(std::exchange(internalGet(index)->element, element));
    ++m_modCount;
    return replaced;
}

} // namespace orv::collections::quark
