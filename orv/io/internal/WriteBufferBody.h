#pragma once

#include "orv/io/IoExceptions.h"
#include "orv/io/WriteBuffer.h"

#include <algorithm>

/// \file
/// The body of the template, for the two sources that instantiate it.

namespace orv::io {

template <class Target, class Unit>
WriteBuffer<Target, Unit>::WriteBuffer(Target* out, std::int32_t size)
    : m_out(out), m_size(std::max(size, 16)), m_buffer(allocateBlock<Unit>(m_size)),
      m_next(m_buffer.get()), m_end(m_next + m_size)
{
}

template <class Target, class Unit>
void WriteBuffer<Target, Unit>::requireOpen() const
{
    if (m_buffer == nullptr) throw IoException(u"stream closed");
}

template <class Target, class Unit>
void WriteBuffer<Target, Unit>::makeRoom()
{
    requireOpen();
    writeOut();
}

template <class Target, class Unit>
void WriteBuffer<Target, Unit>::writeOut()
{
    if (count() == 0) return;
    m_out->write(m_buffer.get(), count());
    m_next = m_buffer.get();
}

template <class Target, class Unit>
void WriteBuffer<Target, Unit>::write(const Unit* units, std::int32_t n)
{
    requireOpen();
    if (n < 1) return;
    if (n >= m_size) {
        writeOut();
        m_out->write(units, n);
        return;
    }
    if (n > m_end - m_next) writeOut();
    m_next = std::copy_n(units, n, m_next);
}

template <class Target, class Unit>
void WriteBuffer<Target, Unit>::flush()
{
    requireOpen();
    writeOut();
    m_out->flush();
}

template <class Target, class Unit>
void WriteBuffer<Target, Unit>::close()
{
    m_buffer = nullptr;
    m_next = m_end = nullptr;
    m_out->close();
}

} // namespace orv::io
