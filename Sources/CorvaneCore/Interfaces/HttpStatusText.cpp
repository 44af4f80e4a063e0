#include "CorvaneCore/Interfaces/HttpStatusText.h"

#include "CorvaneContract/Text/UserText.h"

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
    StatusText{300, QT_TRANSLATE_NOOP("UserText", "multiple choices")},
    StatusText{301, QT_TRANSLATE_NOOP("UserText", "moved permanently")},
    StatusText{302, QT_TRANSLATE_NOOP("UserText", "found")},
    StatusText{303, QT_TRANSLATE_NOOP("UserText", "see other")},
    StatusText{304, QT_TRANSLATE_NOOP("UserText", "not modified")},
    StatusText{307, QT_TRANSLATE_NOOP("UserText", "temporarily redirected")},
    StatusText{308, QT_TRANSLATE_NOOP("UserText", "permanently redirected")},
    StatusText{400, QT_TRANSLATE_NOOP("UserText", "bad request")},
    StatusText{401, QT_TRANSLATE_NOOP("UserText", "unauthorized")},
    StatusText{402, QT_TRANSLATE_NOOP("UserText", "payment required")},
    StatusText{403, QT_TRANSLATE_NOOP("UserText", "forbidden")},
    StatusText{404, QT_TRANSLATE_NOOP("UserText", "not found")},
    StatusText{405, QT_TRANSLATE_NOOP("UserText", "method not allowed")},
    StatusText{406, QT_TRANSLATE_NOOP("UserText", "unacceptable")},
    StatusText{407, QT_TRANSLATE_NOOP("UserText", "proxy authentication required")},
    StatusText{408, QT_TRANSLATE_NOOP("UserText", "request timed out")},
    StatusText{409, QT_TRANSLATE_NOOP("UserText", "conflict")},
    StatusText{410, QT_TRANSLATE_NOOP("UserText", "no longer exists")},
    StatusText{411, QT_TRANSLATE_NOOP("UserText", "length required")},
    StatusText{412, QT_TRANSLATE_NOOP("UserText", "precondition failed")},
    StatusText{413, QT_TRANSLATE_NOOP("UserText", "request too large")},
    StatusText{414, QT_TRANSLATE_NOOP("UserText", "requested URL too long")},
    StatusText{415, QT_TRANSLATE_NOOP("UserText", "unsupported media type")},
    StatusText{416, QT_TRANSLATE_NOOP("UserText", "requested range not satisfiable")},
    StatusText{417, QT_TRANSLATE_NOOP("UserText", "expectation failed")},
    StatusText{422, QT_TRANSLATE_NOOP("UserText", "unprocessable content")},
    StatusText{429, QT_TRANSLATE_NOOP("UserText", "too many requests")},
    StatusText{500, QT_TRANSLATE_NOOP("UserText", "internal server error")},
    StatusText{501, QT_TRANSLATE_NOOP("UserText", "unimplemented")},
    StatusText{502, QT_TRANSLATE_NOOP("UserText", "bad gateway")},
    StatusText{503, QT_TRANSLATE_NOOP("UserText", "service unavailable")},
    StatusText{504, QT_TRANSLATE_NOOP("UserText", "gateway timed out")},
    StatusText{505, QT_TRANSLATE_NOOP("UserText", "unsupported version")},
};

const char* classText(int status) {
    switch (status / 100) {
    case 1:
        return QT_TRANSLATE_NOOP("UserText", "informational");
    case 2:
        return QT_TRANSLATE_NOOP("UserText", "no error");
    case 3:
        return QT_TRANSLATE_NOOP("UserText", "redirected");
    case 4:
        return QT_TRANSLATE_NOOP("UserText", "client error");
    case 5:
        return QT_TRANSLATE_NOOP("UserText", "server error");
    default:
        return QT_TRANSLATE_NOOP("UserText", "no valid status");
    }
}

} // namespace

QString httpStatusText(int status) {
    const auto* const found = std::find_if(std::begin(statusTexts), std::end(statusTexts),
                                           [status](const StatusText& one) { return one.status == status; });
    return UserText::tr(found == std::end(statusTexts) ? classText(status) : found->text);
}

} // namespace corvane
