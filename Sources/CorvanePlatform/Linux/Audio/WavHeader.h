// The bytes before the samples of a WAV file. A pure function.
#pragma once

#include "CorvaneCore/Interfaces/AudioFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

class WavHeader {
public:
    // `dataBytes` is the length of the samples. Up to 4 GiB this is a plain RIFF file with the classic format tags,
    // which the simplest readers know; its JUNK chunk holds the room for the 64-bit lengths that turn it into an RF64
    // file (EBU Tech 3306) when it grows past that. The length of the header never changes.
    WavHeader(const AudioFormat& format, std::uint64_t dataBytes);

    [[nodiscard]] std::span<const std::byte> bytes() const { return std::span(m_bytes).first(m_length); }

private:
    void tag(const char* name);
    void number(std::uint64_t value, int byteCount);
    void lengths64(std::uint64_t riffBytes, std::uint64_t dataBytes, std::uint64_t frames);

    std::array<std::byte, 92> m_bytes{};
    std::size_t m_length = 0;
};

} // namespace corvane
