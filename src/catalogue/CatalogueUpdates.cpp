#include "catalogue/CatalogueUpdates.h"

#include <algorithm>
#include <utility>

namespace vantor {

namespace {

const std::string currentName = "current";
const std::string previousName = "previous";
const std::string stateName = "state.json";

// One file, since a kill between two would leave a signature with another's body.
std::string together(const std::string& signature, const std::string& body) {
    return signature + (signature.ends_with('\n') ? "" : "\n") + body;
}

// The signature is the first four lines.
std::pair<std::string_view, std::string_view> apart(std::string_view stored) {
    std::size_t end = 0;
    for (int line = 0; line < 4 && end != std::string_view::npos; ++line) {
        end = stored.find('\n', end);
        if (end != std::string_view::npos) ++end;
    }
    if (end == std::string_view::npos) return {stored, {}};
    return {stored.substr(0, end), stored.substr(end)};
}

}  // namespace

CatalogueUpdates::CatalogueUpdates(Needs needs) : needs_(std::move(needs)) {}

std::vector<std::string> CatalogueUpdates::read() {
    std::vector<std::string> faults;
    readState();
    current_ = load(currentName, faults);
    previous_ = load(previousName, faults);
    return faults;
}

void CatalogueUpdates::readState() {
    const auto stored = needs_.files->read(stateName);
    state_ = stored ? decodeJson<UpdateState>(*stored).value.value_or(UpdateState()) : UpdateState();
}

std::optional<CatalogueUpdates::Held> CatalogueUpdates::load(const std::string& name,
                                                             std::vector<std::string>& faults) const {
    auto stored = needs_.files->read(name);
    if (!stored) return std::nullopt;
    const auto [signature, body] = apart(*stored);
    auto update = readUpdate(signature, body, needs_.keys, 0);
    if (!update.value) {
        faults.push_back("The stored catalogue update \"" + name + "\" is not used: " + update.error);
        return std::nullopt;
    }
    return Held{*std::move(stored), *std::move(update.value)};
}

bool CatalogueUpdates::counts(const std::optional<Held>& held) const {
    return held && held->update.facts.version > needs_.builtInVersion &&
           std::ranges::find(state_.withdrawn, held->update.facts.version) == state_.withdrawn.end();
}

const CatalogueUpdate* CatalogueUpdates::inForce() const {
    if (counts(current_)) return &current_->update;
    return counts(previous_) ? &previous_->update : nullptr;
}

std::int64_t CatalogueUpdates::highest() const {
    std::int64_t highest = std::max(state_.highest, needs_.builtInVersion);
    for (const auto* held : {&current_, &previous_})
        if (*held) highest = std::max(highest, (*held)->update.facts.version);
    return highest;
}

std::string CatalogueUpdates::etag() const {
    // It is that of the newest; where that one is lost, it is wanted again.
    return current_ && current_->update.facts.version >= highest() ? state_.etag : std::string();
}

Decoded<bool> CatalogueUpdates::wants(std::string_view signature) const {
    const auto facts = readFacts(signature, needs_.keys);
    if (!facts.value) return {std::nullopt, facts.error};
    const std::int64_t version = facts.value->version;
    if (version < highest())
        return {std::nullopt, "version " + std::to_string(version) + " is older than version " +
                                  std::to_string(highest()) + ", which was there before"};
    if (version > highest()) return {true, {}};
    // The newest, known: wanted only if the file of it was lost or damaged.
    const bool held = version == needs_.builtInVersion || (current_ && current_->update.facts.version == version) ||
                      (previous_ && previous_->update.facts.version == version);
    return {!held, {}};
}

Decoded<bool> CatalogueUpdates::offer(const std::string& signature, const std::string& body, const std::string& etag,
                                      std::size_t sectionsBefore) {
    // Another Vantor may have changed it since.
    readState();
    auto wanted = wants(signature);
    if (!wanted.value || !*wanted.value) return wanted;
    auto update = readUpdate(signature, body, needs_.keys, sectionsBefore);
    if (!update.value) return {std::nullopt, update.error};

    // At each step what is in force before or after it is whole on disk, and the newest is noted last.
    const auto unwritten = [] { return Decoded<bool>{std::nullopt, "the cache folder cannot be written to"}; };
    const bool keep = counts(current_);
    if (keep && !needs_.files->replace(previousName, current_->stored)) return unwritten();
    Held held{together(signature, body), *std::move(update.value)};
    if (!needs_.files->replace(currentName, held.stored)) return unwritten();
    if (keep) previous_ = std::move(current_);
    current_ = std::move(held);
    state_.highest = current_->update.facts.version;
    state_.etag = etag;
    // Where this is not written, the two files say as much; only the whole is fetched once more.
    (void)needs_.files->replace(stateName, encodeJson(state_));
    return {true, {}};
}

bool CatalogueUpdates::rollBack() {
    readState();
    const CatalogueUpdate* const now = inForce();
    if (!now) return false;
    UpdateState next = state_;
    next.highest = highest();
    next.withdrawn.push_back(now->facts.version);
    if (!needs_.files->replace(stateName, encodeJson(next))) return false;
    state_ = std::move(next);
    return true;
}

}  // namespace vantor
