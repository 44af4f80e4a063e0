// What corvanectl record and corvanectl recover have in common: which meetings are recordings under way, and bringing
// one to its end.
#pragma once

#include "CorvaneCore/Library/MeetingLibrary.h"
#include "CorvaneCtl/CtlError.h"

#include <vector>

namespace corvane::ctl {

class Session;

// Whether its draft says that it is being recorded, or is paused, as it does for ever after its process was killed; or
// whether a rename took this out of the draft, and there are chunks but no finished file.
[[nodiscard]] bool isInProgress(Session& session, const MeetingListItem& meeting);

struct UnfinishedRecordings {
    std::vector<MeetingListItem> live; // a process that lives records them, or finishes them
    std::vector<MeetingListItem> left; // left behind by a process that has died, with at least one file of sound
};
[[nodiscard]] UnfinishedRecordings unfinishedRecordings(Session& session);
[[nodiscard]] bool hasSound(Session& session, const MeetingListItem& meeting);
[[nodiscard]] bool isLive(Session& session, const MeetingListItem& meeting);

// Stops the recording of the model's current meeting, `meetingID`, joins and mixes it, starts its processing unless
// --no-process is given, and prints what came of it. Throws CtlError, or Interrupted at the second signal.
[[nodiscard]] ExitStatus finishRecording(Session& session, const QString& meetingID);

} // namespace corvane::ctl
