// broken_card: loaded before the libraries of OpenGL, the driver of a graphics card that says what
// it is and then draws in no window of X11.

#include <dlfcn.h>

namespace {

using Drawable = unsigned long;
using MakeCurrent = int (*)(void*, Drawable, void*);

MakeCurrent ownerOf(const char* function) {
    void* const library = dlopen("libGL.so.1", RTLD_LAZY);
    return library == nullptr ? nullptr : reinterpret_cast<MakeCurrent>(dlsym(library, function));
}

} // namespace

extern "C" int glXMakeCurrent(void* display, Drawable window, void* context) {
    static const MakeCurrent original = ownerOf("glXMakeCurrent");
    return original == nullptr || window != 0 ? 0 : original(display, window, context);
}
