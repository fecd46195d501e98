#pragma once
// How far the data behind the timers and the bestiary has come. Any thread.

namespace vantor {

enum class DataState {
    ready,
    noKey,
    keyIsNew,  // set after the start, where the one load begins
    keyRefused,
    keyLacksScope,
    loading,
    failed,
};

}  // namespace vantor
