#include "CorvaneWorker/Run/ModelsRun.h"

#include "CorvaneWorker/Models/InferenceRuntime.h"
#include "CorvaneWorker/Models/ModelPlaces.h"
#include "CorvaneWorker/Recognition/EngineChoice.h"
#include "CorvaneWorker/Recognition/SpeechModel.h"
#include "CorvaneWorker/WorkerError.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace corvane {

namespace {

void print(const QString& line) {
    const QByteArray text = line.toUtf8() + '\n';
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
}

void printMissing(const QString& line) {
    print(QStringLiteral("  missing: ") + line);
}

QString kindName(RecognitionModel::Kind kind) {
    using Kind = RecognitionModel::Kind;
    switch (kind) {
    case Kind::Moonshine:
        return QStringLiteral("Moonshine");
    case Kind::Whisper:
        return QStringLiteral("Whisper");
    case Kind::Canary:
        return QStringLiteral("Canary");
    case Kind::Transducer:
        return QStringLiteral("transducer");
    case Kind::NemoCtc:
        return QStringLiteral("NeMo CTC");
    case Kind::ZipformerCtc:
        return QStringLiteral("Zipformer CTC");
    case Kind::WenetCtc:
        return QStringLiteral("WeNet CTC");
    case Kind::SenseVoice:
        return QStringLiteral("SenseVoice");
    case Kind::Paraformer:
        break;
    }
    return QStringLiteral("Paraformer");
}

// The library's place if it can be used, which every network needs.
bool printRuntime() {
    print(QStringLiteral("Library that runs neural networks (version %1):").arg(inferenceRuntimeVersion()));
    const LoadedRuntime& runtime = inferenceRuntime();
    if (runtime.functions == nullptr)
        printMissing(runtime.note);
    else
        print(QStringLiteral("  ") + findModel(QStringLiteral("runtime/libsherpa-onnx-c-api.so")));
    return runtime.functions != nullptr;
}

// How many of them are installed.
std::size_t printNetworks() {
    const auto networks = installedNetworks();
    for (const RecognitionModel& network : networks) {
        const QString languages = network.languages.isEmpty() ? QStringLiteral("many languages")
                                                              : network.languages.join(QStringLiteral(", "));
        print(QStringLiteral("  %1: %2, %3, in %4")
                  .arg(network.name, languages, kindName(network.kind), QFileInfo(network.tokens).absolutePath()));
    }
    if (networks.empty())
        printMissing(QStringLiteral("a neural recogniser. The worker takes PocketSphinx instead, which knows English "
                                    "only."));
    return networks.size();
}

bool printPocketSphinx() {
    try {
        const SpeechModel model = installedSpeechModel();
        print(
            QStringLiteral("  %1: en, PocketSphinx, in %2").arg(model.name, QFileInfo(model.acoustic).absolutePath()));
        return true;
    } catch (const WorkerError& error) {
        printMissing(error.text());
        return false;
    }
}

void printOthers() {
    print(QStringLiteral("Speech detector:"));
    const QString detector = findModel(QStringLiteral("activity/silero_vad.onnx"));
    if (detector.isEmpty())
        printMissing(QStringLiteral("the speech detector. The worker tells speech by its loudness instead."));
    else
        print(QStringLiteral("  Silero, in ") + QFileInfo(detector).absolutePath());
    print(QStringLiteral("Voice network:"));
    const QStringList voices = modelDirectories(QStringLiteral("voice"));
    if (voices.isEmpty())
        printMissing(QStringLiteral("a voice network. The worker tells voices apart by classical means instead."));
    for (const QString& voice : voices)
        print(QStringLiteral("  %1, in %2").arg(QFileInfo(voice).fileName(), QFileInfo(voice).absolutePath()));
}

void printPlaces() {
    print(QStringLiteral("Models are looked for in, the first place first:"));
    for (const QString& place : modelPlaces())
        print(QStringLiteral("  %1%2").arg(place,
                                           QFileInfo(place).isDir() ? QString() : QStringLiteral(" (does not exist)")));
}

} // namespace

int runModels() {
    const bool runs = printRuntime();
    print(QStringLiteral("Recognisers, the preferred one first:"));
    const bool hasNetwork = printNetworks() > 0;
    const bool hasPocketSphinx = printPocketSphinx();
    printOthers();
    printPlaces();
    return (runs && hasNetwork) || hasPocketSphinx ? 0 : 1;
}

} // namespace corvane
