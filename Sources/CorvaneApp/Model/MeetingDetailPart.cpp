#include "CorvaneApp/Model/MeetingDetailPart.h"

namespace corvane {

MeetingDetailPart::MeetingDetailPart(ProcessingSettings settings, QObject* parent)
    : ModelPart(parent), m_settings(std::move(settings)) {}

void MeetingDetailPart::setLastRunDirectory(std::optional<QString> directory) {
    publish(m_lastRunDirectory, std::move(directory), "lastRunDirectory", &MeetingDetailPart::lastRunDirectoryChanged);
}

void MeetingDetailPart::setSelectedTitle(QString title) {
    publish(m_selectedTitle, std::move(title), "selectedTitle", &MeetingDetailPart::selectedTitleChanged);
}

void MeetingDetailPart::setIsEditingSelectedTitle(bool editing) {
    publish(m_isEditingSelectedTitle, editing, "isEditingSelectedTitle",
            &MeetingDetailPart::isEditingSelectedTitleChanged);
}

void MeetingDetailPart::setSettings(ProcessingSettings settings) {
    publish(m_settings, std::move(settings), "settings", &MeetingDetailPart::settingsChanged);
}

void MeetingDetailPart::setTranscript(std::optional<TranscriptResult> result, QString text) {
    publish(m_transcriptResult, std::move(result), "transcriptResult", &MeetingDetailPart::transcriptResultChanged);
    publish(m_transcriptText, std::move(text), "transcriptText", &MeetingDetailPart::transcriptTextChanged);
}

} // namespace corvane
