#pragma once

#include <windows.h>

#include <cstdint>

namespace qv::devhost {

/// What a recorded item is: a navigation that was asked for, a script that was run, a JSON message that was
/// posted to the page, a message that was refused because it is no JSON, or a message that a real page posted
/// to the add-in (the string itself, or JSON text).
enum class PageItemKind : int { kNavigate, kScript, kJson, kRejected, kMessage };

/// One thing that the add-in and a page said to each other. `text` is borrowed and stays valid while the
/// library is loaded.
struct PageItem {
  /// 1-based, in the order of all web views together.
  std::uint64_t sequence;
  /// GetTickCount64 at the call.
  std::uint64_t tick;
  std::uint32_t view;
  PageItemKind kind;
  const wchar_t* text;
};

/// One live web view. The texts are borrowed and valid until the next message is dispatched.
struct ViewInfo {
  /// 1-based number in the order of creation, never used again.
  std::uint32_t view;
  HWND parent;
  bool closed;
  bool visible;
  /// In pixels of the parent's client area.
  RECT bounds;
  /// 0xAARRGGBB.
  std::uint32_t background;
  const wchar_t* source;
  const wchar_t* userDataFolder;
};

enum class CreationStep : int { kEnvironment, kController };

/// How a script of the host ended. `text` is borrowed and valid until the next call of `TakeEvaluation`.
struct Evaluation {
  /// S_OK, DISP_E_EXCEPTION when the script threw, otherwise why it could not run to its end.
  HRESULT result;
  /// The JSON text of the value, "null" for undefined; or what the exception says; otherwise empty.
  const wchar_t* text;
};

/// How a creation fails: the call itself, the completion, or a completion that reports success without an
/// object.
enum class CreationFailure : int { kAtOnce, kLater, kWithoutObject };

/// The host side of the web view stand-in, for the development host and tests. One object per process, owned
/// by the library. UI thread only. Null texts are not allowed except where said.
class WebViewControl {
 public:
  virtual std::uint32_t STDMETHODCALLTYPE ViewCount() = 0;
  /// `index` is 0-based; false beyond the end.
  virtual bool STDMETHODCALLTYPE View(std::uint32_t index, ViewInfo* info) = 0;

  virtual std::uint64_t STDMETHODCALLTYPE ItemCount() = 0;
  /// `index` is 0-based, which is the sequence number less one; false beyond the end.
  virtual bool STDMETHODCALLTYPE Item(std::uint64_t index, PageItem* item) = 0;

  /// Delivers a message of the page later, as a string or as any JSON value. A null source stands for the
  /// view's current address. False when there is no such open view or, for JSON, the text is none.
  virtual bool STDMETHODCALLTYPE PostPageString(std::uint32_t view, const wchar_t* text,
                                                const wchar_t* source) = 0;
  virtual bool STDMETHODCALLTYPE PostPageJson(std::uint32_t view, const wchar_t* json,
                                              const wchar_t* source) = 0;

  /// Scripts that contain `part` complete from now on with this result and text; the newest fitting rule
  /// wins.
  virtual void STDMETHODCALLTYPE SetScriptResult(const wchar_t* part, HRESULT result,
                                                 const wchar_t* json) = 0;
  /// The next creation of this kind fails. `result` is ignored for `kWithoutObject`.
  virtual void STDMETHODCALLTYPE FailNext(CreationStep step, CreationFailure how, HRESULT result) = 0;
  /// The next navigation ends with this WebView2 error status.
  virtual void STDMETHODCALLTYPE FailNextNavigation(int errorStatus) = 0;
  /// Completions of creations, navigations and scripts take at least this long from now on.
  virtual void STDMETHODCALLTYPE SetDelay(DWORD milliseconds) = 0;
  /// Forgets rules, failures and the delay; items and views stay.
  virtual void STDMETHODCALLTYPE ResetBehaviour() = 0;

  /// Runs the script in the view's page for the host: nothing is recorded, and a promise is waited for. The
  /// number with which the result is fetched, or 0 when there is no such open view or no real page behind it.
  [[nodiscard]] virtual std::uint64_t STDMETHODCALLTYPE Evaluate(std::uint32_t view,
                                                                 const wchar_t* script) = 0;
  /// The result of `Evaluate`, once. False while it runs; a closed view ends it with an error. Messages must
  /// be dispatched meanwhile.
  [[nodiscard]] virtual bool STDMETHODCALLTYPE TakeEvaluation(std::uint64_t number,
                                                              Evaluation* evaluation) = 0;
  /// The window in which the page is shown and which takes its mouse and keyboard messages; null when there
  /// is no such open view.
  [[nodiscard]] virtual HWND STDMETHODCALLTYPE ViewWindow(std::uint32_t view) = 0;
  /// Ends every browser process of this process as a crash would. False when none runs.
  [[nodiscard]] virtual bool STDMETHODCALLTYPE CrashBrowser() = 0;
  /// Crashes the process of the view's page. False when there is no such open view or no page behind it.
  [[nodiscard]] virtual bool STDMETHODCALLTYPE CrashPage(std::uint32_t view) = 0;

  /// COM objects of the library that are still referenced.
  virtual std::uint32_t STDMETHODCALLTYPE LiveObjects() = 0;

 protected:
  ~WebViewControl() = default;
};

/// Export of WebView2Loader.dll that only the stand-in has; the version guards against a stale library.
inline constexpr char kWebViewControlExport[] = "QvWebViewControl";
inline constexpr std::uint32_t kWebViewControlVersion = 2;
/// Null for another version.
using WebViewControlFunction = WebViewControl*(WINAPI*)(std::uint32_t version);

}  // namespace qv::devhost
