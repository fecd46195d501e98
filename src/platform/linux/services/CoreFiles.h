#pragma once
// Passwords stand in this process's memory: a crash must not write it to a disk.

namespace vantor {

// For this process and those it starts, for good. Call it before the first secret is read. False when the system
// refuses.
[[nodiscard]] bool refuseCoreFiles();

}  // namespace vantor
