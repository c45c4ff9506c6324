// A session manager for window_end.sh: prints the address that goes into SESSION_MANAGER, and logs
// every client out once its standard input ends.
#include <poll.h>
#include <unistd.h>

#include <X11/SM/SMlib.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

// Exported for session managers, and declared in no header: keeps the listener off the network.
extern "C" int _IceTransNoListen(const char* protocol);

namespace {

std::vector<SmsConn> clients;
std::vector<IceConn> connections;
bool logsOut = false;

Status registerClient(SmsConn client, SmPointer, char* previousId) {
  char* id = previousId ? previousId : SmsGenerateClientID(client);
  SmsRegisterClientReply(client, id);
  if (!previousId) SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
  free(id);
  clients.push_back(client);
  std::puts("registered");
  return 1;
}

/// At a log-out a client ends once it has saved.
void saved(SmsConn client, SmPointer, Bool) {
  logsOut ? SmsDie(client) : SmsSaveComplete(client);
}

void closed(SmsConn client, SmPointer, int count, char** reasons) {
  SmFreeReasons(count, reasons);
  std::erase(clients, client);
  std::erase(connections, SmsGetIceConnection(client));
  IceConn connection = SmsGetIceConnection(client);
  SmsCleanUp(client);
  IceSetShutdownNegotiation(connection, False);
  IceCloseConnection(connection);
}

Status accepted(SmsConn, SmPointer, unsigned long* mask, SmsCallbacks* calls, char**) {
  *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
          SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
          SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
          SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
  calls->register_client.callback = registerClient;
  calls->interact_request.callback = [](SmsConn client, SmPointer, int) { SmsInteract(client); };
  calls->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
  calls->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {};
  calls->save_yourself_phase2_request.callback = [](SmsConn client, SmPointer) {
    SmsSaveYourselfPhase2(client);
  };
  calls->save_yourself_done.callback = saved;
  calls->close_connection.callback = closed;
  calls->set_properties.callback = [](SmsConn, SmPointer, int count, SmProp** properties) {
    for (int index = 0; index < count; ++index) SmFreeProperty(properties[index]);
    free(properties);
  };
  calls->delete_properties.callback = [](SmsConn, SmPointer, int count, char** names) {
    for (int index = 0; index < count; ++index) free(names[index]);
    free(names);
  };
  calls->get_properties.callback = [](SmsConn client, SmPointer) {
    SmsReturnProperties(client, 0, nullptr);
  };
  return 1;
}

void logOut() {
  logsOut = true;
  for (SmsConn client : clients) {
    SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleAny, False);
  }
}

}  // namespace

int main() {
  char error[256];
  int count = 0;
  IceListenObj* listeners = nullptr;
  const auto anybody = [](char*) -> Bool { return True; };
  IceSetIOErrorHandler([](IceConn) {});
  _IceTransNoListen("tcp");
  if (!SmsInitialize("kifo", "1", accepted, nullptr, anybody, sizeof error, error) ||
      !IceListenForConnections(&count, &listeners, sizeof error, error)) {
    std::fprintf(stderr, "%s\n", error);
    return 1;
  }
  for (int index = 0; index < count; ++index) IceSetHostBasedAuthProc(listeners[index], anybody);
  setvbuf(stdout, nullptr, _IOLBF, 0);
  std::puts(IceComposeNetworkIdList(count, listeners));

  for (;;) {
    std::vector<pollfd> ends{{logsOut ? -1 : STDIN_FILENO, POLLIN, 0}};
    for (int index = 0; index < count; ++index) {
      ends.push_back({IceGetListenConnectionNumber(listeners[index]), POLLIN, 0});
    }
    const std::vector<IceConn> open = connections;
    for (IceConn connection : open) ends.push_back({IceConnectionNumber(connection), POLLIN, 0});
    if (poll(ends.data(), ends.size(), -1) < 0) return 1;
    if (ends[0].revents != 0) logOut();
    for (std::size_t index = 0; index < open.size(); ++index) {
      if (ends[1 + static_cast<std::size_t>(count) + index].revents == 0) continue;
      if (IceProcessMessages(open[index], nullptr, nullptr) == IceProcessMessagesIOError) {
        std::erase_if(clients,
                      [&](SmsConn client) { return SmsGetIceConnection(client) == open[index]; });
        std::erase(connections, open[index]);
      }
    }
    for (int index = 0; index < count; ++index) {
      if (ends[1 + static_cast<std::size_t>(index)].revents == 0) continue;
      IceAcceptStatus status;
      if (IceConn connection = IceAcceptConnection(listeners[index], &status)) {
        connections.push_back(connection);
      }
    }
  }
}
