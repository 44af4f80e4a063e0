// Which meeting a user means, and how one is named so briefly that it can be typed. Pure functions.
#pragma once

#include "CorvaneCore/Library/MeetingLibrary.h"

#include <QString>

#include <vector>

namespace corvane::ctl {

// `words` is “latest” (the first of the list), a whole id, the beginning of one in any letter case, or a title. A whole
// id wins; among beginnings and titles there must be only one that fits. Throws CtlError with
// ExitStatus::noSuchMeeting, naming those that fit if there are several.
[[nodiscard]] const MeetingListItem& chooseMeeting(const std::vector<MeetingListItem>& meetings, const QString& words);

// As shortIDs() of Choice.h.
[[nodiscard]] std::vector<QString> shortIDs(const std::vector<MeetingListItem>& meetings);

} // namespace corvane::ctl
