// The views need an application object; no screen.

#include <gtest/gtest.h>

#include <QtWidgets/QApplication>

#include "ui/Fonts.h"
#include "ui/KitStyle.h"

namespace {

QtMessageHandler usual = nullptr;

// What the toolkit's platform without a screen says at each window hides what matters.
void withoutPlatformNoise(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (!text.startsWith(QLatin1String("This plugin does not support "))) usual(type, context, text);
}

}  // namespace

int main(int count, char** arguments) {
    ::testing::InitGoogleTest(&count, arguments);
    usual = qInstallMessageHandler(withoutPlatformNoise);
    const QApplication application(count, arguments);
    if (vantor::registerFonts() != vantor::FontsVerdict::embedded) return 1;
    vantor::styleApplication();
    vantor::setTextScale(1);
    // A caret that blinks would make two pictures of one state.
    QApplication::setCursorFlashTime(0);
    return RUN_ALL_TESTS();
}
