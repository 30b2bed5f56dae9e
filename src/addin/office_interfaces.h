#pragma once

#include <oaidl.h>
#include <windows.h>

#include "foundation/com_object.h"

// The add-in, ribbon and task-pane interfaces of Office, declared by hand because they live in type libraries
// that a build machine does not have. All are dual: slots 0-6 are IDispatch, the members follow in
// declaration order, which is the binary contract. WPS uses the same identifiers and order. Everything is
// called on the host's UI thread.

/// Why an add-in is connected.
enum ext_ConnectMode : int {
  ext_cm_AfterStartup = 0,
  ext_cm_Startup = 1,
  ext_cm_External = 2,
  ext_cm_CommandLine = 3,
};

/// Why an add-in is disconnected.
enum ext_DisconnectMode : int {
  ext_dm_HostShutdown = 0,
  ext_dm_UserClosed = 1,
};

enum MsoCTPDockPosition : int {
  msoCTPDockPositionLeft = 0,
  msoCTPDockPositionTop = 1,
  msoCTPDockPositionRight = 2,
  msoCTPDockPositionBottom = 3,
  msoCTPDockPositionFloating = 4,
};

enum MsoCTPDockPositionRestrict : int {
  msoCTPDockPositionRestrictNone = 0,
  msoCTPDockPositionRestrictNoChange = 1,
  msoCTPDockPositionRestrictNoHorizontal = 2,
  msoCTPDockPositionRestrictNoVertical = 3,
};

/// Life cycle of an add-in (also known as `_IDTExtensibility2`). `custom` is a by-reference array of VARIANT
/// that may be null or point to null: look before reading it.
struct IDTExtensibility2 : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* application, ext_ConnectMode connectMode,
                                                 IDispatch* addInInst, SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnDisconnection(ext_DisconnectMode removeMode, SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) = 0;
};

/// Gives the host the ribbon's XML. The host asks this very pointer for IDispatch and sends ribbon callbacks
/// there.
struct IRibbonExtensibility : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE GetCustomUI(BSTR ribbonId, BSTR* ribbonXml) = 0;
};

/// The control that a ribbon callback is about; `get_Context` is the document window it sits in.
struct IRibbonControl : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Id(BSTR* id) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Context(IDispatch** context) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Tag(BSTR* tag) = 0;
};

/// Handed to the ribbon's onLoad callback. The members after `InvalidateControl` exist since Office 2010.
struct IRibbonUI : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE Invalidate() = 0;
  virtual HRESULT STDMETHODCALLTYPE InvalidateControl(BSTR controlId) = 0;
  virtual HRESULT STDMETHODCALLTYPE InvalidateControlMso(BSTR controlId) = 0;
  virtual HRESULT STDMETHODCALLTYPE ActivateTab(BSTR controlId) = 0;
  virtual HRESULT STDMETHODCALLTYPE ActivateTabMso(BSTR controlId) = 0;
  virtual HRESULT STDMETHODCALLTYPE ActivateTabQ(BSTR controlId, BSTR namespaceUri) = 0;
};

/// One task pane. Width and height are points; `put_Width` fails while the pane is docked at the top or
/// bottom and inside the pane's own events. `get_ContentControl` is the control's IDispatch, in-process the
/// control itself.
struct _CustomTaskPane : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Title(BSTR* title) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Application(IDispatch** application) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Window(IDispatch** window) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Visible(VARIANT_BOOL* visible) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Visible(VARIANT_BOOL visible) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ContentControl(IDispatch** control) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Height(int* height) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Height(int height) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Width(int* width) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Width(int width) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DockPosition(MsoCTPDockPosition* position) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_DockPosition(MsoCTPDockPosition position) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DockPositionRestrict(MsoCTPDockPositionRestrict* restrict) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_DockPositionRestrict(MsoCTPDockPositionRestrict restrict) = 0;
  virtual HRESULT STDMETHODCALLTYPE Delete() = 0;
};

/// Event interface of a task pane, a pure dispinterface: the members come through IDispatch::Invoke with the
/// ids below and the `_CustomTaskPane` as their one argument.
struct _CustomTaskPaneEvents : public IDispatch {};

constexpr DISPID kDispidVisibleStateChange = 1;
constexpr DISPID kDispidDockPositionStateChange = 2;

/// Makes task panes. `axId` is the control's ProgID; `parentWindow` is the document window as VT_DISPATCH, or
/// VT_ERROR with DISP_E_PARAMNOTFOUND for the active one. The new pane is not visible yet.
struct ICTPFactory : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE CreateCTP(BSTR axId, BSTR title, VARIANT parentWindow,
                                              _CustomTaskPane** pane) = 0;
};

/// Receives the task-pane factory, before or after the connection. The factory may be kept for later.
struct ICustomTaskPaneConsumer : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE CTPFactoryAvailable(ICTPFactory* factory) = 0;
};

// Interface identifiers.
__CRT_UUID_DECL(IDTExtensibility2, 0xB65AD801, 0xABAF, 0x11D0, 0xBB, 0x8B, 0x00, 0xA0, 0xC9, 0x0F, 0x27, 0x44)
__CRT_UUID_DECL(IRibbonExtensibility, 0x000C0396, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                0x46)
__CRT_UUID_DECL(IRibbonControl, 0x000C0395, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(IRibbonUI, 0x000C03A7, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(_CustomTaskPane, 0x000C033B, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(_CustomTaskPaneEvents, 0x000C033C, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                0x46)
__CRT_UUID_DECL(ICTPFactory, 0x000C033D, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
__CRT_UUID_DECL(ICustomTaskPaneConsumer, 0x000C033E, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                0x46)

namespace qv {

// Each is asked for as IDispatch too; the first one in an object's list answers.
template <>
struct ComBaseOf<IDTExtensibility2> {
  using Type = IDispatch;
};
template <>
struct ComBaseOf<IRibbonExtensibility> {
  using Type = IDispatch;
};
template <>
struct ComBaseOf<IRibbonControl> {
  using Type = IDispatch;
};
template <>
struct ComBaseOf<IRibbonUI> {
  using Type = IDispatch;
};
template <>
struct ComBaseOf<_CustomTaskPane> {
  using Type = IDispatch;
};
template <>
struct ComBaseOf<_CustomTaskPaneEvents> {
  using Type = IDispatch;
};
template <>
struct ComBaseOf<ICTPFactory> {
  using Type = IDispatch;
};
template <>
struct ComBaseOf<ICustomTaskPaneConsumer> {
  using Type = IDispatch;
};

}  // namespace qv
