// What the speakers panel remembers by itself: which contexts are open, and the dialog in which a profile is created
// from a speaker's voice. Owned by the view, on the main thread.
#pragma once

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <QObject>

#include <functional>
#include <optional>
#include <set>

namespace corvane {

// The words of the dialog. Its text field is `speakerProfileDisplayName`.
struct ProfileCreationDialog {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString fieldLabel MEMBER fieldLabel)
    Q_PROPERTY(QString message MEMBER message)
    Q_PROPERTY(corvane::PanelButton createButton MEMBER createButton)
    Q_PROPERTY(corvane::PanelButton cancelButton MEMBER cancelButton)

public:
    QString title;
    QString fieldLabel;
    QString message;
    PanelButton createButton;
    PanelButton cancelButton;
};

class SpeakersPanelModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(bool isCreatingProfile READ isCreatingProfile NOTIFY speakerPendingProfileCreationChanged)
    Q_PROPERTY(QString speakerProfileDisplayName READ speakerProfileDisplayName WRITE setSpeakerProfileDisplayName
                   NOTIFY speakerProfileDisplayNameChanged)
    Q_PROPERTY(bool canCreate READ canCreate NOTIFY canCreateChanged)
    Q_PROPERTY(corvane::ProfileCreationDialog dialog READ profileCreationDialog CONSTANT)

public:
    // Takes the speaker's label and the name as it was typed.
    using CreateProfile = std::function<void(const QString& speaker, const QString& displayName)>;

    explicit SpeakersPanelModel(CreateProfile createProfile, QObject* parent = nullptr);

    [[nodiscard]] static QString title();

    // Labels. All contexts are closed at first.
    [[nodiscard]] const std::set<QString>& expandedSpeakerContexts() const { return m_expanded; }
    Q_INVOKABLE [[nodiscard]] bool isSpeakerContextOpen(const QString& speaker) const {
        return m_expanded.contains(speaker);
    }
    Q_INVOKABLE void openSpeakerContext(const QString& speaker);
    Q_INVOKABLE void closeSpeakerContext(const QString& speaker);

    // The label whose voice is to become a profile; the dialog is open while there is one.
    [[nodiscard]] const std::optional<QString>& speakerPendingProfileCreation() const { return m_pendingSpeaker; }
    [[nodiscard]] bool isCreatingProfile() const { return m_pendingSpeaker.has_value(); }
    [[nodiscard]] const QString& speakerProfileDisplayName() const { return m_displayName; }
    void setSpeakerProfileDisplayName(const QString& text);
    [[nodiscard]] bool canCreate() const;
    [[nodiscard]] ProfileCreationDialog profileCreationDialog() const;

    // Opens the dialog with the speaker's name of the moment in it.
    void beginProfileCreation(const QString& speaker, const SpeakerNames& names);
    Q_INVOKABLE void cancelProfileCreation();
    // Creates the profile and closes the dialog; does nothing where canCreate() is false.
    Q_INVOKABLE void confirmProfileCreation();

Q_SIGNALS:
    void expandedSpeakerContextsChanged();
    void speakerPendingProfileCreationChanged();
    void speakerProfileDisplayNameChanged();
    void canCreateChanged();

private:
    void setDialog(std::optional<QString> speaker, const QString& displayName);

    CreateProfile m_createProfile;
    std::set<QString> m_expanded;
    std::optional<QString> m_pendingSpeaker;
    QString m_displayName;
};

} // namespace corvane
