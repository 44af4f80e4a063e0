#include "Support/PrintQt.h"

#include "CorvaneCtl/CommandLine.h"
#include "CorvaneCtl/Commands.h"

#include <gmock/gmock.h>

namespace corvane::ctl {
namespace {

CommandLine parse(const QStringList& arguments) {
    return parseCommandLine(arguments, commandForms());
}

TEST(CommandLine, OptionsStandAnywhereAndTheLastOneCounts) {
    const CommandLine line = parse({"--json", "process", "--language=fr", "abc", "--language", "--wait", "--wait"});
    EXPECT_EQ(line.command, u"process"_s);
    EXPECT_EQ(line.operands, QStringList("abc"));
    EXPECT_EQ(line.value("language"), u"--wait"_s); // a value is taken as it comes
    EXPECT_TRUE(line.has("json"));
    EXPECT_TRUE(line.has("wait"));
    EXPECT_EQ(parse({"process", "--speakers="}).value("speakers"), QString());
}

TEST(CommandLine, TwoHyphensEndTheOptions) {
    EXPECT_EQ(parse({"rename", "--", "--json", "-h"}).operands, QStringList({"--json", "-h"}));
    EXPECT_EQ(parse({"speaker", "latest", "-", ""}).operands, QStringList({"latest", "-", ""}));
    EXPECT_EQ(parse({"--", "rename", "--", "x"}).operands, QStringList({"--", "x"})) << "the first pair ends them";
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
    const std::vector<QStringList> wrong{
        {},
        {"nonsense"},
        {"--wait", "process"}, // of a command, before the command
        {"meetings", "--wait"},
        {"meetings", "extra"},
        {"process", "--wait=yes"},
        {"process", "--language"},
        {"process", "-x"},
        {"rename", "only-one"},
        {"import"},
    };
    for (const QStringList& arguments : wrong)
        EXPECT_THROW((void)parse(arguments), UsageError) << arguments.join(' ').toStdString();
}

} // namespace
} // namespace corvane::ctl
