#include "orv/String.h"

#include "orv/internal/EmptyText.h"
#include "orv/internal/ReadBracket.h"
#include "orv/internal/StringAccess.h"
#include "orv/internal/UnitScan.h"

#include <algorithm>
#include <atomic>
#include <typeinfo>

namespace orv {

using internal::measured;
using internal::newText;
using internal::withTerminator;

namespace {

constinit const char16_t zeroUnit = u'\0';
constinit std::atomic<util::ROCharBuffer*> sharedEmptyText{nullptr};

} // namespace

namespace internal {

void createSharedEmptyText()
{
    auto* const buffer = new util::ROCharBuffer(&zeroUnit, 1, 0);
    buffer->AddRef();
    sharedEmptyText.store(buffer);
}

void releaseSharedEmptyText()
{
    util::ROCharBuffer* const buffer = sharedEmptyText.exchange(nullptr);
    if (buffer != nullptr) buffer->Release();
}

} // namespace internal

// Buffers

void String::useBuffer(util::ICharBuffer* buffer, util::PlainCharBuffer* plain)
{
    if (plain != nullptr) {
        usePlain(plain);
        return;
    }
    buffer->AddRef();
    releaseBuffer();
    m_buffer = buffer;
    m_plain = nullptr;
}

void String::usePlain(util::PlainCharBuffer* buffer)
{
    buffer->InternalAddRef();
    takePlain(buffer);
}

util::PlainCharBuffer* String::emptyText()
{
    util::ROCharBuffer* const shared = sharedEmptyText.load(std::memory_order_acquire);
    if (shared == nullptr) return viewOf(&zeroUnit, 0);
    shared->InternalAddRef();
    return shared;
}

void String::shareEmpty()
{
    takePlain(emptyText());
}

util::PlainCharBuffer* String::viewOf(const char16_t* text, std::int32_t length)
{
    auto* const view = new util::ROCharBuffer(text, withTerminator(std::max(length, 0)), 0);
    view->InternalTakeFirst();
    return view;
}

/// A counted buffer over `length` units at `text`, or with a copy of them.
util::PlainCharBuffer* String::acquire(AcquireMode mode, const char16_t* text, std::int32_t length,
                                       std::int32_t capacity)
{
    if (mode == AcquireMode::AcquireAlias) return viewOf(text, length);
    util::RWCharBuffer* const copy = newText(text, length, capacity);
    if (mode == AcquireMode::AcquireCopyUpper) ORVStrToUpperW(copy->plainUnits());
    return copy;
}

void String::release(util::RWByteBuffer* bytes)
{
    bytes->Release();
}

std::int32_t String::foreignLength() const
{
    return std::max(m_buffer->GetLength() - 1, 0);
}

char16_t String::foreignUnit(std::int32_t index) const
{
    const Reading reading(*this);
    return reading.data()[index];
}

bool String::isPrivate() const
{
    if (m_plain != nullptr) {
        return m_plain->plainCapacity() > 0 && m_plain->GetSettledRefCount() < 2;
    }
    m_buffer->AddRef();
    const std::uint32_t count = m_buffer->Release();
    return count < 2 && m_buffer->IsWritable() != 0;
}

void String::copyOnWrite(std::int32_t capacity)
{
    if (isPrivate()) return;
    {
        Reading reading(*this);
        util::RWCharBuffer* const copy = newText(reading.length(), capacity);
        std::copy_n(reading.data(), reading.length(), copy->plainUnits());
        reading.release();
        takePlain(copy);
    }
    dropBytes();
}

util::PlainCharBuffer* String::copyOf(const char16_t* text, std::int32_t length,
                                      std::int32_t capacity)
{
    length = measured(text, length);
    if (length < 1 && capacity < 1) return emptyText();
    return newText(text, length, capacity);
}

util::PlainCharBuffer* String::regionOf(internal::Units text, AcquireMode mode, std::int32_t start,
                                        std::int32_t end, std::int32_t capacity)
{
    if (end < 0 || end > text.length) end = text.length;
    start = std::clamp(start, 0, end);
    const std::int32_t count = end - start;
    if (count == 0 && capacity == 0) return emptyText();
    if (mode == AcquireMode::AcquireCopy) return newText(text.data + start, count, capacity);
    return acquire(mode, text.data + start, count, capacity);
}

util::PlainCharBuffer* String::regionOf(AcquireMode mode, std::int32_t start, std::int32_t end,
                                        std::int32_t capacity) const
{
    if (m_plain != nullptr) {
        return regionOf({m_plain->plainData(), textLength()}, mode, start, end, capacity);
    }
    const Reading reading(*this);
    return regionOf({reading.data(), reading.length()}, mode, start, end, capacity);
}

// Construction

String::String(util::ICharBuffer* source) : String(AcquireMode::AcquireCopy, source) {}

String::String(AcquireMode mode, util::ICharBuffer* source)
{
    if (mode == AcquireMode::AcquireAddRef) {
        useBuffer(source, nullptr);
        return;
    }
    const internal::ReadBracket reading(*source);
    takePlain(acquire(mode, reading.units(), reading.length(), 0));
}

String::String(AcquireMode mode, const char16_t* text, std::int32_t length, std::int32_t capacity)
{
    length = measured(text, length);
    takePlain(length < 1 && capacity < 1 ? emptyText() : acquire(mode, text, length, capacity));
}

String::String(const STRUCT_ORV_STR_LIT_INFO& literal)
    : String(Counted{viewOf(literal.text, literal.length)})
{
}

String::String(char16_t unit, std::int32_t count, std::int32_t capacity)
{
    count = std::max(count, -1);
    capacity = std::max(capacity, withTerminator(count));
    if (capacity < 1) {
        shareEmpty();
        return;
    }
    takePlain(newText(nullptr, 0, capacity));
    append(unit, count);
}

String::String(std::int32_t capacity)
    : String(Counted{capacity < 1 ? emptyText() : newText(nullptr, 0, capacity)})
{
}

String String::CORVString(const String& text)
{
    return text;
}

String String::CORVString(const char16_t* text, std::int32_t length, std::int32_t capacity)
{
    return {text, length, capacity};
}

// Write path

char16_t* String::openWrite(std::int32_t capacity)
{
    dropBytes();
    const std::int32_t room = withTerminator(capacity);
    copyOnWrite(room);
    if (m_plain != nullptr) return static_cast<util::RWCharBuffer*>(m_plain)->reserve(room);
    char16_t* units = nullptr;
    throwIfFailed(m_buffer->GetWriteLock(room, &units));
    return units;
}

char16_t* String::growWrite(std::int32_t capacity)
{
    const std::int32_t room = withTerminator(capacity);
    if (isWritablePlain()) return static_cast<util::RWCharBuffer*>(m_plain)->reserve(room);
    char16_t* units = nullptr;
    throwIfFailed(m_buffer->EnsureCapacity(room, &units));
    return units;
}

void String::closeWrite(std::int32_t length)
{
    if (length < 0) {
        length = ORVStrLenW(m_buffer->GetData());
    } else {
        growWrite(length)[length] = u'\0';
    }
    if (isWritablePlain()) {
        static_cast<util::RWCharBuffer*>(m_plain)->setPlainLength(length + 1);
    } else {
        throwIfFailed(m_buffer->ReleaseWriteLock(length + 1));
    }
}

// Readers

String String::toString() const
{
    return *this;
}

Object* String::clone() const
{
    if (typeid(*this) != typeid(String)) throwCloneNotSupported();
    return new String(*this);
}

// The buffer interface

const char16_t* String::getReadLock() const
{
    const char16_t* units = nullptr;
    throwIfFailed(GetReadLock(&units));
    return units;
}

void String::releaseReadLock() const
{
    throwIfFailed(ReleaseReadLock());
}

bool String::isWritable() const
{
    return true;
}

char16_t* String::getWriteLock(std::int32_t capacity)
{
    char16_t* units = nullptr;
    throwIfFailed(GetWriteLock(capacity, &units));
    return units;
}

char16_t* String::ensureCapacity(std::int32_t capacity)
{
    char16_t* units = nullptr;
    throwIfFailed(EnsureCapacity(capacity, &units));
    return units;
}

void String::releaseWriteLock(std::int32_t length)
{
    throwIfFailed(ReleaseWriteLock(length));
}

void String::freeExtra()
{
    throwIfFailed(FreeExtra());
}

std::int32_t String::GetLength() const
{
    return textLength();
}

const char16_t* String::GetData() const
{
    return getData();
}

Result String::GetReadLock(const char16_t** data) const
{
    return m_buffer->GetReadLock(data);
}

Result String::ReleaseReadLock() const
{
    return m_buffer->ReleaseReadLock();
}

std::int16_t String::IsWritable() const
{
    return 1;
}

Result String::GetWriteLock(std::int32_t capacity, char16_t** data)
{
    *data = nullptr;
    return resultOf([&] { *data = openWrite(capacity); });
}

Result String::EnsureCapacity(std::int32_t capacity, char16_t** data)
{
    *data = nullptr;
    return resultOf([&] { *data = growWrite(capacity); });
}

Result String::ReleaseWriteLock(std::int32_t length)
{
    return resultOf([&] { closeWrite(length); });
}

Result String::FreeExtra()
{
    if (!isPrivate()) return S_OK; // what others share stays where it is
    if (m_plain == nullptr) return m_buffer->FreeExtra();
    return resultOf([&] {
        const std::int32_t length = textLength();
        if (m_plain->plainCapacity() - length > 16) {
            takePlain(newText(m_plain->plainData(), length, 0));
        }
    });
}

} // namespace orv
