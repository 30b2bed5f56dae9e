#include "webview2/chromium/chromium_page.h"

#include <map>

#include "foundation/text.h"
#include "webview2/chromium/page_script.h"
#include "webview2/chromium/script_result.h"

namespace qv::devhost {
namespace {

// A page that does not change after it got a new size may never be pictured in it: then it is asked for
// again.
constexpr UINT_PTR kPictureTimer = 1;
constexpr UINT kPictureCheckMs = 100;

}  // namespace

std::shared_ptr<ChromiumPage> ChromiumPage::Bind(std::shared_ptr<PageLink> link, PageEvents& events,
                                                 ViewWindow& window) {
  auto page = std::make_shared<ChromiumPage>(std::move(link), events, window);
  page->link_->Channel().Attach(std::shared_ptr<PageReceiver>(page, page.get()));
  window.SetContent(std::shared_ptr<ViewContent>(page, page.get()));
  return page;
}

ChromiumPage::ChromiumPage(std::shared_ptr<PageLink> link, PageEvents& events, ViewWindow& window)
    : link_(std::move(link)),
      events_(&events),
      window_(&window),
      tracker_(*this, link_->Target()),
      input_(*link_) {}

void ChromiumPage::Detach() {
  events_ = nullptr;
  if (window_->Handle() != nullptr) KillTimer(window_->Handle(), kPictureTimer);
  window_->SetContent({});
  window_ = nullptr;
}

void ChromiumPage::Navigate(std::uint64_t navigation, const std::wstring& uri) {
  tracker_.Ordered(navigation);
  link_->Call("Page.navigate", {{"url", ToUtf8(uri)}},
              [weak = weak_from_this(), navigation](HRESULT hr, const Json& answer) {
                const auto self = weak.lock();
                if (self && hr != kBrowserLost) self->tracker_.Answered(navigation, FAILED(hr), answer);
              });
}

void ChromiumPage::Run(Json parameters, ScriptDone done,
                       HRESULT (*convert)(const Json& answer, std::wstring& text)) {
  const auto answer = [weak = weak_from_this(), done = std::move(done), convert](HRESULT hr,
                                                                                 const Json& result) {
    const auto self = weak.lock();
    if (!self || self->events_ == nullptr) return;
    std::wstring text;
    if (SUCCEEDED(hr)) hr = convert(result, text);
    done(hr, text);
  };
  // Nothing answers in a page whose process is gone.
  if (crashed_) return link_->Queue()->Post([answer] { answer(kBrowserLost, nullptr); });
  link_->Call("Runtime.evaluate", std::move(parameters), answer);
}

void ChromiumPage::ExecuteScript(const std::wstring& script, ScriptDone done) {
  Run({{"expression", ToUtf8(script)}, {"returnByValue", true}}, std::move(done), ScriptResultText);
}

bool ChromiumPage::Evaluate(const std::wstring& script, ScriptDone done) {
  Run({{"expression", ToUtf8(script)}, {"returnByValue", true}, {"awaitPromise", true}}, std::move(done),
      EvaluationText);
  return true;
}

void ChromiumPage::PostJson(const std::wstring& json) {
  // A document that is about to go gets nothing more, and the next one is not there yet.
  if (crashed_ || tracker_.IsLeaving()) return;
  const std::string expression =
      std::string("chrome.webview.") + kDeliverMember + "(" + Json(ToUtf8(json)).dump(-1, ' ', true) + ")";
  link_->Tell("Runtime.evaluate", {{"expression", expression}, {"silent", true}});
}

void ChromiumPage::SetBounds(const RECT& bounds) {
  const SIZE size{bounds.right - bounds.left, bounds.bottom - bounds.top};
  if (size.cx == size_.cx && size.cy == size_.cy) return;
  size_ = size;
  if (size.cx > 0 && size.cy > 0) {
    link_->Tell("Emulation.setDeviceMetricsOverride",
                {{"width", size.cx}, {"height", size.cy}, {"deviceScaleFactor", 1}, {"mobile", false}});
  }
  UpdateScreencast();
}

void ChromiumPage::SetVisible(bool visible) {
  visible_ = visible;
  UpdateScreencast();
}

void ChromiumPage::UpdateScreencast() {
  const bool wanted = visible_ && size_.cx > 0 && size_.cy > 0;
  if (wanted != casting_) {
    casting_ = wanted;
    if (wanted) {
      StartScreencast();
    } else {
      link_->Tell("Page.stopScreencast");
    }
  }
  if (wanted && window_->Handle() != nullptr) {
    SetTimer(window_->Handle(), kPictureTimer, kPictureCheckMs, nullptr);
  }
}

void ChromiumPage::StartScreencast() {
  link_->Tell("Page.startScreencast", {{"format", "png"}, {"everyNthFrame", 1}});
}

void ChromiumPage::CheckPicture(HWND window) {
  const SIZE shown = painter_.Size();
  const bool fits = shown.cx == size_.cx && shown.cy == size_.cy;
  if (!casting_ || crashed_ || (fits && confirmed_)) {
    KillTimer(window, kPictureTimer);
    return;
  }
  confirmed_ = true;
  link_->Tell("Page.stopScreencast");
  StartScreencast();
}

void ChromiumPage::SetBackground(COREWEBVIEW2_COLOR color) {
  painter_.SetBackground(color);
  link_->Tell("Emulation.setDefaultBackgroundColorOverride",
              {{"color", {{"r", color.R}, {"g", color.G}, {"b", color.B}, {"a", color.A / 255}}}});
}

void ChromiumPage::SetScriptEnabled(bool enabled) {
  link_->Tell("Emulation.setScriptExecutionDisabled", {{"value", !enabled}});
}

bool ChromiumPage::CrashPage() {
  link_->Tell("Page.crash");
  return true;
}

std::uint64_t ChromiumPage::PageNavigates(const std::wstring& uri) {
  return events_ == nullptr ? 0 : events_->NavigationBegun(uri);
}

void ChromiumPage::StopLoading() {
  link_->Tell("Page.stopLoading");
}

void ChromiumPage::DocumentChanged(const std::wstring& uri) {
  crashed_ = false;
  if (events_ != nullptr) events_->SourceChanged(uri);
}

void ChromiumPage::NavigationEnded(std::uint64_t navigation, bool success,
                                   COREWEBVIEW2_WEB_ERROR_STATUS status) {
  if (events_ != nullptr) events_->NavigationFinished(navigation, success, status);
}

void ChromiumPage::OnPageEvent(const std::string& method, const Json& parameters) {
  if (events_ == nullptr) return;
  using Handler = void (*)(ChromiumPage&, const Json&);
  static const std::map<std::string, Handler> kHandlers = {
      {"Runtime.bindingCalled", [](ChromiumPage& self, const Json& p) { self.OnMessagePosted(p); }},
      {"Page.javascriptDialogOpening", [](ChromiumPage& self, const Json& p) { self.OnDialog(p); }},
      {"Inspector.targetCrashed", [](ChromiumPage& self, const Json&) { self.OnCrashed(); }},
  };
  const auto handler = kHandlers.find(method);
  if (handler != kHandlers.end()) return handler->second(*this, parameters);
  tracker_.OnEvent(method, parameters);
}

void ChromiumPage::OnMessagePosted(const Json& parameters) {
  if (parameters.value("name", "") != kPostBinding) return;
  const std::wstring payload = FromUtf8(parameters.at("payload").get_ref<const std::string&>());
  const std::size_t end = payload.find(L'\n');
  if (end == std::wstring::npos) return;
  const std::wstring source = payload.substr(1, end - 1);
  if (payload[0] == L's') {
    events_->StringReceived(source, payload.substr(end + 1));
  } else {
    events_->JsonReceived(source, payload.substr(end + 1));
  }
}

void ChromiumPage::OnDialog(const Json& parameters) {
  // Nobody is there to answer: questions are declined, but the page may be left.
  const std::string type = parameters.value("type", "");
  link_->Tell("Page.handleJavaScriptDialog", {{"accept", type == "alert" || type == "beforeunload"}});
}

void ChromiumPage::OnCrashed() {
  crashed_ = true;
  tracker_.Forget();
  events_->PageProcessLost();
}

void ChromiumPage::OnFrame() {
  FramePicture picture = link_->Channel().TakeFrame();
  if (window_ == nullptr || window_->Handle() == nullptr || !picture.bitmap) return;
  painter_.Show(std::move(picture));
  InvalidateRect(window_->Handle(), nullptr, FALSE);
  confirmed_ = false;
  SetTimer(window_->Handle(), kPictureTimer, kPictureCheckMs, nullptr);
}

void ChromiumPage::OnBrowserLost() {
  if (events_ != nullptr) events_->BrowserProcessLost();
}

std::optional<LRESULT> ChromiumPage::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      painter_.Paint(window);
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_TIMER:
      if (wParam == kPictureTimer) CheckPicture(window);
      return 0;
    default:
      return input_.OnMessage(window, message, wParam, lParam);
  }
}

}  // namespace qv::devhost
