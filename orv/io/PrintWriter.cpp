#include "orv/io/PrintWriter.h"

#include "orv/String.h"

namespace orv::io {

PrintWriter::~PrintWriter() noexcept(false) = default;

void PrintWriter::print(const String& text)
{
    write(text);
}

void PrintWriter::print(const char* text)
{
    write(String(text, -1, nullptr, 0));
}

void PrintWriter::print(const char16_t* text)
{
    write(text);
}

void PrintWriter::print(double value)
{
    write(String::valueOf(value));
}

void PrintWriter::print(float value)
{
    write(String::valueOf(value));
}

void PrintWriter::print(std::int32_t value)
{
    write(String::valueOf(value));
}

void PrintWriter::print(char16_t unit)
{
    write(unit);
}

void PrintWriter::print(bool value)
{
    write(String::valueOf(value));
}

void PrintWriter::println(const String& text)
{
    print(text);
    newLine();
}

void PrintWriter::println(const char* text)
{
    print(text);
    newLine();
}

void PrintWriter::println(const char16_t* text)
{
    print(text);
    newLine();
}

void PrintWriter::println(double value)
{
    print(value);
    newLine();
}

void PrintWriter::println(float value)
{
    print(value);
    newLine();
}

void PrintWriter::println(std::int32_t value)
{
    print(value);
    newLine();
}

void PrintWriter::println(char16_t unit)
{
    print(unit);
    newLine();
}

void PrintWriter::println(bool value)
{
    print(value);
    newLine();
}

void PrintWriter::newLine()
{
    write(u'\n');
    if (m_autoFlush) flush();
}

} // namespace orv::io
