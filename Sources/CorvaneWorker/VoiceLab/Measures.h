// What the voice vectors and the diarization are worth on recordings whose truth is known. Prints to standard output.
#pragma once

#include <QString>

namespace corvane {

// Cuts each speaker's files into voices of so many seconds and prints how alike two voices of one speaker are, and two
// voices of two speakers; the equal error rate; and the errors at the application's threshold. Throws WorkerError.
void printVoiceCosines(const QString& corpus, double seconds);

// The diarization error rate with a collar of 0.25 s: missed speech, false alarms and confusions, against the seconds
// of true speech. TRUTH has lines of start, end, speaker, separated by tabs. Throws WorkerError.
void printDiarizationError(const QString& audio, const QString& truth);

} // namespace corvane
