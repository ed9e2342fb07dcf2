#include "orv/quark/InterfaceData.h"

#include "orv/Object.h"
#include "tests/support/Living.h"

#include <gtest/gtest.h>

namespace orv::quark {
namespace {

constexpr GUID KNOWN{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
constexpr GUID OTHER{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 12}};

Result s_answer = S_OK;
std::uint32_t s_argument = 0;

Result answer(ComObject* object, const GUID&, void** out, std::uint32_t argument)
{
    s_argument = argument;
    if (s_answer == S_OK) *out = object;
    return s_answer;
}

class InterfaceMap : public testing::Test {
protected:
    void SetUp() override { m_object->AddRef(); }
    void TearDown() override { EXPECT_EQ(m_object->Release(), 0u); }

    Result query(const InterfaceData* map, const GUID& iid)
    {
        m_out = this;
        return QueryInterfaceMap(map, m_object, iid, &m_out);
    }

    test::Living* const m_object = new test::Living;
    void* m_out = nullptr;
};

TEST_F(InterfaceMap, onlyARowThatNamesTheInterfaceFailsTheQuery)
{
    const InterfaceData named[] = {{&KNOWN, &answer, 42}, {&KNOWN, std::uintptr_t{0}}, endRow};
    const InterfaceData forAll[] = {{nullptr, &answer, 43}, {&KNOWN, std::uintptr_t{0}}, endRow};

    s_answer = E_NOTIMPL;
    EXPECT_EQ(query(named, KNOWN), E_NOTIMPL);
    EXPECT_EQ(s_argument, 42u);
    EXPECT_EQ(query(named, OTHER), E_NOINTERFACE);
    EXPECT_EQ(query(forAll, OTHER), E_NOINTERFACE);
    EXPECT_EQ(m_out, nullptr);
    EXPECT_EQ(query(forAll, KNOWN), S_OK) << "the next row answers";
    EXPECT_EQ(s_argument, 43u);
    EXPECT_EQ(m_object->Release(), 1u);

    s_answer = 1;
    EXPECT_EQ(query(named, KNOWN), S_OK) << "a success other than S_OK goes on";
    EXPECT_EQ(m_object->Release(), 1u);
    s_answer = S_OK;
    EXPECT_EQ(query(forAll, OTHER), S_OK);
    EXPECT_EQ(m_object->GetRefCount(), 1u) << "the handler takes the count";
}

} // namespace
} // namespace orv::quark
