// The working copy of the names and profile links of the shown run, and what is under way for its voices. result.json
// is the lasting truth; a refresh replaces this copy from it.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/VoiceProfiles/SpeakerProfile.h"

#include <QTimer>

#include <optional>

namespace corvane {

// The status line of one speaker's card.
struct VoiceProfileUpdateMessage {
    enum class Kind { running, success, failure };

    Kind kind = Kind::running;
    QString text;

    friend bool operator==(const VoiceProfileUpdateMessage&, const VoiceProfileUpdateMessage&) = default;
};

using VoiceProfileUpdateMessages = std::map<QString, VoiceProfileUpdateMessage>;

class SpeakerReviewPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(bool isUpdatingVoiceProfile READ isUpdatingVoiceProfile NOTIFY isUpdatingVoiceProfileChanged)
    Q_PROPERTY(bool isMatchingSpeakerProfiles READ isMatchingSpeakerProfiles NOTIFY isMatchingSpeakerProfilesChanged)

public:
    explicit SpeakerReviewPart(QObject* parent = nullptr);

    // A label without a name holds "", so that every speaker has a text to edit.
    [[nodiscard]] const SpeakerNames& speakerMappings() const { return m_mappings; }
    [[nodiscard]] const SpeakerProfileAssignments& speakerProfileAssignments() const { return m_assignments; }
    [[nodiscard]] const SpeakerProfileMatches& speakerProfileMatches() const { return m_matches; }
    [[nodiscard]] const VoiceProfileUpdateMessages& voiceProfileUpdateMessages() const { return m_messages; }
    // The runs, by name, whose voices are being added to a profile or compared with the known ones.
    [[nodiscard]] const std::optional<QString>& voiceProfileUpdateRunID() const { return m_updateRunID; }
    [[nodiscard]] const std::optional<QString>& speakerProfileMatchRunID() const { return m_matchRunID; }
    [[nodiscard]] bool isUpdatingVoiceProfile() const { return m_updateRunID.has_value(); }
    [[nodiscard]] bool isMatchingSpeakerProfiles() const { return m_matchRunID.has_value(); }

    void load(const TranscriptResult& result);
    // Forgets everything of the run, a save that is due included.
    void reset();

    // Takes a name as it was typed. A name given by hand ends the open suggestions for its label.
    void setName(const QString& speaker, const QString& name);
    // Links a label to a person and gives it the person's name; that, too, ends its open suggestions.
    void assign(const QString& speaker, const SpeakerProfile& profile);
    // Takes away the link and the name. The link there was.
    std::optional<SpeakerProfileAssignment> removeAssignment(const QString& speaker);
    // Gives the labels linked to a person their new name. False if there are none.
    bool renameProfile(const QUuid& profileID, const QString& displayName);
    void setMatches(SpeakerProfileMatches matches);
    // Of the first suggestion with this id. False if there is none.
    bool setMatchStatus(const QString& suggestionID, const QString& status);

    void setMessage(const QString& speaker, VoiceProfileUpdateMessage message);
    void setVoiceProfileUpdateRunID(std::optional<QString> runID);
    void setSpeakerProfileMatchRunID(std::optional<QString> runID);

    // Asks for a save half a second from now, in place of one that was asked for before.
    void scheduleSave() { m_saveDelay.start(); }
    void cancelSave() { m_saveDelay.stop(); }
    [[nodiscard]] bool isSaveDue() const { return m_saveDelay.isActive(); }

Q_SIGNALS:
    void speakerMappingsChanged();
    void speakerProfileAssignmentsChanged();
    void speakerProfileMatchesChanged();
    void voiceProfileUpdateMessagesChanged();
    void isUpdatingVoiceProfileChanged();
    void isMatchingSpeakerProfilesChanged();
    void saveWanted();

private:
    void setMappings(SpeakerNames mappings);
    void setAssignments(SpeakerProfileAssignments assignments);

    SpeakerNames m_mappings;
    SpeakerProfileAssignments m_assignments;
    SpeakerProfileMatches m_matches;
    VoiceProfileUpdateMessages m_messages;
    std::optional<QString> m_updateRunID;
    std::optional<QString> m_matchRunID;
    QTimer m_saveDelay;
};

} // namespace corvane
