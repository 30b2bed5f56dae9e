#include "addin/tools/image_fixture.h"

#include <algorithm>
#include <filesystem>
#include <functional>

#include "foundation/json_reader.h"
#include "foundation/text.h"
#include "tools/clipboard_backup.h"
#include "tools/image_data.h"
#include "tools/png_picture.h"

namespace qv::test {
namespace {

constexpr ULONGLONG kDeadline = 30'000;
constexpr wchar_t kClipboardText[] = L"the user's own";

std::wstring TextOnClipboard() {
  const ClipboardOwner owner;
  const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
  const HANDLE data = GetClipboardData(CF_UNICODETEXT);
  if (data == nullptr) return {};
  std::wstring text(static_cast<const wchar_t*>(GlobalLock(data)));
  GlobalUnlock(data);
  return text;
}

std::shared_ptr<Shape> FindShape(const std::vector<std::shared_ptr<Shape>>& shapes,
                                 const std::wstring& name) {
  for (const auto& shape : shapes) {
    if (shape->name == name) return shape;
    if (auto child = FindShape(shape->children, name)) return child;
  }
  return nullptr;
}

}  // namespace

std::vector<std::wstring> TemporaryFiles() {
  std::vector<std::wstring> names;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::temp_directory_path())) {
    if (entry.path().filename().wstring().starts_with(L"qvi")) names.push_back(entry.path().wstring());
  }
  std::ranges::sort(names);
  return names;
}

void PutText() {
  const ClipboardOwner owner;
  const OpenedClipboard clipboard(owner.Get(), kClipboardPatience);
  EmptyClipboard();
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, sizeof(kClipboardText));
  std::copy(std::begin(kClipboardText), std::end(kClipboardText), static_cast<wchar_t*>(GlobalLock(memory)));
  GlobalUnlock(memory);
  SetClipboardData(CF_UNICODETEXT, memory);
}

std::shared_ptr<const PictureData> Pattern(int width, int height, int seed) {
  auto picture = std::make_shared<PictureData>();
  picture->width = width;
  picture->height = height;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const auto color = static_cast<std::uint32_t>((x & 0xFF) << 16 | (y & 0xFF) << 8 | (seed & 0xFF));
      picture->pixels.push_back(0xFF000000 | color);
    }
  }
  return picture;
}

std::wstring PngText(const PictureData& picture) {
  const std::string file = devhost::memory::EncodePicture(picture);
  return Base64Of(std::as_bytes(std::span(file)));
}

std::shared_ptr<const PictureData> PictureOfText(const std::wstring& base64) {
  const auto bytes = BytesOfBase64(base64);
  if (!bytes) return nullptr;
  return devhost::memory::DecodePicture({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
}

void ImageTest::SetUp() {
  ToolsTest::SetUp();
  images.emplace(pane, target, panel, tools->Dispatcher()->Turns());
  filesBefore_ = TemporaryFiles();
  PutText();
}

void ImageTest::TearDown() {
  EXPECT_EQ(TemporaryFiles(), filesBefore_);
  EXPECT_EQ(TextOnClipboard(), kClipboardText);
  images->Close();
  ToolsTest::TearDown();
}

std::wstring ImageTest::AskForScript(const std::wstring& action, const std::wstring& members) {
  const std::wstring message = Concat(L"{\"action\":\"", action, L"\",\"requestId\":\"r1\"", members, L'}');
  panel.scripts.clear();
  images->HandleImageTranslateMessage(action, message);
  const ULONGLONG start = GetTickCount64();
  while (panel.scripts.empty() && GetTickCount64() - start < kDeadline)
    PumpMessages();
  EXPECT_EQ(panel.scripts.size(), 1U);
  return panel.scripts.empty() ? std::wstring() : panel.scripts.front();
}

std::wstring ImageTest::Ask(const std::wstring& action, const std::wstring& members) {
  const std::wstring script = AskForScript(action, members);
  const std::wstring before = BuildReplyScript(L"r1", true, L"|");
  const size_t start = before.find(L'|');
  EXPECT_EQ(script.substr(0, start), before.substr(0, start));
  return script.substr(start, script.size() - (before.size() - 1));
}

std::wstring ImageTest::Replace(const std::wstring& anchor, const PictureData& picture, bool inBatch) {
  return Ask(L"imageTranslateReplace", Concat(L",\"anchor\":", anchor, L",\"imageBase64\":\"",
                                              PngText(picture), L"\",\"batchMode\":", BoolWord(inBatch)));
}

std::vector<std::wstring> ImageTest::Anchors() {
  const std::wstring result = Scan();
  std::vector<std::wstring> anchors;
  const auto elements = JsonElementsOf(JsonFindValue(result, L"anchors"));
  if (elements) anchors.assign(elements->begin(), elements->end());
  return anchors;
}

std::wstring ImageTest::AnchorOf(const std::wstring& name) {
  for (const std::wstring& anchor : Anchors()) {
    if (JsonReader(anchor).Text(L"shapeName") == name) return anchor;
  }
  ADD_FAILURE() << "no picture " << ToUtf8(name);
  return {};
}

std::shared_ptr<Shape> ImageTest::ShapeOf(const std::wstring& name) {
  return FindShape(engine.Sheet(L"Sheet1").shapes, name);
}

PictureData ImageTest::Shown(const std::wstring& name) {
  const auto shape = ShapeOf(name);
  return shape != nullptr && shape->picture != nullptr ? *shape->picture : PictureData();
}

}  // namespace qv::test
