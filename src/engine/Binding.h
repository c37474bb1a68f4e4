// Binding.h: a value that a control reads and writes in place.
#pragma once

#include <functional>

namespace velmora {

/// Threads: main. Must not outlive the object that made it.
template <typename T>
struct Binding {
    std::function<T()> get;
    std::function<void(const T&)> set;
};

} // namespace velmora
