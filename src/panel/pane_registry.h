#pragma once

#include <unknwn.h>

#include <functional>
#include <vector>

namespace qv {

class CWebView2Pane;

/// The live panes of the process, in order of creation. Host UI thread.
class PaneRegistry {
 public:
  /// Number for a new pane: 1, 2, …, never used twice in a process.
  [[nodiscard]] static int NextNumber();

  static void Add(CWebView2Pane& pane);
  static void Remove(CWebView2Pane& pane);

  [[nodiscard]] static const std::vector<CWebView2Pane*>& Panes();

  /// The live pane with this number; null when there is none.
  [[nodiscard]] static CWebView2Pane* Find(int number);
  /// The live pane that is this COM object; null when it is another control.
  [[nodiscard]] static CWebView2Pane* FindControl(IUnknown* control);

  /// What happens to every pane at each tick of its width timer, outside of the browser's events; empty for
  /// nothing. The pane stays alive meanwhile, but may be closed.
  static void SetTick(std::function<void(CWebView2Pane&)> tick);
  static void Tick(CWebView2Pane& pane);

  /// Early shutdown of every pane; the host is about to go away.
  static void BeginShutdownEarly();
};

}  // namespace qv
