#include "CorvaneCore/Services/InfoDictionary.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Json/JsonReader.h"

namespace corvane {

InfoDictionary withEntriesOfFile(InfoDictionary builtIn, const QString& path) {
    const auto content = readFile(path);
    if (!content)
        return builtIn;
    try {
        InfoDictionary entries = JsonDocument(*content).root().object().free();
        entries.merge(builtIn);
        return entries;
    } catch (const JsonError& error) {
        qWarning("%s is not used: %s", qPrintable(path), error.what());
        return builtIn;
    }
}

} // namespace corvane
