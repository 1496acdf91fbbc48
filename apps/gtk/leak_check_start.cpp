// The sanitizer build's leak check starts with the program's own code. What the shared
// libraries allocate in their constructors is theirs to keep: GLib's first quark table,
// for one, is dropped unfreed by design once the toolkit has registered enough names.
// Only an executable's pre-initializers run before the libraries' constructors, so the
// client's executables link this file themselves (sanitizer builds only).
#include <sanitizer/lsan_interface.h>

namespace {

void ignoreLibraryConstructors() { __lsan_disable(); }

// The first of the executable's own constructors, after every library's.
__attribute__((constructor(101))) void checkFromHereOn() { __lsan_enable(); }

}  // namespace

__attribute__((section(".preinit_array"), used)) static void (*const kBeforeLibraries)() = ignoreLibraryConstructors;
