// A program with the start of every program of this house: writes its argument to standard output.
#include "CorvaneContract/Process/Locale.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv) {
    corvane::ensureUtf8Locale();
    const QCoreApplication application(argc, argv);
    std::printf("%s", QCoreApplication::arguments().value(1).toLocal8Bit().constData());
}
