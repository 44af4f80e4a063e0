#include "CorvaneApp/Views/TrayMenu.h"

#include "CorvaneApp/Views/PanelText.h"

namespace corvane {

TrayMenu trayMenu(RecordingState::Kind recording, Finishing finishing) {
    using Kind = RecordingState::Kind;
    const bool isEnabled = finishing == Finishing::no;
    TrayMenu menu{.title = PanelText::tr("Corvane"),
                  .iconName = recording == Kind::recording ? QStringLiteral("waveform.circle.fill")
                                                           : QStringLiteral("waveform.circle"),
                  .items = {}};
    if (recording == Kind::recording || recording == Kind::paused)
        menu.items.push_back({PanelText::tr("Stop Recording"), TrayAction::stopRecording, isEnabled});
    else
        menu.items.push_back({PanelText::tr("Start Recording"), TrayAction::startRecording, isEnabled});
    if (recording == Kind::recording)
        menu.items.push_back({PanelText::tr("Pause Recording"), TrayAction::pauseRecording, isEnabled});
    if (recording == Kind::paused)
        menu.items.push_back({PanelText::tr("Resume Recording"), TrayAction::resumeRecording, isEnabled});
    menu.items.push_back({PanelText::tr("Open App"), TrayAction::openApp});
    return menu;
}

} // namespace corvane
