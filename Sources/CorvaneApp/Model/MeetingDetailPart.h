// What is shown of the selected meeting: the directory it is anchored at, its title, its processing settings and its
// transcript.
#pragma once

#include "CorvaneApp/Model/ModelPart.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Library/MeetingMetadata.h"

#include <optional>

namespace corvane {

class MeetingDetailPart final : public ModelPart {
    Q_OBJECT
    Q_PROPERTY(QString selectedTitle READ selectedTitle NOTIFY selectedTitleChanged)
    Q_PROPERTY(bool isEditingSelectedTitle READ isEditingSelectedTitle WRITE setIsEditingSelectedTitle NOTIFY
                   isEditingSelectedTitleChanged)
    Q_PROPERTY(QString transcriptText READ transcriptText NOTIFY transcriptTextChanged)

public:
    explicit MeetingDetailPart(ProcessingSettings settings, QObject* parent = nullptr);

    // The newest run of the shown meeting; for a meeting without runs its own directory.
    [[nodiscard]] const std::optional<QString>& lastRunDirectory() const { return m_lastRunDirectory; }
    [[nodiscard]] const QString& selectedTitle() const { return m_selectedTitle; }
    // While a user types a title, a refresh leaves it alone.
    [[nodiscard]] bool isEditingSelectedTitle() const { return m_isEditingSelectedTitle; }
    // speakerIdentificationContext, selectedLanguage, selectedSpeakerCount and the other settings of the meeting.
    [[nodiscard]] const ProcessingSettings& settings() const { return m_settings; }
    [[nodiscard]] const std::optional<TranscriptResult>& transcriptResult() const { return m_transcriptResult; }
    [[nodiscard]] const QString& transcriptText() const { return m_transcriptText; }

    void setLastRunDirectory(std::optional<QString> directory);
    void setSelectedTitle(QString title);
    void setIsEditingSelectedTitle(bool editing);
    void setSettings(ProcessingSettings settings);
    void setTranscript(std::optional<TranscriptResult> result, QString text);
    void clearTranscript() { setTranscript(std::nullopt, {}); }

Q_SIGNALS:
    void lastRunDirectoryChanged();
    void selectedTitleChanged();
    void isEditingSelectedTitleChanged();
    void settingsChanged();
    void transcriptResultChanged();
    void transcriptTextChanged();

private:
    std::optional<QString> m_lastRunDirectory;
    QString m_selectedTitle;
    bool m_isEditingSelectedTitle = false;
    ProcessingSettings m_settings;
    std::optional<TranscriptResult> m_transcriptResult;
    QString m_transcriptText;
};

} // namespace corvane
