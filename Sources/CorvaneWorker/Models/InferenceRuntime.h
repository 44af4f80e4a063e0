// The library that runs neural networks, loaded when this process first needs it: it is no package of Debian and may be
// missing. Any thread; it stays loaded until the process ends.
#pragma once

#include <QString>

struct SherpaOnnxOfflineRecognizer;
struct SherpaOnnxOfflineRecognizerConfig;
struct SherpaOnnxOfflineRecognizerResult;
struct SherpaOnnxOfflineStream;
struct SherpaOnnxSpeechSegment;
struct SherpaOnnxVadModelConfig;
struct SherpaOnnxVoiceActivityDetector;

namespace corvane {

// The functions of the library that the worker uses, under their names there without the prefix. Its header tells what
// they do.
struct InferenceRuntime {
    const SherpaOnnxOfflineRecognizer* (*createRecognizer)(const SherpaOnnxOfflineRecognizerConfig*);
    void (*destroyRecognizer)(const SherpaOnnxOfflineRecognizer*);
    const SherpaOnnxOfflineStream* (*createStream)(const SherpaOnnxOfflineRecognizer*);
    void (*destroyStream)(const SherpaOnnxOfflineStream*);
    void (*acceptWaveform)(const SherpaOnnxOfflineStream*, int sampleRate, const float*, int count);
    void (*decode)(const SherpaOnnxOfflineRecognizer*, const SherpaOnnxOfflineStream*);
    const SherpaOnnxOfflineRecognizerResult* (*result)(const SherpaOnnxOfflineStream*);
    void (*destroyResult)(const SherpaOnnxOfflineRecognizerResult*);

    const SherpaOnnxVoiceActivityDetector* (*createDetector)(const SherpaOnnxVadModelConfig*, float bufferSeconds);
    void (*destroyDetector)(const SherpaOnnxVoiceActivityDetector*);
    void (*detectorAccept)(const SherpaOnnxVoiceActivityDetector*, const float*, int count);
    void (*detectorFlush)(const SherpaOnnxVoiceActivityDetector*);
    int (*detectorEmpty)(const SherpaOnnxVoiceActivityDetector*);
    const SherpaOnnxSpeechSegment* (*detectorFront)(const SherpaOnnxVoiceActivityDetector*);
    void (*destroySegment)(const SherpaOnnxSpeechSegment*);
    void (*detectorPop)(const SherpaOnnxVoiceActivityDetector*);
};

struct LoadedRuntime {
    const InferenceRuntime* functions = nullptr; // null if the library is missing or another one than this code knows
    QString note;                                // then why, one sentence for the log
};

// Loads it at the first call.
[[nodiscard]] const LoadedRuntime& inferenceRuntime();

// The version that the code is written for.
[[nodiscard]] QString inferenceRuntimeVersion();

} // namespace corvane
