#include "engine/errors.h"
#include "engine/value.h"

#include <gtest/gtest.h>

using folio::RecordId;
using folio::Value;

TEST(Value, NullIsNotTheEmptyTextButConvertsToNothing) {
    Value null;
    Value empty("");
    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(empty.isNull());
    EXPECT_NE(null, empty);
    EXPECT_EQ(null.text(), "");
    EXPECT_EQ(null.toInt(), 0);
    EXPECT_FALSE(null.toBool());
    EXPECT_TRUE(null.toRecordId().isZero());
}

TEST(Value, ConversionsBetweenKinds) {
    EXPECT_EQ(Value(true).toInt(), -1);
    EXPECT_EQ(Value(" 42 ").toInt(), 42);
    EXPECT_EQ(Value("2.5").toInt(), 2); // half to even
    EXPECT_EQ(Value("3.5").toInt(), 4);
    EXPECT_EQ(Value("17").toRecordId(), RecordId(17));
    EXPECT_EQ(Value(17).toRecordId(), RecordId(17));
    EXPECT_EQ(Value(RecordId::fromUnits(12500)).text(), "1.25");
    EXPECT_EQ(Value(1.5).text(), "1.5");
    EXPECT_EQ(Value(3.0).text(), "3");
    EXPECT_TRUE(Value("True").toBool());
    EXPECT_FALSE(Value(" false").toBool());
    EXPECT_TRUE(Value("-1").toBool());
    EXPECT_EQ(Value(folio::DateTime(2)).text(), "1900-01-01");
    EXPECT_THROW(Value("abc").toInt(), folio::Error);
    EXPECT_THROW(Value("").toDouble(), folio::Error);
    EXPECT_THROW(Value("12x").toRecordId(), folio::Error);
}
