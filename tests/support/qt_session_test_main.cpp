// The main function of session tests with an event loop, which goes on while a test waits.

#include "support/Wait.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    velmora::support::betweenLooks = [] { QCoreApplication::processEvents(); };
    return RUN_ALL_TESTS();
}
