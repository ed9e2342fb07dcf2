#include "orv/log/internal/StandardFields.h"

#include "orv/Integers.h"
#include "orv/String.h"
#include "orv/log/TimeStamp.h"

namespace orv::log::internal {

namespace {

Reference<Object> textObject(std::u16string_view text)
{
    return makeReference<String>(text.data(), static_cast<std::int32_t>(text.size()));
}

} // namespace

Reference<Object> StandardFields::toObject(Standard field) const
{
    switch (field) {
    case Standard::Level: return makeReference<Integer32>(m_level);
    case Standard::Text: return textObject(m_text);
    case Standard::Sequence: return makeReference<Integer32>(m_sequence);
    case Standard::Thread: return makeReference<UInteger32>(m_thread);
    case Standard::TimeStamp: return makeReference<log::TimeStamp>(m_time);
    case Standard::Name: return textObject(m_name);
    }
    return nullptr;
}

} // namespace orv::log::internal
