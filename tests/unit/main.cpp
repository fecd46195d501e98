#include <gmock/gmock.h>

#include <QtCore/QCoreApplication>

int main(int count, char** arguments) {
    const QCoreApplication application(count, arguments);
    testing::InitGoogleMock(&count, arguments);
    return RUN_ALL_TESTS();
}
