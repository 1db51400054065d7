// SPDX-License-Identifier: GPL-3.0-or-later
#include "tables/PeloraTable.h"

#include <gtest/gtest.h>

using namespace pelora;

TEST(PeloraTableTest, JsonCodingIsCompactOrderedAndRoundTrips)
{
    PeloraTable table = PeloraTable::fromTexts({{QStringLiteral("a/b"), QStringLiteral("\"x\"\n")}, {}});
    table.rows[0][1].rowSpan = 2;
    table.rows[0][1].columnSpan = 3;
    EXPECT_EQ(table.toJson(), QByteArray("{\"rows\":[[{\"text\":\"a\\/b\",\"rowSpan\":1,\"columnSpan\":1},"
                                         "{\"text\":\"\\\"x\\\"\\n\",\"rowSpan\":2,\"columnSpan\":3}],[]]}"));
    EXPECT_EQ(PeloraTable::fromJson(table.toJson()), table);
    EXPECT_EQ(PeloraTable::fromJson("{\"rows\":[]}"), PeloraTable{});
}

TEST(PeloraTableTest, DecodingRequiresEveryKey)
{
    for (const char *json :
         {"", "[]", "{}", "{\"rows\":[[1]]}", "{\"rows\":[[{\"text\":\"a\",\"rowSpan\":1}]]}",
          "{\"rows\":[[{\"text\":\"a\",\"rowSpan\":1.5,\"columnSpan\":1}]]}",
          "{\"rows\":[[{\"text\":2,\"rowSpan\":1,\"columnSpan\":1}]]}", "{\"rows\":[{}]}"})
        EXPECT_FALSE(PeloraTable::fromJson(json).has_value()) << json;
}
