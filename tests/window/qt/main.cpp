// The tests' own application, on a screen in memory unless the environment names another platform.
#include <QApplication>
#include <QLoggingCategory>

#include <gtest/gtest.h>

int main(int count, char** arguments) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleTest(&count, arguments);
    // What the toolkit has to say about bad pictures and about a screen in memory.
    QLoggingCategory::setFilterRules("qt.gui.imageio*=false\nqt.qpa*=false");
    const QApplication application(count, arguments);
    return RUN_ALL_TESTS();
}
