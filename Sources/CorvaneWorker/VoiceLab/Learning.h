// Makes the table of what is known about the voice network's vectors (Voice/VoiceTable.h).
#pragma once

#include <QString>

namespace corvane {

// PEOPLE/PERSON/MEETING-ROOM.wav, as make-conversations.py --people makes them; each meeting in several rooms, of which
// one is "clean". A PERSON with a ^ in the name is another one at another speed, which makes one more voice. Writes the
// file that VoiceTable.cpp includes. Throws WorkerError, FileError.
void learnVoices(const QString& people, const QString& table);

} // namespace corvane
