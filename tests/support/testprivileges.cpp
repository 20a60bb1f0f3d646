#include "testprivileges.h"

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

bool TestPrivileges::dropFileOverride()
{
    if (geteuid() != 0)
        return true;
    // Out of the bounding set, so that started programs do not get them back,
    // and out of this process's own sets.
    const int capabilities[] = { CAP_DAC_OVERRIDE, CAP_DAC_READ_SEARCH };
    for (int capability : capabilities) {
        if (prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0)
            return false;
    }
    __user_cap_header_struct header { _LINUX_CAPABILITY_VERSION_3, 0 };
    __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] {};
    if (syscall(SYS_capget, &header, data) != 0)
        return false;
    for (int capability : capabilities) {
        const unsigned bit = 1u << (capability % 32);
        data[capability / 32].effective &= ~bit;
        data[capability / 32].permitted &= ~bit;
        data[capability / 32].inheritable &= ~bit;
    }
    return syscall(SYS_capset, &header, data) == 0;
}
