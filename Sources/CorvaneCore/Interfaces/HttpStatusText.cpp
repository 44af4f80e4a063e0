#include "CorvaneCore/Interfaces/HttpStatusText.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace corvane {

namespace {

struct StatusText {
    int status;
    const char* text;
};

// RFC 9110, section 15, and RFC 6585.
constexpr std::array statusTexts{
    StatusText{300, "multiple choices"},
    StatusText{301, "moved permanently"},
    StatusText{302, "found"},
    StatusText{303, "see other"},
    StatusText{304, "not modified"},
    StatusText{307, "temporarily redirected"},
    StatusText{308, "permanently redirected"},
    StatusText{400, "bad request"},
    StatusText{401, "unauthorized"},
    StatusText{402, "payment required"},
    StatusText{403, "forbidden"},
    StatusText{404, "not found"},
    StatusText{405, "method not allowed"},
    StatusText{406, "unacceptable"},
    StatusText{407, "proxy authentication required"},
    StatusText{408, "request timed out"},
    StatusText{409, "conflict"},
    StatusText{410, "no longer exists"},
    StatusText{411, "length required"},
    StatusText{412, "precondition failed"},
    StatusText{413, "request too large"},
    StatusText{414, "requested URL too long"},
    StatusText{415, "unsupported media type"},
    StatusText{416, "requested range not satisfiable"},
    StatusText{417, "expectation failed"},
    StatusText{422, "unprocessable content"},
    StatusText{429, "too many requests"},
    StatusText{500, "internal server error"},
    StatusText{501, "unimplemented"},
    StatusText{502, "bad gateway"},
    StatusText{503, "service unavailable"},
    StatusText{504, "gateway timed out"},
    StatusText{505, "unsupported version"},
};

const char* classText(int status) {
    switch (status / 100) {
    case 1:
        return "informational";
    case 2:
        return "no error";
    case 3:
        return "redirected";
    case 4:
        return "client error";
    case 5:
        return "server error";
    default:
        return "no valid status";
    }
}

} // namespace

QString httpStatusText(int status) {
    const auto* const found = std::find_if(std::begin(statusTexts), std::end(statusTexts),
                                           [status](const StatusText& one) { return one.status == status; });
    return QString::fromLatin1(found == std::end(statusTexts) ? classText(status) : found->text);
}

} // namespace corvane
