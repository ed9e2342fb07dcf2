#pragma once

#include "orv/BoxedNumber.h"

namespace orv {

extern template class BoxedNumber<Number, float>;
extern template class BoxedNumber<Number, double>;

/// A 32-bit floating-point number in an object.
class ORV_API Float : public BoxedNumber<Number, float> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~Float() noexcept(false) override;

    /// Six significant digits.
    String toString() const override;
};

/// A 64-bit floating-point number in an object.
class ORV_API Double : public BoxedNumber<Number, double> {
public:
    using BoxedNumber::BoxedNumber;
    using BoxedNumber::operator=;
    ~Double() noexcept(false) override;

    /// Six significant digits.
    String toString() const override;
};

} // namespace orv
