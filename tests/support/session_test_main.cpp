// The main function of every session test program.

#include "support/SessionTests.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return velmora::support::runSessionTests(argv);
}
