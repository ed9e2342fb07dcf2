#pragma once

#include "orv/String.h"

#include <cstdint>

namespace orv::util {

/// Cuts a text into tokens, the runs of units between delimiters.
///
///     StringTokenizer words(line, u" \t", false);
///     while (words.hasMoreTokens()) use(words.nextToken());
///
/// Threads: one at a time.
class ORV_API StringTokenizer : public Object {
public:
    /// Works on `text`, shared. Each unit of `delimiters` is one; null stands for blank, carriage
    /// return, line feed, tab and form feed, and without any unit there are no tokens. With
    /// `returnDelimiters` each delimiter is a token of its own.
    explicit StringTokenizer(const String& text, const char16_t* delimiters = nullptr,
                             bool returnDelimiters = false);
    StringTokenizer(const StringTokenizer& other) = default;
    StringTokenizer& operator=(const StringTokenizer& other) = default;
    ~StringTokenizer() noexcept(false) override;

    /// Whether nextToken() has a token to give.
    bool hasMoreTokens();

    /// The next token. Unless null, `delimiters` are the delimiters from now on, beginning with
    /// those that are skipped before this token. Throws Exception("No such element") at the end.
    String nextToken(const char16_t* delimiters = nullptr);

    /// How many tokens are left. Changes nothing.
    std::int32_t getTokenCount() const;

protected:
    /// Where the token at or after `position` begins; one past the length where there is none.
    /// `position` itself where delimiters are tokens.
    std::int32_t skipDelims(std::int32_t position) const;

    /// Where the token that begins at `position` ends: before the next delimiter, or one past the
    /// length. A delimiter that is a token ends behind itself. `position` at the end of the text.
    std::int32_t scanToken(std::int32_t position) const;

private:
    static constexpr std::int32_t UNKNOWN = -1;

    std::int32_t orPastTheEnd(std::int32_t found) const;

    String m_text;
    String m_delimiters;
    bool m_returnDelimiters;
    std::int32_t m_position = 0;
    std::int32_t m_newPosition = UNKNOWN; ///< what hasMoreTokens() found
};

} // namespace orv::util
