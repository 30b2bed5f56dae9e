#include "translation/run_scripts.h"

#include "foundation/json_text.h"
#include "foundation/text.h"

namespace qv {
namespace {

std::wstring ReadyCall(std::uint64_t runId, const RunSize& size) {
  return Concat(L"onReady({total:", size.cells, L",translatable:", size.units, L",runId:", runId, L"})");
}

}  // namespace

std::wstring RunStartedScript(std::uint64_t runId) {
  return Concat(L"if(window.onRunStarted)onRunStarted({runId:", runId, L"})");
}

std::wstring ReadyScript(std::uint64_t runId, const RunSize& size) {
  return Concat(L"if(window.onReady)", ReadyCall(runId, size));
}

std::wstring StartedAndReadyScript(std::uint64_t runId, const RunSize& size) {
  return Concat(RunStartedScript(runId), L';', ReadyCall(runId, size));
}

std::wstring ProgressScript(std::uint64_t runId, const RunSize& size, const UnitProgress& progress) {
  return Concat(L"if(window.onProgress)onProgress({runId:", runId, L",wordIndex:", progress.index, L",total:",
                size.cells, L",translatable:", size.units, L",skipped:", BoolWord(progress.skipped),
                L",original:", JsonQuote(progress.original), L",translated:", JsonQuote(progress.translated),
                L"})");
}

std::wstring CompleteScript(std::uint64_t runId, const RunSize& size, std::uint64_t elapsedMs,
                            bool allSheets) {
  return Concat(L"if(window.onComplete)onComplete({runId:", runId, L",total:", size.cells, L",elapsed:",
                elapsedMs, L",allSheets:", BoolWord(allSheets), L"})");
}

std::wstring CancelledScript() {
  return L"if(window.onCancelled)onCancelled()";
}

std::wstring RunSheetChangedScript(std::uint64_t runId, std::wstring_view sheetName,
                                   std::wstring_view sourceSheetName, std::wstring_view mode) {
  return Concat(L"if(window.onExcelTranslateSheetChanged)onExcelTranslateSheetChanged({\"runId\":", runId,
                L",\"sheetName\":", JsonQuote(sheetName), L",\"sourceSheetName\":",
                JsonQuote(sourceSheetName), L",\"mode\":", JsonQuote(mode), L"})");
}

std::wstring ActiveSheetChangedScript(std::wstring_view sheetName) {
  return Concat(L"if(window.onExcelActiveSheetChanged)onExcelActiveSheetChanged({\"sheetName\":",
                JsonQuote(sheetName), L"})");
}

std::wstring ResumeBlockedScript(std::wstring_view activeSheet, std::wstring_view runSheet) {
  return Concat(L"if(window.onExcelTranslateResumeBlocked)onExcelTranslateResumeBlocked({\"sheetName\":",
                JsonQuote(activeSheet), L",\"sourceSheetName\":", JsonQuote(runSheet), L"})");
}

std::wstring ResumedScript(std::wstring_view reason) {
  return Concat(L"if(window.onExcelTranslateResumed)onExcelTranslateResumed({reason:\"", reason, L"\"})");
}

std::wstring BlurChatInputScript() {
  return L"(function(){var i=document.getElementById('chatInput');if(i)i.blur();})();";
}

std::wstring SheetWriteBlockedScript(std::wstring_view message) {
  return Concat(L"if(window.onSheetWriteBlocked)window.onSheetWriteBlocked({message:", JsonQuote(message),
                L"});");
}

std::wstring ToastScript(std::wstring_view message, std::wstring_view kind) {
  return Concat(L"(function(){var m=", JsonQuote(message), L",k=", JsonQuote(kind),
                L";if(window.QuorvantisTerminology&&QuorvantisTerminology.showToast)"
                L"{QuorvantisTerminology.showToast(m,k);return;}"
                L"var el=document.getElementById('toast');"
                L"if(el){el.textContent=m;el.className='toast '+k;}})();");
}

}  // namespace qv
