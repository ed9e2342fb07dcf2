#include "orv/Class.h"
#include "orv/Object.h"
#include "orv/String.h"

#include <algorithm>
#include <charconv>
#include <cxxabi.h>

namespace orv {

const Class* Object::getClass() const
{
    return Class::forType(&typeid(*this));
}

String Object::toString() const
{
    char digits[8];
    const auto end = std::to_chars(digits, digits + sizeof digits, hashCode(), 16).ptr;
    char16_t units[1 + sizeof digits] = {u'@'};
    const auto count = std::copy(digits, end, units + 1) - units;

    String text(units, static_cast<std::int32_t>(count));
    try {
        text.insert(0, getClass()->getName());
    } catch (abi::__forced_unwind&) {
        throw; // a cancelled thread must go on unwinding
    } catch (...) {
        text.insert(0, u"Object");
    }
    return text;
}

} // namespace orv
