// settings_changer.cpp: mixes and changes settings without end, and acknowledges each change on
// stdout, to be killed.
#include "durability/Change.h"
#include "platform/sqlite/SqliteDefaultsStore.h"

#include <cstdint>
#include <cstdlib>
#include <unistd.h>

namespace {

bool acknowledge(std::uint64_t change) {
    return write(STDOUT_FILENO, &change, sizeof change) == sizeof change;
}

} // namespace

/// Arguments: the store's file, and the number of the last change that was made. Once this program
/// has started, it acknowledges that number, and from then on each change after it.
int main(int count, char** arguments) {
    using namespace velmora;
    if (count != 3) {
        return EXIT_FAILURE;
    }
    SqliteDefaultsStore store(arguments[1]);
    Studio studio;
    Mixer mixer(studio, store);
    std::uint64_t number = std::strtoull(arguments[2], nullptr, 10);
    perform(Launch{}, mixer);
    while (mixer.engine.isRunning() && store.problems().empty() && acknowledge(number)) {
        studio.playBlock();
        perform(randomChange(++number), mixer);
    }
    return EXIT_FAILURE;
}
