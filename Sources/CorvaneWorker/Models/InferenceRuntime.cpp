#include "CorvaneWorker/Models/InferenceRuntime.h"

#include "CorvaneWorker/Models/ModelPlaces.h"

#include <QFile>

#include <dlfcn.h>

#include <sherpa-onnx/c-api.h>

namespace corvane {

namespace {

// The layout of its structures changes between versions.
constexpr const char* knownVersion = "1.13.0";

template<typename Function>
bool bind(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

bool bindAll(void* library, InferenceRuntime& runtime) {
    return bind(library, "SherpaOnnxCreateOfflineRecognizer", runtime.createRecognizer) &&
           bind(library, "SherpaOnnxDestroyOfflineRecognizer", runtime.destroyRecognizer) &&
           bind(library, "SherpaOnnxCreateOfflineStream", runtime.createStream) &&
           bind(library, "SherpaOnnxDestroyOfflineStream", runtime.destroyStream) &&
           bind(library, "SherpaOnnxAcceptWaveformOffline", runtime.acceptWaveform) &&
           bind(library, "SherpaOnnxDecodeOfflineStream", runtime.decode) &&
           bind(library, "SherpaOnnxGetOfflineStreamResult", runtime.result) &&
           bind(library, "SherpaOnnxDestroyOfflineRecognizerResult", runtime.destroyResult) &&
           bind(library, "SherpaOnnxCreateVoiceActivityDetector", runtime.createDetector) &&
           bind(library, "SherpaOnnxDestroyVoiceActivityDetector", runtime.destroyDetector) &&
           bind(library, "SherpaOnnxVoiceActivityDetectorAcceptWaveform", runtime.detectorAccept) &&
           bind(library, "SherpaOnnxVoiceActivityDetectorFlush", runtime.detectorFlush) &&
           bind(library, "SherpaOnnxVoiceActivityDetectorEmpty", runtime.detectorEmpty) &&
           bind(library, "SherpaOnnxVoiceActivityDetectorFront", runtime.detectorFront) &&
           bind(library, "SherpaOnnxDestroySpeechSegment", runtime.destroySegment) &&
           bind(library, "SherpaOnnxVoiceActivityDetectorPop", runtime.detectorPop);
}

LoadedRuntime load() {
    static InferenceRuntime runtime;
    const QString path = findModel(QStringLiteral("runtime/libsherpa-onnx-c-api.so"));
    if (path.isEmpty())
        return {nullptr, QStringLiteral("The library that runs neural networks is not installed.")};
    // Left open on purpose: its threads may outlive whoever used it.
    void* library = ::dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        const QString reason = QString::fromUtf8(::dlerror()); // NOLINT(concurrency-mt-unsafe): it is each thread's own
        return {nullptr, QStringLiteral("“%1” could not be loaded: %2.").arg(path, reason)};
    }
    const char* (*version)() = nullptr;
    if (!bind(library, "SherpaOnnxGetVersionStr", version) || !bindAll(library, runtime))
        return {nullptr, QStringLiteral("“%1” is not the library that this worker knows.").arg(path)};
    if (qstrcmp(version(), knownVersion) != 0)
        return {nullptr, QStringLiteral("“%1” has version %2, and this worker knows version %3.")
                             .arg(path, QString::fromUtf8(version()), inferenceRuntimeVersion())};
    return {&runtime, {}};
}

} // namespace

const LoadedRuntime& inferenceRuntime() {
    static const LoadedRuntime loaded = load();
    return loaded;
}

QString inferenceRuntimeVersion() {
    return QString::fromLatin1(knownVersion);
}

} // namespace corvane
