// The type library embedded in the OCX, read back through oleaut32 exactly as a late-bound client sees it.
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include <exdisp.h>
#include "frontend/type_library_text.h"
#include "framework/bstr.h"
#include "support/ocx.h"

using tov::ComPtr;
using tovfe::Functions;
using tovfe::GuidText;

namespace {

class TypeLibrary : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(S_OK, LoadTypeLibEx(tovtest::OcxPath().c_str(), REGKIND_NONE, lib.Put())); }
    ComPtr<ITypeInfo> Info(UINT index)
    {
        ComPtr<ITypeInfo> ti;
        EXPECT_EQ(S_OK, lib->GetTypeInfo(index, ti.Put()));
        return ti;
    }
    // The vtable view of a dual interface, or the type an implementation entry of a coclass refers to.
    static ComPtr<ITypeInfo> Referred(ITypeInfo* ti, UINT implIndex)
    {
        ComPtr<ITypeInfo> referred;
        HREFTYPE ref = 0;
        EXPECT_EQ(S_OK, ti->GetRefTypeOfImplType(implIndex, &ref));
        EXPECT_EQ(S_OK, ti->GetRefTypeInfo(ref, referred.Put()));
        return referred;
    }
    ComPtr<ITypeInfo> VtableView(UINT index) { return Referred(Info(index).Get(), static_cast<UINT>(-1)); }
    // Name and help string of the library (-1) or of one of its types.
    std::wstring Doc(INT index)
    {
        tov::Bstr name, help;
        lib->GetDocumentation(index, name.Put(), help.Put(), nullptr, nullptr);
        return std::wstring(name.View()) + L" / " + std::wstring(help.View());
    }
    // The members of a type in table order, without the help strings no client binds to.
    static std::vector<std::wstring> Members(ITypeInfo* ti)
    {
        auto lines = Functions(ti);
        for (auto& line : lines) line = line.substr(0, line.find(L" ["));
        return lines;
    }
    ComPtr<ITypeLib> lib;
};

} // namespace

TEST_F(TypeLibrary, LibraryItsFiveTypesInOrderAndTheCoclassEntries)
{
    TLIBATTR* la = nullptr;
    ASSERT_EQ(S_OK, lib->GetLibAttr(&la));
    EXPECT_EQ(GuidText(LIBID_TOVHTMLCONTROLLib), GuidText(la->guid));
    EXPECT_EQ((std::vector<int>{1, 1, SYS_WIN64}), (std::vector<int>{la->wMajorVerNum, la->wMinorVerNum, la->syskind}));
    lib->ReleaseTLibAttr(la);
    EXPECT_EQ(L"TOVHTMLCONTROLLib / TOV HTML Control", Doc(-1));

    // A dual interface is read on its vtable half, where oleaut32 shows every flag.
    constexpr WORD kDual = TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FDISPATCHABLE;
    const struct {
        const wchar_t* doc;
        TYPEKIND kind;
        GUID guid; // the browser's event interfaces carry the platform's event identities
        WORD flags;
    } types[] = {
        {L"_TOVHTMLControlEvents / TOV HTML Control Events", TKIND_DISPATCH, DIID__TOVHTMLControlEvents, TYPEFLAG_FDISPATCHABLE},
        {L"TOVHTMLControl / TOV HTML Control", TKIND_COCLASS, CLSID_TOVHTMLControl, TYPEFLAG_FCANCREATE},
        {L"ITOVHTMLControl / ITOVHTMLControl Interface", TKIND_INTERFACE, IID_ITOVHTMLControl, kDual},
        {L"IWebBrowserEvents / IWebBrowserEvents Interface", TKIND_INTERFACE, DIID_DWebBrowserEvents, kDual},
        {L"IWebBrowserEvents2 / IWebBrowserEvents2 Interface", TKIND_INTERFACE, DIID_DWebBrowserEvents2, kDual},
    };
    ASSERT_EQ(5u, lib->GetTypeInfoCount());
    for (UINT i = 0; i < 5; ++i) {
        SCOPED_TRACE(types[i].doc);
        EXPECT_EQ(types[i].doc, Doc(i));
        const auto ti = types[i].flags & TYPEFLAG_FDUAL ? VtableView(i) : Info(i);
        TYPEATTR* ta = nullptr;
        ASSERT_EQ(S_OK, ti->GetTypeAttr(&ta));
        EXPECT_EQ(types[i].kind, ta->typekind);
        EXPECT_EQ(GuidText(types[i].guid), GuidText(ta->guid));
        EXPECT_EQ(types[i].flags, ta->wTypeFlags);
        ti->ReleaseTypeAttr(ta);
    }

    // The coclass entries: name and implementation flags.
    auto coclass = Info(1);
    std::vector<std::wstring> entries;
    for (UINT i = 0; i < 4; ++i) {
        tov::Bstr name;
        Referred(coclass.Get(), i)->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr);
        INT flags = -1;
        coclass->GetImplTypeFlags(i, &flags);
        entries.push_back(std::wstring(name.View()) + L" " + std::to_wstring(flags));
    }
    EXPECT_EQ((std::vector<std::wstring>{L"ITOVHTMLControl 1", L"IWebBrowserEvents 0", L"IWebBrowserEvents2 0",
                                         L"_TOVHTMLControlEvents 3"}),
              entries) << "1 default, 2 source";
    HREFTYPE ref = 0;
    EXPECT_TRUE(FAILED(coclass->GetRefTypeOfImplType(4, &ref))) << "four entries only";
}

