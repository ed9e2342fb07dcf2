#pragma once

#include "orv/io/OutputStream.h"

namespace orv::io {

/// Takes every byte and keeps none.
class ORV_API NullOutputStream : public OutputStream {
public:
    ~NullOutputStream() noexcept(false) override;

    using OutputStream::write;
    void write(const signed char* bytes, std::int32_t n) override;
    void write(signed char byte) override;
};

} // namespace orv::io
