#pragma once
// The owner of a reply, event or error that xcb hands over to be freed.

#include <cstdlib>
#include <memory>

namespace vantor {

struct FreeXReply {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using XReply = std::unique_ptr<T, FreeXReply>;

template <typename T>
[[nodiscard]] XReply<T> owned(T* reply) {
    return XReply<T>(reply);
}

}  // namespace vantor
