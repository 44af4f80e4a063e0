// What corvanectl can do: one row of the table and one function for each command.
#pragma once

#include "CorvaneCtl/CommandLine.h"
#include "CorvaneCtl/CtlError.h"

#include <vector>

namespace corvane::ctl {

class Session;

// Each runs on the main thread to the command's end and throws CtlError, or Interrupted where it waits.
[[nodiscard]] ExitStatus runRecord(Session& session);     // RecordCommand.cpp
[[nodiscard]] ExitStatus runRecover(Session& session);    // RecoverCommand.cpp
[[nodiscard]] ExitStatus runPlay(Session& session);       // PlayCommand.cpp
[[nodiscard]] ExitStatus runDevices(Session& session);    // DevicesCommand.cpp
[[nodiscard]] ExitStatus runImport(Session& session);     // ImportCommand.cpp
[[nodiscard]] ExitStatus runProcess(Session& session);    // ProcessCommand.cpp
[[nodiscard]] ExitStatus runMeetings(Session& session);   // LibraryCommands.cpp
[[nodiscard]] ExitStatus runShow(Session& session);       // LibraryCommands.cpp
[[nodiscard]] ExitStatus runTranscript(Session& session); // TranscriptCommand.cpp
[[nodiscard]] ExitStatus runRename(Session& session);     // RenameCommand.cpp
[[nodiscard]] ExitStatus runSpeaker(Session& session);    // SpeakerCommands.cpp
[[nodiscard]] ExitStatus runMatch(Session& session);      // SpeakerCommands.cpp
[[nodiscard]] ExitStatus runNotion(Session& session);     // NotionCommand.cpp
[[nodiscard]] ExitStatus runProfiles(Session& session);   // ProfilesCommand.cpp
[[nodiscard]] ExitStatus runDelete(Session& session);     // DeleteCommand.cpp
[[nodiscard]] ExitStatus runStatus(Session& session);     // StatusCommand.cpp
[[nodiscard]] ExitStatus runCalls(Session& session);      // CallsCommand.cpp
[[nodiscard]] ExitStatus runUpdate(Session& session);     // UpdateCommand.cpp
[[nodiscard]] ExitStatus runDoctor(Session& session);     // DoctorCommand.cpp

[[nodiscard]] const std::vector<CommandForm>& commandForms();

[[nodiscard]] ExitStatus runCommand(Session& session);

} // namespace corvane::ctl
