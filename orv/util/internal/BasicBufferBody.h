#pragma once

#include "orv/util/BasicBuffer.h"

#include <algorithm>
#include <cstddef>

/// \file
/// The bodies of the buffer templates, for the two sources that instantiate them.

namespace orv::util {

template <class Interface>
const ::orv::quark::InterfaceData* BasicAbstractBuffer<Interface>::GetComIntfMap()
{
    static const ::orv::quark::InterfaceData map[] = {
        ::orv::quark::interfaceRow<Interface, BasicAbstractBuffer>(),
        ::orv::quark::baseRow<Object>(), ::orv::quark::endRow};
    return map;
}

template <class Interface>
Result BasicAbstractBuffer<Interface>::QueryInterface(const GUID& iid, void** out)
{
    return ::orv::quark::QueryInterfaceMap(GetComIntfMap(), this, iid, out);
}

template <class Interface>
std::int32_t BasicAbstractBuffer<Interface>::GetLength() const
{
    return getLength();
}

template <class Interface>
auto BasicAbstractBuffer<Interface>::GetData() const -> const Unit*
{
    return getData();
}

template <class Interface>
Result BasicAbstractBuffer<Interface>::GetReadLock(const Unit** data) const
{
    *data = nullptr;
    return resultOf([&] { *data = getReadLock(); });
}

template <class Interface>
Result BasicAbstractBuffer<Interface>::ReleaseReadLock() const
{
    return resultOf([&] { releaseReadLock(); });
}

template <class Interface>
std::int16_t BasicAbstractBuffer<Interface>::IsWritable() const
{
    return isWritable() ? 1 : 0;
}

template <class Interface>
Result BasicAbstractBuffer<Interface>::GetWriteLock(std::int32_t capacity, Unit** data)
{
    *data = nullptr;
    return resultOf([&] { *data = getWriteLock(capacity); });
}

template <class Interface>
Result BasicAbstractBuffer<Interface>::EnsureCapacity(std::int32_t capacity, Unit** data)
{
    *data = nullptr;
    return resultOf([&] { *data = ensureCapacity(capacity); });
}

template <class Interface>
Result BasicAbstractBuffer<Interface>::ReleaseWriteLock(std::int32_t length)
{
    return resultOf([&] { releaseWriteLock(length); });
}

template <class Interface>
Result BasicAbstractBuffer<Interface>::FreeExtra()
{
    return resultOf([&] { freeExtra(); });
}

template <class Abstract>
BasicROBuffer<Abstract>::BasicROBuffer(const BasicROBuffer& other) noexcept
    : BasicPlainBuffer<Abstract>(other.m_data, other.m_length)
{
}

template <class Abstract>
BasicROBuffer<Abstract>::BasicROBuffer(const Unit* data, std::int32_t length,
                                       std::int32_t /*capacity*/) noexcept
    : BasicPlainBuffer<Abstract>(const_cast<Unit*>(data), length) // read through only
{
}

template <class Abstract>
BasicROBuffer<Abstract>& BasicROBuffer<Abstract>::operator=(const BasicROBuffer& other) noexcept
{
    this->m_data = other.m_data;
    this->m_length = other.m_length;
    return *this;
}

template <class Abstract>
bool BasicROBuffer<Abstract>::isWritable() const
{
    return false;
}

template <class Abstract>
auto BasicROBuffer<Abstract>::getWriteLock(std::int32_t) -> Unit*
{
    throwReadOnly();
}

template <class Abstract>
auto BasicROBuffer<Abstract>::ensureCapacity(std::int32_t) -> Unit*
{
    throwReadOnly();
}

template <class Abstract>
void BasicROBuffer<Abstract>::releaseWriteLock(std::int32_t)
{
    throwReadOnly();
}

template <class Abstract>
void BasicROBuffer<Abstract>::freeExtra()
{
}

template <class Abstract>
Result BasicROBuffer<Abstract>::GetReadLock(const Unit** data) const
{
    *data = this->m_data;
    return S_OK;
}

template <class Abstract>
Result BasicROBuffer<Abstract>::ReleaseReadLock() const
{
    return S_OK;
}

template <class Abstract>
std::int16_t BasicROBuffer<Abstract>::IsWritable() const
{
    return 0;
}

template <class Abstract>
Result BasicROBuffer<Abstract>::GetWriteLock(std::int32_t, Unit** data)
{
    *data = nullptr;
    return E_NOTIMPL;
}

template <class Abstract>
Result BasicROBuffer<Abstract>::EnsureCapacity(std::int32_t, Unit** data)
{
    *data = nullptr;
    return E_NOTIMPL;
}

template <class Abstract>
Result BasicROBuffer<Abstract>::ReleaseWriteLock(std::int32_t)
{
    return E_NOTIMPL;
}

template <class Abstract>
Result BasicROBuffer<Abstract>::FreeExtra()
{
    return S_OK;
}

template <class Abstract>
BasicRWBuffer<Abstract>::BasicRWBuffer(std::int32_t capacity)
{
    reallocate(capacity);
}

template <class Abstract>
BasicRWBuffer<Abstract>::BasicRWBuffer(const Unit* data, std::int32_t length, std::int32_t capacity)
{
    reallocate(std::max(capacity, length));
    if (length < 1) return;
    std::copy_n(data, length, this->m_data);
    this->m_length = length;
}

template <class Abstract>
BasicRWBuffer<Abstract>::BasicRWBuffer(const BasicRWBuffer& other)
    : BasicRWBuffer(other.m_data, other.m_length, other.m_capacity)
{
}

template <class Abstract>
BasicRWBuffer<Abstract>& BasicRWBuffer<Abstract>::operator=(const BasicRWBuffer& other)
{
    if (this == &other) return *this;
    Unit* const units = this->getWriteLock(other.m_capacity);
    std::copy_n(other.m_data, other.m_length, units);
    this->releaseWriteLock(other.m_length);
    return *this;
}

template <class Abstract>
bool BasicRWBuffer<Abstract>::isWritable() const
{
    return true;
}

template <class Abstract>
auto BasicRWBuffer<Abstract>::getWriteLock(std::int32_t capacity) -> Unit*
{
    return this->ensureCapacity(capacity);
}

template <class Abstract>
auto BasicRWBuffer<Abstract>::ensureCapacity(std::int32_t capacity) -> Unit*
{
    return reserve(capacity);
}

template <class Abstract>
void BasicRWBuffer<Abstract>::releaseWriteLock(std::int32_t length)
{
    if (length >= 0) this->m_length = length;
}

template <class Abstract>
void BasicRWBuffer<Abstract>::freeExtra()
{
    reallocate(this->m_length);
}

template <class Abstract>
void BasicRWBuffer<Abstract>::reallocate(std::int32_t capacity)
{
    if (capacity <= 0) {
        if (!m_inline) orvcore::deallocateRaw(this->m_data);
        this->m_data = nullptr;
        this->m_capacity = 0;
        this->m_length = 0;
        m_inline = false;
        return;
    }

    const std::int32_t rounded = roundedCapacity(capacity);
    if (rounded == this->m_capacity) return;

    if (m_inline && rounded < this->m_capacity) return; // the block is freed as a whole
    const std::size_t size = static_cast<std::size_t>(rounded) * sizeof(Unit);
    void* const block = orvcore::reallocateRaw(m_inline ? nullptr : this->m_data, size);
    if (block == nullptr) throwOutOfMemory();
    if (m_inline) {
        // Within a write bracket more than the length may be in use.
        std::copy_n(this->m_data, this->m_capacity, static_cast<Unit*>(block));
    }
    this->m_data = static_cast<Unit*>(block);
    this->m_capacity = rounded;
    m_inline = false;
}

} // namespace orv::util
