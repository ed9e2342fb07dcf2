#include "orv/Floats.h"

#include "orv/String.h"
#include "orv/internal/BoxedNumberBody.h"

namespace orv {

template class BoxedNumber<Number, float>;
template class BoxedNumber<Number, double>;

Float::~Float() noexcept(false) = default;
Double::~Double() noexcept(false) = default;

String Float::toString() const
{
    return String::valueOf(static_cast<float>(*this));
}

String Double::toString() const
{
    return String::valueOf(static_cast<double>(*this));
}

} // namespace orv
