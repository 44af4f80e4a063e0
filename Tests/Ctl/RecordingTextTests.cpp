#include "Support/PrintQt.h"

#include "CorvaneCtl/CtlError.h"
#include "CorvaneCtl/RecordingText.h"

#include <QJsonArray>

#include <gmock/gmock.h>

#include <limits>

namespace corvane::ctl {
namespace {

TEST(RecordingText, Durations) {
    EXPECT_EQ(secondsOfDuration("90"), 90);
    EXPECT_EQ(secondsOfDuration("90s"), 90);
    EXPECT_EQ(secondsOfDuration("10m"), 600);
    EXPECT_EQ(secondsOfDuration("1h30m"), 5400);
    EXPECT_EQ(secondsOfDuration("1h0m5s"), 3605);
    EXPECT_EQ(secondsOfDuration("168h"), 7 * 86400);
    for (const char* wrong :
         {"", "0", "0h0m", "-5", "1.5h", "10 m", "30m1h", "ten", "m", "169h", "1h\n", "99999999999999999999999h"})
        EXPECT_THROW((void)secondsOfDuration(wrong), UsageError) << wrong;
}

TEST(RecordingText, Positions) {
    EXPECT_EQ(secondsOfPosition("0"), 0);
    EXPECT_EQ(secondsOfPosition("75.5"), 75.5);
    EXPECT_EQ(secondsOfPosition("1:15"), 75);
    EXPECT_EQ(secondsOfPosition("90:00"), 5400);
    EXPECT_EQ(secondsOfPosition("01:02:03.25"), 3723.25);
    for (const char* wrong :
         {"", "1:5", "1:75", "1:60:00", ":30", "1:", "-3", "1e3", "nan", "1:02:03:04", "5s", "75\n"})
        EXPECT_THROW((void)secondsOfPosition(wrong), UsageError) << wrong;
}

TEST(RecordingText, LevelsReachFromSilenceToFullScale) {
    EXPECT_EQ(levelText(1), u"[############]   0 dB"_s);
    EXPECT_EQ(levelText(0.9999), u"[############]   0 dB"_s) << "never minus nothing";
    EXPECT_EQ(levelText(0.0316228), u"[######------] -30 dB"_s);
    EXPECT_EQ(levelText(1e-9), u"[------------] -60 dB"_s) << "faint is not silent";
    EXPECT_EQ(levelText(7), levelText(1)) << "clipped";
    EXPECT_EQ(levelText(0), u"silent"_s);
    EXPECT_EQ(levelText(std::numeric_limits<double>::quiet_NaN()), u"silent"_s);
}

TEST(RecordingText, TheMeterKeepsItsColumns) {
    TrackHealth loud;
    loud.peak = 1;
    TrackHealth gone = loud;
    gone.hasDevice = false;
    const auto line = [](const TrackHealth& microphone) {
        return meterText("Recording", 65, {{captureTracks::microphone, microphone}, {captureTracks::system, {}}});
    };
    EXPECT_TRUE(line(loud).startsWith("Recording  1:05  microphone [############]   0 dB  system silent"));
    EXPECT_TRUE(line(gone).startsWith("Recording  1:05  microphone no device "));
    EXPECT_EQ(line(gone).indexOf("system"), line(loud).indexOf("system"));
}

TEST(RecordingText, CaptureTellsWhatIsMissing) {
    CaptureReport report;
    TrackHealth& microphone = report.tracks[captureTracks::microphone];
    microphone.recordedSeconds = 60;
    microphone.lostSeconds = 2.5;
    microphone.deviceChanges = {"lost", "back: \x1b[2J"};
    TrackHealth& system = report.tracks[captureTracks::system];
    system.recordedSeconds = system.silentSeconds = 60;
    EXPECT_EQ(captureText(report), u"  microphone  sound missing  60.0 s  not written: 2.5 s, "
                                   "2 device changes\n"
                                   "  system      silent         60.0 s  silent for 60.0 s\n"_s);
    const QJsonObject json = captureJson(report);
    EXPECT_EQ(json["microphone"]["verdict"].toString(), u"sound missing"_s);
    EXPECT_EQ(json["microphone"]["deviceChanges"].toArray().size(), 2);
    EXPECT_EQ(json["system"]["silentSeconds"].toDouble(), 60);
}

} // namespace
} // namespace corvane::ctl
