#include <gtest/gtest.h>
#include <ole2.h>

#include <algorithm>
#include <memory>

#include "engines/memory/memory_engine.h"
#include "host/development_host.h"
#include "host/late_bound.h"
#include "host/settings_file.h"
#include "host/windows_path.h"

namespace qv::test {
namespace {

using namespace devhost;

/// The real add-in in a development host with one workbook; everything must be gone at the end.
class TaskPaneTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
    WriteServiceAddress(kNoService);
    engine_.AddWorkbook(L"Book1.xlsx");
    host_ = std::make_unique<DevelopmentHost>(ProgramFolder() + L"\\QuorvantisExcel.dll", engine_, log_);
    factory_ = MakeCom<TaskPaneFactory>(host_->Panes(), engine_.Application());
  }

  void TearDown() override {
    pane_.Reset();
    factory_.Reset();
    if (host_) {
      EXPECT_TRUE(host_->End().Clean());
    }
    host_.reset();
    OleUninitialize();
  }

  [[nodiscard]] HRESULT Create(const wchar_t* progId) {
    const Bstr id(progId);
    const Bstr title(L"Title");
    return factory_->CreateCTP(id.Get(), title.Get(), Variant::Missing().Get(),
                               pane_.ReleaseAndGetAddressOf());
  }

  MemoryEngine engine_;
  CallLog log_;
  std::unique_ptr<DevelopmentHost> host_;
  ComPtr<TaskPaneFactory> factory_;
  ComPtr<_CustomTaskPane> pane_;
};

TEST_F(TaskPaneTest, StartsHiddenInTheActiveWindowWithTheControlInside) {
  ASSERT_HRESULT_SUCCEEDED(Create(L"Quorvantis.ExcelPane"));
  VARIANT_BOOL visible = VARIANT_TRUE;
  ASSERT_HRESULT_SUCCEEDED(pane_->get_Visible(&visible));
  EXPECT_EQ(visible, VARIANT_FALSE);
  ASSERT_HRESULT_SUCCEEDED(pane_->put_Visible(VARIANT_TRUE));
  ASSERT_HRESULT_SUCCEEDED(pane_->get_Visible(&visible));
  EXPECT_EQ(visible, VARIANT_TRUE);
  Bstr title;
  ASSERT_HRESULT_SUCCEEDED(pane_->get_Title(title.Put()));
  EXPECT_EQ(title.View(), L"Title");
  EXPECT_TRUE(GetObjectProperty(pane_.Get(), L"contentcontrol"));
  EXPECT_TRUE(GetObjectProperty(pane_.Get(), L"Window"));
  EXPECT_TRUE(GetObjectProperty(pane_.Get(), L"Application"));
}

TEST_F(TaskPaneTest, WidthIsInPointsAndFixedWhileDockedAtTheTop) {
  ASSERT_HRESULT_SUCCEEDED(Create(L"Quorvantis.ExcelPane"));
  int width = 0;
  ASSERT_HRESULT_SUCCEEDED(pane_->put_Width(300));
  ASSERT_HRESULT_SUCCEEDED(pane_->get_Width(&width));
  EXPECT_EQ(width, 300);
  EXPECT_EQ(host_->Panes().OpenPanes().front().frame->ContentSize().cx, 400);
  ASSERT_HRESULT_SUCCEEDED(pane_->put_DockPosition(msoCTPDockPositionTop));
  EXPECT_HRESULT_FAILED(pane_->put_Width(200));
  ASSERT_HRESULT_SUCCEEDED(pane_->get_Width(&width));
  EXPECT_EQ(width, 0);
}

/// Notes each event and whether the pane's width could be set during it. Lives on the test's stack.
class PaneSink final : public _CustomTaskPaneEvents {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, __uuidof(_CustomTaskPaneEvents));
    *object = known ? this : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    ComPtr<_CustomTaskPane> pane;
    if (params->cArgs == 1 && params->rgvarg[0].vt == VT_DISPATCH)
      params->rgvarg[0].pdispVal->QueryInterface(__uuidof(_CustomTaskPane),
                                                 reinterpret_cast<void**>(pane.GetAddressOf()));
    events.push_back(pane && FAILED(pane->put_Width(222)) ? id : DISPID_UNKNOWN);
    return S_OK;
  }

  std::vector<DISPID> events;
};

