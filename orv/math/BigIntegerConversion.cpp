#include "orv/math/BigDecimal.h"

namespace orv::math {

BigDecimal BigInteger::toBigDecimal() const
{
    return {*this, 0};
}

} // namespace orv::math
