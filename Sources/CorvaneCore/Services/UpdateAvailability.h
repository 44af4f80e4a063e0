// What came of a check for updates, and where the checking stands for a user to see. Values; any thread.
#pragma once

#include "CorvaneCore/Services/UpdateManifest.h"

namespace corvane {

struct UpdateAvailability {
    enum class Kind { available, unsupported, upToDate };

    Kind kind = Kind::upToDate;
    std::optional<UpdateManifest> manifest; // unless up to date

    [[nodiscard]] static UpdateAvailability available(UpdateManifest m) { return {Kind::available, std::move(m)}; }
    [[nodiscard]] static UpdateAvailability unsupported(UpdateManifest m) { return {Kind::unsupported, std::move(m)}; }
    [[nodiscard]] static UpdateAvailability upToDate() { return {}; }

    friend bool operator==(const UpdateAvailability&, const UpdateAvailability&) = default;
};

struct UpdateCheckState {
    enum class Kind { available, unsupported, failed, idle, checking, upToDate };

    Kind kind = Kind::idle;
    std::optional<UpdateManifest> manifest; // while available or unsupported
    QString message;                        // when failed

    [[nodiscard]] static UpdateCheckState idle() { return {}; }
    [[nodiscard]] static UpdateCheckState checking() { return {Kind::checking, {}, {}}; }
    [[nodiscard]] static UpdateCheckState failed(const QString& message) { return {Kind::failed, {}, message}; }
    [[nodiscard]] static UpdateCheckState of(const UpdateAvailability& availability) {
        switch (availability.kind) {
        case UpdateAvailability::Kind::available:
            return {Kind::available, availability.manifest, {}};
        case UpdateAvailability::Kind::unsupported:
            return {Kind::unsupported, availability.manifest, {}};
        case UpdateAvailability::Kind::upToDate:
            break;
        }
        return {Kind::upToDate, {}, {}};
    }

    friend bool operator==(const UpdateCheckState&, const UpdateCheckState&) = default;
};

} // namespace corvane
