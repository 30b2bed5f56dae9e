#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <string>

#include "foundation/pane_context.h"
#include "foundation/panel_output.h"
#include "translation/pending_requests.h"
#include "translation/run_flags.h"
#include "translation/translate_request.h"

namespace qv {

/// How long the page may take for one batch, in milliseconds.
inline constexpr DWORD kPanelTimeoutMs = 120000;

/// Has the page perform the requests, waiting for each answer. One run, on its worker.
class PanelTransport final : public Transport {
 public:
  /// `output` is used by tasks of the pane's queue only, which is closed before the output goes away; `flags`
  /// outlives the transport.
  PanelTransport(std::shared_ptr<PendingRequests> pending, std::shared_ptr<PaneContext> pane,
                 PanelOutput& output, const RunFlags& flags, DWORD timeoutMs = kPanelTimeoutMs)
      : pending_(std::move(pending)),
        pane_(std::move(pane)),
        output_(&output),
        flags_(flags),
        timeoutMs_(timeoutMs) {}

  [[nodiscard]] TranslateResult Send(const TranslateRequest& request) override;

 private:
  [[nodiscard]] TranslateResult Exchange(const TranslateRequest& request, const std::wstring& requestId);

  std::shared_ptr<PendingRequests> pending_;
  std::shared_ptr<PaneContext> pane_;
  PanelOutput* output_;
  const RunFlags& flags_;
  DWORD timeoutMs_;
  std::uint32_t sequence_ = 0;
};

/// Hands the page's answer to the worker that waits for it; an unknown request id is ignored. UI thread.
void AcceptBatchResult(PendingRequests& pending, const std::wstring& message);

}  // namespace qv
