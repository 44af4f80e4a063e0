// The desktop's session manager (XSMP), as a program. Its first line is the address for SESSION_MANAGER; after that it
// tells what its client does: registered, saved, asks, cancelled, left. Lines of standard input say what becomes of the
// desktop: save (everything, and it goes on), end (it wants to end), cancel (it does not after all), die (it ends). It
// ends with its input.
#include <X11/SM/SMlib.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

namespace {

SmsConn client = nullptr;

void tell(const char* what) {
    std::cout << what << std::endl;
}

// The library frees what it is given.
char* copied(const char* text) {
    return ::strdup(text);
}

Status takeRegistration(SmsConn connection, SmPointer, char* previousId) {
    if (previousId) {
        std::free(previousId);
        return 0; // the client registers anew, without the id
    }
    client = connection;
    SmsRegisterClientReply(connection, copied("client"));
    SmsSaveYourself(connection, SmSaveLocal, False, SmInteractStyleNone, False);
    tell("registered");
    return 1;
}

void takeInteractRequest(SmsConn connection, SmPointer, int) {
    tell("asks");
    SmsInteract(connection);
}

void takeInteractDone(SmsConn, SmPointer, Bool isCancelled) {
    if (isCancelled)
        tell("cancelled");
}

void takeSaved(SmsConn connection, SmPointer, Bool) {
    tell("saved");
    SmsSaveComplete(connection);
}

void takeClose(SmsConn connection, SmPointer, int count, char** reasons) {
    SmFreeReasons(count, reasons);
    IceConn ice = SmsGetIceConnection(connection);
    SmsCleanUp(connection);
    IceSetShutdownNegotiation(ice, False);
    IceCloseConnection(ice);
}

void takeProperties(SmsConn, SmPointer, int count, SmProp** properties) {
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(properties);
}

void takeDeletion(SmsConn, SmPointer, int count, char** names) {
    for (int i = 0; i < count; ++i)
        std::free(names[i]);
    std::free(names);
}

Status takeClient(SmsConn, SmPointer, unsigned long* mask, SmsCallbacks* callbacks, char**) {
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
            SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
            SmsGetPropertiesProcMask;
    callbacks->register_client.callback = takeRegistration;
    callbacks->interact_request.callback = takeInteractRequest;
    callbacks->interact_done.callback = takeInteractDone;
    callbacks->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
    callbacks->save_yourself_phase2_request.callback = [](SmsConn connection, SmPointer) {
        SmsSaveYourselfPhase2(connection);
    };
    callbacks->save_yourself_done.callback = takeSaved;
    callbacks->close_connection.callback = takeClose;
    callbacks->set_properties.callback = takeProperties;
    callbacks->delete_properties.callback = takeDeletion;
    callbacks->get_properties.callback = [](SmsConn connection, SmPointer) {
        SmsReturnProperties(connection, 0, nullptr);
    };
    return 1;
}

void obey(const std::string& command) {
    if (!client)
        return;
    if (command == "save")
        SmsSaveYourself(client, SmSaveBoth, False, SmInteractStyleNone, False);
    else if (command == "end")
        SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleAny, False);
    else if (command == "cancel")
        SmsShutdownCancelled(client);
    else if (command == "die")
        SmsDie(client);
}

std::vector<IceConn> connections;

// A client that vanishes closes nothing itself.
void readFrom(IceConn connection) {
    const auto status = IceProcessMessages(connection, nullptr, nullptr);
    if (status == IceProcessMessagesSuccess)
        return;
    connections.erase(std::find(connections.begin(), connections.end(), connection));
    if (status == IceProcessMessagesIOError) {
        IceSetShutdownNegotiation(connection, False);
        IceCloseConnection(connection);
    }
    client = nullptr;
    tell("left");
}

void serve(const std::vector<IceListenObj>& listeners) {
    for (;;) {
        std::vector<pollfd> waiting{{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0}};
        for (IceListenObj listener : listeners)
            waiting.push_back({.fd = IceGetListenConnectionNumber(listener), .events = POLLIN, .revents = 0});
        const std::vector<IceConn> open = connections;
        for (IceConn connection : open)
            waiting.push_back({.fd = IceConnectionNumber(connection), .events = POLLIN, .revents = 0});
        ::poll(waiting.data(), waiting.size(), -1);
        for (std::size_t i = 0; i < open.size(); ++i) {
            if (waiting[1 + listeners.size() + i].revents != 0)
                readFrom(open[i]);
        }
        for (std::size_t i = 0; i < listeners.size(); ++i) {
            IceAcceptStatus status = IceAcceptFailure;
            if (waiting[1 + i].revents == 0)
                continue;
            if (IceConn accepted = IceAcceptConnection(listeners[i], &status))
                connections.push_back(accepted);
        }
        std::string line;
        if (waiting[0].revents == 0)
            continue;
        if (!std::getline(std::cin, line))
            return;
        obey(line);
    }
}

} // namespace

int main() {
    char error[256] = "";
    int count = 0;
    IceListenObj* listeners = nullptr;
    IceSetIOErrorHandler([](IceConn) {}); // instead of ending the program
    const auto letIn = [](char*) -> Bool { return True; };
    if (!SmsInitialize("test", "1", takeClient, nullptr, letIn, sizeof error, error) ||
        !IceListenForConnections(&count, &listeners, sizeof error, error)) {
        std::cerr << error << std::endl;
        return 1;
    }
    const std::vector<IceListenObj> all(listeners, listeners + count);
    for (IceListenObj listener : all)
        IceSetHostBasedAuthProc(listener, letIn);
    std::cout << IceComposeNetworkIdList(count, listeners) << std::endl;
    serve(all);
    IceFreeListenObjs(count, listeners); // removes the sockets
    return 0;
}
