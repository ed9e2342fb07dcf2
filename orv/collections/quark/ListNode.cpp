#include "orv/collections/quark/ListNode.h"

#include "orv/collections/internal/ListMemory.h"

#include <algorithm>
#include <new>
#include <utility>

namespace orv::collections::quark {

namespace {

constexpr std::int32_t firstBlock = 8;
constexpr std::int32_t largestBlock = 128;

} // namespace

/// The head of a block, in front of its nodes.
struct ListNodePool::Block {
    Block* older;
    std::int32_t nodes;

    ListNode* node(std::int32_t index) noexcept
    {
        return reinterpret_cast<ListNode*>(this + 1) + index;
    }
};

ListNodePool::~ListNodePool()
{
    while (m_blocks != nullptr) orvcore::deallocate(std::exchange(m_blocks, m_blocks->older));
}

void ListNodePool::addBlock()
{
    const std::int32_t nodes =
        m_blocks == nullptr ? firstBlock : std::min(m_blocks->nodes * 2, largestBlock);
    const std::size_t bytes = sizeof(Block) + static_cast<std::size_t>(nodes) * sizeof(ListNode);
    m_blocks = new (internal::allocateStorage(bytes)) Block{m_blocks, nodes};
    m_fresh = nodes;
}

ListNode* ListNodePool::take()
{
    if (m_spare != nullptr) return std::exchange(m_spare, m_spare->next);
    if (m_fresh == 0) addBlock();
    // The first node of a block goes first, so that a list lies in memory as it was filled.
    return new (m_blocks->node(m_blocks->nodes - m_fresh--)) ListNode;
}

void ListNodePool::reset() noexcept
{
    if (m_blocks == nullptr || m_blocks->older == nullptr) return;
    while (m_blocks->older != nullptr) {
        orvcore::deallocate(std::exchange(m_blocks, m_blocks->older));
    }
    m_fresh = m_blocks->nodes;
    m_spare = nullptr;
}

} // namespace orv::collections::quark
