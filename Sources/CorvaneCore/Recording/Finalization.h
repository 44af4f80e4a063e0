// Turns the chunks of a meeting into its one audio file. Blocking; called beside the main thread.
#pragma once

#include "CorvaneCore/Recording/AudioChunkConcatenator.h"

#include <QString>

#include <vector>

namespace corvane {

struct FinalizationPlan {
    QString meetingID;
    std::vector<QString> chunks;       // of the microphone
    std::vector<QString> systemChunks; // none: the microphone's file is the result
    QString output;
};

// Joins each source and mixes the two in the directory `<id>-mix` beside the output, which is removed when all went
// well and otherwise stays for the next attempt. Gives the result's path. Throws AudioConcatenationError,
// AudioFileMixError, AudioFileError or FileError.
QString finalizeChunks(AudioFiles& files, const FinalizationPlan& plan, const AudioProgress& progress = {});

} // namespace corvane
