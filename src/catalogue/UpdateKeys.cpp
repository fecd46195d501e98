#include "catalogue/UpdateKeys.h"

namespace vantor {

std::vector<PublicKey> believedKeys(const std::vector<std::string>& ofBuild, bool forTests) {
    std::vector<PublicKey> keys;
    const auto test = parsePublicKey(testKey);
    for (const std::string& text : ofBuild)
        if (const auto key = parsePublicKey(text); key && key->key != test->key) keys.push_back(*key);
    if (forTests && test) keys.push_back(*test);
    return keys;
}

}  // namespace vantor
