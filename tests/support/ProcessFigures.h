// ProcessFigures.h: what a running process costs its machine, as the kernel counts it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <sys/types.h>

namespace velmora::support {

/// Memory that is in use right now. Units: bytes; 0 when the process is gone.
[[nodiscard]] std::int64_t residentBytes(pid_t process);

/// How many files, sockets and the like are open; 0 when the process is gone.
[[nodiscard]] std::int64_t openDescriptors(pid_t process);

/// How often a thread of the process has gone to sleep so far, over all that live now: each time it
/// was woken up before.
[[nodiscard]] std::int64_t sleeps(pid_t process);

/// Processor time so far of all threads that live now. Units: seconds.
[[nodiscard]] double processorSeconds(pid_t process);

/// The same by the threads' names, of which several threads may have one: the first is "main", and
/// those that nobody has named are called as the program is.
[[nodiscard]] std::map<std::string, double> threadSeconds(pid_t process);

/// Gives memory that was freed back to the kernel, so that what remains is what is in use.
/// Threads: of this process, any.
void returnFreedMemory();

} // namespace velmora::support
