#pragma once
// The updates that were accepted: the current one and the one before, kept on disk and checked again whenever they are
// read. Nothing of it is believed beyond what is signed. One thread at a time.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/CatalogueUpdate.h"
#include "catalogue/UpdateFiles.h"

namespace vantor {

// What is kept beside the updates themselves.
struct UpdateState {
    std::int64_t highest = 0;               // of all that were accepted
    std::vector<std::int64_t> withdrawn{};  // by the player
    std::string etag{};                     // of the current one's signature
};

template <>
struct Fields<UpdateState> {
    static constexpr auto table =
        std::tuple(Field{"highest", &UpdateState::highest}, Field{"withdrawn", &UpdateState::withdrawn},
                   Field{"etag", &UpdateState::etag});
};

class CatalogueUpdates {
public:
    struct Needs {
        std::unique_ptr<UpdateFiles> files;
        std::vector<PublicKey> keys;
        std::int64_t builtInVersion = 0;  // an update counts only if it is newer
    };

    explicit CatalogueUpdates(Needs needs);

    // From disk, in place of what was read before. One line for each file that is there and does not hold.
    [[nodiscard]] std::vector<std::string> read();
    // Null: none.
    [[nodiscard]] const CatalogueUpdate* inForce() const;

    // What to fetch with If-None-Match; empty where the whole is wanted.
    [[nodiscard]] std::string etag() const;
    // Whether the body to this signature is wanted, or a line that says why it is refused.
    Decoded<bool> wants(std::string_view signature) const;
    // Checks and stores it. What is refused changes nothing, and the error says why.
    Decoded<bool> offer(const std::string& signature, const std::string& body, const std::string& etag,
                        std::size_t sectionsBefore);
    // The one in force counts no longer, until a newer one than the highest comes. False: there is none, or it cannot
    // be stored.
    [[nodiscard]] bool rollBack();

private:
    struct Held {
        std::string stored;
        CatalogueUpdate update;
    };

    [[nodiscard]] std::optional<Held> load(const std::string& name, std::vector<std::string>& faults) const;
    void readState();
    [[nodiscard]] bool counts(const std::optional<Held>& held) const;
    [[nodiscard]] std::int64_t highest() const;

    Needs needs_;
    UpdateState state_;
    std::optional<Held> current_;
    std::optional<Held> previous_;
};

}  // namespace vantor
