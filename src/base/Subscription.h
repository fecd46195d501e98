#pragma once
// A scoped registration: destroying it ends what it stands for. Move-only; destroy it on the thread that made it.

#include <functional>
#include <utility>

namespace vantor {

class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
    Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            end_ = std::exchange(other.end_, nullptr);
        }
        return *this;
    }
    ~Subscription() { reset(); }

    void reset() {
        if (auto end = std::exchange(end_, nullptr)) end();
    }
    [[nodiscard]] explicit operator bool() const { return static_cast<bool>(end_); }

private:
    std::function<void()> end_;
};

}  // namespace vantor
