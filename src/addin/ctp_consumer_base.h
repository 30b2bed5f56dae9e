#pragma once

#include "addin/office_interfaces.h"
#include "foundation/variant.h"

namespace qv {

/// Keeps the host's task-pane factory, which may come before or after the connection. Host UI thread.
class CTPConsumerBase : public ICustomTaskPaneConsumer {
 public:
  HRESULT STDMETHODCALLTYPE CTPFactoryAvailable(ICTPFactory* factory) noexcept override {
    factory_ = factory;
    return S_OK;
  }

 protected:
  ~CTPConsumerBase() = default;
  void ReleasePaneFactory() { factory_.Reset(); }

 private:
  ComPtr<ICTPFactory> factory_;
};

}  // namespace qv

// The base is asked for by the interface that it implements.
__CRT_UUID_DECL(qv::CTPConsumerBase, 0x000C033E, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                0x46)
