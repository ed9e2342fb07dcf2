#include "platform/orvcore.h"
#include "platform/posix/internal/Case.h"

using orvcore::lowerUnit;
using orvcore::upperUnit;

char16_t ORVToLowerW(char16_t unit) noexcept
{
    return lowerUnit(unit);
}

char16_t ORVToUpperW(char16_t unit) noexcept
{
    return upperUnit(unit);
}

void ORVStrToLowerW(char16_t* text) noexcept
{
    for (; *text != 0; ++text) *text = lowerUnit(*text);
}

void ORVStrToUpperW(char16_t* text) noexcept
{
    for (; *text != 0; ++text) *text = upperUnit(*text);
}

std::int32_t ORVStrNICmpW(const char16_t* a, const char16_t* b, std::int32_t count) noexcept
{
    for (std::int32_t i = 0; i < count; ++i) {
        const char16_t left = a[i];
        const char16_t right = b[i];
        if (left != right) {
            const std::int32_t difference = lowerUnit(left) - lowerUnit(right);
            if (difference != 0) return difference;
        } else if (left == 0) {
            return 0;
        }
    }
    return 0;
}
