#pragma once

#include "orv/math/internal/Words.h"

namespace orv::math::internal {

/// Words of room that loseRowCarries() wants for numbers of these sizes in bytes.
std::size_t rowCarryScratch(std::int32_t size, std::int32_t otherSize) noexcept;

/// Turns the exact product of `a`, of `size` bytes, and `b`, of `otherSize` bytes, into the one of
/// BigInteger::multiply(). `product` has as many words as both numbers together, neither of which
/// has size 0.
void loseRowCarries(Word* product, const Word* a, std::int32_t size, const Word* b,
                    std::int32_t otherSize, Word* scratch) noexcept;

} // namespace orv::math::internal
