// The main function of the tests that show windows: on no screen, unless one is asked for, and with directories of
// their own, so that no test touches the user's.
#include <QGuiApplication>
#include <QTemporaryDir>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        qputenv(name, (home.path() + u'/' + QString::fromLatin1(name).toLower()).toUtf8());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
