#pragma once

#include "addin/office_interfaces.h"
#include "addin/task_panes.h"
#include "foundation/guard.h"

namespace qv {

/// Receives the host's task-pane factory, which may come before or after the connection, and holds the panes
/// that are made with it. Host UI thread.
class CTPConsumerBase : public ICustomTaskPaneConsumer {
 public:
  HRESULT STDMETHODCALLTYPE CTPFactoryAvailable(ICTPFactory* factory) noexcept override {
    return GuardHr(L"CTPFactoryAvailable", [&] { return taskPanes_.SetFactory(factory), S_OK; });
  }

 protected:
  ~CTPConsumerBase() = default;
  [[nodiscard]] TaskPanes& Panes() { return taskPanes_; }

 private:
  TaskPanes taskPanes_;
};

}  // namespace qv

// The base is asked for by the interface that it implements.
__CRT_UUID_DECL(qv::CTPConsumerBase, 0x000C033E, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                0x46)
