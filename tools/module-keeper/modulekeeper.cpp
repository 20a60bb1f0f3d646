// Preloaded after the sanitizer runtime into each test process and into each
// launcher that a test starts, when the suite is built with the sanitizers.
//
// A library that a process unloads before it ends takes the names of its code
// with it: a leak it caused is then reported from "<unknown module>", which no
// suppression can name, and memory that it still held from its own data
// counts as lost. Plugins and drivers loaded and unloaded by Qt and the system
// libraries (a GL driver behind the X platform, for one) differ from machine
// to machine, so the suite would judge the machine instead of our code.
// Keeping every library mapped until the leak check leaves each report with
// its module named.
#include <cstdlib>

extern "C" int dlclose(void *)
{
    return 0;
}

namespace {

// The programs that a test or the launcher starts (servers, installers, the
// sample editor) are not built with the sanitizers and must not inherit the
// runtime or this library.
__attribute__((constructor)) void forgetPreload()
{
    unsetenv("LD_PRELOAD");
}

} // namespace
