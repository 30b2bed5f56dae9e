// What pictures cost: one large picture exported and replaced, many scanned, and the memory that replacements
// leave behind. The image translation on the memory engine, without page and service.

#include <ole2.h>
#include <windows.h>
// Wants the header above first.
#include <psapi.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "engines/memory/memory_engine.h"
#include "engines/memory/picture_file.h"
#include "foundation/json_reader.h"
#include "foundation/text.h"
#include "foundation/unique_gdi.h"
#include "measure.h"
#include "ole_program.h"
#include "pane_window.h"
#include "tools/image_encoding.h"
#include "tools/image_results.h"
#include "tools/image_translation.h"
#include "tools/png_picture.h"
#include "tools/tool_result.h"

namespace qv::bench {
namespace {

using devhost::memory::PictureData;

constexpr int kRepeats = 3;
constexpr int kManyPictures = 200;
constexpr int kReplacements = 200;
constexpr int kWarmReplacements = 20;

/// Colours that change softly with some grain in them, so that a PNG file of it has the size of a photo's.
std::shared_ptr<const PictureData> Photo(int width, int height) {
  auto picture = std::make_shared<PictureData>(PictureData{width, height, {}});
  std::uint32_t grain = 1;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      grain = grain * 1664525 + 1013904223;
      const auto red = static_cast<std::uint32_t>(x * 255 / width);
      const auto green = static_cast<std::uint32_t>(y * 255 / height);
      picture->pixels.push_back(0xFF000000 | red << 16 | green << 8 | grain >> 28);
    }
  }
  return picture;
}

std::wstring PngText(const PictureData& picture) {
  const std::string file = devhost::memory::EncodePicture(picture);
  return Base64Of(std::as_bytes(std::span(file)));
}

/// A sheet with pictures, and the image translation of a pane on it.
class Sheet {
 public:
  Sheet() {
    engine_.AddWorkbook(L"Book.xlsx");
    target_.SetApplication(engine_.Application());
    target_.Pin(ExcelWindow::ResolveForInvocation(engine_.Application(), nullptr));
  }
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;
  ~Sheet() {
    images_.Close();
    turns_.Close();
  }

  void Add(const std::wstring& name, std::shared_ptr<const PictureData> picture) {
    engine_.AddPicture(L"", name, std::move(picture));
  }

  /// The script that answers the action.
  std::wstring Ask(const std::wstring& action, const std::wstring& members = {}) {
    page_.answer.clear();
    longestSlice_ = 0;
    images_.HandleImageTranslateMessage(action, Concat(L"{\"requestId\":\"r\"", members, L'}'));
    MSG message;
    while (page_.answer.empty() && GetMessageW(&message, nullptr, 0, 0) > 0) {
      const double slice = Milliseconds([&message] { DispatchMessageW(&message); });
      longestSlice_ = std::max(longestSlice_, slice);
    }
    Require(!Contains(page_.answer, L"\"error\""), "an action failed");
    return page_.answer;
  }
  /// Of the last action: the longest time between two looks at the message queue.
  [[nodiscard]] double LongestSlice() const { return longestSlice_; }

  /// The anchor of the first picture.
  std::wstring Anchor() {
    const std::wstring answer = Ask(L"imageTranslateScan");
    const auto anchors = JsonElementsOf(JsonFindValue(answer, L"anchors"));
    Require(anchors && !anchors->empty(), "no picture was found");
    return std::wstring(anchors->front());
  }

 private:
  devhost::MemoryEngine engine_;
  std::shared_ptr<PaneContext> pane_ = std::make_shared<PaneContext>(1);
  TaskWindow window_{*pane_};
  AnswerPage page_;
  TargetContext target_;
  ToolTurns turns_{pane_};
  ImageTranslation images_{pane_, target_, page_, turns_};
  double longestSlice_ = 0;
};

std::wstring ReplaceMembers(const std::wstring& anchor, const std::wstring& png) {
  return Concat(L",\"anchor\":", anchor, L",\"imageBase64\":\"", png, L'"');
}

void MeasureLargePicture() {
  Sheet sheet;
  sheet.Add(L"Large", Photo(4000, 3000));
  const std::wstring anchor = sheet.Anchor();
  const std::wstring png = PngText(*Photo(4000, 3000));
  Row("picture 4000x3000, its PNG file in base64", static_cast<double>(png.size()) / 1e6, "MB");
  std::vector<double> extract;
  std::vector<double> replace;
  for (int repeat = 0; repeat < kRepeats; ++repeat) {
    extract.push_back(Milliseconds([&] { sheet.Ask(L"imageTranslateExtract", L",\"anchor\":" + anchor); }));
    replace.push_back(
        Milliseconds([&] { sheet.Ask(L"imageTranslateReplace", ReplaceMembers(anchor, png)); }));
  }
  Row("picture 4000x3000, extract", Median(extract), "ms");
  Row("picture 4000x3000, replace", Median(replace), "ms");
}

/// Where an extract's time goes behind the host's copying.
void MeasureSteps() {
  const auto photo = Photo(4000, 3000);
  const UniqueBitmap bitmap(CreateBitmap(4000, 3000, 1, 32, photo->pixels.data()));
  EncodedImage image;
  Row("picture 4000x3000, encoding with GDI+", Milliseconds([&] { image = EncodeImage(bitmap.Get()); }),
      "ms");
  std::wstring base64;
  Row("picture 4000x3000, base64", Milliseconds([&] { base64 = Base64Of(image.png); }), "ms");
  const auto answer = [&] { return BuildReplyScript(L"r", true, ExtractResult(image.size, base64)); };
  Row("picture 4000x3000, reply script", Milliseconds([&] { Require(!answer().empty(), "no script"); }),
      "ms");
}

void MeasureScan() {
  Sheet sheet;
  const auto picture = Photo(800, 600);
  for (int number = 1; number <= kManyPictures; ++number)
    sheet.Add(L"P" + std::to_wstring(number), picture);
  Row("scan of 200 pictures, 800x600", Milliseconds([&] { sheet.Ask(L"imageTranslateScan"); }), "ms");
  Row("scan longest time without painting", sheet.LongestSlice(), "ms");
  Row("count of 200 pictures", Milliseconds([&] { sheet.Ask(L"imageTranslateCount"); }), "ms");
}

double WorkingSetMiB() {
  PROCESS_MEMORY_COUNTERS counters{};
  Require(GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters)), "no memory counters");
  return static_cast<double>(counters.WorkingSetSize) / (1 << 20);
}

void MeasureMemory() {
  Sheet sheet;
  sheet.Add(L"Photo", Photo(400, 300));
  const std::wstring members = ReplaceMembers(sheet.Anchor(), PngText(*Photo(400, 300)));
  for (int replacement = 1; replacement <= kReplacements; ++replacement) {
    sheet.Ask(L"imageTranslateReplace", members);
    if (replacement == kWarmReplacements)
      Row("working set after 20 replacements, 400x300", WorkingSetMiB(), "MiB");
  }
  Row("working set after 200 replacements, 400x300", WorkingSetMiB(), "MiB");
}

void Run() {
  MeasureSteps();
  MeasureLargePicture();
  MeasureScan();
  MeasureMemory();
}

}  // namespace
}  // namespace qv::bench

int main() {
  return qv::bench::RunOleProgram(qv::bench::Run);
}