TEST_F(TaskPaneTest, TellsOfEveryChangeOfItsStateWhoeverMadeIt) {
  ASSERT_HRESULT_SUCCEEDED(Create(L"Quorvantis.ExcelPane"));
  PaneSink sink;
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  DWORD cookie = 0;
  ASSERT_HRESULT_SUCCEEDED(pane_.As(&container));
  ASSERT_HRESULT_SUCCEEDED(
      container->FindConnectionPoint(__uuidof(_CustomTaskPaneEvents), point.GetAddressOf()));
  ASSERT_HRESULT_SUCCEEDED(point->Advise(&sink, &cookie));
  const auto frame = host_->Panes().OpenPanes().front().frame;
  ASSERT_HRESULT_SUCCEEDED(pane_->put_Visible(VARIANT_TRUE));
  ASSERT_HRESULT_SUCCEEDED(pane_->put_Visible(VARIANT_TRUE));
  frame->SetDock(PaneDock::kLeft);
  ASSERT_HRESULT_SUCCEEDED(pane_->put_DockPosition(msoCTPDockPositionLeft));
  ASSERT_HRESULT_SUCCEEDED(pane_->put_DockPosition(msoCTPDockPositionRight));
  frame->SetVisible(false);
  constexpr DISPID kVisibleStateChange = 1;
  constexpr DISPID kDockPositionStateChange = 2;
  EXPECT_EQ(sink.events, (std::vector<DISPID>{kVisibleStateChange, kDockPositionStateChange,
                                              kDockPositionStateChange, kVisibleStateChange}));
  EXPECT_HRESULT_SUCCEEDED(pane_->put_Width(222));
  EXPECT_HRESULT_SUCCEEDED(point->Unadvise(cookie));
  frame->SetVisible(true);
  EXPECT_EQ(sink.events.size(), 4u);
}

TEST_F(TaskPaneTest, DeletedPaneFailsAndAnUnknownControlGivesNone) {
  ASSERT_HRESULT_SUCCEEDED(Create(L"Quorvantis.ExcelPane"));
  ASSERT_HRESULT_SUCCEEDED(pane_->Delete());
  EXPECT_TRUE(host_->Panes().OpenPanes().empty());
  VARIANT_BOOL visible = VARIANT_FALSE;
  int width = 0;
  EXPECT_HRESULT_FAILED(pane_->get_Visible(&visible));
  EXPECT_HRESULT_FAILED(pane_->get_Width(&width));

  EXPECT_EQ(Create(L"Nobody.Nothing"), E_FAIL);
  EXPECT_EQ(pane_.Get(), nullptr);
  factory_->Detach();
  EXPECT_EQ(Create(L"Quorvantis.ExcelPane"), E_FAIL);
}

TEST_F(TaskPaneTest, ControlIsActivatedAndClosedInTheOrderThatOfficeKeeps) {
  const std::size_t begin = log_.Lines().size();
  const auto pane = host_->OpenPane();
  pane.frame->Close();
  const char* const expected[] = {
      "GetMiscStatus",
      "SetClientSite",
      "control: CanInPlaceActivate",
      "control: OnInPlaceActivate",
      "control: GetWindowContext",
      "DoVerb",
      "SetObjectRects",
      "UIDeactivate",
      "InPlaceDeactivate",
      "Close",
      "SetClientSite null",
  };
  auto next = log_.Lines().begin() + static_cast<std::ptrdiff_t>(begin);
  for (const char* call : expected) {
    next = std::find_if(next, log_.Lines().end(),
                        [call](const std::string& line) { return line.starts_with(call); });
    ASSERT_NE(next, log_.Lines().end()) << call;
    EXPECT_TRUE(next->ends_with("-> 0x00000000")) << *next;
    ++next;
  }
}

TEST_F(TaskPaneTest, ReferenceThatSomebodyKeepsIsReported) {
  const auto pane = host_->OpenPane();
  auto kept = pane.frame->Container().Control();
  pane.frame->Close();
  EXPECT_EQ(pane.frame->Leaks().control, 1u);
  EXPECT_EQ(pane.frame->Leaks().site, 0u);
  kept.Reset();
  // The count above is what the end reports; the pane itself is gone by now.
  EXPECT_FALSE(host_->End().Clean());
  EXPECT_EQ(host_->End().paneReferences, 1u);
  factory_.Reset();
  host_.reset();
}

}  // namespace
}  // namespace qv::test
