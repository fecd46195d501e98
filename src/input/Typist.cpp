#include "input/Typist.h"

#include <algorithm>

#include "input/KeyStrokes.h"

namespace vantor {
namespace {

using End = Typed::End;

// The game reads its keys once per frame and misses faster ones.
constexpr std::chrono::microseconds pauseAfterPost{8000};
// Long enough for a busy window manager.
constexpr std::chrono::milliseconds focusPatience{250};
constexpr std::chrono::milliseconds betweenLooks{20};

}  // namespace

Typist::Typist(const Needs& needs) : needs_(needs), keyMap_(KeyMap::learn(needs.layout)) {}

Typed Typist::type(const std::string& text) {
    Typed typed{.end = begin()};
    if (typed.end != End::whole) return typed;
    const auto pieces = strokesOfCharacters(keyMap_, text);
    typed.unknown = static_cast<std::size_t>(std::ranges::count_if(pieces, &Strokes::empty));
    typed.characters = pieces.size() - typed.unknown;
    state_.characters = typed.characters;
    post(pieces, typed);
    return typed;
}

Typed Typist::press(const std::string& combination) {
    Typed typed{.end = begin()};
    if (typed.end != End::whole) return typed;
    typed.unknown = unknownParts(keyMap_, combination);
    post({strokesOfReadableKeys(keyMap_, combination)}, typed);
    return typed;
}

bool Typist::wait(std::chrono::milliseconds duration) {
    for (auto left = duration; left.count() > 0 && state_.wish == End::whole; left -= betweenLooks)
        needs_.pause.wait(std::min(left, betweenLooks));
    return state_.wish == End::whole;
}

Typed::End Typist::begin() {
    if (!needs_.focus.awaitOther(focusPatience)) return End::focusKept;
    if (!needs_.poster.isAllowed()) return End::notAllowed;
    if (needs_.layout.refresh()) keyMap_ = KeyMap::learn(needs_.layout);
    return End::whole;
}

Typed::End Typist::endBeforeStroke() {
    const End wish = state_.wish;
    if (wish != End::whole) return wish;
    return needs_.focus.isKept() ? End::whole : End::focusMoved;
}

void Typist::post(const std::vector<Strokes>& pieces, Typed& typed) {
    const auto typing = needs_.poster.beginTyping();
    for (const Strokes& piece : pieces) {
        postPiece(piece, typed);
        if (typed.end == End::lost) return;
        if (typed.end != End::whole) break;
    }
    if (const auto more = needs_.poster.pauseAtEnd(); more.count() > 0) needs_.pause.wait(more);
}

void Typist::postPiece(const Strokes& strokes, Typed& typed) {
    std::vector<KeyCode> down;
    auto pressesLeft = std::ranges::count_if(strokes, &PostedKey::down);
    for (const PostedKey& each : strokes) {
        const auto held = std::ranges::find(down, each.keyCode);
        // After the end only what is down goes up.
        if (each.down ? typed.end != End::whole : held == down.end()) continue;
        if (const auto more = needs_.poster.pauseBefore(each); more.count() > 0) needs_.pause.wait(more);
        if (each.down) {
            typed.end = endBeforeStroke();
            if (typed.end != End::whole) continue;
            down.push_back(each.keyCode);
        } else {
            down.erase(held);
        }
        const PostVerdict verdict = needs_.poster.post(each);
        // A post that fails ends nothing: the releases behind it must still go out. Unless none can.
        typed.refused = typed.refused || verdict != PostVerdict::posted;
        if (verdict == PostVerdict::lost) {
            typed.end = End::lost;
            return;
        }
        if (each.down && --pressesLeft == 0) state_.posted = ++typed.posted;
        needs_.pause.wait(pauseAfterPost);
    }
}

}  // namespace vantor
