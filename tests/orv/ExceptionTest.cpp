#include "orv/Exceptions.h"

#include "orv/Failure.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace orv {
namespace {

static_assert(!std::is_default_constructible_v<ExternalException>);
static_assert(std::is_base_of_v<IntErrorException, IntDivByZeroException> &&
              std::is_base_of_v<IntErrorException, IntOverflowException>);
static_assert(std::is_base_of_v<MathErrorException, MathDivByZeroException> &&
              std::is_base_of_v<MathErrorException, MathUnderflowException>);

TEST(ResultOf, turnsExceptionsIntoResults)
{
    using Row = std::pair<std::function<void()>, Result>;
    for (const auto& [body, expected] :
         {Row{[] {}, S_OK}, Row{[] { throw ResultException(E_NOT_FOUND, u"gone"); }, E_NOT_FOUND},
          Row{[] { throw ReadOnlyException(); }, E_FAIL},
          Row{[] { throw OutOfMemoryException(); }, E_OUTOFMEMORY},
          Row{[] { throw std::bad_alloc(); }, E_OUTOFMEMORY},
          Row{[] { throw std::runtime_error("?"); }, E_FAIL}, Row{[] { throw 7; }, E_FAIL}}) {
        EXPECT_EQ(resultOf(body), expected);
    }
}

} // namespace
} // namespace orv
