#pragma once

#include "platform/posix/internal/NarrowText.h"

#include <cstddef>

/// \file
/// Lists of texts, as programs take them.

namespace orvcore {

/// The words of a command line: cut at blanks, where double quotes keep a word together.
class CommandWords {
public:
    CommandWords() noexcept = default;
    ~CommandWords();
    CommandWords(const CommandWords&) = delete;
    CommandWords& operator=(const CommandWords&) = delete;

    ORVResult split(const char16_t* commandLine) noexcept;

    /// The words, ended by null.
    const char16_t* const* get() const noexcept { return m_words; }

private:
    char16_t* m_text = nullptr;
    const char16_t** m_words = nullptr;
};

/// A list of texts in the default encoding.
class NarrowList {
public:
    NarrowList() noexcept = default;
    ~NarrowList();
    NarrowList(const NarrowList&) = delete;
    NarrowList& operator=(const NarrowList&) = delete;

    /// Takes a list that null ends, whole or not at all; fails as NarrowText does.
    ORVResult assign(const char16_t* const* list) noexcept;

    /// The texts, ended by null; null before assign(). Nobody writes to them.
    char** get() const noexcept { return m_list; }

private:
    NarrowText* m_texts = nullptr;
    std::size_t m_count = 0;
    char** m_list = nullptr;
};

} // namespace orvcore
