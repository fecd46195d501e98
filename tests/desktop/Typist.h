#pragma once
// Vantor's typing as the program wires it when it is started now, on the display that DISPLAY names; without the waits
// between keys. Main thread.

#include <gtest/gtest.h>

#include <QtCore/QCoreApplication>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "input/KeyStrokes.h"
#include "platform/linux/keys/XTestKeyPoster.h"
#include "platform/linux/keys/XkbKeyboardLayout.h"

namespace vantor {

inline std::filesystem::path guardianProgram() {
    return guardianBeside(QCoreApplication::applicationDirPath().toStdString() + "/../src");
}

struct Typist {
    XConnection connection;
    XkbKeyboardLayout layout{connection};
    KeyMap map = KeyMap::learn(layout);
    PostedKeyRecord record;
    XTestKeyPoster poster{connection, record, layout, {}};

    // The server does one client's requests in order, but promises no order between two.
    void settle() const {
        KeyboardState state;
        EXPECT_TRUE(readKeyboard(connection, state));
    }
    void post(const std::vector<PostedKey>& strokes, const std::function<void(std::size_t)>& beforePost = {}) {
        for (std::size_t at = 0; at < strokes.size(); ++at) {
            if (beforePost) beforePost(at);
            ASSERT_EQ(poster.post(strokes[at]), PostVerdict::posted);
        }
        settle();
    }
    // Whatever the player holds or has locked.
    void type(const std::string& what, const std::function<void(std::size_t)>& beforePost = {}) {
        const auto typing = poster.beginTyping();
        post(strokesOfText(map, what), beforePost);
    }
};

}  // namespace vantor
