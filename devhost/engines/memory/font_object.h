#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "engines/memory/dispatch_object.h"

namespace qv::devhost::memory {

/// What a Font object reads and changes.
class FontTarget {
 public:
  FontTarget() = default;
  FontTarget(const FontTarget&) = delete;
  FontTarget& operator=(const FontTarget&) = delete;
  virtual ~FontTarget() = default;

  /// Throws when it has gone.
  virtual void RequireAlive() const = 0;
  /// Nothing where the target's parts differ.
  [[nodiscard]] virtual std::optional<StyleValue> Read(const StyleProperty<FontStyle>& property) const = 0;
  /// Throws when the target is protected. The value is known to be acceptable.
  virtual void Write(const StyleProperty<FontStyle>& property, const StyleValue& value) = 0;
};

/// The fonts of all cells of a range, parts of their texts included.
class RangeFont final : public FontTarget {
 public:
  RangeFont(std::shared_ptr<Sheet> sheet, std::vector<Area> areas)
      : sheet_(std::move(sheet)), areas_(std::move(areas)) {}
  void RequireAlive() const override;
  [[nodiscard]] std::optional<StyleValue> Read(const StyleProperty<FontStyle>& property) const override;
  void Write(const StyleProperty<FontStyle>& property, const StyleValue& value) override;

 private:
  std::shared_ptr<Sheet> sheet_;
  std::vector<Area> areas_;
};

/// The font of part of a cell's text: `length` units from 0-based `start`.
class TextPartFont final : public FontTarget {
 public:
  TextPartFont(std::shared_ptr<Sheet> sheet, long row, long col, size_t start, size_t length)
      : sheet_(std::move(sheet)), row_(row), col_(col), start_(start), length_(length) {}
  void RequireAlive() const override;
  [[nodiscard]] std::optional<StyleValue> Read(const StyleProperty<FontStyle>& property) const override;
  void Write(const StyleProperty<FontStyle>& property, const StyleValue& value) override;

 private:
  std::shared_ptr<Sheet> sheet_;
  long row_;
  long col_;
  size_t start_;
  size_t length_;
};

class ChartTitleFont final : public FontTarget {
 public:
  explicit ChartTitleFont(std::shared_ptr<Chart> chart) : chart_(std::move(chart)) {}
  void RequireAlive() const override;
  [[nodiscard]] std::optional<StyleValue> Read(const StyleProperty<FontStyle>& property) const override;
  void Write(const StyleProperty<FontStyle>& property, const StyleValue& value) override;

 private:
  std::shared_ptr<Chart> chart_;
};

class FontObject final : public DispatchObject {
 public:
  FontObject(std::shared_ptr<Host> host, std::unique_ptr<FontTarget> target)
      : DispatchObject(std::move(host)), target_(std::move(target)) {}

  [[nodiscard]] const ClassInfo& Class() const override;
  void RequireAlive() const override { target_->RequireAlive(); }

  template <const StyleProperty<FontStyle>& Property>
  Variant Access(Call& call) {
    return AccessProperty(Property, call);
  }
  Variant Application(Call&) { return ApplicationOf(*this); }

 private:
  [[nodiscard]] Variant AccessProperty(const StyleProperty<FontStyle>& property, Call& call);

  std::unique_ptr<FontTarget> target_;
};

/// The runs of a text as they are or, for a text in one font, one run of that font.
[[nodiscard]] std::vector<FontRun> RunsOf(const Cell& cell);

/// Runs with `change(FontStyle&)` applied to `length` units from 0-based `start` of a text of `textLength`
/// units; neighbours that come out alike are joined.
template <typename Change>
[[nodiscard]] std::vector<FontRun> ChangeRuns(const std::vector<FontRun>& runs, size_t start, size_t length,
                                              size_t textLength, Change&& change) {
  const size_t end = std::min(start + length, textLength);
  std::vector<FontRun> changed;
  const auto add = [&](size_t from, const FontStyle& font) {
    if (changed.empty() || changed.back().font != font) changed.push_back({from, font});
  };
  for (size_t i = 0; i < runs.size(); ++i) {
    const size_t runStart = runs[i].start;
    const size_t runEnd = i + 1 < runs.size() ? runs[i + 1].start : textLength;
    const size_t innerStart = std::max(start, runStart);
    const size_t innerEnd = std::min(end, runEnd);
    if (innerStart >= innerEnd) {
      add(runStart, runs[i].font);
      continue;
    }
    if (runStart < innerStart) add(runStart, runs[i].font);
    FontStyle inner = runs[i].font;
    change(inner);
    add(innerStart, inner);
    if (innerEnd < runEnd) add(innerEnd, runs[i].font);
  }
  return changed;
}

}  // namespace qv::devhost::memory
