// Runs a library of ours that leaks on purpose and unloads it before the
// end, as Qt and the system libraries do with plugins and drivers. Its exit
// status and report are the leak checker's; the suite passes on a report
// that names the leaking function.
#include <dlfcn.h>

#include <cstdio>

int main()
{
    void *module = dlopen(ZANMIR_LEAK_MODULE, RTLD_NOW);
    if (!module) {
        std::fprintf(stderr, "leakprobe: %s\n", dlerror());
        return 2;
    }
    auto keep = reinterpret_cast<void (*)()>(dlsym(module, "keepOnPurpose"));
    auto leak = reinterpret_cast<void (*)()>(dlsym(module, "leakOnPurpose"));
    if (!keep || !leak) {
        std::fprintf(stderr, "leakprobe: %s\n", dlerror());
        return 2;
    }
    keep();
    leak();
    dlclose(module);
    return 0;
}
