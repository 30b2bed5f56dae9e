#pragma once

#include <oaidl.h>
#include <windows.h>

// The part of the UI Automation client that the ribbon search calls, declared by hand because MinGW's own
// header is no C++. Slots follow in declaration order, which is the binary contract; the members behind the
// last one that is called are left out. https://learn.microsoft.com/windows/win32/api/uiautomationclient

struct IUIAutomationElement;
struct IUIAutomationElementArray;
struct IUIAutomationCondition;
struct IUIAutomationCacheRequest;
struct IUIAutomationTreeWalker;

inline constexpr CLSID kClsidUIAutomation = {
    0xFF48DBA4, 0x60EF, 0x4201, {0xAA, 0x87, 0x54, 0x10, 0x3E, 0xEF, 0x59, 0x4E}};

inline constexpr int kUiaTabItemControlType = 50019;
inline constexpr int kUiaInvokePattern = 10000;
inline constexpr int kUiaSelectionItemPattern = 10010;
inline constexpr int kUiaLegacyAccessiblePattern = 10018;

struct IUIAutomation : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE CompareElements(IUIAutomationElement*, IUIAutomationElement*, BOOL*) = 0;
  virtual HRESULT STDMETHODCALLTYPE CompareRuntimeIds(SAFEARRAY*, SAFEARRAY*, BOOL*) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRootElement(IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE ElementFromHandle(HWND window, IUIAutomationElement** element) = 0;
  virtual HRESULT STDMETHODCALLTYPE ElementFromPoint(POINT, IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFocusedElement(IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRootElementBuildCache(IUIAutomationCacheRequest*,
                                                             IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE ElementFromHandleBuildCache(HWND, IUIAutomationCacheRequest*,
                                                                IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE ElementFromPointBuildCache(POINT, IUIAutomationCacheRequest*,
                                                               IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFocusedElementBuildCache(IUIAutomationCacheRequest*,
                                                                IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE CreateTreeWalker(IUIAutomationCondition*, IUIAutomationTreeWalker**) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ControlViewWalker(IUIAutomationTreeWalker** walker) = 0;
};

struct IUIAutomationElement : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE SetFocus() = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRuntimeId(SAFEARRAY**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindFirst(int, IUIAutomationCondition*, IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindAll(int, IUIAutomationCondition*, IUIAutomationElementArray**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindFirstBuildCache(int, IUIAutomationCondition*,
                                                        IUIAutomationCacheRequest*,
                                                        IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindAllBuildCache(int, IUIAutomationCondition*,
                                                      IUIAutomationCacheRequest*,
                                                      IUIAutomationElementArray**) = 0;
  virtual HRESULT STDMETHODCALLTYPE BuildUpdatedCache(IUIAutomationCacheRequest*, IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCurrentPropertyValue(int, VARIANT*) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCurrentPropertyValueEx(int, BOOL, VARIANT*) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCachedPropertyValue(int, VARIANT*) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCachedPropertyValueEx(int, BOOL, VARIANT*) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCurrentPatternAs(int pattern, REFIID iid, void** object) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCachedPatternAs(int, REFIID, void**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCurrentPattern(int, IUnknown**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCachedPattern(int, IUnknown**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCachedParent(IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCachedChildren(IUIAutomationElementArray**) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurrentProcessId(int*) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurrentControlType(int* type) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurrentLocalizedControlType(BSTR*) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_CurrentName(BSTR* name) = 0;
};

struct IUIAutomationTreeWalker : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetParentElement(IUIAutomationElement*, IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetFirstChildElement(IUIAutomationElement* element,
                                                         IUIAutomationElement** child) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetLastChildElement(IUIAutomationElement*, IUIAutomationElement**) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetNextSiblingElement(IUIAutomationElement* element,
                                                          IUIAutomationElement** sibling) = 0;
};

struct IUIAutomationInvokePattern : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Invoke() = 0;
};

struct IUIAutomationSelectionItemPattern : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Select() = 0;
};

struct IUIAutomationLegacyIAccessiblePattern : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Select(long flags) = 0;
  virtual HRESULT STDMETHODCALLTYPE DoDefaultAction() = 0;
};

__CRT_UUID_DECL(IUIAutomation, 0x30CBE57D, 0xD9D0, 0x452A, 0xAB, 0x13, 0x7A, 0xC5, 0xAC, 0x48, 0x25, 0xEE)
__CRT_UUID_DECL(IUIAutomationElement, 0xD22108AA, 0x8AC5, 0x49A5, 0x83, 0x7B, 0x37, 0xBB, 0xB3, 0xD7, 0x59,
                0x1E)
__CRT_UUID_DECL(IUIAutomationTreeWalker, 0x4042C624, 0x389C, 0x4AFC, 0xA6, 0x30, 0x9D, 0xF8, 0x54, 0xA5, 0x41,
                0xFC)
__CRT_UUID_DECL(IUIAutomationInvokePattern, 0xFB377FBE, 0x8EA6, 0x46D5, 0x9C, 0x73, 0x64, 0x99, 0x64, 0x2D,
                0x30, 0x59)
__CRT_UUID_DECL(IUIAutomationSelectionItemPattern, 0xA8EFA66A, 0x0FDA, 0x421A, 0x91, 0x94, 0x38, 0x02, 0x1F,
                0x35, 0x78, 0xEA)
__CRT_UUID_DECL(IUIAutomationLegacyIAccessiblePattern, 0x828055AD, 0x355B, 0x4435, 0x86, 0xD5, 0x3B, 0x51,
                0xC1, 0x4A, 0x9B, 0x1B)
