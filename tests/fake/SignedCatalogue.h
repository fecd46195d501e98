#pragma once
// A signer of catalogues in minisign's format, with a key of its own; for tests. Any thread.

#include <sodium.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/MinisignSignature.h"

namespace vantor {

class CatalogueSigner {
public:
    explicit CatalogueSigner(unsigned char number) {
        std::array<unsigned char, crypto_sign_SEEDBYTES> seed{number};
        key_.id.fill(number);
        crypto_sign_seed_keypair(key_.key.data(), secret_.data(), seed.data());
    }

    [[nodiscard]] const PublicKey& key() const { return key_; }
    [[nodiscard]] std::string keyText() const { return base64("Ed" + idText() + text(key_.key)); }
    // kind: "ED" as it is read; "Ed" signs the body itself, as older programs did.
    [[nodiscard]] std::string sign(std::string_view body, const std::string& comment,
                                   const std::string& kind = "ED") const {
        std::string message(body);
        if (kind == "ED") {
            std::array<unsigned char, 64> hash{};
            crypto_generichash(hash.data(), hash.size(), bytes(body), body.size(), nullptr, 0);
            message = text(hash);
        }
        const std::string ofBody = signatureOf(message);
        return "untrusted comment: a test's\n" + base64(kind + idText() + ofBody) + "\ntrusted comment: " + comment +
               "\n" + base64(signatureOf(ofBody + comment)) + "\n";
    }

private:
    static const unsigned char* bytes(std::string_view text) {
        return reinterpret_cast<const unsigned char*>(text.data());
    }
    template <typename Array>
    static std::string text(const Array& array) {
        return {reinterpret_cast<const char*>(array.data()), array.size()};
    }
    [[nodiscard]] std::string idText() const { return text(key_.id); }
    [[nodiscard]] std::string signatureOf(const std::string& message) const {
        std::array<unsigned char, crypto_sign_BYTES> signature{};
        crypto_sign_detached(signature.data(), nullptr, bytes(message), message.size(), secret_.data());
        return text(signature);
    }
    static std::string base64(const std::string& raw) {
        std::string encoded(sodium_base64_encoded_len(raw.size(), sodium_base64_VARIANT_ORIGINAL), '\0');
        sodium_bin2base64(encoded.data(), encoded.size(), bytes(raw), raw.size(), sodium_base64_VARIANT_ORIGINAL);
        encoded.pop_back();
        return encoded;
    }

    PublicKey key_;
    std::array<unsigned char, crypto_sign_SECRETKEYBYTES> secret_{};
};

}  // namespace vantor
