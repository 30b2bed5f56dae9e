#include "host/ribbon.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

#include "foundation/text.h"

namespace qv::test {
namespace {

using namespace devhost;

std::wstring Document(const std::wstring& tabs, const std::wstring& attributes = L"") {
  return L"<customUI xmlns=\"http://schemas.microsoft.com/office/2006/01/customui\"" + attributes +
         L"><ribbon><tabs>" + tabs + L"</tabs></ribbon></customUI>";
}

std::string Refusal(const std::wstring& xml) {
  try {
    static_cast<void>(ReadRibbon(xml));
    return "";
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
}

TEST(RibbonXml, BecomesTabsGroupsAndButtonsInTheirOrder) {
  const auto description =
      ReadRibbon(L"<?xml version=\"1.0\"?><!-- comment -->" +
                 Document(L"<tab id='t' label='A &amp; B'><group id='g' getLabel='L'>"
                          L"<button id='b1' tag='x' size='large' getImage='I' onAction='A' screentip='tip'/>"
                          L"<button id='b2' getVisible='V'/></group><group id='h'/></tab>",
                          L" onLoad='Loaded'"));
  EXPECT_EQ(description.onLoad, L"Loaded");
  ASSERT_EQ(description.tabs.size(), 1u);
  const RibbonItem& tab = description.tabs.front();
  EXPECT_EQ(tab.label.fixed, L"A & B");
  ASSERT_EQ(tab.children.size(), 2u);
  EXPECT_EQ(tab.children[1].id, L"h");
  const RibbonItem& group = tab.children[0];
  EXPECT_EQ(group.label.callback, L"L");
  ASSERT_EQ(group.children.size(), 2u);
  const RibbonItem& button = group.children[0];
  EXPECT_EQ(button.tag, L"x");
  EXPECT_TRUE(button.isLarge);
  EXPECT_EQ(button.getImage, L"I");
  EXPECT_EQ(button.onAction, L"A");
  EXPECT_EQ(button.screentip.fixed, L"tip");
  EXPECT_FALSE(group.children[1].isLarge);
}

TEST(RibbonXml, IsRefusedWholeForOneThingThatDoesNotBelong) {
  const struct {
    std::wstring tabs;
    const char* reason;
  } cases[] = {
      // Attributes of other elements.
      {L"<tab id='t' getImage='I'/>", "<tab> t may not have \"getImage\""},
      {L"<tab id='t' screentip='s'/>", "<tab> t may not have \"screentip\""},
      {L"<tab id='t'><group id='g' size='large'/></tab>", "<group> g may not have \"size\""},
      {L"<tab id='t'><group id='g' onAction='x'/></tab>", "<group> g may not have \"onAction\""},
      {L"<tab id='t'><group id='g'><button id='b' Label='x'/></group></tab>",
       "<button> b may not have \"Label\""},
      // Values and pairs.
      {L"<tab id='t'><group id='g'><button id='b' size='huge'/></group></tab>",
       "<button> b has a \"size\" that is neither large nor normal"},
      {L"<tab id='t' label='x' getLabel='y'/>", "<tab> t may not have both \"label\" and \"getLabel\""},
      {L"<tab id='t' label='x' label='y'/>", "<tab> t has \"label\" twice"},
      // Identifiers.
      {L"<tab label='x'/>", "<tab> needs exactly one of \"id\", \"idMso\" and \"idQ\""},
      {L"<tab id='a' idQ='b'/>", "<tab> a needs exactly one of \"id\", \"idMso\" and \"idQ\""},
      {L"<tab id='a'/><tab id='a'/>", "the id \"a\" is there twice"},
      // Places.
      {L"<group id='g'/>", "<group> g may not stand in <tabs>"},
      {L"<tab id='t'><group id='g'><menu id='m'/></group></tab>",
       "<menu> m is not an element that this host shows"},
      {L"<tab id='t'>text</tab>", "text inside <tab> t"},
  };
  for (const auto& entry : cases)
    EXPECT_EQ(Refusal(Document(entry.tabs)), entry.reason);
  EXPECT_EQ(Refusal(L"<customUI xmlns='urn:other'/>"),
            "<customUI> is not of the namespace of 2006/01 or 2009/07");
  EXPECT_EQ(Refusal(L""), "there is not exactly one root element");
  EXPECT_TRUE(Refusal(L"<customUI><ribbon></customUI>").starts_with("not well-formed at character 28: "));
}

/// An add-in that answers by a table and counts how often it was asked.
class FakeAddin final : public HostDispatch<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) noexcept override {
    const std::wstring name = names[0];
    for (std::size_t i = 0; i < std::size(kCallbacks); ++i) {
      if (name == kCallbacks[i]) return ids[0] = static_cast<DISPID>(i), S_OK;
    }
    return DISP_E_UNKNOWNNAME;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result,
                                   EXCEPINFO*, UINT*) noexcept override {
    const std::wstring name = kCallbacks[id];
    const auto argument = Variant(arguments->rgvarg[arguments->cArgs - 1]).Object();
    if (name == L"Load") return argument.As(&ui);
    ComPtr<IRibbonControl> control;
    if (FAILED(argument.As(&control))) return E_INVALIDARG;
    Bstr item, tag;
    control->get_Id(item.Put());
    control->get_Tag(tag.Put());
    control->get_Context(context.ReleaseAndGetAddressOf());
    const std::wstring about = Concat(name, L" ", item.View(), L" ", tag.View());
    ++asked[about];
    if (name == L"Fail") return E_FAIL;
    if (name == L"Label") *result = Variant(language + std::wstring(item.View())).Detach();
    if (name == L"Number") *result = Variant(5).Detach();
    return S_OK;
  }

