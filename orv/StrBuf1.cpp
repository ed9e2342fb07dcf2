#include "orv/StrBuf1.h"

#include "orv/Failure.h"

namespace orv {

StrBuf1::~StrBuf1()
{
    if ((m_word & FREE_DATA) != 0) orvcore::deallocateRaw(m_data);
    if ((m_word & DELETE_DATA) != 0) orvcore::deallocate(m_data);
}

std::int32_t StrBuf1::AddRef()
{
    return ++m_count;
}

std::int32_t StrBuf1::Release()
{
    const std::int32_t left = --m_count;
    if (left == 0) delete this;
    return left;
}

std::int32_t StrBuf1::isPrivatelyHeld(std::int16_t plainly) const
{
    const bool alwaysPrivate = (m_word & ALWAYS_PRIVATE) != 0;
    const bool ownCount = !alwaysPrivate && (m_word & STATIC_INSTANCE) != 0 && plainly == 0;
    const std::int32_t most = ownCount ? 2 : 1;
    return alwaysPrivate || m_count <= most ? getBufCapacity() : 0;
}

std::int32_t StrBuf1::getBufCapacity() const
{
    return static_cast<std::int32_t>(m_word & MAX_CAPACITY);
}

void StrBuf1::initStaticInstance(std::int16_t alwaysPrivate)
{
    AddRef();
    m_word |= STATIC_INSTANCE;
    if (alwaysPrivate != 0) m_word |= ALWAYS_PRIVATE;
}

StrBuf1Wrap::~StrBuf1Wrap() = default;

StrBuf1Wrap* StrBuf1Wrap::newStrBuf1Cap(std::int64_t capacity)
{
    const std::int64_t rounded = normalizeCapacity(capacity);
    if (capacity < 0 || rounded > std::int64_t{MAX_CAPACITY}) throwOutOfMemory();

    void* const block = orvcore::allocate(sizeof(StrBuf1Wrap) +
                                          static_cast<std::size_t>(rounded) * sizeof(char16_t));
    auto* const units = reinterpret_cast<char16_t*>(static_cast<StrBuf1Wrap*>(block) + 1);
    return new (block) StrBuf1Wrap(units, static_cast<std::uint32_t>(rounded));
}

StrBuf1Static::~StrBuf1Static() = default;

std::int32_t StrBuf1Static::AddRef()
{
    return 1;
}

std::int32_t StrBuf1Static::Release()
{
    return 1;
}

template class StrBuf1Fixed<128>;

} // namespace orv
