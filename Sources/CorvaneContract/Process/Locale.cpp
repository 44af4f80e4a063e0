#include "CorvaneContract/Process/Locale.h"

#include <langinfo.h>
#include <stdlib.h>

#include <clocale>
#include <cstring>

namespace corvane {

void ensureUtf8Locale() {
    if (std::setlocale(LC_ALL, "") && std::strcmp(::nl_langinfo(CODESET), "UTF-8") == 0)
        return;
    ::setenv("LC_ALL", "C.UTF-8", 1);
    std::setlocale(LC_ALL, "");
}

} // namespace corvane
