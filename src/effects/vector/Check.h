// Check.h: when a stage looks whether its state is still finite.
#pragma once

namespace velmora {

/// A state that leaves the finite numbers must return to its reset value on that very frame. To
/// look on every frame lengthens the path from one frame to the next by half, for the sake of a
/// moment that hardly ever comes. But infinities and not-a-numbers never leave a recursion by
/// themselves: a state that is finite at the end of a block was so throughout. So a block may run
/// unchecked, be judged by its end, and be repeated with checks when it was bad.
enum class Check {
    everyFrame,
    atTheEnd, ///< by the caller, who then repeats the block if need be
};

} // namespace velmora
