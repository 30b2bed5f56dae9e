#pragma once

#include <windows.h>

#include <utility>

namespace qv {

/// Owner of one Windows handle. `Traits` names the handle's type, the value that means "none" and how to
/// close it.
template <typename Traits>
class UniqueHandle {
 public:
  using Type = typename Traits::Type;

  UniqueHandle() = default;
  explicit UniqueHandle(Type handle) : handle_(handle) {}
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, Traits::None())) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~UniqueHandle() { Reset(); }

  [[nodiscard]] Type Get() const { return handle_; }
  [[nodiscard]] explicit operator bool() const { return handle_ != Traits::None(); }
  /// For an out parameter; closes what is held.
  [[nodiscard]] Type* Put() {
    Reset();
    return &handle_;
  }
  [[nodiscard]] Type Detach() { return std::exchange(handle_, Traits::None()); }
  void Reset(Type handle = Traits::None()) {
    if (handle_ != Traits::None()) Traits::Close(handle_);
    handle_ = handle;
  }

 private:
  Type handle_ = Traits::None();
};

/// What CreateFile gives: INVALID_HANDLE_VALUE means none.
struct FileTraits {
  using Type = HANDLE;
  static Type None() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { CloseHandle(handle); }
};

/// Events, threads, processes, tokens: null means none.
struct KernelTraits {
  using Type = HANDLE;
  static Type None() { return nullptr; }
  static void Close(Type handle) { CloseHandle(handle); }
};

struct FindTraits {
  using Type = HANDLE;
  static Type None() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { FindClose(handle); }
};

struct RegistryTraits {
  using Type = HKEY;
  static Type None() { return nullptr; }
  static void Close(Type handle) { RegCloseKey(handle); }
};

struct ModuleTraits {
  using Type = HMODULE;
  static Type None() { return nullptr; }
  static void Close(Type handle) { FreeLibrary(handle); }
};

using UniqueFile = UniqueHandle<FileTraits>;
using UniqueKernelHandle = UniqueHandle<KernelTraits>;
using UniqueFind = UniqueHandle<FindTraits>;
using UniqueRegistryKey = UniqueHandle<RegistryTraits>;
using UniqueModule = UniqueHandle<ModuleTraits>;

}  // namespace qv
