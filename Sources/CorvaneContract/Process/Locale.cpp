#include "CorvaneContract/Process/Locale.h"

#include <QByteArray>

#include <langinfo.h>

#include <clocale>
#include <cstring>

namespace corvane {

void ensureUtf8Locale() {
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread exists yet.
    if (std::setlocale(LC_ALL, "") && std::strcmp(::nl_langinfo(CODESET), "UTF-8") == 0)
        return;
    qputenv("LC_ALL", "C.UTF-8");
    std::setlocale(LC_ALL, "");
    // NOLINTEND(concurrency-mt-unsafe)
}

} // namespace corvane
