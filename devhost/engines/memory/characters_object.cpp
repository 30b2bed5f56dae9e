#include "engines/memory/characters_object.h"

#include <algorithm>

#include "engines/memory/font_object.h"
#include "engines/memory/host_events.h"
#include "engines/memory/range_object.h"
#include "engines/memory/worksheet_object.h"

namespace qv::devhost::memory {

CharactersObject::CharactersObject(std::shared_ptr<Host> host, std::shared_ptr<Sheet> sheet,
                                   const std::vector<Area>& areas, long start, long length)
    : DispatchObject(std::move(host)),
      sheet_(std::move(sheet)),
      areas_(areas),
      start_(start),
      length_(length) {}

const ClassInfo& CharactersObject::Class() const {
  using C = CharactersObject;
  static const ClassInfo info("Characters", {
                                                {L"Text", kGet | kPut, Do<&C::Text>},
                                                {L"Caption", kGet | kPut, Do<&C::Text>},
                                                {L"Count", kGet, Do<&C::Count>},
                                                {L"Font", kGet, Do<&C::Font>},
                                                {L"Parent", kGet, Do<&C::Parent>},
                                                {L"Application", kGet, Do<&C::Application>},
                                            });
  return info;
}

void CharactersObject::RequireAlive() const {
  RequireAliveSheet(*sheet_);
  if (areas_.size() != 1 || areas_.front().Cells() != 1) Refuse();
}

std::wstring CharactersObject::WholeText() const {
  const Cell* cell = sheet_->Find(areas_.front().row1, areas_.front().col1);
  return cell == nullptr ? std::wstring() : DisplayText(cell->value, cell->Style().numberFormat);
}

size_t CharactersObject::Start(const std::wstring& text) const {
  return std::min(static_cast<size_t>(std::max(start_, 1L) - 1), text.size());
}

size_t CharactersObject::Length(const std::wstring& text) const {
  const size_t rest = text.size() - Start(text);
  return length_ < 0 ? rest : std::min(static_cast<size_t>(length_), rest);
}

Variant CharactersObject::Text(Call& call) {
  std::wstring text = WholeText();
  if (!call.IsPut()) return Variant(text.substr(Start(text), Length(text)));
  Host::RequireWritable(*sheet_, areas_);
  text.replace(Start(text), Length(text), ToText(call.Value()));
  if (text.size() > kMaxCellText) Refuse();
  sheet_->SetEntry(areas_.front().row1, areas_.front().col1, Entry{text, L"", false, L""});
  FireRangeEvent(SharedHost(), AppEvent::kSheetChange, sheet_, areas_);
  return {};
}

Variant CharactersObject::Count(Call&) {
  return Variant(static_cast<long>(Length(WholeText())));
}

Variant CharactersObject::Font(Call&) {
  const std::wstring text = WholeText();
  return Make<FontObject>(SharedHost(),
                          std::make_unique<TextPartFont>(sheet_, areas_.front().row1, areas_.front().col1,
                                                         Start(text), Length(text)));
}

Variant CharactersObject::Parent(Call&) {
  return Make<RangeObject>(SharedHost(), sheet_, areas_);
}

}  // namespace qv::devhost::memory
