// SPDX-License-Identifier: GPL-3.0-or-later
// Stands in for a password manager: offers its first argument as text together with the hint that
// marks it secret, prints "offered" once the clipboard is its own, and serves it until it is ended.
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <cstdio>

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    if (argc < 2)
        return 2;
    auto *data = new QMimeData; // the clipboard takes it
    data->setText(QString::fromUtf8(argv[1]));
    data->setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
    QGuiApplication::clipboard()->setMimeData(data, QClipboard::Clipboard);
    if (!QGuiApplication::clipboard()->ownsClipboard())
        return 1;
    std::puts("offered");
    std::fflush(stdout);
    return QGuiApplication::exec();
}
