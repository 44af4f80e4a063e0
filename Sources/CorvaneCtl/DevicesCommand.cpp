// corvanectl devices
#include "CorvaneContract/Json/JsonWriter.h"
#include "CorvaneCtl/Commands.h"
#include "CorvaneCtl/Session.h"
#include "CorvaneCtl/Text.h"

namespace corvane::ctl {

namespace {

QString sampleWord(AudioFormat::Sample sample) {
    switch (sample) {
    case AudioFormat::Sample::unsigned8:
        return QStringLiteral("8 bit unsigned");
    case AudioFormat::Sample::signed16:
        return QStringLiteral("16 bit");
    case AudioFormat::Sample::signed24:
        return QStringLiteral("24 bit");
    case AudioFormat::Sample::signed32:
        return QStringLiteral("32 bit");
    case AudioFormat::Sample::float32:
        break;
    }
    return QStringLiteral("32 bit float");
}

QJsonObject deviceJson(const AudioDevice& device) {
    return {{QStringLiteral("id"), device.id},
            {QStringLiteral("name"), device.name},
            {QStringLiteral("isDefault"), device.isDefault},
            {QStringLiteral("sampleRate"), device.format.sampleRate},
            {QStringLiteral("channels"), device.format.channels},
            {QStringLiteral("sample"), sampleWord(device.format.sample)}};
}

QString deviceTable(const QString& heading, const std::vector<AudioDevice>& devices) {
    if (devices.empty())
        return heading + QStringLiteral(": none\n");
    std::vector<QStringList> rows;
    rows.reserve(devices.size());
    for (const AudioDevice& device : devices)
        rows.push_back({device.isDefault ? QStringLiteral("  *") : QStringLiteral("   "), visibleText(device.name),
                        visibleText(device.id), QStringLiteral("%1 Hz").arg(device.format.sampleRate),
                        QStringLiteral("%1 ch").arg(device.format.channels), sampleWord(device.format.sample)});
    return heading + QStringLiteral(" (* is the default)\n") + tableText(rows);
}

} // namespace

ExitStatus runDevices(Session& session) {
    const AudioDevices devices = session.services().audioInputs->devices();
    if (session.wantsJson()) {
        session.printJson(QJsonObject{{QStringLiteral("server"), devices.server},
                                      {QStringLiteral("microphones"), encodeArray(devices.microphones, deviceJson)},
                                      {QStringLiteral("outputs"), encodeArray(devices.outputs, deviceJson)}});
        return ExitStatus::ok;
    }
    session.terminal().print(QStringLiteral("Sound server  %1\n").arg(visibleText(devices.server)) +
                             deviceTable(QStringLiteral("Microphones"), devices.microphones) +
                             deviceTable(QStringLiteral("Outputs"), devices.outputs));
    return ExitStatus::ok;
}

} // namespace corvane::ctl
