#include "Sweep.h"

#include "orv/util/MTByteBuffer.h"
#include "orv/util/MTCharBuffer.h"

#include <vector>

namespace orv::test {

namespace {

/// The content of every buffer at first: 20 elements in a room of 32, or of 64.
template <class Buffer>
Buffer filled(std::int32_t capacity = 0)
{
    const std::vector<typename Buffer::Unit> units(20, 'a');
    return Buffer(units.data(), 20, capacity);
}

template <class Buffer>
void addRows(std::vector<Row>& rows, const std::string& kind)
{
    using Unit = typename Buffer::Unit;
    const auto make = [] { return filled<Buffer>(); };
    const auto add = [&](const char* name, auto operation) {
        rows.push_back(row(kind + ", " + name, make, operation));
    };

    rows.push_back(product(kind + " with content", [] { return filled<Buffer>(); }));
    add("copy", [](Buffer& buffer) { Buffer copy(buffer); });
    add("assign", [](Buffer& buffer) {
        const Buffer longer(1000);
        buffer = longer;
    });
    add("GetWriteLock", [](Buffer& buffer) {
        Unit* units = nullptr;
        const Result result = buffer.GetWriteLock(1000, &units);
        if (failed(result)) return units == nullptr ? result : E_FAIL;
        return buffer.ReleaseWriteLock(19);
    });
    add("EnsureCapacity", [](Buffer& buffer) {
        Unit* units = nullptr;
        static_cast<void>(buffer.GetWriteLock(0, &units));
        const Result result = buffer.EnsureCapacity(1000, &units);
        static_cast<void>(buffer.ReleaseWriteLock(-1));
        return failed(result) && units != nullptr ? E_FAIL : result;
    });
    rows.push_back(row(
        kind + ", FreeExtra", [] { return filled<Buffer>(64); },
        [](Buffer& buffer) { return buffer.FreeExtra(); }));
}

} // namespace

std::vector<Row> bufferRows()
{
    std::vector<Row> rows;
    addRows<util::RWCharBuffer>(rows, "RWCharBuffer");
    addRows<util::RWByteBuffer>(rows, "RWByteBuffer");
    addRows<util::MTCharBuffer>(rows, "MTCharBuffer");
    addRows<util::MTByteBuffer>(rows, "MTByteBuffer");
    return rows;
}

} // namespace orv::test
