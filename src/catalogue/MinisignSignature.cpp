#include "catalogue/MinisignSignature.h"

#include <sodium.h>

#include <algorithm>
#include <cstring>

namespace vantor {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::string_view untrusted = "untrusted comment: ";
constexpr std::string_view trusted = "trusted comment: ";

// Exactly so many bytes.
std::optional<Bytes> decodeBase64(std::string_view text, std::size_t size) {
    Bytes bytes(size);
    std::size_t length = 0;
    if (sodium_base642bin(bytes.data(), size, text.data(), text.size(), nullptr, &length, nullptr,
                          sodium_base64_VARIANT_ORIGINAL) != 0 ||
        length != size)
        return std::nullopt;
    return bytes;
}

// Takes the next line; its line feed may lack at the end of the text only.
std::optional<std::string_view> nextLine(std::string_view& rest) {
    if (rest.empty()) return std::nullopt;
    const auto end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

const PublicKey* keyOf(const MinisignSignature& signature, const std::vector<PublicKey>& keys) {
    const auto found = std::ranges::find(keys, signature.keyId, &PublicKey::id);
    return found == keys.end() ? nullptr : &*found;
}

bool verify(const std::array<unsigned char, 64>& signature, const Bytes& message, const PublicKey& key) {
    static const bool ready = sodium_init() >= 0;
    return ready && crypto_sign_verify_detached(signature.data(), message.data(), message.size(), key.key.data()) == 0;
}

}  // namespace

std::optional<PublicKey> parsePublicKey(std::string_view text) {
    PublicKey key;
    const auto bytes = decodeBase64(text, 2 + key.id.size() + key.key.size());
    if (!bytes || (*bytes)[0] != 'E' || (*bytes)[1] != 'd') return std::nullopt;
    std::memcpy(key.id.data(), bytes->data() + 2, key.id.size());
    std::memcpy(key.key.data(), bytes->data() + 2 + key.id.size(), key.key.size());
    return key;
}

Decoded<MinisignSignature> readSignature(std::string_view text, const std::vector<PublicKey>& keys) {
    const auto refuse = [](const char* what) { return Decoded<MinisignSignature>{std::nullopt, what}; };
    if (text.size() > largestSignature) return refuse("signature: too long");
    const auto comment = nextLine(text);
    const auto ofBody = nextLine(text);
    const auto trustedComment = nextLine(text);
    const auto ofComment = nextLine(text);
    if (!ofComment || !text.empty() || !comment->starts_with(untrusted) || !trustedComment->starts_with(trusted))
        return refuse("signature: not of the known form");

    MinisignSignature signature;
    const auto body = decodeBase64(*ofBody, 2 + signature.keyId.size() + signature.ofBody.size());
    const auto global = decodeBase64(*ofComment, signature.ofComment.size());
    if (!body || !global || (*body)[0] != 'E' || (*body)[1] != 'D') return refuse("signature: not of the known form");
    std::memcpy(signature.keyId.data(), body->data() + 2, signature.keyId.size());
    std::memcpy(signature.ofBody.data(), body->data() + 2 + signature.keyId.size(), signature.ofBody.size());
    std::memcpy(signature.ofComment.data(), global->data(), global->size());
    signature.trustedComment = trustedComment->substr(trusted.size());

    const PublicKey* const key = keyOf(signature, keys);
    if (!key) return refuse("signature: by an unknown key");
    Bytes signedComment(signature.ofBody.begin(), signature.ofBody.end());
    signedComment.insert(signedComment.end(), signature.trustedComment.begin(), signature.trustedComment.end());
    if (!verify(signature.ofComment, signedComment, *key)) return refuse("signature: does not hold");
    return {std::move(signature), {}};
}

bool isSigned(std::string_view body, const MinisignSignature& signature, const std::vector<PublicKey>& keys) {
    const PublicKey* const key = keyOf(signature, keys);
    if (!key) return false;
    Bytes hash(64);
    if (crypto_generichash(hash.data(), hash.size(), reinterpret_cast<const unsigned char*>(body.data()), body.size(),
                           nullptr, 0) != 0)
        return false;
    return verify(signature.ofBody, hash, *key);
}

}  // namespace vantor
