#pragma once

#include "orv/io/IoExceptions.h"
#include "orv/io/ReadBuffer.h"

#include <algorithm>
#include <utility>

/// \file
/// The body of the template, for the two sources that instantiate it.

namespace orv::io {

template <class Source, class Unit>
ReadBuffer<Source, Unit>::ReadBuffer(Source* in, std::int32_t size)
    : m_in(in), m_size(std::max(size, 16)), m_buffer(allocateBlock<Unit>(m_size)),
      m_next(m_buffer.get()), m_end(m_next)
{
}

template <class Source, class Unit>
void ReadBuffer<Source, Unit>::throwClosed()
{
    throw IoException(u"stream closed");
}

template <class Source, class Unit>
std::int32_t ReadBuffer<Source, Unit>::readRefilled()
{
    requireOpen();
    return refill() ? *m_next++ : -1;
}

/// Lets the units from `pos` up to `count` be those read ahead.
template <class Source, class Unit>
void ReadBuffer<Source, Unit>::setAhead(std::int32_t pos, std::int32_t count) noexcept
{
    m_next = m_buffer.get() + pos;
    m_end = m_buffer.get() + count;
}

/// Reads ahead when all is consumed; false at the end of the stream.
template <class Source, class Unit>
bool ReadBuffer<Source, Unit>::refill()
{
    const std::int32_t kept = keepMarked();
    const std::int32_t got = m_in->read(m_buffer.get() + kept, m_size - kept);
    if (got <= 0) return false;
    setAhead(kept, kept + got);
    return true;
}

/// Moves what is behind the mark to the start of the buffer; returns how much that is.
template <class Source, class Unit>
std::int32_t ReadBuffer<Source, Unit>::keepMarked()
{
    if (m_markPos < 0) return 0;
    const std::int32_t kept = position() - m_markPos;
    if (kept >= m_markLimit) {
        m_markPos = lostMark;
        return 0;
    }
    const Unit* const marked = m_buffer.get() + m_markPos;
    if (m_markLimit > m_size) {
        Block<Unit> grown = allocateBlock<Unit>(m_markLimit);
        std::copy_n(marked, kept, grown.get());
        m_buffer = std::move(grown);
        m_size = m_markLimit;
    } else {
        std::copy_n(marked, kept, m_buffer.get()); // downward
    }
    setAhead(kept, kept);
    m_markPos = 0;
    return kept;
}

template <class Source, class Unit>
std::int32_t ReadBuffer<Source, Unit>::read(Unit* buffer, std::int32_t n)
{
    requireOpen();
    if (n < 1) return 0;
    std::int32_t done = 0;
    for (;;) {
        if (m_next == m_end) {
            // Once there is something to give, the stream does not wait for more.
            if (done > 0 && m_in->available() == 0) return done;
            if (n - done >= m_size && m_markPos < 0) {
                const std::int32_t got = m_in->read(buffer + done, n - done);
                if (got > 0) return done + got;
                return done > 0 ? done : got;
            }
            if (!refill()) return done > 0 ? done : -1;
        }
        const std::int32_t taken = std::min(n - done, length());
        std::copy_n(data(), taken, buffer + done);
        consume(taken);
        done += taken;
        if (done == n) return n;
    }
}

template <class Source, class Unit>
std::int32_t ReadBuffer<Source, Unit>::skip(std::int32_t n)
{
    requireOpen();
    std::int32_t skipped = 0;
    while (skipped < n && hasMore()) {
        const std::int32_t taken = std::min(n - skipped, length());
        consume(taken);
        skipped += taken;
    }
    return skipped;
}

template <class Source, class Unit>
std::int32_t ReadBuffer<Source, Unit>::available()
{
    requireOpen();
    const std::int64_t sum = std::int64_t{m_in->available()} + length();
    return static_cast<std::int32_t>(std::min<std::int64_t>(sum, INT32_MAX));
}

template <class Source, class Unit>
void ReadBuffer<Source, Unit>::mark(std::int32_t limit)
{
    requireOpen();
    m_markLimit = limit;
    m_markPos = position();
}

template <class Source, class Unit>
void ReadBuffer<Source, Unit>::reset()
{
    requireOpen();
    if (m_markPos == lostMark) throw IoException(u"mark invalid");
    if (m_markPos == noMark) throw IoException(u"stream not marked");
    m_next = m_buffer.get() + m_markPos;
}

template <class Source, class Unit>
void ReadBuffer<Source, Unit>::close()
{
    m_buffer = nullptr;
    m_next = m_end = nullptr;
    m_in->close();
}

} // namespace orv::io
