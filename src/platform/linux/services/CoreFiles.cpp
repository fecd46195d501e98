#include "platform/linux/services/CoreFiles.h"

#include <sys/resource.h>

namespace vantor {

// Collectors of cores that the kernel hands them through a pipe keep none either when the limit is 0
// (systemd-coredump(8)).
bool refuseCoreFiles() {
    const rlimit none{0, 0};
    return setrlimit(RLIMIT_CORE, &none) == 0;
}

}  // namespace vantor
