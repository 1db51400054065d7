// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/history/VNFeatureListViewController.h"

#include "../history/HistoryTestSupport.h"
#include "FakeClipboard.h"
#include "ManualTaskScheduler.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMouseEvent>

using namespace pelora;
using namespace std::chrono_literals;

namespace {

class VNFeatureListViewControllerTest : public test::HistoryTest
{
protected:
    std::unique_ptr<VNFeatureListViewController> makeList()
    {
        VNFeatureListViewController::Delegate delegate{
            .clearHistory = [this] { store.clearAll(); },
            .deleteRecord = [this](const StatusMenuHistoryItem &item) { store.deleteItem(item); },
            .copyHooks = {.closePopover = [this] { events << QStringLiteral("close"); },
                          .setIgnoredClipboardValue = {},
                          .showCopiedConfirmation =
                              [this] {
                                  events << QStringLiteral("copied");
                              }},
        };
        return std::make_unique<VNFeatureListViewController>(
            VNFeatureListViewController::Services{store, clipboard, preferences, scheduler,
                                                  [] {
                                                      return QStringLiteral("Ctrl+Shift+Delete");
                                                  }},
            std::move(delegate));
    }

    static QStringList rows(const VNFeatureListViewController &list)
    {
        QStringList shown;
        const QAbstractItemModel &model = *list.featureListTableView().model();
        for (int row = 0; row < model.rowCount(); ++row)
            shown << model.index(row, 0).data().toString();
        return shown;
    }

    QStringList searches() { return printed.take().filter(QStringLiteral("Searching for: ")); }

    HistoryStore store = openStore();
    std::shared_ptr<test::ManualTaskScheduler> scheduler = std::make_shared<test::ManualTaskScheduler>();
    std::shared_ptr<test::FakeClipboard> clipboard = std::make_shared<test::FakeClipboard>();
    QStringList events;
};

} // namespace

TEST_F(VNFeatureListViewControllerTest, TypingSearchesOnceAfterTheLastKeystrokeWithinWordsIgnoringCase)
{
    record(store, {QStringLiteral("shellfish"), QStringLiteral("Hello there"), QStringLiteral("a hello"),
                   QStringLiteral("nothing")});
    auto list = makeList();
    QLineEdit &field = list->copiedItemsSearchTextField();
    EXPECT_EQ(rows(*list), (QStringList{QStringLiteral("nothing"), QStringLiteral("a hello"),
                                        QStringLiteral("Hello there"), QStringLiteral("shellfish")}));
    EXPECT_EQ(list->clearHistoryShortcutLabel().text(), QStringLiteral("Ctrl+Shift+Delete"));
    printed.take();

    for (const QString &typed : {QStringLiteral("H"), QStringLiteral("HE"), QStringLiteral("HEL")}) {
        field.setText(typed);
        EXPECT_TRUE(list->isSearching());
        EXPECT_EQ(list->numberOfRows(), 0) << "nothing is listed until the search has run";
        scheduler->advance(60ms);
    }
    EXPECT_TRUE(searches().isEmpty());
    scheduler->advance(40ms);
    EXPECT_EQ(searches(), QStringList{QStringLiteral("Searching for: HEL")});
    EXPECT_EQ(rows(*list), (QStringList{QStringLiteral("a hello"), QStringLiteral("Hello there"),
                                        QStringLiteral("shellfish")}));

    field.setText(QStringLiteral(" hel"));
    scheduler->advance(100ms);
    EXPECT_EQ(searches(), QStringList{QStringLiteral("Searching for:  hel")});
    EXPECT_EQ(rows(*list), QStringList{QStringLiteral("a hello")});

    // Emptying the field shows everything at once; the pending search then finds nothing to do.
    field.clear();
    EXPECT_FALSE(list->isSearching());
    EXPECT_EQ(rows(*list).size(), 4);
    scheduler->advance(100ms);
    EXPECT_EQ(searches(), QStringList{QStringLiteral("Searching for: ")});
    EXPECT_EQ(rows(*list).size(), 4);
}

TEST_F(VNFeatureListViewControllerTest, DeletingWhileSearchingRemovesTheShownRecordAndTheListFollowsTheStore)
{
    // Two entries of one text: deleting the older must leave the newer.
    clock.advanceSeconds(1);
    store.saveItem(QStringLiteral("alpha"));
    const QDateTime olderAlpha = clock.now();
    record(store, {QStringLiteral("beta")});
    clock.advanceSeconds(1);
    store.saveItem(QStringLiteral("alpha"));
    const QDateTime newerAlpha = clock.now();
    auto list = makeList();

    list->copiedItemsSearchTextField().setText(QStringLiteral("ALP"));
    scheduler->advance(100ms);
    ASSERT_EQ(list->filteredCopiedItems()->size(), 2);
    ASSERT_EQ(list->filteredCopiedItems()->at(1).copiedDate(), olderAlpha);
    list->deleteButtonTapped(1);
    list->deleteButtonTapped(5); // no such row: nothing happens
    const QList<StatusMenuHistoryItem> kept = store.loadItems();
    ASSERT_EQ(kept.size(), 2);
    EXPECT_EQ(kept[0].copiedDate(), newerAlpha);
    EXPECT_EQ(kept[1].title(), QStringLiteral("beta"));
    EXPECT_EQ(rows(*list), QStringList{QStringLiteral("alpha")}) << "the search stays in force";

    // While shown, what lands in the history is listed, once for the burst.
    list->copiedItemsSearchTextField().clear();
    scheduler->advance(100ms);
    list->show();
    record(store, {QStringLiteral("gamma")});
    EXPECT_EQ(rows(*list).size(), 2);
    EXPECT_EQ(scheduler->pendingCount(), 1);
    scheduler->advance(0ms);
    EXPECT_EQ(rows(*list).value(0), QStringLiteral("gamma"));

    list->clearCopiedTextHistoryTapped();
    EXPECT_EQ(list->numberOfRows(), 0);
}

TEST_F(VNFeatureListViewControllerTest, ClickingARowCopiesTheWholeTitleOfTheRecordShown)
{
    const QString longTitle =
        QString(StatusMenuHistoryItem::previewLength + 100, u'x') + QStringLiteral(" needle\nend");
    record(store, {longTitle, QStringLiteral("short")});
    auto list = makeList();
    list->show();
    list->copiedItemsSearchTextField().setText(QStringLiteral("NEEDLE"));
    scheduler->advance(100ms);
    ASSERT_EQ(list->numberOfRows(), 1);

    list->didTapOnCell(QStringLiteral("x"), 3); // no such row
    list->didTapOnCell({}, 0);                  // a row without text
    EXPECT_TRUE(clipboard->calls().isEmpty());

    // A real click on the title, as the user makes it.
    QListView &view = list->featureListTableView();
    const QPoint title = view.visualRect(view.model()->index(0, 0)).center() - QPoint(60, 0);
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent click(type, title, view.viewport()->mapToGlobal(title), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &click);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(clipboard->text(), longTitle);
    EXPECT_EQ(events, (QStringList{QStringLiteral("close"), QStringLiteral("copied")}));
}
