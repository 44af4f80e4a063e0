// A call that the user seems to be in. A plain value; thread-safe as such.
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace corvane {

enum class CallProvider { googleMeet, zoom, teams, slack };

// As the user knows it.
[[nodiscard]] QString callProviderName(CallProvider provider);

struct DetectedCall {
    CallProvider provider = CallProvider::googleMeet;
    std::optional<QString> title; // of the window or tab, without what names the service; never empty
    QString source;               // the application in front
    QString key;                  // what this call is known by, for remembering that it was declined

    // The second line of the question whether to record it.
    [[nodiscard]] QString subtitle() const;
    // With the local time of `now` behind it.
    [[nodiscard]] QString recordingTitle(const QDateTime& now) const;

    friend bool operator==(const DetectedCall&, const DetectedCall&) = default;
};

} // namespace corvane
