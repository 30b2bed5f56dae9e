// A process that has a local service on the port of its first argument and answers every request with its
// second one. Ends when the service does, and after a minute in any case. Exit status: 0 it listened and was
// asked to let go, 2 it could not listen, 3 nobody asked.

#include <windows.h>

#include <cwchar>

#include "foundation/text.h"
#include "services/loopback_listener.h"

int wmain(int count, wchar_t** arguments) {
  if (count != 3) return 1;
  qv::ListenerService service;
  service.port = static_cast<std::uint16_t>(std::wcstoul(arguments[1], nullptr, 10));
  service.userAgent = L"QuorvantisTest/1.0";
  service.handle = [name = qv::ToUtf8(arguments[2])](const auto& request, auto& responder) {
    if (!responder.AnswerYield(request, {401, "Unauthorized"})) responder.Send({200, "OK"}, name);
  };
  qv::LoopbackListener listener(std::move(service));
  if (!listener.Start()) return 2;
  const ULONGLONG until = GetTickCount64() + 60'000;
  while (listener.IsRunning() && GetTickCount64() < until)
    Sleep(5);
  return listener.IsRunning() ? 3 : 0;
}
