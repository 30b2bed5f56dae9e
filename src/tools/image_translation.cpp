#include "tools/image_translation.h"

#include <utility>

#include "foundation/guard.h"
#include "foundation/json_text.h"
#include "foundation/logging.h"
#include "foundation/text.h"
#include "tools/image_data.h"
#include "tools/image_export.h"
#include "tools/image_replace.h"
#include "tools/image_restore.h"
#include "tools/image_results.h"
#include "tools/image_scan.h"
#include "tools/image_selection.h"
#include "tools/png_picture.h"
#include "tools/tool_result.h"
#include "tools/tool_targets.h"
#include "tools/undo_tools.h"
#include "tools/upright_shape.h"

namespace qv {
namespace {

/// Runs the body; an exception becomes the general failure and a log line.
template <typename Body>
auto Caught(Body&& body) -> decltype(body()) {
  try {
    return body();
  } catch (...) {
    static_cast<void>(HandleCurrentException(L"HandleImageTranslateMessage"));
    return ErrorResult(image_error::kFailed);
  }
}

/// The value of "anchor" as the page gave it; empty when it is absent.
std::optional<ImageAnchor> AnchorOf(const ToolArguments& arguments) {
  const std::wstring_view anchor = arguments.Value(L"anchor");
  return anchor.empty() ? std::nullopt : ParseAnchor(anchor);
}

/// Why an action that needs an anchor has none.
std::wstring NoAnchorResult(const ToolArguments& arguments) {
  const bool isMissing = arguments.Value(L"anchor").empty();
  return ErrorResult(isMissing ? image_error::kAnchorRequired : image_error::kInvalidRequest);
}

/// The bytes of a base64 text, if they are a PNG file that can be drawn.
std::optional<std::vector<std::byte>> PngOf(std::wstring_view base64) {
  std::optional<std::vector<std::byte>> png = BytesOfBase64(base64);
  if (!png) return std::nullopt;
  const std::optional<PixelSize> size = PngSize(*png);
  return size && !IsTooLarge(*size) && CanBeDrawn(*png) ? std::move(png) : std::nullopt;
}

/// A snapshot in the list that is given up again unless its picture is replaced.
class KeptSnapshot {
 public:
  KeptSnapshot(ImageUndo& undo, ImageSnapshot snapshot)
      : undo_(undo), serial_(undo.Keep(std::move(snapshot))) {}
  KeptSnapshot(const KeptSnapshot&) = delete;
  KeptSnapshot& operator=(const KeptSnapshot&) = delete;
  ~KeptSnapshot() {
    if (isSettled_) {
      undo_.Settle();
    } else {
      undo_.Drop(serial_);
    }
  }

  void Settle() { isSettled_ = true; }

