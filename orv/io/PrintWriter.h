#pragma once

#include "orv/io/FilterWriter.h"

#include <cstdint>

namespace orv::io {

/// Prints values as text onto another writer.
///
///     PrintWriter out(writer, true);
///     out.print(u"entries: ");
///     out.println(count);
///
/// Numbers come as String::valueOf() gives them, a `const char*` is decoded by the default
/// encoding. The end of a line is one line feed on every platform. print(5u) and print(5L) are
/// ambiguous, and print('a') prints 97: convert first.
class ORV_API PrintWriter : public FilterWriter {
public:
    /// With `autoFlush` each println() flushes.
    PrintWriter(Writer* out, bool autoFlush) : FilterWriter(out), m_autoFlush(autoFlush) {}
    ~PrintWriter() noexcept(false) override;

    /// Writes the value as text, by String::valueOf() where it is a number or a truth value. Bytes
    /// are decoded by the default encoding.
    virtual void print(const String& text);
    virtual void print(const char* text);
    virtual void print(const char16_t* text);
    virtual void print(double value);
    virtual void print(float value);
    virtual void print(std::int32_t value);
    virtual void print(char16_t unit);
    virtual void print(bool value);

    /// Calls the print() of the type, and ends the line.
    virtual void println(const String& text);
    virtual void println(const char* text);
    virtual void println(const char16_t* text);
    virtual void println(double value);
    virtual void println(float value);
    virtual void println(std::int32_t value);
    virtual void println(char16_t unit);
    virtual void println(bool value);

protected:
    /// Writes the line feed and, with auto-flush, flushes.
    virtual void newLine();

private:
    bool m_autoFlush;
};

} // namespace orv::io
