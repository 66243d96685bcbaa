#include "engine/errors.h"
#include "engine/record_id.h"

#include <gtest/gtest.h>

#include <unordered_set>

using folio::RecordId;

TEST(RecordId, TextFormsOfWholeAndFractionalNumbers) {
    EXPECT_EQ(RecordId(123).text(), "123");
    EXPECT_EQ(RecordId(123).numberText(), " 123");
    EXPECT_EQ(RecordId(123).sqlLiteral(), "123");
    EXPECT_EQ(RecordId(0).text(), "0");
    EXPECT_EQ(RecordId(0).numberText(), " 0");
    EXPECT_EQ(RecordId(-7).text(), "-7");
    EXPECT_EQ(RecordId(-7).numberText(), "-7");

    EXPECT_EQ(RecordId::fromUnits(12345).text(), "1.2345");
    EXPECT_EQ(RecordId::fromUnits(5000).text(), "0.5");
    EXPECT_EQ(RecordId::fromUnits(5000).numberText(), " .5");
    EXPECT_EQ(RecordId::fromUnits(-42500).text(), "-4.25");
    EXPECT_EQ(RecordId::fromUnits(-42500).numberText(), "-4.25");
    EXPECT_EQ(RecordId::fromUnits(-5000).numberText(), "-.5");

    // The largest and smallest values keep all their digits.
    EXPECT_EQ(RecordId::fromUnits(INT64_MAX).text(), "922337203685477.5807");
    EXPECT_EQ(RecordId::fromUnits(INT64_MIN).text(), "-922337203685477.5808");
}

TEST(RecordId, ParsesWhatItWritesAndRefusesTheRest) {
    for (std::int64_t units : {0LL, 10000LL, 12345LL, -42500LL, 9999LL, 1234567890000LL})
        EXPECT_EQ(RecordId::parse(RecordId::fromUnits(units).text())->units(), units);
    EXPECT_EQ(RecordId::parse(" 17 ")->units(), 170000);
    EXPECT_EQ(RecordId::parse(" .5")->units(), 5000);
    // The fifth decimal rounds half to even.
    EXPECT_EQ(RecordId::parse("1.00005")->units(), 10000);
    EXPECT_EQ(RecordId::parse("1.00015")->units(), 10002);
    EXPECT_EQ(RecordId::parse("1.000051")->units(), 10001);
    EXPECT_FALSE(RecordId::parse(""));
    EXPECT_FALSE(RecordId::parse("-"));
    EXPECT_FALSE(RecordId::parse("12a"));
    EXPECT_FALSE(RecordId::parse("1.2.3"));
    EXPECT_FALSE(RecordId::parse("99999999999999999999"));
}

TEST(RecordId, ComparesAndHashesByValue) {
    EXPECT_LT(RecordId(1), RecordId(2));
    EXPECT_LT(RecordId(-1), RecordId(0));
    EXPECT_LT(RecordId::fromUnits(10000), RecordId::fromUnits(10001));
    EXPECT_EQ(RecordId::fromDouble(3.0), RecordId(3));
    EXPECT_TRUE(RecordId().isZero());
    std::unordered_set<RecordId> set{RecordId(1), RecordId(1), RecordId(2)};
    EXPECT_EQ(set.size(), 2u);
    // Four decimals, half to even, as a currency conversion rounds.
    EXPECT_EQ(RecordId::fromDouble(0.00005).units(), 0);
    EXPECT_EQ(RecordId::fromDouble(0.00015).units(), 2);
    EXPECT_THROW(RecordId::fromDouble(1e300), folio::Error);
    // A whole number read from a file: the largest that fits is kept, one more is refused.
    EXPECT_EQ(RecordId::fromWhole(922337203685477).text(), "922337203685477");
    EXPECT_EQ(RecordId::fromWhole(-922337203685477).text(), "-922337203685477");
    EXPECT_THROW(RecordId::fromWhole(922337203685478), folio::Error);
    EXPECT_THROW(RecordId::fromWhole(INT64_MIN), folio::Error);
}
