#pragma once
// Owns one object of the system's C libraries and releases it. Objective-C++ only.

#import <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace vantor {

// `Ref` is the system's pointer type, such as CGEventRef.
template <typename Ref>
class Owned {
public:
    Owned() = default;
    // Takes over what a function with Create or Copy in its name has returned; may be null.
    explicit Owned(Ref created) : object_(created) {}
    Owned(Owned&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    Owned& operator=(Owned&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Owned() {
        if (object_) CFRelease(object_);
    }

    [[nodiscard]] Ref get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    Ref object_ = nullptr;
};

}  // namespace vantor
