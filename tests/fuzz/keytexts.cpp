// Readable key texts, both ways. Any stored text: its strokes are presses of keys that the layout has, all released
// again, last down first up. Any key event: what is played back of its text reads like the text.

#include <QtCore/QString>
#include <array>

#include "Fuzz.h"
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

// The keys that go down.
std::vector<KeyCode> pressed(const std::vector<PostedKey>& strokes) {
    std::vector<KeyCode> codes;
    std::vector<KeyCode> down;
    for (const PostedKey& stroke : strokes) {
        require(stroke.keyCode < keyCodeCount, "a stroke is of a key");
        if (stroke.down) {
            codes.push_back(stroke.keyCode);
            down.push_back(stroke.keyCode);
        } else {
            require(!down.empty() && down.back() == stroke.keyCode, "the key that went down last goes up first");
            down.pop_back();
        }
    }
    require(down.empty(), "no key stays down");
    return codes;
}

void write(const Keyboard& keys, KeyCode code, std::uint8_t held) {
    const auto characters = [&](KeyCode of) {
        const auto translation = keys.layout.translate(of, modifier::nonCoalesced);
        return translation ? translation->characters : std::string();
    };
    // Those that are played back.
    constexpr std::array<std::pair<ModifierFlags, std::string_view>, 3> modifiers = {
        {{modifier::shift, key_name::shift},
         {modifier::control, key_name::control},
         {modifier::option, key_name::option}}};
    KeyEvent event{KeyEventType::keyDown, code, 0, characters(code)};
    for (std::size_t at = 0; at < modifiers.size(); ++at)
        if (held & (1U << at)) event.flags |= modifiers.at(at).first;
    const std::string text = readableKeyText(event);
    require(text != " ", "no key has the text of an unset hotkey");
    // The stored form is upper case, so a character that does not come back from there (the German sharp s) has a text
    // but is not played back.
    const QString wide = QString::fromStdString(event.charactersWithoutModifiers);
    const auto* mapped = keys.map.find(event.charactersWithoutModifiers);
    const bool named = functionKeyName(code) || textKeyName(code);
    if (isModifierKey(code) || (!named && !(mapped && mapped->size() == 1 && wide.toUpper().toLower() == wide))) return;
    const auto codes = pressed(strokesOfReadableKeys(keys.map, text));
    require(!codes.empty(), "the text of a key plays a key back", text);
    KeyEvent again{KeyEventType::keyDown, codes.front(), 0, characters(codes.front())};
    for (const auto& [flag, name] : modifiers)
        for (const KeyCode each : codes)
            if (each == *keyCodeNamed(name)) again.flags |= flag;
    require(readableKeyText(again) == text, "what is played back reads like what was stored", text);
}

}  // namespace

void run(Input input) {
    const Keyboard& keys = keyboard(input.byte());
    const KeyCode code = input.byte();
    write(keys, code, input.byte());
    const std::string text(input.rest());
    (void)pressed(strokesOfReadableKeys(keys.map, text));
    const auto typed = pressed(strokesOfText(keys.map, text));
    // A line break is a character of its own next to anything but a carriage return before it.
    if (!text.ends_with('\r') && QString::fromStdString(text).toStdString() == text)
        require(pressed(strokesOfText(keys.map, text + "\n" + text)).size() == 2 * typed.size() + 1,
                "a text is typed character by character", text);
}

}  // namespace vantor::fuzz
