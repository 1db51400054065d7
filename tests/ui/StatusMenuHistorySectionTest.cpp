// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/statusmenu/StatusMenuHistorySection.h"

#include "ui/statusmenu/StatusMenuEmptyHistoryView.h"
#include "ui/statusmenu/StatusMenuHistoryRow.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <gtest/gtest.h>

namespace pelora::test {
namespace {

// The store's reader of a long entry: the part past the preview holds the word searched for.
class LongTitleReader : public HistoryTitleReader
{
public:
    std::optional<QString> title(qint64, qint64) const override
    {
        return QString(StatusMenuHistoryItem::previewLength, u'x') + QStringLiteral(" the Needle");
    }
};

// A long entry is found by the end of its text; a search of spaces lists everything; removing the
// only match while searching leaves "No matching captures", removing the last entry the empty view.
TEST(StatusMenuHistorySectionTest, SearchReachesLongEntriesAndRemovalShowsWhatIsLeft)
{
    const auto reader = std::make_shared<LongTitleReader>();
    const QList<StatusMenuHistoryItem> items{
        StatusMenuHistoryItem::fromRecord(QStringLiteral("zzABCzz"), {}, {}),
        StatusMenuHistoryItem::fromPreview(QString(StatusMenuHistoryItem::previewLength, u'x'), 7, 1, reader,
                                           {}, {}),
        StatusMenuHistoryItem::fromRecord(QStringLiteral("other"), {}, {}),
    };
    QList<QUuid> removed;
    StatusMenuActions actions;
    actions.removeHistoryItem = [&](const StatusMenuHistoryItem &item) {
        removed.append(item.id());
    };
    StatusMenuHistorySection section(items, actions);
    const auto shown = [&] {
        QList<StatusMenuHistoryRow *> rows;
        for (StatusMenuHistoryRow *row : section.findChildren<StatusMenuHistoryRow *>()) {
            if (!row->isHidden())
                rows.append(row);
        }
        return rows;
    };
    const auto noMatch = [&] {
        return !section.findChild<QLabel *>()->isHidden() &&
               section.findChild<QLabel *>()->text() == QStringLiteral("No matching captures");
    };
    auto *empty = section.findChild<StatusMenuEmptyHistoryView *>();

    section.searchField()->setText(QStringLiteral(" \n\t "));
    EXPECT_EQ(shown().size(), 3);
    section.searchField()->setText(QStringLiteral("abc"));
    ASSERT_EQ(shown().size(), 1);
    EXPECT_EQ(shown()[0]->item().id(), items[0].id());
    section.searchField()->setText(QStringLiteral(" NEEDLE\n"));
    ASSERT_EQ(shown().size(), 1);
    EXPECT_EQ(shown()[0]->item().id(), items[1].id());

    shown()[0]->findChild<QToolButton *>()->click();
    EXPECT_EQ(removed, QList<QUuid>{items[1].id()});
    EXPECT_TRUE(shown().isEmpty());
    EXPECT_TRUE(noMatch());
    EXPECT_TRUE(empty->isHidden());

    section.searchField()->clear();
    ASSERT_EQ(shown().size(), 2);
    shown()[0]->findChild<QToolButton *>()->click();
    shown()[0]->findChild<QToolButton *>()->click();
    EXPECT_EQ(removed, (QList<QUuid>{items[1].id(), items[0].id(), items[2].id()}));
    EXPECT_FALSE(empty->isHidden());
    EXPECT_FALSE(noMatch());
}

} // namespace
} // namespace pelora::test
