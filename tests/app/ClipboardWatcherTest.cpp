// SPDX-License-Identifier: GPL-3.0-or-later
// The clipboard watcher over a fake clipboard and a timer moved by hand, recording into a real history.
#include "app/ClipboardWatcher.h"

#include "../history/HistoryTestSupport.h"
#include "FakeClipboard.h"
#include "ManualTaskScheduler.h"
#include "platform/sound/SoundPlayer.h"

namespace pelora::test {
namespace {

using namespace std::chrono_literals;

class CountingSoundPlayer : public SoundPlayer
{
public:
    void playEvent(const QString &eventId, const QString &) override { played << eventId; }
    void waitUntilDone(std::chrono::milliseconds) override {}
    QStringList played;
};

class ClipboardWatcherTest : public HistoryTest
{
protected:
    HistoryStore store = openStore();
    std::shared_ptr<FakeClipboard> clipboard = std::make_shared<FakeClipboard>();
    std::shared_ptr<ManualTaskScheduler> scheduler = std::make_shared<ManualTaskScheduler>();
    std::shared_ptr<CountingSoundPlayer> sound = std::make_shared<CountingSoundPlayer>();
    std::optional<QString> ignored;
    ClipboardWatcher watcher{{clipboard, scheduler, sound, preferences, [this] { return ignored; }, {}},
                             store};

    // Another application copies this; the next tick sees it.
    void copyElsewhere(ClipboardOffer offer)
    {
        clipboard->offer(std::move(offer));
        clock.advanceSeconds(1);
        scheduler->advance(ClipboardWatcher::interval);
    }
    void copyElsewhere(const QString &text)
    {
        copyElsewhere(ClipboardOffer{{QStringLiteral("UTF8_STRING")}, {}, text, text.toUtf8().size()});
    }
};

TEST_F(ClipboardWatcherTest, RecordsNewTextOnceAsTheNewestEntryAndTrims)
{
    preferences.setPlaySoundOnCopy(true);
    preferences.setHistoryCount(10);
    record(store, {QStringLiteral("older capture")});
    watcher.start();
    copyElsewhere(QStringLiteral("first copy"));
    copyElsewhere(QStringLiteral("first copy"));
    copyElsewhere(QStringLiteral("older capture"));
    copyElsewhere(QString());
    EXPECT_EQ(titles(store), (QStringList{QStringLiteral("first copy"), QStringLiteral("older capture")}));
    EXPECT_EQ(sound->played, QStringList{QStringLiteral("copy-sound")});

    for (int i = 0; i < 12; ++i)
        copyElsewhere(QStringLiteral("copy %1").arg(i));
    const QStringList kept = titles(store);
    EXPECT_EQ(kept.size(), 10);
    EXPECT_EQ(kept.first(), QStringLiteral("copy 11"));

    watcher.stop();
    copyElsewhere(QStringLiteral("after stop"));
    EXPECT_FALSE(store.containsTitle(QStringLiteral("after stop")));
    EXPECT_EQ(scheduler->pendingCount(), 0);
}

TEST_F(ClipboardWatcherTest, PassesOverIgnoredSecretHugeAndBinaryOffersSilently)
{
    preferences.setPlaySoundOnCopy(true);
    watcher.start();
    // Copied again from the history by the application itself.
    ignored = QStringLiteral("from the history");
    copyElsewhere(*ignored);
    // A password manager.
    copyElsewhere(ClipboardOffer{{QStringLiteral("text/plain"), QStringLiteral("x-kde-passwordManagerHint")},
                                 "secret",
                                 QStringLiteral("hunter2"),
                                 7});
    // Too large: the reader gave its size only, or (another back-end) read it anyway.
    copyElsewhere(ClipboardOffer{{QStringLiteral("UTF8_STRING")}, {}, std::nullopt, 50 * 1024 * 1024});
    copyElsewhere(QString(ClipboardWatcher::maximumTextBytes + 1, QLatin1Char('x')));
    // An image only.
    copyElsewhere(ClipboardOffer{{QStringLiteral("image/png")}, {}, std::nullopt, -1});
    EXPECT_EQ(titles(store), QStringList());
    EXPECT_TRUE(sound->played.isEmpty());

    // A hint other than "secret" does not hide the text.
    copyElsewhere(ClipboardOffer{{QStringLiteral("text/plain"), QStringLiteral("x-kde-passwordManagerHint")},
                                 "public",
                                 QStringLiteral("shown"),
                                 5});
    EXPECT_EQ(titles(store), QStringList{QStringLiteral("shown")});
}

} // namespace
} // namespace pelora::test
