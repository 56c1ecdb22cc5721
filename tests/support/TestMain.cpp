// Shared main of the test executables: a QApplication on the offscreen
// platform, then GoogleTest.
#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Death tests re-run the binary; "threadsafe" is the style that works
    // with the threads Qt starts.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
