#include "orv/Exception.h"
#include "orv/Reference.h"
#include "orv/io/BitInputStream.h"
#include "orv/io/BitOutputStream.h"
#include "orv/io/ByteArrayInputStream.h"
#include "orv/io/ByteArrayOutputStream.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

/// \file
/// Numbers of any width, written as the input says, must pack as a row of bits does, and read back
/// in other widths as that row gives them.

namespace {

using namespace orv;
using namespace orv::io;

void require(bool holds)
{
    if (!holds) std::abort();
}

/// The bits of a stream one by one.
struct Row {
    std::vector<bool> bits;
    std::size_t next = 0;

    void add(std::uint32_t value, int width)
    {
        for (int bit = width - 1; bit >= 0; --bit) bits.push_back((value >> bit & 1) != 0);
    }
    void fillByte()
    {
        while (bits.size() % 8 != 0) bits.push_back(false);
    }
    std::int32_t take(int width)
    {
        std::uint32_t value = 0;
        for (; width > 0; --width) {
            value = next < bits.size() ? value << 1 | (bits[next++] ? 1U : 0U) : ~0U;
        }
        return static_cast<std::int32_t>(value);
    }
    std::vector<signed char> bytes() const
    {
        std::vector<signed char> all(bits.size() / 8);
        for (std::size_t i = 0; i < bits.size(); ++i) {
            if (bits[i]) all[i / 8] = static_cast<signed char>(all[i / 8] | 0x80 >> i % 8);
        }
        return all;
    }
};

/// One step of writing from five bytes: a width, or what else to do, and a value.
void step(BitOutputStream& out, Row& row, const std::uint8_t* data)
{
    const int width = data[0] % 36;
    const std::uint32_t value = (data[1] * 256u + data[2]) * 65536u + data[3] * 256u + data[4];
    if (width == 34) {
        out.flush();
        row.fillByte();
        return;
    }
    if (width == 35) {
        out.writeBit((value & 1) != 0);
        row.add(value & 1, 1);
        return;
    }
    const std::uint32_t shifted = (data[0] & 0x80) != 0 ? value >> data[4] % 32 : value;
    try {
        out.write(shifted, width);
        require(width >= 1 && width <= 32 && (width == 32 ? shifted == 0 : shifted >> width == 0));
        row.add(shifted, width);
    } catch (const Exception& exception) {
        const bool wrongWidth = width < 1 || width > 32;
        require(exception.getResult() == (wrongWidth ? E_INVALIDARG : E_FAIL));
        require(wrongWidth || width == 32 || shifted >> width != 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0 || size > 2000) return -1;
    Row row;
    const auto packed = makeReference<ByteArrayOutputStream>(16);
    const auto out = makeReference<BitOutputStream>(packed.get());
    for (std::size_t i = 0; i + 5 <= size; i += 5) step(*out, row, data + i);
    out->flush();
    row.fillByte();

    std::vector<signed char> bytes(row.bits.size() / 8 + 1);
    const std::int32_t n = packed->getBytes(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(n));
    require(bytes == row.bytes());

    const auto source = makeReference<ByteArrayInputStream>(bytes.data(), n);
    const auto in = makeReference<BitInputStream>(source.get());
    for (std::size_t i = 0; i < 4 * size; ++i) {
        const int width = data[i % size] % 40;
        require((width == 39 ? in->readBit() : in->read(width)) ==
                row.take(width == 39 ? 1 : width));
    }
    return 0;
}
