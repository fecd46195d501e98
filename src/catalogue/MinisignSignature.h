#pragma once
// Detached Ed25519 signatures in minisign's format, verified by libsodium. Only the prehashed form, "ED", is known: the
// body's BLAKE2b-512 is what is signed. A second signature holds the trusted comment. Pure; any thread.

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Decoder.h"

namespace vantor {

struct PublicKey {
    std::array<unsigned char, 8> id{};
    std::array<unsigned char, 32> key{};

    bool operator==(const PublicKey&) const = default;
};

// The second line of a key file; nothing when it is none.
[[nodiscard]] std::optional<PublicKey> parsePublicKey(std::string_view text);

struct MinisignSignature {
    std::array<unsigned char, 8> keyId{};
    std::array<unsigned char, 64> ofBody{};
    std::string trustedComment;
    std::array<unsigned char, 64> ofComment{};
};

inline constexpr std::size_t largestSignature = 4096;  // bytes

// The four lines of a signature file, whose trusted comment is signed by one of the keys.
Decoded<MinisignSignature> readSignature(std::string_view text, const std::vector<PublicKey>& keys);
[[nodiscard]] bool isSigned(std::string_view body, const MinisignSignature& signature,
                            const std::vector<PublicKey>& keys);

}  // namespace vantor
