// Test entry: one QApplication for the process (offscreen unless a display is asked for).
#include <gtest/gtest.h>

#include <QApplication>

#include "support/DesktopSession.h"

int main(int argc, char** argv) {
    // Before the platform is chosen: an executable that asked for a desktop runs on it
    // (not for the listing the build asks for).
    bool listing = false;
    for (int i = 1; i < argc; ++i) listing |= qstrcmp(argv[i], "--gtest_list_tests") == 0;
    if (!listing) cantovel::test::startRequestedDesktopSession();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName("Cantovel");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
