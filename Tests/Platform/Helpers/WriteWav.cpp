// Writes sound to the WAV file named by its argument until it is killed, and to standard output how many frames the
// file holds after each write.
#include "CorvanePlatform/Linux/Audio/SndfileAudioFiles.h"

#include <cstdio>
#include <vector>

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    const corvane::AudioFormat format{
        .sampleRate = 48'000, .channels = 2, .sample = corvane::AudioFormat::Sample::float32};
    const auto writer = corvane::SndfileAudioFiles().create(QString::fromUtf8(argv[1]), format);
    for (long long written = 0;;) {
        const std::vector<float> frames(4096 * 2, 0.25F);
        if (!writer->write(reinterpret_cast<const std::byte*>(frames.data()), 4096))
            return 1;
        written += 4096;
        std::printf("%lld\n", written);
        std::fflush(stdout);
    }
}
