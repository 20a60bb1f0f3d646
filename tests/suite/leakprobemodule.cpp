// Loaded and unloaded by the leak probe (leakprobe.cpp).
#include <cstdlib>

namespace {

void *g_kept = nullptr;
thread_local void *t_kept = nullptr;

} // namespace

// Held from this library's own data and thread-local data until the process
// ends, as drivers and plugins hold what they allocate.
extern "C" void keepOnPurpose()
{
    g_kept = std::malloc(128);
    t_kept = std::malloc(96);
}

// Lost: nothing points at it once this returns.
extern "C" void leakOnPurpose()
{
    auto *lost = static_cast<volatile char *>(std::malloc(64));
    lost[0] = 1;
}
