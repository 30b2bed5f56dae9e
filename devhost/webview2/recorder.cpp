#include "webview2/recorder.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "foundation/com_object.h"
#include "foundation/text.h"
#include "webview2/chromium/browser.h"
#include "webview2/core_web_view.h"
#include "webview2/recorder_backend.h"

namespace qv::devhost {

bool IsJson(const std::wstring& text) {
  return nlohmann::json::accept(ToUtf8(text));
}

Recorder& Recorder::Get() {
  static Recorder recorder;
  return recorder;
}

std::uint32_t Recorder::Add(CoreWebView& view) {
  views_.push_back(&view);
  return ++lastView_;
}

void Recorder::Remove(CoreWebView& view) {
  std::erase(views_, &view);
}

void Recorder::Record(std::uint32_t view, PageItemKind kind, std::wstring text) {
  auto& recorded = items_.emplace_back();
  recorded.text = std::move(text);
  recorded.item = {items_.size(), GetTickCount64(), view, kind, recorded.text.c_str()};
}

std::optional<Recorder::Failure>& Recorder::FailureSlot(CreationStep step) {
  return step == CreationStep::kEnvironment ? environmentFailure_ : controllerFailure_;
}

std::optional<Recorder::Failure> Recorder::TakeFailure(CreationStep step) {
  return std::exchange(FailureSlot(step), std::nullopt);
}

std::optional<COREWEBVIEW2_WEB_ERROR_STATUS> Recorder::TakeNavigationFailure() {
  return std::exchange(navigationFailure_, std::nullopt);
}

Recorder::ScriptResult Recorder::ResultOf(const std::wstring& script) const {
  const auto rule = std::find_if(scriptResults_.rbegin(), scriptResults_.rend(),
                                 [&](const auto& entry) { return Contains(script, entry.first); });
  return rule == scriptResults_.rend() ? ScriptResult{S_OK, L"null"} : rule->second;
}

std::uint32_t Recorder::ViewCount() {
  return static_cast<std::uint32_t>(views_.size());
}

bool Recorder::View(std::uint32_t index, ViewInfo* info) {
  if (index >= views_.size()) return false;
  *info = views_[index]->Describe();
  return true;
}

std::uint64_t Recorder::ItemCount() {
  return items_.size();
}

bool Recorder::Item(std::uint64_t index, PageItem* item) {
  if (index >= items_.size()) return false;
  *item = items_[index].item;
  return true;
}

CoreWebView* Recorder::Find(std::uint32_t view) const {
  const auto found = std::find_if(views_.begin(), views_.end(), [view](const CoreWebView* candidate) {
    return candidate->Number() == view && !candidate->IsClosed();
  });
  return found == views_.end() ? nullptr : *found;
}

bool Recorder::PostPageString(std::uint32_t view, const wchar_t* text, const wchar_t* source) {
  CoreWebView* target = Find(view);
  if (target != nullptr) target->DeliverLater(text, true, source);
  return target != nullptr;
}

bool Recorder::PostPageJson(std::uint32_t view, const wchar_t* json, const wchar_t* source) {
  CoreWebView* target = Find(view);
  if (target == nullptr || !IsJson(json)) return false;
  target->DeliverLater(json, false, source);
  return true;
}

void Recorder::SetScriptResult(const wchar_t* part, HRESULT result, const wchar_t* json) {
  scriptResults_.push_back({part, {result, json}});
}

void Recorder::FailNext(CreationStep step, CreationFailure how, HRESULT result) {
  FailureSlot(step) = Failure{how, how == CreationFailure::kWithoutObject ? S_OK : result};
}

void Recorder::FailNextNavigation(int errorStatus) {
  navigationFailure_ = static_cast<COREWEBVIEW2_WEB_ERROR_STATUS>(errorStatus);
}

void Recorder::ResetBehaviour() {
  scriptResults_.clear();
  environmentFailure_.reset();
  controllerFailure_.reset();
  navigationFailure_.reset();
  delay_ = 0;
}

std::uint64_t Recorder::Evaluate(std::uint32_t view, const wchar_t* script) {
  CoreWebView* target = Find(view);
  if (target == nullptr) return 0;
  const auto number = ++lastEvaluation_;
  if (!target->Evaluate(number, script)) return 0;
  evaluations_.emplace(number, Running{view});
  return number;
}

bool Recorder::TakeEvaluation(std::uint64_t number, Evaluation* evaluation) {
  const auto found = evaluations_.find(number);
  if (found == evaluations_.end() || found->second.result == E_PENDING) return false;
  takenText_ = std::move(found->second.text);
  *evaluation = {found->second.result, takenText_.c_str()};
  evaluations_.erase(found);
  return true;
}

void Recorder::FinishEvaluation(std::uint64_t evaluation, HRESULT result, std::wstring text) {
  const auto found = evaluations_.find(evaluation);
  if (found == evaluations_.end() || found->second.result != E_PENDING) return;
  found->second.result = result;
  found->second.text = std::move(text);
}

void Recorder::EndEvaluations(std::uint32_t view, HRESULT result) {
  for (auto& [number, running] : evaluations_)
    if (running.view == view && running.result == E_PENDING) running.result = result;
}

HWND Recorder::ViewWindow(std::uint32_t view) {
  const CoreWebView* target = Find(view);
  return target == nullptr ? nullptr : target->Window();
}

bool Recorder::CrashBrowser() {
  bool crashed = Browser::CrashAll();
  for (const CoreWebView* view : views_) {
    auto* const played = dynamic_cast<RecorderBackend*>(view->Backend());
    if (played == nullptr) continue;
    played->CrashBrowser();
    crashed = true;
  }
  return crashed;
}

bool Recorder::CrashPage(std::uint32_t view) {
  const CoreWebView* target = Find(view);
  return target != nullptr && target->Backend()->CrashPage();
}

std::uint32_t Recorder::LiveObjects() {
  return static_cast<std::uint32_t>(ModuleLocks::Count());
}

}  // namespace qv::devhost
