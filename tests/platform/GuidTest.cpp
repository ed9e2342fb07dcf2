#include "platform/orvcore.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr GUID sample{0xE9DE4D9A, 0xBF89, 0x4A97, {0xB9, 0x74, 0x1F, 0x50, 0xBC, 0x5A, 0x8C, 0x61}};
constexpr char16_t sampleText[] = u"{E9DE4D9A-BF89-4A97-B974-1F50BC5A8C61}";

TEST(Guid, everyOtherTextIsRefused)
{
    GUID read = sample;
    for (int i = 0; i < 38; ++i) {
        std::u16string damaged = sampleText;
        damaged[static_cast<std::size_t>(i)] = u'g';
        EXPECT_EQ(ORVComGUIDFromString(damaged.c_str(), &read), E_INVALIDARG) << i;
        damaged.resize(static_cast<std::size_t>(i));
        EXPECT_EQ(ORVComGUIDFromString(damaged.c_str(), &read), E_INVALIDARG) << i;
    }
    EXPECT_EQ(ORVComGUIDFromString((std::u16string(sampleText) + u" ").c_str(), &read),
              E_INVALIDARG);
    EXPECT_EQ(ORVComGUIDFromString(nullptr, &read), E_POINTER);
    EXPECT_EQ(ORVComCompareGUID(read, sample), 0) << "a failure leaves the identifier alone";
}

} // namespace
