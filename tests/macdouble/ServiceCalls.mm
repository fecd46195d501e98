#include "ServiceCalls.h"

namespace macdouble {

ServiceCalls& serviceCalls() {
    static ServiceCalls calls;
    return calls;
}

}  // namespace macdouble
