// The views need an application object; no screen.

#include <gtest/gtest.h>

#include <QtWidgets/QApplication>

#include "ui/Fonts.h"

int main(int count, char** arguments) {
    ::testing::InitGoogleTest(&count, arguments);
    const QApplication application(count, arguments);
    if (vantor::registerFonts() != vantor::FontsVerdict::embedded) return 1;
    return RUN_ALL_TESTS();
}
