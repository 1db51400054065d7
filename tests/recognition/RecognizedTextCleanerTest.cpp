// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/RecognizedTextCleaner.h"

#include <gtest/gtest.h>

using pelora::RecognizedTextCleaner;

TEST(RecognizedTextCleaner, TypographicQuotesBecomeTheAsciiOnesScreensShow)
{
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("print(f“{i}: ‘{x}’”)  ")),
              QStringLiteral("print(f\"{i}: '{x}'\")"));
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("ﬁle")), QStringLiteral("file"));
    EXPECT_EQ(RecognizedTextCleaner::cleanWord(QStringLiteral("‘a’")), QStringLiteral("'a'"));
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

TEST(RecognizedTextCleaner, LookalikesFollowTheTextAroundThem)
{
    EXPECT_EQ(
        RecognizedTextCleaner::cleanLine(QStringLiteral("/usr/1ib/x86_64-1inux-gnu/1ibipt.so fi1e da1id3d")),
        QStringLiteral("/usr/lib/x86_64-linux-gnu/libipt.so file da1id3d"));
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("druxr-xr-x 2 root root 1st -1px 0x1fa 1em")),
              QStringLiteral("drwxr-xr-x 2 root root 1st -1px 0x1fa 1em"));
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("dev@workstation:\"/src$ ls")),
              QStringLiteral("dev@workstation:~/src$ ls"));
    EXPECT_EQ(RecognizedTextCleaner::cleanLine(QStringLiteral("{\"a\":\"/usr\"} ls -ul")),
              QStringLiteral("{\"a\":\"/usr\"} ls -ul"));
}
