#include "CorvaneCtl/Commands.h"

#include "CorvaneCtl/Session.h"

namespace corvane::ctl {

namespace {

struct Command {
    CommandForm form;
    ExitStatus (*run)(Session&);
};

Command recordCommand() {
    return {{.name = QStringLiteral("record"),
             .operands = {},
             .minimumOperands = 0,
             .maximumOperands = 0,
             .summary = QStringLiteral("record the microphone and what the computer plays"),
             .description = QStringLiteral("Records the microphone and what the computer plays until Ctrl-C, then "
                                           "joins and mixes the two, starts the processing\nand prints the id, the "
                                           "file and the run directory. On a terminal p pauses and q ends it."),
             .options = {{QStringLiteral("title"), QStringLiteral("T"), QStringLiteral("the meeting's title")},
                         {QStringLiteral("for"), QStringLiteral("DURATION"),
                          QStringLiteral("end it by itself, after 90, 90s, 10m or 1h30m")},
                         {QStringLiteral("no-system"), {}, QStringLiteral("record the microphone alone")},
                         {QStringLiteral("no-process"), {}, QStringLiteral("do not start the processing")}}},
            runRecord};
}

Command recoverCommand() {
    return {{.name = QStringLiteral("recover"),
             .operands = QStringLiteral("[MEETING]"),
             .minimumOperands = 0,
             .maximumOperands = 1,
             .summary = QStringLiteral("finish a recording that was left behind"),
             .description = QStringLiteral("Finishes a recording whose program was killed, or the computer with it; "
                                           "without MEETING the only one there is."),
             .options = {{QStringLiteral("no-process"), {}, QStringLiteral("do not start the processing")}}},
            runRecover};
}

Command playCommand() {
    return {{.name = QStringLiteral("play"),
             .operands = QStringLiteral("MEETING"),
             .minimumOperands = 1,
             .maximumOperands = 1,
             .summary = QStringLiteral("play a meeting's audio"),
             .description = QStringLiteral("Plays the audio of a meeting to its end or until Ctrl-C."),
             .options = {{QStringLiteral("from"), QStringLiteral("T"),
                          QStringLiteral("begin there: seconds, MM:SS or HH:MM:SS")}}},
            runPlay};
}

Command devicesCommand() {
    return {{.name = QStringLiteral("devices"),
             .operands = {},
             .minimumOperands = 0,
             .maximumOperands = 0,
             .summary = QStringLiteral("list the microphones and outputs"),
             .description = QStringLiteral("Shows the sound server, the microphones, and the outputs whose sound is "
                                           "recorded."),
             .options = {}},
            runDevices};
}

Command importCommand() {
    return {{.name = QStringLiteral("import"),
             .operands = QStringLiteral("FILE..."),
             .minimumOperands = 1,
             .maximumOperands = {},
             .summary = QStringLiteral("make a meeting of each audio or movie file"),
             .description = QStringLiteral("Copies each audio or movie file into the data directory and makes a "
                                           "meeting of it, without processing it.\nPrints the id and the title."),
             .options = {}},
            runImport};
}

Command processCommand() {
    return {
        {.name = QStringLiteral("process"),
         .operands = QStringLiteral("[MEETING]"),
         .minimumOperands = 0,
         .maximumOperands = 1,
         .summary = QStringLiteral("turn a meeting's audio into a transcript"),
         .description = QStringLiteral("Starts the processing of a meeting, the newest by default, and prints the "
                                       "run directory.\nProcessing goes on when corvanectl has ended."),
         .options = {{QStringLiteral("language"), QStringLiteral("L"), QStringLiteral("the language spoken, as en")},
                     {QStringLiteral("speakers"), QStringLiteral("N"),
                      QStringLiteral("how many speak: a number, MIN-MAX, auto, or off to tell nobody apart")},
                     {QStringLiteral("wait"), {}, QStringLiteral("show the progress and wait for the end")},
                     {QStringLiteral("force"), {}, QStringLiteral("also if the meeting seems to be in processing")}}},
        runProcess};
}

Command meetingsCommand() {
    return {{.name = QStringLiteral("meetings"),
             .operands = {},
             .minimumOperands = 0,
             .maximumOperands = 0,
             .summary = QStringLiteral("list the meetings, newest first"),
             .description = QStringLiteral("Lists the meetings, newest first: id, time, status and title."),
             .options = {}},
            runMeetings};
}

Command showCommand() {
    return {{.name = QStringLiteral("show"),
             .operands = QStringLiteral("[MEETING]"),
             .minimumOperands = 0,
             .maximumOperands = 1,
             .summary = QStringLiteral("show all that is known of a meeting"),
             .description = QStringLiteral("Shows a meeting, the newest by default: title, audio, settings, runs, "
                                           "speakers, and where its files lie."),
             .options = {}},
            runShow};
}

Command transcriptCommand() {
    return {{.name = QStringLiteral("transcript"),
             .operands = QStringLiteral("[MEETING]"),
             .minimumOperands = 0,
             .maximumOperands = 1,
             .summary = QStringLiteral("print the transcript"),
             .description = QStringLiteral("Prints the transcript of a meeting, the newest by default, with the names "
                                           "given to its speakers.\n--json is short for --format json."),
             .options = {{QStringLiteral("format"), QStringLiteral("FORMAT"),
                          QStringLiteral("text (the default), srt, vtt or json")}}},
            runTranscript};
}

Command renameCommand() {
    return {{.name = QStringLiteral("rename"),
             .operands = QStringLiteral("MEETING TITLE"),
             .minimumOperands = 2,
             .maximumOperands = 2,
             .summary = QStringLiteral("give a meeting another title"),
             .description = QStringLiteral("Gives a meeting another title."),
             .options = {}},
            runRename};
}

Command speakerCommand() {
    return {{.name = QStringLiteral("speaker"),
             .operands = QStringLiteral("MEETING LABEL [NAME]"),
             .minimumOperands = 2,
             .maximumOperands = 3,
             .summary = QStringLiteral("give a speaker a name, or link it to a known voice"),
             .description = QStringLiteral("Gives a speaker of a meeting's newest run a name, in result.json and in "
                                           "the transcript files.\nLABEL is the speaker's label as `corvanectl show` "
                                           "has it. An empty NAME takes the name away."),
             .options = {{QStringLiteral("profile"), QStringLiteral("PROFILE"),
                          QStringLiteral("link it to this profile, which accepts a suggestion, and add the voice")},
                         {QStringLiteral("remove"), {}, QStringLiteral("take the link, its voice and the name away")}}},
            runSpeaker};
}

Command matchCommand() {
    return {{.name = QStringLiteral("match"),
             .operands = QStringLiteral("MEETING"),
             .minimumOperands = 1,
             .maximumOperands = 1,
             .summary = QStringLiteral("compare a meeting's voices with the known ones"),
             .description = QStringLiteral("Suggests profiles for the speakers that are not linked to one, or shows "
                                           "what was suggested before.\nNothing is linked by itself: corvanectl "
                                           "speaker MEETING LABEL --profile PROFILE accepts a suggestion."),
             .options = {}},
            runMatch};
}

Command profilesCommand() {
    return {{.name = QStringLiteral("profiles"),
             .operands = QStringLiteral("[ACTION [ARGUMENT...]]"),
             .minimumOperands = 0,
             .maximumOperands = 3,
             .summary = QStringLiteral("list and change the people whose voices are known"),
             .description = QStringLiteral("list                  the profiles (also without ACTION)\n"
                                           "create NAME           a new one, without a voice; prints its id\n"
                                           "rename PROFILE NAME   in every meeting it is linked in, too\n"
                                           "enable PROFILE        let it be suggested\n"
                                           "disable PROFILE       keep it, but never suggest it\n"
                                           "delete PROFILE        forget the voice; names in meetings stay\n"
                                           "matching [on|off]     whether new transcripts are compared\n"
                                           "threshold [X]         how alike two voices must be, 0 to 1"),
             .options = {{QStringLiteral("notes"), QStringLiteral("TEXT"),
                          QStringLiteral("with create and rename: what to remember of the person")},
                         {QStringLiteral("yes"), {}, QStringLiteral("with delete: do not ask")}}},
            runProfiles};
}

Command notionCommand() {
    return {{.name = QStringLiteral("notion"),
             .operands = QStringLiteral("[ACTION [ARGUMENT...]]"),
             .minimumOperands = 0,
             .maximumOperands = 3,
             .summary = QStringLiteral("publish a meeting to Notion"),
             .description =
                 QStringLiteral("Without ACTION, shows how it is set up: first token, then database. The manual page\n"
                                "tells where these come from.\n"
                                "token                 store the token of an integration, asked for or read "
                                "from standard input\n"
                                "database URL          choose the database that meetings go into\n"
                                "columns               list its columns\n"
                                "map KIND COLUMN       the column for meeting-id, participants or summary\n"
                                "sync MEETING          publish a meeting; prints the page's address\n"
                                "open MEETING          open its page"),
             .options = {{QStringLiteral("remove"), {}, QStringLiteral("with token: forget it")},
                         {QStringLiteral("replace"), {}, QStringLiteral("with sync: archive earlier pages")},
                         {QStringLiteral("new"), {}, QStringLiteral("with sync: leave earlier pages alone")}}},
            runNotion};
}

Command deleteCommand() {
    return {{.name = QStringLiteral("delete"),
             .operands = QStringLiteral("MEETING"),
             .minimumOperands = 1,
             .maximumOperands = 1,
             .summary = QStringLiteral("delete a meeting with its runs"),
             .description = QStringLiteral("Deletes a meeting with its runs and transcripts, for good. Its audio stays "
                                           "unless --audio is given."),
             .options = {{QStringLiteral("audio"), {}, QStringLiteral("delete its audio in the data directory too")},
                         {QStringLiteral("yes"), {}, QStringLiteral("do not ask")},
                         {QStringLiteral("force"), {}, QStringLiteral("also if it is in processing or recorded")}}},
            runDelete};
}

Command statusCommand() {
    return {{.name = QStringLiteral("status"),
             .operands = {},
             .minimumOperands = 0,
             .maximumOperands = 0,
             .summary = QStringLiteral("show what is running, and whether all that is needed is there"),
             .description = QStringLiteral("Shows the data directory, what is recorded, waits for recovery or is in "
                                           "processing and how far it is,\nthe worker program, and whether the token "
                                           "store can be reached."),
             .options = {}},
            runStatus};
}

Command callsCommand() {
    return {{.name = QStringLiteral("calls"),
             .operands = QStringLiteral("watch"),
             .minimumOperands = 1,
             .maximumOperands = 1,
             .summary = QStringLiteral("show which calls are noticed"),
             .description = QStringLiteral("Prints the call that is in front, by the application's own rules, whenever "
                                           "that changes, until Ctrl-C:\nthe service, the title and the application. "
                                           "It asks nothing and records nothing."),
             .options = {{QStringLiteral("facts"), {}, QStringLiteral("also print what is in front, call or not")}}},
            runCalls};
}

Command updateCommand() {
    return {{.name = QStringLiteral("update"),
             .operands = QStringLiteral("[ACTION]"),
             .minimumOperands = 0,
             .maximumOperands = 2,
             .summary = QStringLiteral("look for a newer release of Corvane"),
             .description = QStringLiteral("Without ACTION, shows what is known without asking anybody.\n"
                                           "check                 ask the update server now; downloads nothing\n"
                                           "automatic [on|off]    whether the application asks once a day"),
             .options = {}},
            runUpdate};
}

Command doctorCommand() {
    return {{.name = QStringLiteral("doctor"),
             .operands = {},
             .minimumOperands = 0,
             .maximumOperands = 0,
             .summary = QStringLiteral("tell what works on this machine and what is missing"),
             .description = QStringLiteral("Looks at everything that Corvane uses, tells what is missing, what it is "
                                           "needed for and how to get it. Changes nothing.\n"
                                           "The exit status is 4 if something is amiss without which Corvane does "
                                           "not do its work."),
             .options = {}},
            runDoctor};
}

const std::vector<Command>& commands() {
    static const std::vector<Command> table{recordCommand(),     recoverCommand(), playCommand(),     devicesCommand(),
                                            importCommand(),     processCommand(), meetingsCommand(), showCommand(),
                                            transcriptCommand(), renameCommand(),  speakerCommand(),  matchCommand(),
                                            profilesCommand(),   notionCommand(),  deleteCommand(),   statusCommand(),
                                            callsCommand(),      updateCommand(),  doctorCommand()};
    return table;
}

} // namespace

const std::vector<CommandForm>& commandForms() {
    static const std::vector<CommandForm> forms = [] {
        std::vector<CommandForm> result;
        for (const Command& command : commands())
            result.push_back(command.form);
        return result;
    }();
    return forms;
}

ExitStatus runCommand(Session& session) {
    for (const Command& command : commands()) {
        if (command.form.name == session.line().command)
            return command.run(session);
    }
    throw UsageError(QStringLiteral("there is no command “%1”").arg(session.line().command));
}

} // namespace corvane::ctl
