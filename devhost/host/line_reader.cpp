#include "host/line_reader.h"

#include <deque>
#include <mutex>
#include <string_view>
#include <thread>

#include "host/protocol.h"

namespace qv::devhost {

struct LineReader::Shared {
  std::mutex mutex;
  std::deque<InputLine> lines;

  void Push(InputLine line) {
    const std::scoped_lock lock(mutex);
    lines.push_back(std::move(line));
  }
};

namespace {

/// Cuts a byte stream into lines; what exceeds the limit is dropped up to the line's end.
template <typename Push>
class LineSplitter {
 public:
  explicit LineSplitter(Push push) : push_(std::move(push)) {}

  void Add(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto end = bytes.find('\n');
      Append(bytes.substr(0, end));
      if (end == std::string_view::npos) return;
      Finish();
      bytes.remove_prefix(end + 1);
    }
  }

  void End() {
    if (!line_.empty() || tooLong_) Finish();
  }

 private:
  void Append(std::string_view part) {
    if (line_.size() + part.size() > kMaximumLineBytes) {
      tooLong_ = true;
      line_.clear();
    }
    if (!tooLong_) line_ += part;
  }

  void Finish() {
    if (line_.ends_with('\r')) line_.pop_back();
    push_(tooLong_ ? InputLine{InputLine::Kind::kTooLong, {}} : InputLine{InputLine::Kind::kText, line_});
    line_.clear();
    tooLong_ = false;
  }

  Push push_;
  std::string line_;
  bool tooLong_ = false;
};

template <typename Push>
void ReadLines(HANDLE input, Push push) {
  LineSplitter splitter(push);
  std::string buffer(65536, '\0');
  DWORD read = 0;
  while (ReadFile(input, buffer.data(), static_cast<DWORD>(buffer.size()), &read, nullptr) && read != 0) {
    splitter.Add(std::string_view(buffer).substr(0, read));
  }
  splitter.End();
  push(InputLine{InputLine::Kind::kEnd, {}});
}

}  // namespace

LineReader::LineReader(HANDLE input, std::function<void()> onLine) : shared_(std::make_shared<Shared>()) {
  std::thread([shared = shared_, input, onLine = std::move(onLine)]() noexcept {
    ReadLines(input, [&](InputLine line) {
      shared->Push(std::move(line));
      onLine();
    });
  }).detach();
}

std::optional<InputLine> LineReader::Take() {
  const std::scoped_lock lock(shared_->mutex);
  if (shared_->lines.empty()) return std::nullopt;
  InputLine line = std::move(shared_->lines.front());
  shared_->lines.pop_front();
  return line;
}

}  // namespace qv::devhost
