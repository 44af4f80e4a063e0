// Where everything lies that the application keeps, apart from the user defaults and the tokens. A value.
#pragma once

#include <QString>

#include <optional>

namespace corvane {

struct AppPaths {
    QString root;

    // Without a location: the directory `Corvane` in the user's data directory ($XDG_DATA_HOME, else ~/.local/share).
    // Ends the program if the platform names no such directory.
    explicit AppPaths(const std::optional<QString>& location);

    [[nodiscard]] QString recordings() const { return root + QStringLiteral("/recordings"); }
    [[nodiscard]] QString runs() const { return root + QStringLiteral("/runs"); }
    [[nodiscard]] QString meetings() const { return root + QStringLiteral("/meetings"); }
    [[nodiscard]] QString logs() const { return root + QStringLiteral("/logs"); }
    [[nodiscard]] QString database() const { return root + QStringLiteral("/corvane.sqlite"); }
    [[nodiscard]] QString meeting(const QString& id) const { return meetings() + QLatin1Char('/') + id; }

    // Creates the root and the four directories in it, accessible to the owner alone. Existing ones are left as they
    // are. Throws FileError at the first that cannot be made, and does not try the rest.
    void createDirectories() const;
};

} // namespace corvane
