// The item in the tray and its menu, as a value: a pure function of the recording. There is no entry to quit: the menu
// is opened in haste during a meeting, and must not be able to end its recording with the program.
#pragma once

#include "CorvaneCore/Recording/RecordingState.h"

#include <QString>

#include <vector>

namespace corvane {

enum class TrayAction { startRecording, stopRecording, pauseRecording, resumeRecording, openApp };

struct TrayMenuItem {
    QString text;
    TrayAction action;
    bool isEnabled = true;

    friend bool operator==(const TrayMenuItem&, const TrayMenuItem&) = default;
};

struct TrayMenu {
    QString title;
    QString iconName;
    std::vector<TrayMenuItem> items; // in their order

    friend bool operator==(const TrayMenu&, const TrayMenu&) = default;
};

// While a stopped recording is being finished nothing can be done about it, nor another one begun.
enum class Finishing { no, underWay };

[[nodiscard]] TrayMenu trayMenu(RecordingState::Kind recording, Finishing finishing);

} // namespace corvane
