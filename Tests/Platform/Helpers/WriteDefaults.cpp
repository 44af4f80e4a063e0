// Sets a key of the user defaults to every number from a first to a last one: path, key, first, last.
#include "CorvanePlatform/Linux/Settings/FileUserDefaults.h"

#include <cstdlib>

int main(int argc, char** argv) {
    if (argc != 5)
        return 2;
    corvane::FileUserDefaults defaults(QString::fromUtf8(argv[1]));
    for (std::int64_t number = std::atoll(argv[3]); number <= std::atoll(argv[4]); ++number)
        defaults.set(QString::fromUtf8(argv[2]), number);
}
