#pragma once
// Items in memory that write down each call, fail when told to, and hold answers back when told to. One thread.

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Keychain.h"

namespace vantor {

class FakeKeychain final : public Keychain {
public:
    void copyMatching(const KeychainItem& item, Prompt prompt, Copied answer) override {
        calls.push_back(prompt == Prompt::allowed ? "copy, may ask" : "copy");
        answerLater([this, item, prompt, answer = std::move(answer)] {
            if (const auto failure = failureOf(prompt)) return answer(*failure, {});
            const auto found = items.find({item.itemClass, item.account});
            found == items.end() ? answer(KeychainStatus::notFound, {}) : answer(KeychainStatus::done, found->second);
        });
    }
    void replace(const KeychainItem& item, const std::string& data, Answered answer) override {
        answerLater([this, item, data, answer = std::move(answer)] {
            calls.emplace_back("remove");
            if (const auto failure = failureOf(Prompt::allowed)) return answer(*failure);
            calls.push_back("add " + data);
            items.insert_or_assign({item.itemClass, item.account}, data);
            answer(KeychainStatus::done);
        });
    }
    [[nodiscard]] bool finish(std::chrono::milliseconds) override {
        answerAll();
        return true;
    }

    // What was held back, and what that asks for in turn.
    void answerAll() {
        while (!waiting_.empty()) answerOne();
    }
    void answerOne() {
        const auto first = std::move(waiting_.front());
        waiting_.pop_front();
        first();
    }
    [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }

    std::map<std::pair<std::string, std::string>, std::string> items;  // by class and account
    std::vector<std::string> calls;
    bool holdBack = false;
    bool isLocked = false;                  // until somebody who may ask does
    std::optional<KeychainStatus> failing;  // every call, from now on
    bool refusesToUnlock = false;

private:
    void answerLater(std::function<void()> answer) {
        if (holdBack) return waiting_.push_back(std::move(answer));
        answer();
    }
    std::optional<KeychainStatus> failureOf(Prompt prompt) {
        if (failing || !isLocked) return failing;
        if (prompt == Prompt::never) return KeychainStatus::locked;
        if (refusesToUnlock) return KeychainStatus::refused;
        isLocked = false;
        return std::nullopt;
    }

    std::deque<std::function<void()>> waiting_;
};

}  // namespace vantor