TEST_F(TypeLibrary, AutomationInterfaceMembersInTableOrder)
{
    const std::vector<std::wstring> expected = {
        L"1 GoBack(out retval long* pRetCode)", L"2 GoForward(out retval long* pRetCode)",
        L"3 GoHome(out retval long* pRetCode)", L"4 Stop(out retval long* pRetCode)", L"5 DoRefresh(out retval long* pRetCode)",
        L"6 ShowData(in BSTR pURL, in BSTR pFrame, in long bLocalURL, out retval long* pRetCode)",
        L"7 ShowURL(in BSTR pURL, in BSTR pFrame, out retval long* pRetCode)",
        L"8 ShowURLInBrowser(in BSTR pURL, out retval long* pRetCode)", L"9 InitControl(out retval long* pRetCode)",
        L"10 get URLPrefixLocal(out retval BSTR* pVal)", L"10 put URLPrefixLocal(in BSTR)",
        L"11 get PostData(out retval IDispatch** pVal)", L"11 put PostData(in IDispatch*)",
        L"12 get TargetFrame(out retval BSTR* pVal)", L"12 put TargetFrame(in BSTR)",
        L"13 get Headers(out retval BSTR* pVal)", L"13 put Headers(in BSTR)",
        L"14 get PostDataLength(out retval long* pVal)", L"14 put PostDataLength(in long)",
        L"15 get URLLength(out retval long* pVal)", L"15 put URLLength(in long)",
        L"16 get URLPrefixGlobal(out retval BSTR* pVal)", L"16 put URLPrefixGlobal(in BSTR)",
        L"17 GetCurrentURL(out retval BSTR* pstrURL)", L"18 get BrowserVersion(out retval long* pVal)",
        L"19 putref ScriptText(in IDispatch*)", L"20 ExecuteScript()", L"21 get BrowserHandle(out retval IDispatch** pVal)",
        L"22 get NavigationStyle(out retval BSTR* pVal)", L"22 put NavigationStyle(in BSTR)",
        L"23 get TryUseTOVHTMLP(out retval long* pVal)", L"24 get UIFlag(out retval long* pVal)", L"24 put UIFlag(in long)",
        L"25 TrackContextMenu(IDispatch* pMenu, long nPosX, long nPosY)", L"26 putref ScriptOnBRELCompleted(in IDispatch*)",
        L"27 putref ScriptOnDataSubmitted(in IDispatch*)", L"28 ShowDataInBrowser(in BSTR pURL, out retval long* pRetCode)",
        L"29 ExecuteWB(in long nCmdId, in long nCmdOpt)", L"30 CloseDocument()",
        L"31 get BrowserString(out retval BSTR* pVal)", L"32 get Version(out retval long* pVal)",
        L"33 DoTOVEVENT(in BSTR FrameName, in long PostDataLen, in BSTR pURL1, in BSTR pURL2, in BSTR pURL3, "
        L"in BSTR pURL4, in BSTR pURL5, in BSTR pURL6, in BSTR pURL7, in BSTR pURL8)",
        L"34 DoNavigateComplete(in BSTR strURL)", L"35 DoContextMenuSelected(in BSTR strFCode)",
        L"36 DoContextMenuRequest(in long lPosX, in long lPosY)", L"37 put ScriptRecording(in long)",
        L"38 get PostDataModified(out retval long* pVal)",
        L"39 EnableTOVSSO(in long bEnabled, in BSTR mySSOTicket, in BSTR mySSOServiceUrl)",
        L"40 get DocumentComplete(out retval long* pVal)", L"41 get SimpleBrowse(out retval long* pVal)",
        L"41 put SimpleBrowse(in long)", L"42 ShowURLInDetachedBrowser(in BSTR pURL, in long bURLType, out retval long* pRetCode)",
        L"43 GetCharsetString(out retval BSTR* pstrCharset)", L"44 put EndSessionWithBrowser(in long)",
        L"45 GetHTMLSourceContent(out retval BSTR* str)", L"46 SetHTMLSourceContent(in BSTR* str)",
        L"47 LoadIconFont(in BSTR iconRequest, out retval BSTR* iconInfo)",
        L"48 EnableSecSess(in BSTR mySSOTicket, in BSTR mySSOServiceUrl)", L"49 DropAcceptFiles(in long val)",
    };
    EXPECT_EQ(expected, Members(VtableView(2).Get()));
}

