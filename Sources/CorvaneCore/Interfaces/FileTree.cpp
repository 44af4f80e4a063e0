#include "CorvaneCore/Interfaces/FileTree.h"

#include <algorithm>

namespace corvane {

bool isSettled(const FileStamp& stamp, std::int64_t settledBeforeNanoseconds) {
    constexpr std::int64_t second = 1'000'000'000;
    const std::int64_t newest = std::max(stamp.modifiedNanoseconds, stamp.statusNanoseconds);
    const bool wholeSeconds = stamp.statusNanoseconds % second == 0;
    return newest < settledBeforeNanoseconds - (wholeSeconds ? 2 * second : 0);
}

} // namespace corvane
