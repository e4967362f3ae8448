// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintersFilter.h"

#include "support/RowName.h"
#include "support/com/Answer.h"

#include <gtest/gtest.h>

namespace {

using Microsoft::WRL::ComPtr;

struct FieldRow {
    const char* name;
    HRESULT (IPrintersFilter::*get)(VARIANT_BOOL*);
    HRESULT (IPrintersFilter::*put)(VARIANT_BOOL);
    VARIANT_BOOL atFirst;
};

constexpr FieldRow fields[] = {
    {"Local",   &IPrintersFilter::get_Local,   &IPrintersFilter::put_Local,   VARIANT_TRUE },
    {"Network", &IPrintersFilter::get_Network, &IPrintersFilter::put_Network, VARIANT_TRUE },
    {"Shared",  &IPrintersFilter::get_Shared,  &IPrintersFilter::put_Shared,  VARIANT_FALSE},
};

class FilterField : public ::testing::TestWithParam<FieldRow> {
protected:
    FilterField() { EXPECT_EQ(CreateInstance(filter.GetAddressOf()), S_OK); }

    VARIANT_BOOL Read(const FieldRow& field) const
    {
        VARIANT_BOOL value = 99;
        EXPECT_EQ((filter.Get()->*field.get)(&value), S_OK);
        return value;
    }

    ComPtr<PrintersFilter> filter;
};

INSTANTIATE_TEST_SUITE_P(Each, FilterField, ::testing::ValuesIn(fields), rowName);

TEST_P(FilterField, HasItsValueAtFirst)
{
    EXPECT_EQ(Read(GetParam()), GetParam().atFirst);
}

TEST_P(FilterField, KeepsWhateverItIsGiven)
{
    for (const VARIANT_BOOL value : {VARIANT_BOOL{0}, VARIANT_BOOL{-1}, VARIANT_BOOL{1}, VARIANT_BOOL{-2}}) {
        EXPECT_EQ((filter.Get()->*GetParam().put)(value), S_OK);
        EXPECT_EQ(Read(GetParam()), value);
        for (const FieldRow& other : fields) {
            if (other.get == GetParam().get) continue;
            EXPECT_EQ(Read(other), other.atFirst) << other.name;
        }
    }
}

TEST_P(FilterField, WithoutAPlaceToGoFailsAndTellsNobody)
{
    AnswerOf(S_OK); // what other tests have left
    const Answer silent{E_FAIL, ""};
    EXPECT_EQ(AnswerOf((filter.Get()->*GetParam().get)(nullptr)), silent);
}

} // namespace
