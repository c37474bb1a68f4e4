// store_writer.cpp: writes settings without end and acknowledges each on stdout, to be killed.
#include "platform/sqlite/SqliteDefaultsStore.h"

#include <cstdint>
#include <cstdlib>
#include <unistd.h>

/// Arguments: the store's file, and the first number to write. Each number goes under one of four
/// keys by turns, as a dragged fader, a gain map, a language and presets would; once `set` has
/// returned, its 8 bytes are written to stdout.
int main(int count, char** arguments) {
    using namespace velmora;
    if (count != 3) {
        return EXIT_FAILURE;
    }
    SqliteDefaultsStore store(arguments[1]);
    for (std::uint64_t number = std::strtoull(arguments[2], nullptr, 10);; ++number) {
        const auto value = static_cast<double>(number);
        Status status = statusOk;
        switch (number % 4) {
        case 0:
            status = store.set("number", value);
            break;
        case 1:
            status = store.set("map", NumberMap{{"dev-1", value}, {"dev-2", value}});
            break;
        case 2:
            status = store.set("string", std::to_string(number));
            break;
        default:
            status = store.set("bytes", Bytes(1000 + number % 8000, std::uint8_t(number % 251)));
        }
        if (status != statusOk || write(STDOUT_FILENO, &number, sizeof number) != sizeof number) {
            return EXIT_FAILURE;
        }
    }
}