  static constexpr const wchar_t* kCallbacks[] = {L"Load", L"Label", L"Press", L"Fail", L"Number"};
  ComPtr<IRibbonUI> ui;
  ComPtr<IDispatch> context;
  std::map<std::wstring, int> asked;
  std::wstring language = L"en ";
};

constexpr wchar_t kFakeTabs[] =
    L"<tab id='t' getLabel='Label'><group id='g' getLabel='Label'>"
    L"<button id='b' tag='B' getLabel='Label' getScreentip='Number' getImage='Number' onAction='Press'/>"
    L"<button id='c' getLabel='Fail' onAction='Nowhere'/></group></tab>";

TEST(Ribbon, KeepsWhatTheAddinSaidUntilItInvalidatesIt) {
  const auto addin = MakeCom<FakeAddin>();
  CallLog log;
  Ribbon ribbon(addin, Document(kFakeTabs, L" onLoad='Load'"), log);
  ASSERT_TRUE(addin->ui);
  int changes = 0;
  ribbon.OnChanged([&] { ++changes; });
  const RibbonItem& button = *ribbon.Find(L"b");
  const RibbonItem& tab = *ribbon.Find(L"t");
  EXPECT_EQ(ribbon.Label(button), L"en b");
  addin->language = L"es ";
  EXPECT_EQ(ribbon.Label(button), L"en b");
  EXPECT_EQ(addin->asked[L"Label b B"], 1);
  EXPECT_EQ(ribbon.Label(tab), L"es t");

  addin->language = L"de ";
  EXPECT_HRESULT_SUCCEEDED(addin->ui->InvalidateControl(Bstr(L"b").Get()));
  EXPECT_EQ(ribbon.Label(button), L"de b");
  EXPECT_EQ(ribbon.Label(tab), L"es t");
  EXPECT_HRESULT_SUCCEEDED(addin->ui->Invalidate());
  EXPECT_EQ(ribbon.Label(tab), L"de t");
  EXPECT_EQ(changes, 2);
}

TEST(Ribbon, PressesWithTheControlAndItsWindow) {
  const auto addin = MakeCom<FakeAddin>();
  const auto window = MakeCom<FakeAddin>();
  CallLog log;
  Ribbon ribbon(addin, Document(kFakeTabs), log);
  ribbon.Press(*ribbon.Find(L"b"), window);
  EXPECT_EQ(addin->asked[L"Press b B"], 1);
  EXPECT_EQ(addin->context.Get(), static_cast<IDispatch*>(window.Get()));
  EXPECT_EQ(ribbon.Find(L"nobody"), nullptr);
}

TEST(Ribbon, GoesOnWithoutWhatACallbackRefuses) {
  const auto addin = MakeCom<FakeAddin>();
  CallLog log;
  Ribbon ribbon(addin, Document(kFakeTabs), log);
  EXPECT_EQ(ribbon.Label(*ribbon.Find(L"c")), L"");
  EXPECT_EQ(ribbon.Screentip(*ribbon.Find(L"b")), L"");
  EXPECT_EQ(ribbon.Image(*ribbon.Find(L"b")), nullptr);
  ribbon.Press(*ribbon.Find(L"c"), nullptr);
  const std::vector<std::string> expected = {"Fail of c: 0x80004005", "Number of b: the answer is no text",
                                             "Number of b: the answer is no picture",
                                             "Nowhere of c: 0x80020006"};
  EXPECT_EQ(ribbon.Errors(), expected);
}

TEST(Ribbon, IsEmptyWhenItsXmlIsRefusedAndCutsOffItsObjectAtItsEnd) {
  const auto addin = MakeCom<FakeAddin>();
  CallLog log;
  {
    const Ribbon refused(addin, Document(L"<tab id='t' size='large'/>", L" onLoad='Load'"), log);
    EXPECT_EQ(refused.Refusal(), "<tab> t may not have \"size\"");
    EXPECT_TRUE(refused.Description().tabs.empty());
    EXPECT_FALSE(addin->ui);
  }
  { const Ribbon ribbon(addin, Document(kFakeTabs, L" onLoad='Load'"), log); }
  ASSERT_TRUE(addin->ui);
  EXPECT_HRESULT_FAILED(addin->ui->Invalidate());
}

}  // namespace
}  // namespace qv::test
