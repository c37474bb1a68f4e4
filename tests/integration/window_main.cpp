// The main function of the tests that show the real window on a real mix: no screen is needed.

#include "support/Wait.h"

#include <QAccessible>
#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argc, argv);
    QAccessible::setActive(true);
    velmora::support::betweenLooks = [] { QApplication::processEvents(); };
    return RUN_ALL_TESTS();
}
