// No desktop that tells what is in front: nothing ever is. Any thread.
#pragma once

#include "CorvaneCore/Interfaces/FrontmostApplication.h"

namespace corvane {

class NullFrontmostApplicationReader final : public FrontmostApplicationReader {
public:
    [[nodiscard]] QFuture<std::optional<FrontmostApplication>> read() override {
        return QtFuture::makeReadyFuture(std::optional<FrontmostApplication>());
    }
};

} // namespace corvane
