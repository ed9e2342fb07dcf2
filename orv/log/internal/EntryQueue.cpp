#include "orv/log/internal/EntryQueue.h"

namespace orv::log::internal {

void EntryQueue::addBlock()
{
    Block* const block = m_spare != nullptr ? std::exchange(m_spare, nullptr) : new Block;
    block->next = nullptr;
    (m_last != nullptr ? m_last->next : m_first) = block;
    m_last = block;
    m_end = 0;
}

void EntryQueue::dropFirstBlock()
{
    Block* const block = m_first;
    m_first = block->next;
    m_begin = 0;
    if (m_first == nullptr) {
        m_last = nullptr;
        m_end = 0;
    }
    delete std::exchange(m_spare, block);
}

void EntryQueue::clear()
{
    while (removeFirst()) {
    }
    delete m_first;
    delete m_spare;
}

} // namespace orv::log::internal
