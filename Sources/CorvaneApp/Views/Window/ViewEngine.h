// The engine that the views of every window are made with. Main thread.
#pragma once

#include <QQmlEngine>

#include <memory>

namespace corvane {

// Loads what the views need the first time; the renderer is then chosen too.
[[nodiscard]] std::unique_ptr<QQmlEngine> makeViewEngine();

} // namespace corvane
