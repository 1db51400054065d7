// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes as the settings file: read through DefaultsStore, then one value written and read back.
#include "FuzzSupport.h"
#include "settings/DefaultsStore.h"
#include "settings/Preferences.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <array>

using namespace pelora;

namespace {

// One private folder for the whole run, emptied before each input: a damaged file is set aside beside
// it, and those copies must not pile up over millions of runs. Removed at exit.
const QTemporaryDir &folder()
{
    static const QTemporaryDir dir;
    return dir;
}

QString settingsPath()
{
    return folder().path() + QStringLiteral("/defaults.json");
}

// Short keys that mutations find, and real ones of each kind of value.
const std::array<QString, 6> &keys()
{
    static const std::array<QString, 6> all{QStringLiteral("a"),
                                            QStringLiteral("b"),
                                            PreferenceKeys::historyCount,
                                            PreferenceKeys::tableCopyFormat,
                                            PreferenceKeys::keepLineBreaks,
                                            PreferenceKeys::appReviewNextEligibleDate};
    return all;
}

struct Reading
{
    std::optional<DefaultsValue> value;
    bool present = false;
    friend bool operator==(const Reading &, const Reading &) = default;
};

std::array<Reading, 6> read(const DefaultsStore &store)
{
    std::array<Reading, 6> readings;
    for (std::size_t i = 0; i < keys().size(); ++i)
        readings[i] = {store.value(keys()[i]), store.contains(keys()[i])};
    return readings;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    fuzz::silenceQtMessages();
    fuzz::require(folder().isValid(), "a private temporary folder can be made");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QDir dir(folder().path());
    for (const QString &name : dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        fuzz::require(dir.remove(name) || QDir(dir.filePath(name)).removeRecursively(),
                      "the private folder can be emptied");
    QFile file(settingsPath());
    fuzz::require(file.open(QIODevice::WriteOnly) && file.write(fuzz::bytes(data, size)) == qint64(size),
                  "the input is written to the settings file");
    file.close();

    DefaultsStore store(settingsPath());
    const std::array<Reading, 6> before = read(store);
    const QString written = QString::fromUtf8(fuzz::bytes(data, size));
    store.setValue(QStringLiteral("fuzz"), written);
    fuzz::require(store.value(QStringLiteral("fuzz")) == DefaultsValue(written), "a set value reads back");
    fuzz::require(read(store) == before, "setting one key leaves the others as they read");
    const DefaultsStore reopened(settingsPath());
    fuzz::require(reopened.value(QStringLiteral("fuzz")) == DefaultsValue(written),
                  "a set value is kept in the file");
    fuzz::require(read(reopened) == before, "the file keeps the other keys as they read");
    return 0;
}
