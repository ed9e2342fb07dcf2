#pragma once

#include "orv/Exception.h"

#include <string>
#include <utility>

namespace orv::test {

/// The result of an exception and its description in UTF-8.
using Refusal = std::pair<Result, std::string>;

/// What `call` is refused with by an exception of class `Kind`; others pass on.
///
///     EXPECT_EQ(refusalOf([] { Guid(u""); }), Refusal(E_FAIL, "invalid GUID string"));
template <class Kind = Exception, class Call>
Refusal refusalOf(Call call)
{
    try {
        call();
    } catch (const Kind& refusal) {
        return {refusal.getResult(), refusal.getDescription().getBytes(u"UTF-8")};
    }
    return {S_OK, "not refused"};
}

} // namespace orv::test
