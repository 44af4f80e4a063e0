// The window in front as a display server or the accessibility bus tells of it. Values, any thread.
#pragma once

#include <QString>

#include <optional>

namespace corvane {

enum class FrontWindowSource { x11, sway, accessibility };

struct FrontWindow {
    FrontWindowSource source = FrontWindowSource::x11;
    QString applicationId; // X11's class, Wayland's application id, or what is known of the process
    QString instance;      // X11's, which carries the id of an installed web application; otherwise empty
    std::optional<QString> title;
    std::optional<qint64> processIdentifier;
    QString identity; // another one for another window

    friend bool operator==(const FrontWindow&, const FrontWindow&) = default;
};

// What a source has to say. `unknown` asks for the next source; `nothing` is an answer.
struct FrontWindowReading {
    enum class Outcome { window, nothing, unknown };

    Outcome outcome = Outcome::unknown;
    FrontWindow window = {};
};

} // namespace corvane
