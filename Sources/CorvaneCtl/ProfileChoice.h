// The known people as corvanectl names and shows them.
#pragma once

#include "CorvaneCore/VoiceProfiles/SpeakerProfile.h"

#include <QJsonObject>

namespace corvane::ctl {

class Session;

// The known people, read anew. Throws CtlError if they cannot be read: the model would go on without any.
[[nodiscard]] const std::vector<SpeakerProfileSummary>& knownPeople(Session& session);

// The person that `words` names: an id, its beginning, or a name. Throws CtlError with ExitStatus::noSuchMeeting.
[[nodiscard]] SpeakerProfile chooseProfile(Session& session, const QString& words);

[[nodiscard]] QJsonObject profileJson(const SpeakerProfileSummary& summary);

} // namespace corvane::ctl
