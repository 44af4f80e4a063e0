// The user's desktop: opening a folder, a file or a page in the program that the user chose for it. Main thread.
#pragma once

#include <QString>

namespace corvane {

class Workspace {
public:
    virtual ~Workspace() = default;
    // Starts and does not wait. False if nothing could be started.
    virtual bool open(const QString& pathOrAddress) = 0;
};

} // namespace corvane
