// store_writer.cpp: writes settings without end and acknowledges each on stdout, to be killed.
#include "platform/sqlite/NumberedWrites.h"
#include "platform/sqlite/SqliteDefaultsStore.h"

#include <cstdint>
#include <cstdlib>
#include <unistd.h>

/// Arguments: the store's file, and the first number to write. Once `set` has returned, the
/// number's 8 bytes go to stdout.
int main(int count, char** arguments) {
    if (count != 3) {
        return EXIT_FAILURE;
    }
    velmora::SqliteDefaultsStore store(arguments[1]);
    for (std::uint64_t number = std::strtoull(arguments[2], nullptr, 10);; ++number) {
        const auto [key, value] = velmora::numberedWrite(number);
        if (store.set(key, value) != velmora::statusOk ||
            write(STDOUT_FILENO, &number, sizeof number) != sizeof number) {
            return EXIT_FAILURE;
        }
    }
}
