// voice-lab: makes the tables of what is known about voices, and measures what the diarization and the voice vectors
// are worth. A developer's tool; Packaging/voice makes the recordings that it is fed with.
#include "CorvaneWorker/VoiceLab/Learning.h"
#include "CorvaneWorker/VoiceLab/Measures.h"
#include "CorvaneWorker/VoiceLab/Training.h"
#include "CorvaneWorker/WorkerError.h"

#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {

constexpr auto usage =
    "usage: voice-lab learn PEOPLE TABLE       makes Voice/VoiceTable.inc\n"
    "       voice-lab train CORPUS TABLE       makes Diarization/VoiceBackgroundTable.inc, from CORPUS/SPEAKER/*.wav\n"
    "       voice-lab voices PEOPLE            how well the vectors tell people apart\n"
    "       voice-lab speakers CONVERSATIONS   error rates of the turns, number of speakers told and untold\n";

} // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments << QFile::decodeName(argv[index]);
    try {
        if (arguments.value(0) == QLatin1String("train") && arguments.size() == 3)
            corvane::trainBackground(arguments[1], arguments[2]);
        else if (arguments.value(0) == QLatin1String("learn") && arguments.size() == 3)
            corvane::learnVoices(arguments[1], arguments[2]);
        else if (arguments.value(0) == QLatin1String("voices") && arguments.size() == 2)
            corvane::printVoiceErrors(arguments[1]);
        else if (arguments.value(0) == QLatin1String("speakers") && arguments.size() == 2)
            corvane::printDiarizationErrors(arguments[1]);
        else
            return std::fputs(usage, stderr), 2;
    } catch (const corvane::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
