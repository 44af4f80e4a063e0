// The words for the status of an HTTP answer, for a user who gets no better ones from the server. A pure function.
#pragma once

#include <QString>

namespace corvane {

// In lower case, as they stand behind a colon. A number that no standard knows gets the words of its class.
[[nodiscard]] QString httpStatusText(int status);

} // namespace corvane
