// Test entry: one QApplication for the process (offscreen unless a display is asked for).
#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setApplicationName("Cantovel");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
