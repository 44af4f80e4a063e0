#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"

#include "CorvanePlatform/Linux/Audio/SndfileReader.h"
#include "CorvanePlatform/Linux/Audio/SoxrResampler.h"
#include "CorvanePlatform/Linux/Audio/WavFileWriter.h"

namespace corvane {

std::unique_ptr<AudioFileWriter> SndfileAudioFiles::create(const QString& path, const AudioFormat& format) {
    return std::make_unique<WavFileWriter>(path, format);
}

std::unique_ptr<AudioFileReader> SndfileAudioFiles::open(const QString& path) {
    return std::make_unique<SndfileReader>(path);
}

std::unique_ptr<AudioResampler> SndfileAudioFiles::resampler(int fromRate, int toRate) {
    return std::make_unique<SoxrResampler>(fromRate, toRate);
}

} // namespace corvane
