#pragma once

#include "orv/io/ReadBuffer.h"
#include "orv/io/Reader.h"

namespace orv::io {

/// Reads ahead from another reader into a block of memory, gives lines, and can return to a mark.
///
///     auto in = makeReference<BufferedReader>(reader, 0x1000);
///     for (String line; in->readLine(line) >= 0;) use(line);
///
/// Once read() has something to give it does not wait for more: where the inner reader tells of
/// nothing available, it returns what there is. Requests of at least the size go past the block,
/// unless there is a mark.
///
/// The mark holds until `limit` units behind it are read and the block is refilled; a limit above
/// the size enlarges the block. Errors: IoException "stream closed" after close(), but for close()
/// itself, which closes the inner reader again. Without memory, or where the inner reader fails,
/// the units that the same call had read before are lost, but for those of readLine(), which stand
/// in its argument.
class ORV_API BufferedReader : public Reader {
public:
    /// Holds `size` units, at least 16.
    BufferedReader(Reader* in, std::int32_t size) : m_content(in, size) {}
    ~BufferedReader() noexcept(false) override;

    std::int32_t read(char16_t* buffer, std::int32_t n) override;
    ORV_API std::int32_t read() override { return m_content.read(); }

    std::int32_t skip(std::int32_t n) override;
    /// What is read ahead, and what the inner reader tells.
    std::int32_t available() override;
    void close() override;
    /// True.
    bool markSupported() override;
    void mark(std::int32_t limit) override;
    /// Throws IoException "stream not marked" without mark(), "mark invalid" when too much was read
    /// since.
    void reset() override;

    /// Sets `line` to the next line without its end and returns its length, or -1 where there is
    /// nothing more. A line feed, a carriage return and both together end a line; the last line
    /// may do without. Behind a carriage return it may have to wait for the next unit.
    virtual std::int32_t readLine(String& line);

private:
    void skipLineFeed();

    ReadBuffer<Reader, char16_t> m_content;
};

} // namespace orv::io
