#pragma once

#include "orv/Reference.h"
#include "orv/String.h"
#include "orv/util/OptionOrder.h"

#include <cstdint>
#include <map>
#include <vector>

namespace orv::util {

namespace internal {
template <class Line>
class CommandLineCore;
} // namespace internal

/// Splits a command line into options and positional parameters.
///
///     CommandLineParser line;
///     line.defineOption(u"level", 1, u"3");      // takes the next word; 3 where it is absent
///     line.parse(argc, argv);
///     if (line.isPresent(u"v")) { ... }
///     std::int32_t level = line.getValueLong(u"level", 0);
///
/// Grammar. Blanks separate words, tabs do not; a word that begins with a double quote reaches to
/// the next one, and there is no escape. A word whose first unit is "-" or "/" is an option, all
/// such units before its name being dropped: `-x`, `--x` and `/x` are one option. What stands
/// behind "=" is its list of values, separated by commas, each perhaps in double quotes; empty ones
/// fall out. Any other word is a positional parameter.
///
/// An option that was defined with a number of values and stands without "=" takes that many of
/// the words that follow. A word that begins with a switch ends the taking and is lost: it is
/// neither a value nor an option, so negative numbers are given by "=". At the end of the line, and
/// directly before a switch, the option has the values of its definition instead.
///
/// Whatever the text, parsing ends without an error; options need not be defined. Where an option
/// occurs more than once, the last one answers by name and all stay in the list of elements.
///
/// Copies share elements and definitions. Threads: one at a time.
class ORV_API CommandLineParser : public Object {
public:
    /// An option or a positional parameter with its values.
    class ORV_API Element : public Object {
    public:
        ~Element() noexcept(false) override;

        /// The option's name without switches, empty for a positional parameter.
        String getName() const;
        /// The index among all elements, -1 for a definition.
        std::int32_t getPosition() const;
        /// Number of values; 1 for a positional parameter.
        std::int32_t getValueCount() const;
        /// A value. Throws Exception "Invalid vector index".
        String getValueString(std::int32_t index) const;
        /// The number that a value begins with, its prefix telling the radix. Throws Exception
        /// "Unable to convert string to long" where there is none.
        std::int32_t getValueLong(std::int32_t index) const;
        /// The same; throws Exception "Unable to convert string to double".
        double getValueDouble(std::int32_t index) const;

    protected:
        Element(const String& name, std::int32_t position);
        /// Adds a value at the end, or takes over those of another element.
        void addValue(const String& value);
        void copyValues(const Element& other);

    private:
        friend class internal::CommandLineCore<CommandLineParser>;

        String m_name;
        std::vector<String> m_values;
        std::int32_t m_position;
    };

    /// What is known of an option before parsing; its values are the default ones.
    class ORV_API OptionDefinition : public Element {
    public:
        ~OptionDefinition() noexcept(false) override;

    protected:
        OptionDefinition(const String& name, std::int32_t valueCount);

    private:
        friend class internal::CommandLineCore<CommandLineParser>;

        std::int32_t m_takes;
        bool m_hasDefaults = false;
    };

    CommandLineParser();
    CommandLineParser(const CommandLineParser& other);
    CommandLineParser& operator=(const CommandLineParser& other);
    ~CommandLineParser() noexcept(false) override;

    /// Chooses whether names are found without regard to case, from the next question on. They are
    /// not, at first.
    void setIgnoreCase(bool ignoreCase);

    /// Defines an option that takes `valueCount` of the words behind it. `defaults` is a list of
    /// values separated by commas or blanks; null for none, while the empty text counts as given.
    void defineOption(const char16_t* name, std::int32_t valueCount, const char16_t* defaults);

    /// Forgets the former elements, not the definitions, and splits `commandLine`.
    void parse(const String& commandLine);
    /// The same for the words of a program, the one at index 0 included; each is decoded by the
    /// default encoding. Words of no units vanish.
    void parse(std::int32_t argc, char** argv);

    /// Number of options and parameters.
    std::int32_t getElementCount() const;
    /// An element in order of appearance. Throws Exception "Invalid vector index".
    Reference<const Element> getElement(std::int32_t index) const;
    std::int32_t getParameterCount() const;
    /// A positional parameter in order of appearance. Throws Exception "Invalid vector index".
    Reference<const Element> getParameter(std::int32_t index) const;

    /// Whether the option stands on the command line; defaults do not count.
    bool isPresent(const char16_t* name) const;
    /// The last such option, else its definition where it has defaults, else null.
    Reference<const Element> getOption(const char16_t* name) const;
    /// A value of getOption(). An option that is absent without defaults has no value: Exception
    /// "Invalid vector index".
    String getValueString(const char16_t* name, std::int32_t index) const;
    std::int32_t getValueLong(const char16_t* name, std::int32_t index) const;
    double getValueDouble(const char16_t* name, std::int32_t index) const;

protected:
    /// The definition of that name, null if there is none.
    Reference<OptionDefinition> getDefinition(const String& name) const;
    /// Forgets the elements.
    void reset();

private:
    friend class internal::CommandLineCore<CommandLineParser>;

    using Definitions = std::map<String, Reference<OptionDefinition>, OptionOrder>;
    using Positions = std::map<String, std::int32_t, OptionOrder>;

    std::vector<Reference<Element>> m_elements;
    Definitions m_definitions{OptionOrder{false}};
    Positions m_positions{OptionOrder{false}};
    Definitions m_definitionsAnyCase{OptionOrder{true}};
    Positions m_positionsAnyCase{OptionOrder{true}};
    std::vector<std::int32_t> m_parameters; ///< indexes of elements
    bool m_ignoreCase = false;
    static const char16_t* const m_switchChars;
};

} // namespace orv::util
