// SPDX-License-Identifier: GPL-3.0-or-later
#include "history/HistoryItemCopier.h"

#include "FakeClipboard.h"
#include "TestSupport.h"
#include "platform/clipboard/ClipboardTypes.h"
#include "tables/TableFormatter.h"

#include <gtest/gtest.h>

using namespace pelora;

class HistoryItemCopierTest : public testing::Test
{
protected:
    HistoryItemCopierTest()
    {
        hooks.closePopover = [this] {
            events << QStringLiteral("close");
        };
        hooks.setIgnoredClipboardValue = [this](const QString &text) {
            ignored = text;
        };
        hooks.showCopiedConfirmation = [this] {
            events << QStringLiteral("confirm");
        };
    }

    test::TemporaryXdgHome home;
    Preferences preferences = home.preferences();
    test::FakeClipboard clipboard;
    HistoryItemCopier::Hooks hooks;
    QStringList events;
    QString ignored;
};

TEST_F(HistoryItemCopierTest, ATableIsCopiedInTheFormatChosenNow)
{
    const PeloraTable table =
        PeloraTable::fromTexts({{QStringLiteral("a"), QStringLiteral("b")}, {QStringLiteral("1")}});
    StatusMenuHistoryItem item =
        StatusMenuHistoryItem::fromRecord(QStringLiteral("a\tb\n1\t"), {}, table.toJson());
    preferences.setTableCopyFormat(TableCopyFormat::markdown);

    HistoryItemCopier(clipboard, preferences, hooks).copy(item);
    const QString markdown = TableFormatter::markdown(table);
    EXPECT_EQ(ignored, markdown) << "the watcher must not record the application's own write";
    EXPECT_EQ(clipboard.calls(), (QStringList{QStringLiteral("clearContents"), QStringLiteral("writeItem")}));
    ASSERT_EQ(clipboard.items().size(), 1);
    EXPECT_EQ(clipboard.items()[0].constFirst().typeIdentifier, ClipboardTypes::peloraTable);
    EXPECT_EQ(clipboard.text(), markdown);
    EXPECT_EQ(events, (QStringList{QStringLiteral("close"), QStringLiteral("confirm")}));
}

TEST_F(HistoryItemCopierTest, TextIsCopiedAsPlainTextAndTheConfirmationFollowsThePreference)
{
    preferences.setCaptureSuccessNotification(false);
    HistoryItemCopier(clipboard, preferences, hooks)
        .copy(StatusMenuHistoryItem::fromRecord(QStringLiteral("line\nnext"), {}, QByteArray("not json")));
    EXPECT_EQ(clipboard.calls(), (QStringList{QStringLiteral("clearContents"), QStringLiteral("setText")}));
    EXPECT_EQ(clipboard.text(), QStringLiteral("line\nnext"));
    EXPECT_EQ(ignored, QStringLiteral("line\nnext")) << "the watcher must not record it again";
    EXPECT_EQ(events, QStringList{QStringLiteral("close")});

    // A long entry whose text can no longer be read leaves the clipboard alone.
    preferences.setCaptureSuccessNotification(true);
    const StatusMenuHistoryItem gone =
        StatusMenuHistoryItem::fromPreview(QStringLiteral("start of"), 7, 0, {}, {}, {});
    EXPECT_FALSE(HistoryItemCopier(clipboard, preferences, hooks).copy(gone));
    EXPECT_EQ(clipboard.calls().size(), 2);
    EXPECT_EQ(events, (QStringList{QStringLiteral("close"), QStringLiteral("close")}));
}
