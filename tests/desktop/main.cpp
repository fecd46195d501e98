// One application object for all desktop tests. They run in demo/private_desktop.sh only: they press keys and move the
// pointer.

#include <gtest/gtest.h>

#include <QtWidgets/QApplication>
#include <cstdio>

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("VANTOR_PRIVATE_DESKTOP")) {
        std::fprintf(stderr, "desktop_tests: run it in demo/private_desktop.sh\n");
        return 1;
    }
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
