#pragma once

#include <oaidl.h>

#include <nlohmann/json.hpp>
#include <string>

namespace qv::devhost {

enum class HostStyle { kExcel, kWps };

/// A spreadsheet behind a late-bound object model, and the few things that a test or a script wants from it
/// without going through that model. All calls on the host's UI thread. Failures throw std::runtime_error
/// with a text for people; the host answers it as {"ok":false,"error":…} and nothing has changed.
class Engine {
 public:
  virtual ~Engine() = default;

  /// The Application object that is handed to add-ins; borrowed, lives as long as the engine.
  [[nodiscard]] virtual IDispatch* Application() = 0;

  /// Opens a workbook and makes its window the active one. The memory engine takes a JSON description of
  /// sheets.
  virtual void Open(const std::wstring& path) = 0;

  /// {"value":…,"formula":"…","text":"…","wrap":bool,"rowHeight":pt,"runs":[{"start":1,"length":n,"text":"…",
  /// "font":"…","size":pt,"bold":bool,"color":n}]}; runs are 1-based and cover the text, color is the host's
  /// blue-green-red number. `address` is one cell in A1 form; an empty sheet name means the active sheet.
  [[nodiscard]] virtual nlohmann::json Cell(const std::wstring& sheet, const std::string& address) = 0;

  /// Activates the sheet and selects the range (A1 form, areas separated by commas).
  virtual void Select(const std::wstring& sheet, const std::string& address) = 0;
  virtual void Protect(const std::wstring& sheet, bool on) = 0;
  /// Saves a copy; never over the opened file.
  virtual void Save(const std::wstring& path) = 0;
  /// PNG picture of the active sheet.
  virtual void Shot(const std::wstring& path) = 0;

  /// {"calls":{"Range.Value2":n,…},"live":n}: calls through the object model by "Class.Member" since the
  /// start or the last `ResetCounters`, and objects handed out that are still referenced (the Application not
  /// counted).
  [[nodiscard]] virtual nlohmann::json Counters() = 0;
  virtual void ResetCounters() = 0;

  /// Injects or clears faults; only the memory engine has any. The accepted members are described with it.
  virtual void Fault(const nlohmann::json& fault) = 0;
};

}  // namespace qv::devhost
