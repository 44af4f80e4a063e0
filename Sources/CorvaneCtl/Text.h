// How corvanectl puts things for a person to read. Pure functions; widths are in columns of a terminal.
#pragma once

#include "CorvaneCore/Library/MeetingMetadata.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace corvane::ctl {

enum class LineBreaks { shown, kept }; // kept: also tabs

// What comes from a file or a user must neither move the cursor nor change the order of letters: characters that would
// are shown as \n, \t, \xHH or \uHHHH.
[[nodiscard]] QString visibleText(const QString& text, LineBreaks lineBreaks = LineBreaks::shown);

// Columns that a text takes; wide characters take two, combining ones none. Needs a UTF-8 locale.
[[nodiscard]] int displayWidth(const QString& text);
// The text itself, or its beginning with “…” behind it where it is wider.
[[nodiscard]] QString cutToWidth(const QString& text, int width);

// Lines of columns that stand below each other, two blanks apart; nothing is padded at the end of a line.
[[nodiscard]] QString tableText(const std::vector<QStringList>& rows);

// "0:07", "1:02:03"; of a negative or absurd number "?".
[[nodiscard]] QString durationText(double seconds);
// "7 s", "12 min", "3 h", "5 d"
[[nodiscard]] QString ageText(double seconds);

// "[#####---------------]  25 %  0:12  message", no wider than `width`.
[[nodiscard]] QString progressText(double fraction, std::optional<double> elapsedSeconds, const QString& message,
                                   int width);

// The settings with the speakers as `--speakers` has them: "N", "MIN-MAX", "auto" or "off". Throws UsageError.
[[nodiscard]] ProcessingSettings withSpeakers(ProcessingSettings settings, const QString& speakers);
// The same the other way round.
[[nodiscard]] QString speakersText(const ProcessingSettings& settings);

} // namespace corvane::ctl
