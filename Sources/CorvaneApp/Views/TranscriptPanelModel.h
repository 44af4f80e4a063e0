// The transcript panel: its rows, and the button that copies all of them and says so for a moment. Owned by the view,
// on the main thread.
#pragma once

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

namespace corvane {

// Whether there is a sound file to play from.
enum class MeetingAudio { absent, present };

// A speaker turn.
struct TranscriptRow {
    double startSeconds = 0;     // where the timestamp plays from
    PanelButton timestampButton; // in the accent colour and underlined while it is enabled
    QString speakerName;
    QString text;

    friend bool operator==(const TranscriptRow&, const TranscriptRow&) = default;
};

[[nodiscard]] std::vector<TranscriptRow> transcriptRows(const TranscriptResult& result, const SpeakerNames& names,
                                                        MeetingAudio audio);

class TranscriptPanelModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(bool transcriptCopied READ transcriptCopied NOTIFY transcriptCopiedChanged)
    Q_PROPERTY(QString copyIconName READ copyIconName NOTIFY transcriptCopiedChanged)
    Q_PROPERTY(QString copyAccessibilityLabel READ copyAccessibilityLabel NOTIFY transcriptCopiedChanged)
    Q_PROPERTY(bool canCopy READ canCopy NOTIFY rowsChanged)

public:
    // Replaces what is on the clipboard, which belongs to the view toolkit.
    using PutOnClipboard = std::function<void(const QString& text)>;

    explicit TranscriptPanelModel(PutOnClipboard putOnClipboard, QObject* parent = nullptr);

    [[nodiscard]] static QString title() { return QStringLiteral("Transcript"); }

    // To be called whenever one of the three has changed.
    void show(TranscriptResult result, SpeakerNames names, MeetingAudio audio);
    [[nodiscard]] const std::vector<TranscriptRow>& rows() const { return m_rows; }

    // Copies the turns with the names on screen. Does nothing if nothing was said.
    Q_INVOKABLE void copyTranscript();
    // True from a copy until 1.2 seconds after the last one.
    [[nodiscard]] bool transcriptCopied() const { return m_copied.isActive(); }
    [[nodiscard]] QString copyIconName() const;
    [[nodiscard]] QString copyAccessibilityLabel() const;
    // Also if all segments are blank.
    [[nodiscard]] bool canCopy() const { return !m_result.segments.empty(); }

Q_SIGNALS:
    void rowsChanged();
    void transcriptCopiedChanged();

private:
    PutOnClipboard m_putOnClipboard;
    TranscriptResult m_result;
    SpeakerNames m_names;
    std::vector<TranscriptRow> m_rows;
    QTimer m_copied;
};

} // namespace corvane
