// What the voice vectors and the diarization are worth on recordings whose truth is known, as make-conversations.py
// makes them. Prints to standard output.
#pragma once

#include <QString>

namespace corvane {

// DIRECTORY/NUMBER-SPEAKERS-ROOM.wav with a .tsv of the same name: the diarization error rate with a collar of 0.25 s
// (missed speech, false alarms and confusions, against the seconds of true speech), the number of speakers told and
// not, and the time that it takes. Throws WorkerError.
void printDiarizationErrors(const QString& directory);

// DIRECTORY/PERSON/MEETING-ROOM.wav: the equal error rate of stretches of 3, 5 and 10 s; and for whole meetings, in one
// room and across rooms, how many pairs of one person are missed and how many of two are taken for one at the
// application's threshold. Throws WorkerError.
void printVoiceErrors(const QString& directory);

} // namespace corvane
