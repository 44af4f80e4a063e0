// Tells a private window by its accessible title, in whatever language the browser speaks. Pure functions, any thread.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/KnownApplications.h"

namespace corvane {

// `doubtful` windows are treated like private ones.
enum class WindowPrivacy { ordinary, doubtful };

// Chromium's accessible title of a private window or of a guest's is the ordinary one and then the kind of window in
// parentheses, “(Incognito)”, “(Navigation privée)”, “（无痕）”: so in each of its 60 languages, after the name of the
// browser, and after the page's title where a window bears no browser's name. An ordinary title ends with the browser's
// name, or with a dash and the name of the profile. What has neither form is doubtful. `title` is the window's own,
// which never says that it is private.
[[nodiscard]] WindowPrivacy windowPrivacy(Browser browser, BrowserWindow kind, const QString& accessibleTitle,
                                          const std::optional<QString>& title);

} // namespace corvane
