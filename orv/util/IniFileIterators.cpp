#include "orv/util/IniFileIterators.h"

#include "orv/util/IniFile.h"
#include "orv/util/IniFileException.h"
#include "orv/util/internal/IniFileOperation.h"

#include <functional>
#include <set>

namespace orv::util {

namespace {

struct UnitOrder {
    bool operator()(const String& a, const String& b) const { return a.compare(b) < 0; }
};

const String& nextOf(const std::vector<String>& names, std::size_t& position)
{
    if (position >= names.size()) {
        throw IniFileException(IniFileException::TYPE_NO_MORE_ELEMENTS, String());
    }
    return names[position++];
}

} // namespace

IniFileIteratorBase::~IniFileIteratorBase() noexcept(false) = default;

String IniFileIteratorBase::getSetName()
{
    return m_setName;
}

IniFileSetIterator::IniFileSetIterator(IniFile& file, const char16_t* setName)
    : IniFileIteratorBase(setName)
{
    const IniFile::Operation operation(file);
    const String prefix = getSetName() + u"\\";
    const std::int32_t length = prefix.getLength();
    std::set<String, UnitOrder> names;
    for (const String& name : file.ListSets()) {
        if (length - 1 < 1) {
            names.insert(name);
            continue;
        }
        if (!IniFile::isBelow(name, prefix)) continue;
        const std::int32_t position = name.indexOf(u'\\', length - 1);
        names.insert(name.substring(length - 1, position - (length - 1)));
    }
    m_names.assign(names.begin(), names.end());
}

IniFileSetIterator::~IniFileSetIterator() noexcept(false) = default;

String IniFileSetIterator::next()
{
    return nextOf(m_names, m_position);
}

bool IniFileSetIterator::hasNext()
{
    return m_position < m_names.size();
}

IniFileKeyIterator::IniFileKeyIterator(IniFile& file, const char16_t* setName)
    : IniFileIteratorBase(setName)
{
    const IniFile::Operation operation(file);
    const String name = getSetName();
    if (!file.SetExists(name)) {
        throw IniFileException(IniFileException::TYPE_NO_SUCH_SET, name);
    }
    m_names = file.ListKeys(name);
}

IniFileKeyIterator::~IniFileKeyIterator() noexcept(false) = default;

String IniFileKeyIterator::next()
{
    return nextOf(m_names, m_position);
}

bool IniFileKeyIterator::hasNext()
{
    return m_position < m_names.size();
}

} // namespace orv::util
