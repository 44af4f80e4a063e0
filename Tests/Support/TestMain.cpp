// The main function of every GoogleTest program: a core application, so that timers, futures and paths work, and
// directories of its own, so that no test touches the user's.
#include <QCoreApplication>
#include <QTemporaryDir>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        qputenv(name, (home.path() + u'/' + QString::fromLatin1(name).toLower()).toUtf8());
    const QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
