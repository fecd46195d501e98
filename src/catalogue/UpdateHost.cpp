#include "catalogue/UpdateHost.h"

namespace vantor {

bool isUpdateHost(const std::string& host) {
    for (const char* const here : {"http://127.0.0.1:", "http://localhost:"})
        if (host.starts_with(here)) return true;
    return host.starts_with("https://") && host != "https://";
}

}  // namespace vantor
