/// A session manager of few words, for tests. It prints its address, which belongs into the
/// variable SESSION_MANAGER, and then a line for each thing that a client tells; it does what it
/// reads:
///
///     save      has every client save itself because the session ends, as at a logout
///     cancel    tells them that the session goes on after all
///     die       tells them to end
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <list>
#include <string>

#include <poll.h>
#include <unistd.h>

#include <X11/SM/SMlib.h>

namespace {

std::list<SmsConn> clients;
std::list<IceConn> connections;

void tell(const char *line)
{
    std::printf("%s\n", line);
    std::fflush(stdout);
}

Status registerClient(SmsConn client, SmPointer, char *previousId)
{
    if (previousId) {
        std::free(previousId);
        return 0; // There is no earlier session.
    }
    char *id = SmsGenerateClientID(client);
    SmsRegisterClientReply(client, id);
    std::free(id);
    clients.push_back(client);
    tell("registered");
    // The protocol wants every new client to save itself once.
    SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    return 1;
}

void requestInteraction(SmsConn client, SmPointer, int)
{
    tell("interact");
    SmsInteract(client);
}

void finishInteraction(SmsConn, SmPointer, Bool cancelsShutdown)
{
    if (cancelsShutdown)
        tell("vetoed");
}

void refuseRequest(SmsConn, SmPointer, int, Bool, int, Bool, Bool) {}

void allowSecondPhase(SmsConn client, SmPointer)
{
    SmsSaveYourselfPhase2(client);
}

void finishSaving(SmsConn client, SmPointer, Bool hasSucceeded)
{
    tell(hasSucceeded ? "saved" : "not saved");
    SmsSaveComplete(client);
}

void dropClient(SmsConn client, SmPointer, int count, char **reasons)
{
    clients.remove(client);
    IceConn connection = SmsGetIceConnection(client);
    SmFreeReasons(count, reasons);
    SmsCleanUp(client);
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    connections.remove(connection);
    tell("closed");
}

void takeProperties(SmsConn, SmPointer, int count, SmProp **properties)
{
    for (int i = 0; i < count; ++i) {
        const SmProp &property = *properties[i];
        if (std::strcmp(property.name, SmRestartStyleHint) == 0)
            tell(("restart style " + std::to_string(*static_cast<char *>(property.vals[0].value)))
                     .c_str());
        SmFreeProperty(properties[i]);
    }
    std::free(properties);
}

void dropProperties(SmsConn, SmPointer, int count, char **names)
{
    for (int i = 0; i < count; ++i)
        std::free(names[i]);
    std::free(names);
}

void giveProperties(SmsConn client, SmPointer)
{
    SmsReturnProperties(client, 0, nullptr);
}

Status greetClient(SmsConn, SmPointer, unsigned long *mask, SmsCallbacks *callbacks, char **)
{
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    callbacks->register_client.callback = registerClient;
    callbacks->interact_request.callback = requestInteraction;
    callbacks->interact_done.callback = finishInteraction;
    callbacks->save_yourself_request.callback = refuseRequest;
    callbacks->save_yourself_phase2_request.callback = allowSecondPhase;
    callbacks->save_yourself_done.callback = finishSaving;
    callbacks->close_connection.callback = dropClient;
    callbacks->set_properties.callback = takeProperties;
    callbacks->delete_properties.callback = dropProperties;
    callbacks->get_properties.callback = giveProperties;
    return 1;
}

/// The display belongs to one test, and so does everybody who can reach it.
Bool admitEverybody(char *)
{
    return True;
}

void ignoreBrokenConnection(IceConn) {}

void obey(const std::string &command)
{
    for (SmsConn client : clients) {
        if (command == "save")
            SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleAny, False);
        else if (command == "cancel")
            SmsShutdownCancelled(client);
        else if (command == "die")
            SmsDie(client);
    }
}

void serve(IceConn connection)
{
    if (IceProcessMessages(connection, nullptr, nullptr) != IceProcessMessagesIOError)
        return;
    clients.remove_if(
        [connection](SmsConn client) { return SmsGetIceConnection(client) == connection; });
    connections.remove(connection);
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    tell("lost");
}

void run(IceListenObj listener)
{
    std::string input;
    for (;;) {
        std::list<pollfd> order{{STDIN_FILENO, POLLIN, 0},
                                {IceGetListenConnectionNumber(listener), POLLIN, 0}};
        std::list<IceConn> served = connections;
        for (IceConn connection : served)
            order.push_back({IceConnectionNumber(connection), POLLIN, 0});
        pollfd descriptors[64];
        nfds_t count = 0;
        for (const pollfd &descriptor : order)
            descriptors[count++] = descriptor;
        if (poll(descriptors, count, -1) < 0)
            return;

        if (descriptors[0].revents) {
            char buffer[256];
            const ssize_t size = read(STDIN_FILENO, buffer, sizeof buffer);
            if (size <= 0)
                return;
            input.append(buffer, size_t(size));
            for (size_t end = 0; (end = input.find('\n')) != std::string::npos;) {
                obey(input.substr(0, end));
                input.erase(0, end + 1);
            }
        }
        if (descriptors[1].revents) {
            IceAcceptStatus status;
            if (IceConn connection = IceAcceptConnection(listener, &status))
                connections.push_back(connection);
        }
        nfds_t place = 2;
        for (IceConn connection : served) {
            if (descriptors[place++].revents)
                serve(connection);
        }
    }
}

} // namespace

int main()
{
    char error[256] = {};
    char vendor[] = "test";
    char release[] = "1";
    int count = 0;
    IceListenObj *listeners = nullptr;
    IceSetIOErrorHandler(ignoreBrokenConnection);
    if (!SmsInitialize(vendor, release, greetClient, nullptr, admitEverybody, sizeof error,
                       error) ||
        !IceListenForConnections(&count, &listeners, sizeof error, error) || count == 0) {
        std::fprintf(stderr, "%s\n", error);
        return EXIT_FAILURE;
    }
    for (int i = 0; i < count; ++i) {
        char *address = IceGetListenConnectionString(listeners[i]);
        if (std::strncmp(address, "local/", 6) == 0) {
            IceSetHostBasedAuthProc(listeners[i], admitEverybody);
            tell(address);
            run(listeners[i]);
        }
        std::free(address);
    }
    IceFreeListenObjs(count, listeners);
    return EXIT_SUCCESS;
}
