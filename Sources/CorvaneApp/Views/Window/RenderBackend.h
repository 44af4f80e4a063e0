// Which renderer draws the window.
#pragma once

namespace corvane {

// To be called once, before the first window: draws by the processor where the graphics hardware cannot be used, since
// the view engine would end the process, and where it would only be imitated, which is slower and takes more memory.
// Where the user has chosen (QT_QUICK_BACKEND, QSG_RHI_BACKEND) that stands.
void chooseRenderBackend();

} // namespace corvane
