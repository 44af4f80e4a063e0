#include "CorvaneApp/Views/TranscriptPanelModel.h"

#include "CorvaneCore/Transcripts/SpeakerReview.h"

#include <chrono>
#include <utility>

namespace corvane {

using namespace std::chrono_literals;

std::vector<TranscriptRow> transcriptRows(const TranscriptResult& result, const SpeakerNames& names,
                                          MeetingAudio audio) {
    std::vector<TranscriptRow> rows;
    for (const TranscriptDisplayGroup& group : groupedTranscript(result.segments)) {
        PanelButton button;
        button.text = timestampText(group.start);
        button.helpText = QStringLiteral("Play meeting from ") + button.text;
        button.isEnabled = audio == MeetingAudio::present;
        rows.push_back({.startSeconds = group.start,
                        .timestampButton = std::move(button),
                        .speakerName = displayName(group.speaker, names),
                        .text = group.text});
    }
    return rows;
}

TranscriptPanelModel::TranscriptPanelModel(PutOnClipboard putOnClipboard, QObject* parent)
    : QObject(parent), m_putOnClipboard(std::move(putOnClipboard)) {
    m_copied.setSingleShot(true);
    m_copied.setInterval(1200ms);
    connect(&m_copied, &QTimer::timeout, this, &TranscriptPanelModel::transcriptCopiedChanged);
}

void TranscriptPanelModel::show(TranscriptResult result, SpeakerNames names, MeetingAudio audio) {
    m_rows = transcriptRows(result, names, audio);
    m_result = std::move(result);
    m_names = std::move(names);
    Q_EMIT rowsChanged();
}

void TranscriptPanelModel::copyTranscript() {
    const QString text = transcriptClipboardText(m_result, m_names);
    if (text.isEmpty())
        return;
    m_putOnClipboard(text);
    const bool wasCopied = transcriptCopied();
    m_copied.start();
    if (!wasCopied)
        Q_EMIT transcriptCopiedChanged();
}

QString TranscriptPanelModel::copyIconName() const {
    return transcriptCopied() ? QStringLiteral("checkmark") : QStringLiteral("doc.on.doc");
}

QString TranscriptPanelModel::copyAccessibilityLabel() const {
    return transcriptCopied() ? QStringLiteral("Transcript copied") : QStringLiteral("Copy transcript");
}

} // namespace corvane
