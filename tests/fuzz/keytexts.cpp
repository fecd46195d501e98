// Readable key texts, both ways. Any stored text: its strokes are presses of keys that the layout has, all released
// again, first down last up, one for each part that names a key. Any key event: its text is stable, and where the text
// is made of what can be played back, the strokes of it are the keys of the event.

#include <QString>
#include <QStringList>
#include <algorithm>

#include "Finding.h"
#include "input/KeyNames.h"
#include "input/KeyStrokes.h"
#include "input/ReadableKeyText.h"
#include "platform/KeyClasses.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor::fuzz {
namespace {

struct Keyboard {
    XkbKeyboardLayout layout;
    KeyMap map;

    explicit Keyboard(const char* name) : layout(name, ""), map(KeyMap::learn(layout)) {}
};

const Keyboard& keyboard(std::uint8_t choice) {
    static const std::array<Keyboard, 3> keyboards{Keyboard("us"), Keyboard("de"), Keyboard("ru")};
    return keyboards.at(choice % keyboards.size());
}

std::vector<KeyCode> pressed(const std::vector<PostedKey>& strokes) {
    std::vector<KeyCode> codes;
    for (const PostedKey& stroke : strokes)
        if (stroke.down) codes.push_back(stroke.keyCode);
    return codes;
}

void checkBalance(const std::vector<PostedKey>& strokes) {
    std::vector<KeyCode> down;
    for (const PostedKey& stroke : strokes) {
        require(stroke.keyCode < keyCodeCount, "a stroke is of a key");
        if (stroke.down) {
            down.push_back(stroke.keyCode);
            continue;
        }
        // A combination may name a key twice; its last press is the one that ends.
        require(!down.empty() && down.back() == stroke.keyCode, "the key that went down last goes up first");
        down.pop_back();
    }
    require(down.empty(), "no key stays down");
}

void playBack(const Keyboard& keys, const std::string& text) {
    const auto strokes = strokesOfReadableKeys(keys.map, text);
    require(strokes.size() % 2 == 0, "each press has its release");
    checkBalance(strokes);
    std::size_t named = 0;
    std::string rest = text;
    for (bool more = true; more;) {
        const auto plus = rest.find(" + ");
        more = plus != std::string::npos;
        const std::string part = rest.substr(0, plus);
        if (more) rest.erase(0, plus + 3);
        const auto lower = QString::fromStdString(part).toLower().toStdString();
        named += keyCodeNamed(part) || keys.map.find(lower) ? 1U : 0U;
    }
    require(strokes.size() == 2 * named, "each part that names a key is pressed once", text);

    const auto typed = strokesOfText(keys.map, text);
    checkBalance(typed);
    const auto twice = strokesOfText(keys.map, text + "\n" + text);
    const auto line = strokesOfText(keys.map, "\n");
    // A line break is a character of its own next to anything but a carriage return before it.
    if (!text.ends_with('\r') && QString::fromStdString(text).toStdString() == text)
        require(twice.size() == 2 * typed.size() + line.size(), "a text is typed character by character", text);
}

void write(const Keyboard& keys, Input& input) {
    KeyEvent event;
    event.keyCode = input.byte();
    const ModifierFlags flags = input.byte();
    constexpr std::array<ModifierFlags, 8> bits = {modifier::nonCoalesced, modifier::capsLock, modifier::shift,
                                                   modifier::control,      modifier::option,   modifier::command,
                                                   modifier::numericPad,   modifier::function};
    for (std::size_t at = 0; at < bits.size(); ++at)
        if (flags & (1U << at)) event.flags |= bits.at(at);
    const auto plain = keys.layout.translate(event.keyCode, modifier::nonCoalesced);
    event.charactersWithoutModifiers = plain ? plain->characters : "";
    const std::string text = readableKeyText(event);
    require(text != " ", "no key has the text of an unset hotkey");

    // Parsed and written again: the pressed keys are an event with the same text. The stored form is upper case, so a
    // character that does not come back from there (the German sharp s) has a text but is not played back.
    const bool played = (event.flags & (modifier::command | modifier::capsLock | modifier::numericPad)) == 0 &&
                        ((event.flags & modifier::function) == 0 || functionKeyName(event.keyCode));
    const std::string& characters = event.charactersWithoutModifiers;
    const QString wide = QString::fromStdString(characters);
    const bool oneKey =
        functionKeyName(event.keyCode) || textKeyName(event.keyCode) ||
        (keys.map.find(characters) && keys.map.find(characters)->size() == 1 && wide.toUpper().toLower() == wide);
    if (!played || !oneKey || isModifierKey(event.keyCode)) return;
    const auto codes = pressed(strokesOfReadableKeys(keys.map, text));
    require(!codes.empty(), "the text of a key plays a key back", text);
    KeyEvent again;
    again.keyCode = codes.front();
    for (const KeyCode code : codes) {
        if (code == *keyCodeNamed(key_name::shift)) again.flags |= modifier::shift;
        if (code == *keyCodeNamed(key_name::control)) again.flags |= modifier::control;
        if (code == *keyCodeNamed(key_name::option)) again.flags |= modifier::option;
    }
    if (const auto characters2 = keys.layout.translate(again.keyCode, modifier::nonCoalesced))
        again.charactersWithoutModifiers = characters2->characters;
    require(readableKeyText(again) == text, "what is played back reads like what was stored",
            text + " became " + readableKeyText(again));
}

}  // namespace
}  // namespace vantor::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) { return vantor::fuzz::reportDescriptor() < 0 ? 1 : 0; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor::fuzz;
    Input input(data, size);
    const Keyboard& keys = keyboard(input.byte());
    write(keys, input);
    playBack(keys, std::string(input.rest()));
    return 0;
}
