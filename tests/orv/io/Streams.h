#pragma once

#include "orv/Reference.h"
#include "orv/io/InputStream.h"
#include "orv/io/IoExceptions.h"
#include "orv/io/OutputStream.h"
#include "orv/io/Reader.h"
#include "orv/io/Writer.h"
#include "tests/support/Refusals.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace orv::io::test {

using orv::test::Refusal;
using orv::test::refusalOf;

/// Streams that know what was done to them. `Base` is InputStream or Reader: gives `content` in
/// pieces of at most `piece` units, and tells of `ready` units.
template <class Base, class Unit, class Text>
class PieceSource : public Base {
public:
    explicit PieceSource(Text text, std::size_t most = 1000000) : content(text), piece(most) {}

    using Base::read;
    std::int32_t read(Unit* buffer, std::int32_t n) override
    {
        EXPECT_GT(n, 0) << "a read without room";
        if (position == content.size()) return -1;
        const std::size_t taken =
            std::min({static_cast<std::size_t>(n), piece, content.size() - position});
        std::copy_n(content.data() + position, taken, buffer);
        position += taken;
        return static_cast<std::int32_t>(taken);
    }
    std::int32_t available() override { return ready; }

    Text content;
    std::size_t piece;
    std::size_t position = 0;
    std::int32_t ready = 0;
};
using PieceStream = PieceSource<InputStream, signed char, std::string>;
using PieceReader = PieceSource<Reader, char16_t, std::u16string>;

/// `Base` is OutputStream or Writer: keeps what was written, and refuses the next if it is full.
template <class Base, class Unit, class Text>
class Recording : public Base {
public:
    using Base::write;
    void write(const Unit* units, std::int32_t n) override
    {
        EXPECT_GT(n, 0) << "a write of nothing";
        if (std::exchange(isFull, false)) throw IoException(u"full");
        ++writes;
        for (std::int32_t i = 0; i < n; ++i) {
            content.push_back(static_cast<typename Text::value_type>(units[i]));
        }
    }
    void flush() override { ++flushes; }
    void close() override { ++closed; }

    Text content;
    int writes = 0;
    int flushes = 0;
    int closed = 0;
    bool isFull = false;
};
using RecordingStream = Recording<OutputStream, signed char, std::string>;
using RecordingWriter = Recording<Writer, char16_t, std::u16string>;

/// What read() of `n` units gives, in front of "|-1" at the end.
inline std::string readOnce(InputStream& in, std::int32_t n)
{
    std::string bytes(static_cast<std::size_t>(n), '\0');
    const std::int32_t got = in.read(bytes.data(), n);
    if (got < 0) return "|" + std::to_string(got);
    bytes.resize(static_cast<std::size_t>(got));
    return bytes;
}

} // namespace orv::io::test
