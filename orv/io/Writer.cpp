#include "orv/io/Writer.h"

#include "orv/Failure.h"
#include "orv/String.h"

namespace orv::io {

namespace {

/// Keeps a text from being changed for a scope.
class ReadLock {
public:
    explicit ReadLock(const String& text) : m_text(text)
    {
        throwIfFailed(text.GetReadLock(&m_units));
    }
    ReadLock(const ReadLock&) = delete;
    ReadLock& operator=(const ReadLock&) = delete;
    ~ReadLock() { static_cast<void>(m_text.ReleaseReadLock()); }

    const char16_t* units() const noexcept { return m_units; }

private:
    const String& m_text;
    const char16_t* m_units = nullptr;
};

} // namespace

Writer::~Writer() noexcept(false) = default;

void Writer::write(const String& text)
{
    const ReadLock lock(text);
    write(lock.units(), text.getLength());
}

void Writer::write(const char16_t* text)
{
    write(text, ORVStrLenW(text));
}

void Writer::write(char16_t unit)
{
    write(&unit, 1);
}

void Writer::flush() {}

void Writer::close() {}

} // namespace orv::io
