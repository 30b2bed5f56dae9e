#pragma once

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

  /// Early shutdown of every pane; the host is about to go away.
  static void BeginShutdownEarly();
};

}  // namespace qv
