// The main function of the integration tests: an event loop that goes on while a test waits.

#include "support/Wait.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    velmora::support::betweenLooks = [] { QCoreApplication::processEvents(); };
    return RUN_ALL_TESTS();
}
