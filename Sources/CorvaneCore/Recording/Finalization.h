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

// Joins each source, and mixes the two if there are two, in the directory `<id>-mix` beside the output. What stood at
// the output, such as the result of an earlier stop, gives way to the whole result alone. The directory is removed when
// all went well; if the mixing failed it stays for the next attempt. Gives the result's path. Throws
// AudioConcatenationError, AudioFileMixError, AudioFileError or FileError.
QString finalizeChunks(AudioFiles& files, const FinalizationPlan& plan, const AudioProgress& progress = {});

} // namespace corvane
