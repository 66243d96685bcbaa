#include "engine/errors.h"
#include "engine/jet_like.h"

#include <gtest/gtest.h>

using folio::jet::like;

TEST(JetLike, PatternLanguage) {
    EXPECT_TRUE(like("Müller", "M*"));
    EXPECT_TRUE(like("Müller", "*ll*"));
    EXPECT_TRUE(like("Müller", "m?ller"));
    EXPECT_FALSE(like("Mueller", "m?ller"));
    EXPECT_TRUE(like("", "*"));
    EXPECT_FALSE(like("", "?"));
    EXPECT_TRUE(like("abc", "a*c*"));
    EXPECT_TRUE(like("aXbXc", "*b*c"));
    EXPECT_FALSE(like("abcd", "a*c"));
    EXPECT_TRUE(like("1848", "18##"));
    EXPECT_FALSE(like("18a8", "18##"));
    EXPECT_TRUE(like("Berta", "[a-c]*"));
    EXPECT_FALSE(like("Dora", "[a-c]*"));
    EXPECT_TRUE(like("Dora", "[!a-c]*"));
    EXPECT_FALSE(like("anna", "[!a]*"));
    EXPECT_TRUE(like("x*y", "x[*]y"));
    EXPECT_FALSE(like("xzy", "x[*]y"));
    EXPECT_TRUE(like("a#b", "a[#]b"));
    EXPECT_TRUE(like("b", "[abc]"));
    // "%" and "_" are plain characters here.
    EXPECT_TRUE(like("50%", "50%"));
    EXPECT_FALSE(like("500", "50%"));
    EXPECT_FALSE(like("a", "_"));
}

TEST(JetLike, IgnoresCaseAlsoBeyondAscii) {
    EXPECT_TRUE(like("MÜLLER", "müller"));
    EXPECT_TRUE(like("straße", "STRAßE"));
    EXPECT_TRUE(like("ÄRGER", "[ä]*"));
    EXPECT_TRUE(like("Zoë", "ZO?"));
    EXPECT_FALSE(like("Arger", "ä*")); // accents count
}

TEST(JetLike, RefusesBrokenPatterns) {
    EXPECT_THROW(like("a", "[a-"), folio::DatabaseError);
    EXPECT_THROW(like("a", "[c-a]"), folio::DatabaseError);
}
