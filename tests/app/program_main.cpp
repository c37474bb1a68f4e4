// Tests of the program on a desktop: the fake panel answers while a test waits.

#include "support/Wait.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    velmora::support::betweenLooks = [] { QCoreApplication::processEvents(); };
    return RUN_ALL_TESTS();
}
