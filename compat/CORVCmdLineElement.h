#pragma once

#include "orv/Object.h"
#include "orv/String.h"

#include <cstdint>
#include <vector>

class CORVCmdLineParser;

namespace orv::util::internal {
template <class Line>
class CommandLineCore;
} // namespace orv::util::internal

/// An option or a positional parameter of a CORVCmdLineParser with its values.
class ORV_API CORVCmdLineElement : public orv::Object {
public:
    ~CORVCmdLineElement() noexcept(false) override;

    /// The option's name without switches, empty for a positional parameter.
    orv::String getName() const;
    /// The index among all elements, -1 for a definition.
    std::int32_t getPosition() const;
    /// Number of values; 1 for a positional parameter.
    std::int32_t getValueCount() const;
    /// A value. Throws Exception "Invalid vector index".
    orv::String getValueString(std::int32_t index) const;
    /// The number that a value begins with, its prefix telling the radix. Throws Exception
    /// "Unable to convert string to long" where there is none.
    std::int32_t getValueLong(std::int32_t index) const;
    /// The same; throws Exception "Unable to convert string to double".
    double getValueDouble(std::int32_t index) const;

protected:
    CORVCmdLineElement(const orv::String& name, std::int32_t position);
    /// Adds a value at the end, or takes over those of another element.
    void addValue(const char16_t* value);
    void copyValues(const CORVCmdLineElement& other);

private:
    friend class orv::util::internal::CommandLineCore<CORVCmdLineParser>;

    orv::String m_name;
    std::vector<orv::String> m_values;
    std::int32_t m_position;
};
