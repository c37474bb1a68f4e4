#include "engine/realtime/PriorityMutex.h"

#include <system_error>

namespace velmora {
namespace {

void check(int error) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "priority-inheriting mutex");
    }
}

} // namespace

PriorityMutex::PriorityMutex() {
    pthread_mutexattr_t attributes;
    check(pthread_mutexattr_init(&attributes));
    const int refused = pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    const int failed = refused != 0 ? refused : pthread_mutex_init(&mutex_, &attributes);
    pthread_mutexattr_destroy(&attributes);
    check(failed);
}

PriorityMutex::~PriorityMutex() {
    pthread_mutex_destroy(&mutex_);
}

} // namespace velmora