 private:
  ImageUndo& undo_;
  std::uint64_t serial_;
  bool isSettled_ = false;
};

}  // namespace

constexpr ImageTranslation::Action ImageTranslation::kActions[] = {
    {L"imageTranslateScan", &ImageTranslation::Scan},
    {L"imageTranslateCount", &ImageTranslation::Count},
    {L"imageTranslateExtract", &ImageTranslation::Extract},
    {L"imageTranslateReplace", &ImageTranslation::Replace},
    {L"imageTranslateUndoReplace", &ImageTranslation::UndoReplace},
    {L"imageTranslateBatchUndo", &ImageTranslation::BatchUndo},
    {L"imageTranslateClearBatchUndo", &ImageTranslation::ClearBatchUndo},
};

ImageTranslation::ImageTranslation(std::shared_ptr<PaneContext> pane, TargetContext& target,
                                   PanelOutput& output, ToolTurns& turns)
    : pane_(std::move(pane)), target_(target), output_(output), turns_(turns), slices_(pane_) {}

void ImageTranslation::HandleImageTranslateMessage(const std::wstring& action, const std::wstring& message) {
  const std::wstring requestId = JsonGetString(message, L"requestId");
  PaneLog(Concat(L"HandleImageTranslateMessage action=", JsonEscape(action), L" requestId=",
                 JsonEscape(requestId), L"\r\n"));
  bool posted = false;
  Guard(L"HandleImageTranslateMessage", [&] {
    // Shared, because a message with a picture in it is large.
    auto text = std::make_shared<const std::wstring>(message);
    posted = PostTurn([this, action, text = std::move(text)] { RunAndReply(action, *text); });
  });
  if (!posted && !pane_->IsClosing()) Reply(requestId, ErrorResult(image_error::kFailed));
}

bool ImageTranslation::PostTurn(std::function<void()> turn) {
  return pane_->Tasks().PostFunction([this, turn = std::move(turn)] { turns_.Run(turn); });
}

void ImageTranslation::RunAndReply(const std::wstring& action, const std::wstring& message) {
  if (closed_) return;
  const std::wstring requestId = JsonGetString(message, L"requestId");
  const Outcome outcome = Caught([&] { return RunAction(action, message); });
  if (closed_) return;
  if (outcome) return Reply(requestId, *outcome);
  jobs_.push_back(std::make_shared<RunningJob>(RunningJob{requestId, std::move(begun_)}));
  if (jobs_.size() == 1) RunJobSlice();
}

ImageTranslation::Outcome ImageTranslation::RunAction(std::wstring_view action, const std::wstring& message) {
  if (target_.Application() != nullptr) RefreshTarget(target_);
  for (const Action& row : kActions) {
    if (row.name == action) return (this->*row.run)(ToolArguments(message));
  }
  return ErrorResult(image_error::kUnknownAction);
}

ImageTranslation::Outcome ImageTranslation::Scan(const ToolArguments& arguments) {
  return ScanActiveSheet(FlagOfValue(arguments.Value(L"countOnly")).value_or(false));
}

ImageTranslation::Outcome ImageTranslation::Count(const ToolArguments&) {
  return ScanActiveSheet(true);
}

ImageTranslation::Outcome ImageTranslation::ScanActiveSheet(bool countOnly) {
  HostAnswer answer;
  const ComPtr<IDispatch> sheet = target_.GetActiveSheetDispatch(&answer);
  if (sheet == nullptr) {
    PaneLog(L"ExcelImageTranslate scan: no active sheet\r\n");
    return ErrorResult(answer.IsBusy() ? image_error::kFailed : image_error::kNoSheet);
  }
  const std::wstring name = GetStringProperty(sheet.Get(), L"Name");
  if (name.empty()) {
    PaneLog(L"ExcelImageTranslate scan: active sheet name failed\r\n");
    return ErrorResult(image_error::kNoSheet);
  }
  SheetPictures found = FindPictures(sheet.Get(), name);
  if (found.answer.IsBusy()) return ErrorResult(image_error::kFailed);
  if (!found.hasCollection) {
    PaneLog(Concat(L"ExcelImageTranslate scan sheet=", JsonEscape(name), L" shapes=0 (no collection)\r\n"));
  }
  PaneLog(Concat(L"ExcelImageTranslate scan active processable=", found.pictures.size(), L" unsupportedSkip=",
                 found.unsupported, L"\r\n"));
  if (countOnly) return ScanResult(name, found.pictures.size(), found.unsupported, {});
  BeginJob(std::make_unique<ImageScan>(target_.Application(), name, std::move(found)));
  return std::nullopt;
}

ImageTranslation::Target ImageTranslation::FindTarget(std::wstring_view operation,
                                                      const ImageAnchor& anchor) const {
  HostAnswer answer;
  Target target;
  target.sheet = target_.GetActiveSheetDispatch(&answer);
  const std::wstring name = GetStringProperty(target.sheet.Get(), L"Name");
  if (answer.IsBusy()) {
    target.error = image_error::kFailed;
  } else if (name.empty()) {
    target.error = image_error::kNoSheet;
  } else if (name != anchor.sheetName) {
    PaneLog(Concat(L"ExcelImageTranslate ", operation, L" active sheet changed want=",
                   JsonEscape(anchor.sheetName), L" active=", JsonEscape(name), L"\r\n"));
    target.error = image_error::kSheetChanged;
  }
  if (!target.error.empty()) return target;

  ResolvedAnchor resolved = ResolveAnchor(target.sheet.Get(), anchor);
  target.picture = std::move(resolved.picture);
  if (target.picture) return target;
  if (resolved.answer.IsBusy()) {
    target.error = image_error::kFailed;
    return target;
  }
  PaneLog(Concat(L"ExcelImageTranslate ", operation, L" anchor mismatch want=", AnchorJson(anchor), L" got=",
                 resolved.candidate.sheetName.empty() ? L"none" : AnchorJson(resolved.candidate), L"\r\n"));
  target.error = image_error::kAnchorStale;
  return target;
}

EncodedImage ImageTranslation::ExportUpright(const Target& target) const {
  const UprightShape upright(target.sheet.Get(), target.picture->shape.Get());
  return ExportPicture(target_.Application(), target.picture->shape.Get());
}

ImageTranslation::Outcome ImageTranslation::Extract(const ToolArguments& arguments) {
  const std::optional<ImageAnchor> anchor = AnchorOf(arguments);
  if (!anchor) return NoAnchorResult(arguments);
  const Target target = FindTarget(L"extract", *anchor);
  if (!target.error.empty()) return ErrorResult(target.error);
  const EncodedImage image = ExportUpright(target);
  if (image.error == kByCopyPicture) return ErrorResult(image_error::kExportFailed);
  const std::wstring base64 = image.Ok() ? Base64Of(image.png) : std::wstring();
  if (base64.empty()) {
    PaneLog(Concat(L"ExcelImageTranslate extract encode failed: ", image.Ok() ? kBase64Error : image.error,
                   L"\r\n"));
    return ErrorResult(image_error::kEncodeFailed);
  }
  return ExtractResult(image.size, base64);
}

ImageSnapshot ImageTranslation::TakeSnapshot(const Target& target, UndoBook book, bool inBatch) const {
  ImageSnapshot snapshot{target.picture->anchor, std::move(book), {}, inBatch};
  if (snapshot.book.name.empty()) {
    PaneLog(L"ExcelImageTranslate undo snapshot without a workbook\r\n");
    return snapshot;
  }
  const UprightShape upright(target.sheet.Get(), target.picture->shape.Get());
  EncodedImage image = ExportPicture(target_.Application(), target.picture->shape.Get());
  if (!image.Ok())
    image = ExportPictureThroughChart(target_.Application(), target.sheet.Get(), *target.picture);
  if (!image.Ok()) {
    PaneLog(Concat(L"ExcelImageTranslate undo export fallback failed: ", image.error, L"\r\n"));
    PaneLog(L"ExcelImageTranslate undo snapshot empty after replace capture\r\n");
  }
  snapshot.png = std::move(image.png);
  return snapshot;
}

ImageTranslation::Outcome ImageTranslation::Replace(const ToolArguments& arguments) {
  const std::optional<ImageAnchor> anchor = AnchorOf(arguments);
  const std::optional<std::wstring> base64 = TextOfValue(arguments.Value(L"imageBase64"));
  if (!anchor || !base64 || base64->empty()) return ErrorResult(image_error::kInvalidRequest);
  const std::optional<std::vector<std::byte>> png = PngOf(*base64);
  if (!png) return ErrorResult(image_error::kDecodeFailed);
  const Target target = FindTarget(L"replace", *anchor);
  if (!target.error.empty()) return ErrorResult(target.error);
  HostAnswer answer;
  UndoBook book = BookOfSheet(target_, target.sheet.Get(), answer);
  if (answer.IsBusy()) return ErrorResult(image_error::kFailed);

  const bool inBatch = FlagOfValue(arguments.Value(L"batchMode")).value_or(false);
  ImageSnapshot snapshot = TakeSnapshot(target, book, inBatch);
  const bool hasUndo = !snapshot.png.empty();
  // In the list before the sheet is touched. A batch counts the pictures that it cannot restore, too.
  std::optional<KeptSnapshot> kept;
  if (hasUndo || inBatch) kept.emplace(undo_, std::move(snapshot));
  const ImageReplacement replaced =
      ReplacePicture(target_.Application(), target.sheet.Get(), *target.picture, *png);
  if (!replaced.done) return ReplaceFailedResult(replaced.detail);
  if (kept) kept->Settle();
  undo_.Follow(target.picture->anchor, replaced.anchor, book);
  return ReplaceResult(hasUndo, replaced.anchor);
}

ImageTranslation::Outcome ImageTranslation::UndoReplace(const ToolArguments& arguments) {
  const std::optional<ImageAnchor> anchor = AnchorOf(arguments);
  if (!anchor) return NoAnchorResult(arguments);
  const Target target = FindTarget(L"undo", *anchor);
  HostAnswer answer;
  const UndoBook book = BookOfSheet(target_, target.sheet.Get(), answer);
  if (target.error == image_error::kNoSheet) return ErrorResult(target.error);
  // Nothing tells whether there is a snapshot while the workbook is not known.
  const bool isUnknown = answer.IsBusy() || book.name.empty();
  if (target.error == image_error::kFailed || isUnknown) return ErrorResult(image_error::kFailed);
  const ImageSnapshot* const snapshot = undo_.FindNewest(*anchor, book);
  if (snapshot == nullptr) return ErrorResult(image_error::kNothingToUndo);
  if (!target.error.empty()) return ErrorResult(target.error);
  const std::wstring base64 = Base64Of(snapshot->png);
  const ImageReplacement replaced =
      ReplacePicture(target_.Application(), target.sheet.Get(), *target.picture, snapshot->png);
  if (!replaced.done) return ReplaceFailedResult(replaced.detail);
  undo_.Drop(snapshot->serial);
  undo_.Follow(target.picture->anchor, replaced.anchor, book);
  PaneLog(Concat(L"ExcelImageTranslate undo shape=", JsonEscape(replaced.anchor.shapeName), L" sheet=",
                 JsonEscape(replaced.anchor.sheetName), L"\r\n"));
  return UndoReplaceResult(replaced.anchor, base64);
}

ImageTranslation::Outcome ImageTranslation::BatchUndo(const ToolArguments&) {
  BeginJob(std::make_unique<ImageBatchRestore>(target_, undo_));
  return std::nullopt;
}

ImageTranslation::Outcome ImageTranslation::ClearBatchUndo(const ToolArguments&) {
  undo_.ClearBatch();
  return OkResult();
}

void ImageTranslation::ContinueJobs() {
  if (jobs_.empty()) return;
  if (slices_.ContinueSoon([this] { turns_.Run([this] { RunJobSlice(); }); })) return;
  // Neither a task nor a timer is to be had.
  const std::deque<std::shared_ptr<RunningJob>> jobs = std::exchange(jobs_, {});
  for (const auto& job : jobs)
    Reply(job->requestId, ErrorResult(image_error::kFailed));
}

void ImageTranslation::RunJobSlice() {
  if (jobs_.empty()) return;
  // The host may close the pane inside of a call, which drops the jobs.
  const std::shared_ptr<RunningJob> running = jobs_.front();
  const Outcome outcome = Caught([&]() -> Outcome {
    if (running->job->RunSlice()) return std::nullopt;
    return running->job->Result();
  });
  if (closed_) return;
  if (outcome) {
    jobs_.pop_front();
    Reply(running->requestId, *outcome);
  }
  ContinueJobs();
}

void ImageTranslation::PushSelectionPreview() {
  // Refused when the pane goes away or its host reads no messages; then nobody would see it.
  static_cast<void>(PostTurn([this] { ShowSelection(); }));
}

void ImageTranslation::ShowSelection() {
  if (closed_) return;
  RefreshTarget(target_);
  const SelectedPicture selected = FindSelectedPicture(target_);
  if (selected.isBusy || closed_) return;
  if (!selected.picture) return output_.RunPanelScript(NoImageSelectedScript());
  const ClipboardBackup backup;
  const ExportedThumbnail image =
      ExportThumbnail(target_.Application(), selected.picture->shape.Get(), backup);
  if (closed_) return;
  const ImageThumbnail thumbnail{image.thumbnail.Ok() ? Base64Of(image.thumbnail.png) : std::wstring(),
                                 image.thumbnail.size};
  if (thumbnail.base64.empty()) {
    PaneLog(Concat(L"ExcelImageTranslate selection export failed: ",
                   image.thumbnail.Ok() ? kBase64Error : image.thumbnail.error, L"\r\n"));
  }
  output_.RunPanelScript(ImageSelectedScript(selected.picture->anchor, image.size, thumbnail));
}

void ImageTranslation::Close() {
  closed_ = true;
  slices_.Stop();
  jobs_.clear();
}

void ImageTranslation::Reply(std::wstring_view requestId, const std::wstring& result) {
  const bool understood = result != ErrorResult(image_error::kUnknownAction);
  try {
    output_.RunPanelScript(BuildReplyScript(requestId, understood, result));
  } catch (const std::bad_alloc&) {
    // The result was too large to be carried; a page that waits for it shall not wait on.
    output_.RunPanelScript(BuildReplyScript(requestId, true, ErrorResult(image_error::kFailed)));
  }
}

}  // namespace qv