TEST_F(TypeLibrary, OutgoingEventsAndBrowserEventInterfaces)
{
    using Lines = std::vector<std::wstring>;
    EXPECT_EQ((Lines{L"1 BeforeNavigate(in BSTR FrameName, in long PostDataLen, in BSTR pURL1, in BSTR pURL2, in BSTR pURL3, "
                 L"in BSTR pURL4, in BSTR pURL5, in BSTR pURL6, in BSTR pURL7, in BSTR pURL8)",
                 L"2 NavigateComplete(in BSTR strURL)", L"3 ContextMenuSelected(in BSTR strFCode)",
                 L"4 ContextMenuRequest(in long PosX, in long PosY)"}),
                Members(Info(0).Get()));

    EXPECT_EQ((Lines{L"100 BeforeNavigate(in BSTR URL, long Flags, BSTR TargetFrameName, VARIANT* PostData, BSTR Headers, in out VARIANT_BOOL* Cancel)",
                 L"101 NavigateComplete(in BSTR URL)", L"102 StatusTextChange(in BSTR Text)",
                 L"108 ProgressChange(in long Progress, in long ProgressMax)",
                 L"104 DownloadComplete()", L"105 CommandStateChange(in long Command, in VARIANT_BOOL Enable)",
                 L"106 DownloadBegin()", L"107 NewWindow(in BSTR URL, in long Flags, in BSTR TargetFrameName, in VARIANT* PostData, in BSTR Headers, in out VARIANT_BOOL* Processed)",
                 L"113 TitleChange(in BSTR Text)",
                 L"200 FrameBeforeNavigate(in BSTR URL, long Flags, BSTR TargetFrameName, VARIANT* PostData, BSTR Headers, in out VARIANT_BOOL* Cancel)",
                 L"201 FrameNavigateComplete(in BSTR URL)",
                 L"204 FrameNewWindow(in BSTR URL, in long Flags, in BSTR TargetFrameName, in VARIANT* PostData, in BSTR Headers, in out VARIANT_BOOL* Processed)",
                 L"103 Quit(in out VARIANT_BOOL* Cancel)",
                 L"109 WindowMove()", L"110 WindowResize()", L"111 WindowActivate()", L"112 PropertyChange(in BSTR Property)"}),
                Members(VtableView(3).Get()));

    EXPECT_EQ((Lines{L"259 DocumentComplete(in IDispatch* frame, in VARIANT pURL)",
                 L"251 NewWindow2(in out IDispatch** ppDisp, in out VARIANT_BOOL* Cancel)"}),
                Members(VtableView(4).Get()));
}
