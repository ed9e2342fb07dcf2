#pragma once

#include "orv/io/Writer.h"

namespace orv::io {

/// Takes every unit and keeps none.
class ORV_API NullWriter : public Writer {
public:
    ~NullWriter() noexcept(false) override;

    void write(const String& text) override;
    void write(const char16_t* text) override;
    void write(const char16_t* units, std::int32_t n) override;
    void write(char16_t unit) override;
};

} // namespace orv::io
