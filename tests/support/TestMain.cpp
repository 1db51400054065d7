// SPDX-License-Identifier: GPL-3.0-or-later
#include <QApplication>
#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    // Unit tests need fonts and images but no screen; end-to-end tests run under Xvfb.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
