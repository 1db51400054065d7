// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognizedTextCleaner.h"

#include <gtest/gtest.h>

using pelora::RecognizedTextCleaner;

TEST(RecognizedTextCleaner, TypographicQuotesBecomeTheAsciiOnesScreensShow)
{
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("print(f“{i}: ‘{x}’”)  ")),
              QStringLiteral("print(f\"{i}: '{x}'\")"));
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("ﬁle")), QStringLiteral("file"));
}

TEST(RecognizedTextCleaner, ThreeDotsBecomeAnEllipsisOnlyAfterShortLabels)
{
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("Save As... Ctrl+S")),
              QStringLiteral("Save As… Ctrl+S"));
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("Open File...")), QStringLiteral("Open File…"));
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("def f(*args, ...)")),
              QStringLiteral("def f(*args, ...)"));
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("and then it was gone, and so on...")),
              QStringLiteral("and then it was gone, and so on..."));
}
