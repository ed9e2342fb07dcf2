#pragma once

#include "orv/Reference.h"
#include "orv/io/Reader.h"

namespace orv::io {

/// A reader that passes every operation on to another one, as the base of classes that change some
/// of them.
class ORV_API FilterReader : public Reader {
public:
    explicit FilterReader(Reader* in) : m_in(in) {}
    FilterReader(const FilterReader&) = delete;
    FilterReader& operator=(const FilterReader&) = delete;
    ~FilterReader() noexcept(false) override;

    std::int32_t read(char16_t* buffer, std::int32_t n) override;
    std::int32_t read() override;
    std::int32_t skip(std::int32_t n) override;
    std::int32_t available() override;
    void close() override;
    bool markSupported() override;
    void mark(std::int32_t limit) override;
    void reset() override;

protected:
    /// The reader that does the work.
    Reference<Reader> m_in;
};

} // namespace orv::io
