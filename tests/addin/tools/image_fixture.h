#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "addin/tools/tools_fixture.h"
#include "engines/memory/picture_file.h"
#include "tools/image_translation.h"

namespace qv::test {

using devhost::memory::PictureData;
using devhost::memory::Shape;

/// A picture whose every pixel tells where it is; pictures of different seeds differ in every pixel.
[[nodiscard]] std::shared_ptr<const PictureData> Pattern(int width, int height, int seed = 0);

/// Files that pictures may leave behind.
[[nodiscard]] std::vector<std::wstring> TemporaryFiles();

/// Puts the text on the clipboard that every test begins with.
void PutText();

/// Base64 of the picture as a PNG file.
[[nodiscard]] std::wstring PngText(const PictureData& picture);

/// The picture in a base64 text of a file; null when there is none.
[[nodiscard]] std::shared_ptr<const PictureData> PictureOfText(const std::wstring& base64);

/// The image translation of a pane that is pinned to "Book.xlsx" in the memory engine. Every test ends with
/// the temporary folder and the clipboard as they were.
class ImageTest : public ToolsTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// The data of the reply to an action; `members` are further members of the message, from a comma on.
  [[nodiscard]] std::wstring Ask(const std::wstring& action, const std::wstring& members = {});
  /// The whole script of that reply.
  [[nodiscard]] std::wstring AskForScript(const std::wstring& action, const std::wstring& members = {});

  [[nodiscard]] std::wstring Scan() { return Ask(L"imageTranslateScan"); }
  [[nodiscard]] std::wstring Extract(const std::wstring& anchor) {
    return Ask(L"imageTranslateExtract", L",\"anchor\":" + anchor);
  }
  [[nodiscard]] std::wstring Replace(const std::wstring& anchor, const PictureData& picture,
                                     bool inBatch = false);
  [[nodiscard]] std::wstring Undo(const std::wstring& anchor) {
    return Ask(L"imageTranslateUndoReplace", L",\"anchor\":" + anchor);
  }
  [[nodiscard]] std::wstring BatchUndo() { return Ask(L"imageTranslateBatchUndo"); }

  /// Anchors of a scan's result, in its order, with all that they carry.
  [[nodiscard]] std::vector<std::wstring> Anchors();
  /// The anchor of the picture of that name.
  [[nodiscard]] std::wstring AnchorOf(const std::wstring& name);
  /// The shape on Sheet1 of that name, also inside groups; null when there is none.
  [[nodiscard]] std::shared_ptr<Shape> ShapeOf(const std::wstring& name);
  /// What the shape on Sheet1 shows.
  [[nodiscard]] PictureData Shown(const std::wstring& name);

  std::shared_ptr<Shape> AddPicture(const std::wstring& name, int width, int height, int seed = 0) {
    return engine.AddPicture(L"Sheet1", name, Pattern(width, height, seed));
  }

  std::optional<ImageTranslation> images;

 private:
  std::vector<std::wstring> filesBefore_;
};

}  // namespace qv::test
