// voice-lab: makes the table of the voice background and measures what it is worth. A developer's tool; see
// docs/decisions for how the recordings are made that it is fed with.
#include "CorvaneWorker/VoiceLab/Learning.h"
#include "CorvaneWorker/VoiceLab/Measures.h"
#include "CorvaneWorker/VoiceLab/Training.h"
#include "CorvaneWorker/WorkerError.h"

#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {

constexpr auto usage =
    "usage: voice-lab train CORPUS TABLE [WITHOUT]   CORPUS/SPEAKER/*.wav; leaves out SPEAKERs so named\n"
    "       voice-lab voices CORPUS SECONDS          cosines within and between the speakers\n"
    "       voice-lab speakers AUDIO TRUTH           error rate of the turns, number known and unknown\n";

} // namespace

int main(int argc, char** argv) {
    QStringList arguments;
    for (int index = 1; index < argc; ++index)
        arguments << QFile::decodeName(argv[index]);
    try {
        if (arguments.value(0) == QLatin1String("train") && arguments.size() >= 3)
            corvane::trainBackground(arguments[1], arguments[2], arguments.value(3));
        else if (arguments.value(0) == QLatin1String("learn") && arguments.size() == 3)
            corvane::learnVoices(arguments[1], arguments[2]);
        else if (arguments.value(0) == QLatin1String("voices") && arguments.size() == 3)
            corvane::printVoiceCosines(arguments[1], arguments[2].toDouble());
        else if (arguments.value(0) == QLatin1String("speakers") && arguments.size() == 3)
            corvane::printDiarizationError(arguments[1], arguments[2]);
        else
            return std::fputs(usage, stderr), 2;
    } catch (const corvane::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
