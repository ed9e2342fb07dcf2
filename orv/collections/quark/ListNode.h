#pragma once

#include "orv/IORVUnknown.h"

#include <cstdint>

/// \file
/// The insides of LinkedList, which hosts meet only through ElementCursor.

namespace orv::collections::quark {

/// A place of the ring.
struct ListNode {
    ListNode* next;
    ListNode* previous;
    IORVUnknown* element; ///< with a count, null in the sentinel
};

/// The nodes of one list: they come in growing blocks and serve again when they become free.
class ListNodePool {
public:
    ListNodePool() noexcept = default;
    ListNodePool(const ListNodePool&) = delete;
    ListNodePool& operator=(const ListNodePool&) = delete;
    ~ListNodePool();

    /// A node without content. Throws OutOfMemoryException.
    ListNode* take();

    /// Takes a node back.
    void give(ListNode* node) noexcept
    {
        node->next = m_spare;
        m_spare = node;
    }

    /// Takes all nodes back and frees all blocks but the first.
    void reset() noexcept;

private:
    struct Block;

    void addBlock();

    Block* m_blocks = nullptr;   ///< the newest first
    ListNode* m_spare = nullptr; ///< nodes to use again, linked by next
    std::int32_t m_fresh = 0;    ///< nodes of the newest block that were never used
};

} // namespace orv::collections::quark
