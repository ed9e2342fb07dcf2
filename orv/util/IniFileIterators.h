#pragma once

#include "orv/CoreAllocated.h"
#include "orv/String.h"

#include <cstddef>
#include <vector>

namespace orv::util {

class IniFile;

/// Goes through names of an IniFile:
///
///     for (IniFileKeyIterator key(file, u"network"); key.hasNext();) use(key.next());
///
/// The names are taken when the iterator is made; later changes to the file are not seen. Making
/// one is an operation on the file like any other: it locks and refreshes, and throws what that
/// throws. Threads: one at a time; the file is not touched any more.
class ORV_API IniFileIteratorBase : public CoreAllocated {
public:
    virtual ~IniFileIteratorBase() noexcept(false);

    /// The set name that the iterator was made with.
    virtual String getSetName();
    /// The next name. Throws IniFileException of TYPE_NO_MORE_ELEMENTS behind the last.
    virtual String next() = 0;
    virtual bool hasNext() = 0;

protected:
    explicit IniFileIteratorBase(const char16_t* setName) : m_setName(setName) {}
    IniFileIteratorBase(const IniFileIteratorBase& other) = default;
    IniFileIteratorBase& operator=(const IniFileIteratorBase& other) = default;

private:
    String m_setName;
};

/// The names of the sets, in the order of their code units.
class ORV_API IniFileSetIterator : public IniFileIteratorBase {
public:
    /// For the empty or a null `setName`: every set, those with backslashes in their names too.
    /// Sets have no sets below them, so for any other name, known or not, there is nothing.
    IniFileSetIterator(IniFile& file, const char16_t* setName);
    IniFileSetIterator(const IniFileSetIterator& other) = default;
    IniFileSetIterator& operator=(const IniFileSetIterator& other) = default;
    ~IniFileSetIterator() noexcept(false) override;

    String next() override;
    bool hasNext() override;

private:
    std::vector<String> m_names;
    std::size_t m_position = 0;
};

/// The keys of a set, in the order of the file: by name, case ignored.
class ORV_API IniFileKeyIterator : public IniFileIteratorBase {
public:
    /// Throws IniFileException of TYPE_NO_SUCH_SET where there is no set of that name.
    IniFileKeyIterator(IniFile& file, const char16_t* setName);
    IniFileKeyIterator(const IniFileKeyIterator& other) = default;
    IniFileKeyIterator& operator=(const IniFileKeyIterator& other) = default;
    ~IniFileKeyIterator() noexcept(false) override;

    String next() override;
    bool hasNext() override;

private:
    std::vector<String> m_names;
    std::size_t m_position = 0;
};

} // namespace orv::util
