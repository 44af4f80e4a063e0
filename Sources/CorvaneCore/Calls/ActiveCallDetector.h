// Whether the user is in a call, judged by the application in front alone: no microphone and no sound is looked at, and
// a call in the background is not seen. Owned by whoever asks; main thread.
#pragma once

#include "CorvaneCore/Calls/DetectedCall.h"
#include "CorvaneCore/Interfaces/FrontmostApplication.h"

#include <QFuture>

#include <memory>
#include <optional>

namespace corvane {

class ActiveCallDetector {
public:
    explicit ActiveCallDetector(std::shared_ptr<FrontmostApplicationReader> reader) : m_reader(std::move(reader)) {}

    // Returns at once; see FrontmostApplicationReader::read(). Whatever fails reads as no call.
    [[nodiscard]] QFuture<std::optional<DetectedCall>> detectCurrentCall();

    // The rules: what the facts mean. Zoom in front is always a call, whatever its window shows; Teams and Slack are
    // one if the window's title says so; a browser is one if the host in its address is that of a service, whatever
    // page of it is shown.
    [[nodiscard]] static std::optional<DetectedCall> detectCall(const FrontmostApplication& application);

private:
    std::shared_ptr<FrontmostApplicationReader> m_reader;
};

} // namespace corvane
