#pragma once

#include "orv/Failure.h"
#include "orv/math/internal/Words.h"

#include "platform/orvcore.h"

#include <limits>
#include <utility>

namespace orv::math::internal {

/// A block of words from the heap. Throws OutOfMemoryException.
inline Word* allocateWords(std::size_t count)
{
    constexpr std::size_t largest = std::numeric_limits<std::size_t>::max() / BYTES_PER_WORD;
    void* const block = count > largest ? nullptr : orvcore::allocateRaw(count * BYTES_PER_WORD);
    if (block == nullptr) throwOutOfMemory();
    return static_cast<Word*>(block);
}

/// Words for the length of an operation, not initialised: on the stack while they are few.
class Scratch {
public:
    explicit Scratch(std::size_t count)
        : m_words(count <= LOCAL_WORDS ? m_local : allocateWords(count))
    {
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch()
    {
        if (m_words != m_local) orvcore::deallocateRaw(m_words);
    }

    Word* words() noexcept { return m_words; }

private:
    static constexpr std::size_t LOCAL_WORDS = 160;

    Word m_local[LOCAL_WORDS];
    Word* m_words;
};

} // namespace orv::math::internal
