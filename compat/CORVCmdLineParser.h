#pragma once

#include "compat/CORVSmartPtr.h"
#include "compat/COptionDefinition.h"
#include "orv/util/OptionOrder.h"

#include <cstdint>
#include <map>
#include <vector>

/// Splits a command line into options and positional parameters, by the grammar of
/// orv::util::CommandLineParser; it is no counted object.
///
///     CORVCmdLineParser line;
///     line.defineOption(u"level", 1, u"3");      // takes the next word; 3 where it is absent
///     line.parse(argc, argv);
///     std::int32_t level = line.getValueLong(u"level", 0);
///
/// Copies share elements and definitions. Threads: one at a time.
class ORV_API CORVCmdLineParser {
public:
    CORVCmdLineParser();
    CORVCmdLineParser(const CORVCmdLineParser& other);
    CORVCmdLineParser& operator=(const CORVCmdLineParser& other);
    ~CORVCmdLineParser() noexcept(false);

    /// Chooses whether names are found without regard to case, from the next question on. They are
    /// not, at first.
    void setIgnoreCase(bool ignoreCase);

    /// Defines an option that takes `valueCount` of the words behind it. `defaults` is a list of
    /// values separated by commas or blanks; null for none, while the empty text counts as given.
    void defineOption(const char16_t* name, std::int32_t valueCount, const char16_t* defaults);

    /// Forgets the former elements, not the definitions, and splits `commandLine`, which is
    /// terminated.
    void parse(const char16_t* commandLine);
    /// The same for the words of a program, the one at index 0 included; each is decoded by the
    /// default encoding. Words of no units vanish.
    void parse(std::int32_t argc, char** argv);

    /// Number of options and parameters. Throws Exception "Invalid vector size" for 2^31 and more.
    std::int32_t getElementCount() const;
    /// An element in order of appearance. Throws Exception "Invalid vector index".
    CORVSmartPtr<const CORVCmdLineElement> getElement(std::int32_t index) const;
    /// Number of parameters. Throws Exception "Invalid vector size" for 2^31 and more.
    std::int32_t getParameterCount() const;
    /// A positional parameter in order of appearance. Throws Exception "Invalid vector index".
    CORVSmartPtr<const CORVCmdLineElement> getParameter(std::int32_t index) const;

    /// Whether the option stands on the command line; defaults do not count.
    bool isPresent(const char16_t* name) const;
    /// The last such option, else its definition where it has defaults, else null.
    CORVSmartPtr<const CORVCmdLineElement> getOption(const char16_t* name) const;
    /// A value of getOption(). An option that is absent without defaults has no value: Exception
    /// "Invalid vector index".
    orv::String getValueString(const char16_t* name, std::int32_t index) const;
    std::int32_t getValueLong(const char16_t* name, std::int32_t index) const;
    double getValueDouble(const char16_t* name, std::int32_t index) const;

protected:
    /// The definition of that name, null if there is none.
    CORVSmartPtr<COptionDefinition> getDefinition(const orv::String& name) const;
    /// Forgets the elements.
    void reset();

private:
    friend class orv::util::internal::CommandLineCore<CORVCmdLineParser>;

    using Element = CORVCmdLineElement;
    using OptionDefinition = COptionDefinition;
    using OptionOrder = orv::util::OptionOrder;
    using Definitions = std::map<orv::String, CORVSmartPtr<COptionDefinition>, OptionOrder>;
    using Positions = std::map<orv::String, std::int32_t, OptionOrder>;

    std::vector<CORVSmartPtr<CORVCmdLineElement>> m_elements;
    Definitions m_definitions{OptionOrder{false}};
    Positions m_positions{OptionOrder{false}};
    Definitions m_definitionsAnyCase{OptionOrder{true}};
    Positions m_positionsAnyCase{OptionOrder{true}};
    std::vector<std::int32_t> m_parameters; ///< indexes of elements
    bool m_ignoreCase = false;
    static const char16_t* const m_switchChars;
};
