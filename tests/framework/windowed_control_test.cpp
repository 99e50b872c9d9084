// The windowed-control base driven by a minimal control and a small site: activation in place creates and
// owns the window, the site hears what a container expects, and view, persistence, quick activation and
// misc status answer as registered.
#include <gtest/gtest.h>
#include <olectl.h>
#include <string>
#include <vector>
#include "framework/com_ptr.h"
#include "framework/object_root.h"
#include "framework/windowed_control.h"

using tov::ComPtr;

namespace {

// {6F3B1C52-1D1E-4C55-9A0B-4E8A0D3C2F11}
constexpr CLSID kTestControlClass = {0x6f3b1c52, 0x1d1e, 0x4c55, {0x9a, 0x0b, 0x4e, 0x8a, 0x0d, 0x3c, 0x2f, 0x11}};
constexpr DWORD kMiscStatus = 131473;

class TestControl final : public tov::ObjectRoot, public tov::WindowedControlBase {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override { return OuterQueryInterface(riid, ppv); }
    STDMETHODIMP_(ULONG) AddRef() override { return OuterAddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return OuterRelease(); }
    void* FindInterface(REFIID riid) noexcept override
    {
        if (IsEqualIID(riid, IID_IUnknown)) return static_cast<IOleObject*>(this);
        return FindControlInterface(riid);
    }
    std::vector<UINT> messages;

protected:
    const CLSID& ControlClassId() const override { return kTestControlClass; }
    DWORD ControlMiscStatus() const override { return kMiscStatus; }
    IUnknown* ControlIdentity() override { return ControllingUnknown(); }
    bool OnMessage(UINT msg, WPARAM, LPARAM, LRESULT& result) override
    {
        messages.push_back(msg);
        if (msg == WM_APP) {
            result = 42;
            return true;
        }
        return false;
    }
};

ComPtr<IOleObject> MakeControl()
{
    ComPtr<IOleObject> ole;
    EXPECT_EQ(S_OK, tov::ObjectRoot::CreateInstance<TestControl>(nullptr, IID_IOleObject, ole.PutVoid()));
    return ole;
}

// A container's site: a client site that can host in place, inside a top-level window of the test.
class Site : public IOleClientSite, public IOleInPlaceSite {
public:
    Site()
    {
        window = CreateWindowExW(0, L"STATIC", L"site", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 500, 400, nullptr,
                                 nullptr, nullptr, nullptr);
    }
    ~Site() { DestroyWindow(window); }

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IOleClientSite))
            *ppv = static_cast<IOleClientSite*>(this);
        else if (IsEqualIID(riid, IID_IOleInPlaceSite) || IsEqualIID(riid, IID_IOleWindow))
            *ppv = static_cast<IOleInPlaceSite*>(this);
        else
            *ppv = nullptr;
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
    STDMETHODIMP_(ULONG) Release() override { return --refs; }

    // IOleClientSite
    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** pp) override { if (pp) *pp = nullptr; return E_NOTIMPL; }
    STDMETHODIMP GetContainer(IOleContainer** pp) override { if (pp) *pp = nullptr; return E_NOINTERFACE; }
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

    // IOleInPlaceSite
    STDMETHODIMP GetWindow(HWND* phwnd) override { calls.push_back("GetWindow"); *phwnd = window; return S_OK; }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { calls.push_back("CanInPlaceActivate"); return canActivate; }
    STDMETHODIMP OnInPlaceActivate() override { calls.push_back("OnInPlaceActivate"); return S_OK; }
    STDMETHODIMP OnUIActivate() override { calls.push_back("OnUIActivate"); return S_OK; }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** doc, LPRECT pos, LPRECT clip,
                                  LPOLEINPLACEFRAMEINFO) override
    {
        calls.push_back("GetWindowContext");
        *frame = nullptr;
        *doc = nullptr;
        *pos = position;
        *clip = position;
        return S_OK;
    }
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { calls.push_back("OnUIDeactivate"); return S_OK; }
    STDMETHODIMP OnInPlaceDeactivate() override { calls.push_back("OnInPlaceDeactivate"); return S_OK; }
    STDMETHODIMP DiscardUndoState() override { return S_OK; }
    STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
    STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; }

    HWND window = nullptr;
    ULONG refs = 1;
    HRESULT canActivate = S_OK;
    RECT position{10, 20, 210, 170};
    std::vector<std::string> calls;
};

// A container's advise sink: counts references and close notifications.
class AdviseSink : public IAdviseSink {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (!ppv) return E_POINTER;
        *ppv = (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IAdviseSink)) ? this : nullptr;
        if (!*ppv) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
    STDMETHODIMP_(ULONG) Release() override { return --refs; }
    STDMETHODIMP_(void) OnDataChange(FORMATETC*, STGMEDIUM*) override {}
    STDMETHODIMP_(void) OnViewChange(DWORD, LONG) override {}
    STDMETHODIMP_(void) OnRename(IMoniker*) override {}
    STDMETHODIMP_(void) OnSave() override {}
    STDMETHODIMP_(void) OnClose() override { ++closes; }
    ULONG refs = 1;
    int closes = 0;
};

RECT RectInParent(HWND child)
{
    RECT rc{};
    GetWindowRect(child, &rc);
    MapWindowPoints(HWND_DESKTOP, GetParent(child), reinterpret_cast<POINT*>(&rc), 2);
    return rc;
}

HWND WindowOf(IOleObject* ole)
{
    ComPtr<IOleInPlaceObject> inplace;
    HWND hwnd = nullptr;
    if (SUCCEEDED(ole->QueryInterface(IID_IOleInPlaceObject, inplace.PutVoid()))) inplace->GetWindow(&hwnd);
    return hwnd;
}

HRESULT ActivateInPlace(IOleObject* ole, Site& site, LONG verb = OLEIVERB_INPLACEACTIVATE)
{
    MSG msg{};
    return ole->DoVerb(verb, &msg, &site, 0, site.window, &site.position);
}

} // namespace

class WindowedControl : public testing::Test {
protected:
    void SetUp() override { locks = tov::Module::LockCount(); }
    void TearDown() override { EXPECT_EQ(locks, tov::Module::LockCount()) << "the control is gone"; }
    LONG locks = 0;
};

TEST_F(WindowedControl, InPlaceActivationCreatesAnOwnedChildWindowWhereTheSiteSays)
{
    Site site;
    ASSERT_TRUE(site.window);
    HWND hwnd = nullptr;
    {
        auto ole = MakeControl();
        ASSERT_EQ(S_OK, ole->SetClientSite(&site));
        EXPECT_EQ(2u, site.refs);
        ComPtr<IOleClientSite> got;
        ASSERT_EQ(S_OK, ole->GetClientSite(got.Put()));
        EXPECT_EQ(static_cast<IOleClientSite*>(&site), got.Get());
        got.Reset();

        EXPECT_EQ(E_FAIL, WindowOf(ole.Get()) ? S_OK : E_FAIL) << "no window before activation";
        ASSERT_EQ(S_OK, ActivateInPlace(ole.Get(), site));
        EXPECT_EQ((std::vector<std::string>{"CanInPlaceActivate", "OnInPlaceActivate", "GetWindow", "GetWindowContext"}), site.calls)
            << "no UI activation for this verb";
        hwnd = WindowOf(ole.Get());
        ASSERT_TRUE(IsWindow(hwnd));
        EXPECT_EQ(site.window, GetParent(hwnd));
        EXPECT_TRUE(GetWindowLongW(hwnd, GWL_STYLE) & WS_CHILD);
        EXPECT_TRUE(GetWindowLongW(hwnd, GWL_STYLE) & WS_VISIBLE) << "shown (its parent here is not)";
        const RECT rc = RectInParent(hwnd);
        EXPECT_EQ(10, rc.left);
        EXPECT_EQ(20, rc.top);
        EXPECT_EQ(210, rc.right);
        EXPECT_EQ(170, rc.bottom);

        // A second activation keeps the window.
        site.calls.clear();
        ASSERT_EQ(S_OK, ActivateInPlace(ole.Get(), site));
        EXPECT_EQ(hwnd, WindowOf(ole.Get()));
        EXPECT_EQ((std::vector<std::string>{"GetWindow", "GetWindowContext"}), site.calls);
        EXPECT_EQ(S_OK, ole->SetClientSite(nullptr));
    }
    EXPECT_FALSE(IsWindow(hwnd)) << "the control's window goes with the control";
    EXPECT_EQ(1u, site.refs) << "every reference on the site was given back";
}

TEST_F(WindowedControl, ActivationNeedsASiteThatAgrees)
{
    Site site;
    auto ole = MakeControl();
    MSG msg{};
    EXPECT_EQ(E_UNEXPECTED, ole->DoVerb(OLEIVERB_INPLACEACTIVATE, &msg, nullptr, 0, site.window, &site.position));
    site.canActivate = S_FALSE;
    EXPECT_EQ(E_FAIL, ActivateInPlace(ole.Get(), site));
    EXPECT_EQ(nullptr, WindowOf(ole.Get()));
    EXPECT_EQ(OLEOBJ_S_INVALIDVERB, ole->DoVerb(7, &msg, &site, 0, site.window, &site.position));
    EXPECT_EQ(E_NOTIMPL, ole->DoVerb(OLEIVERB_OPEN, &msg, &site, 0, site.window, &site.position));
    ole->SetClientSite(nullptr);
    ole.Reset();
    EXPECT_EQ(1u, site.refs);
}

TEST_F(WindowedControl, ObjectRectsMoveAndClipTheWindow)
{
    Site site;
    auto ole = MakeControl();
    ole->SetClientSite(&site);
    ASSERT_EQ(S_OK, ActivateInPlace(ole.Get(), site));
    ComPtr<IOleInPlaceObject> inplace;
    ASSERT_EQ(S_OK, ole->QueryInterface(IID_IOleInPlaceObject, inplace.PutVoid()));
    HWND hwnd = WindowOf(ole.Get());

    const RECT pos{30, 40, 130, 90};
    ASSERT_EQ(S_OK, inplace->SetObjectRects(&pos, &pos));
    const RECT rc = RectInParent(hwnd);
    EXPECT_EQ(30, rc.left);
    EXPECT_EQ(40, rc.top);
    EXPECT_EQ(130, rc.right);
    EXPECT_EQ(90, rc.bottom);
    HRGN region = CreateRectRgn(0, 0, 0, 0);
    EXPECT_EQ(ERROR, GetWindowRgn(hwnd, region)) << "no region while nothing is clipped";

    const RECT clip{30, 40, 80, 90};
    ASSERT_EQ(S_OK, inplace->SetObjectRects(&pos, &clip));
    EXPECT_EQ(SIMPLEREGION, GetWindowRgn(hwnd, region));
    RECT box{};
    GetRgnBox(region, &box);
    EXPECT_EQ(0, box.left);
    EXPECT_EQ(50, box.right) << "the visible part in window coordinates";
    ASSERT_EQ(S_OK, inplace->SetObjectRects(&pos, nullptr));
    EXPECT_EQ(ERROR, GetWindowRgn(hwnd, region));
    DeleteObject(region);
    EXPECT_EQ(E_POINTER, inplace->SetObjectRects(nullptr, nullptr));

    EXPECT_EQ(42, SendMessageW(hwnd, WM_APP, 0, 0)) << "messages reach the control";
    auto* control = static_cast<TestControl*>(ole.Get());
    EXPECT_NE(0u, control->messages.size());

    site.calls.clear();
    EXPECT_EQ(S_OK, inplace->InPlaceDeactivate());
    EXPECT_FALSE(IsWindow(hwnd));
    EXPECT_EQ(std::vector<std::string>{"OnInPlaceDeactivate"}, site.calls);
    EXPECT_EQ(S_OK, inplace->InPlaceDeactivate()) << "twice is harmless";
    EXPECT_EQ(1u, site.calls.size());
    inplace.Reset();
    ole->SetClientSite(nullptr);
}

TEST_F(WindowedControl, UIActivationAndCloseTellTheSite)
{
    Site site;
    AdviseSink sink;
    auto ole = MakeControl();
    ole->SetClientSite(&site);
    DWORD connection = 0;
    ASSERT_EQ(S_OK, ole->Advise(&sink, &connection));
    ASSERT_EQ(S_OK, ActivateInPlace(ole.Get(), site, OLEIVERB_UIACTIVATE));
    EXPECT_EQ("OnUIActivate", site.calls.back());
    HWND hwnd = WindowOf(ole.Get());
    site.calls.clear();
    EXPECT_EQ(S_OK, ole->Close(OLECLOSE_NOSAVE));
    EXPECT_EQ((std::vector<std::string>{"OnUIDeactivate", "OnInPlaceDeactivate"}), site.calls);
    EXPECT_FALSE(IsWindow(hwnd));
    EXPECT_EQ(1, sink.closes) << "the container's advise sink hears of the close";
    EXPECT_EQ(S_OK, ole->Unadvise(connection));
    EXPECT_EQ(OLE_E_NOCONNECTION, ole->Unadvise(connection));
    ole->SetClientSite(nullptr);
    ole.Reset();
    EXPECT_EQ(1u, site.refs);
    EXPECT_EQ(1u, sink.refs);
}

TEST_F(WindowedControl, MiscStatusClassAndExtent)
{
    auto ole = MakeControl();
    DWORD status = 0;
    EXPECT_EQ(S_OK, ole->GetMiscStatus(DVASPECT_CONTENT, &status));
    EXPECT_EQ(kMiscStatus, status);
    EXPECT_EQ(S_OK, ole->GetMiscStatus(DVASPECT_ICON, &status));
    EXPECT_EQ(0u, status);
    EXPECT_EQ(E_POINTER, ole->GetMiscStatus(DVASPECT_CONTENT, nullptr));
    CLSID clsid{};
    EXPECT_EQ(S_OK, ole->GetUserClassID(&clsid));
    EXPECT_TRUE(IsEqualCLSID(kTestControlClass, clsid));

    SIZEL size{1234, 567};
    EXPECT_EQ(S_OK, ole->SetExtent(DVASPECT_CONTENT, &size));
    SIZEL got{};
    EXPECT_EQ(S_OK, ole->GetExtent(DVASPECT_CONTENT, &got));
    EXPECT_EQ(1234, got.cx);
    EXPECT_EQ(567, got.cy);
    EXPECT_EQ(DV_E_DVASPECT, ole->SetExtent(DVASPECT_ICON, &size));
    EXPECT_EQ(E_POINTER, ole->GetExtent(DVASPECT_CONTENT, nullptr));
}

TEST_F(WindowedControl, ViewObjectDrawsHitsAndKeepsItsAdviseSink)
{
    auto ole = MakeControl();
    ComPtr<IViewObjectEx> view;
    ASSERT_EQ(S_OK, ole->QueryInterface(IID_IViewObjectEx, view.PutVoid()));

    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 20, 20);
    HGDIOBJ old = SelectObject(dc, bitmap);
    RECT all{0, 0, 20, 20};
    FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    const RECTL bounds{0, 0, 10, 10};
    EXPECT_EQ(S_OK, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0));
    EXPECT_EQ(RGB(255, 255, 255), GetPixel(dc, 5, 5) & 0xFFFFFF);
    EXPECT_EQ(RGB(0, 0, 0), GetPixel(dc, 15, 15) & 0xFFFFFF) << "nothing outside the bounds";
    EXPECT_EQ(DV_E_DVASPECT, view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0));
    EXPECT_EQ(E_INVALIDARG, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, nullptr, &bounds, nullptr, nullptr, 0));
    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);

    DWORD hit = 0;
    const RECT box{0, 0, 10, 10};
    EXPECT_EQ(S_OK, view->QueryHitPoint(DVASPECT_CONTENT, &box, POINT{5, 5}, 0, &hit));
    EXPECT_EQ(static_cast<DWORD>(HITRESULT_HIT), hit);
    EXPECT_EQ(S_OK, view->QueryHitPoint(DVASPECT_CONTENT, &box, POINT{15, 5}, 0, &hit));
    EXPECT_EQ(static_cast<DWORD>(HITRESULT_OUTSIDE), hit);
    const RECT touching{8, 8, 30, 30}, away{20, 20, 30, 30};
    EXPECT_EQ(S_OK, view->QueryHitRect(DVASPECT_CONTENT, &box, &touching, 0, &hit));
    EXPECT_EQ(static_cast<DWORD>(HITRESULT_HIT), hit);
    EXPECT_EQ(S_OK, view->QueryHitRect(DVASPECT_CONTENT, &box, &away, 0, &hit));
    EXPECT_EQ(static_cast<DWORD>(HITRESULT_OUTSIDE), hit);
    EXPECT_EQ(E_POINTER, view->QueryHitPoint(DVASPECT_CONTENT, nullptr, POINT{}, 0, &hit));

    DWORD status = 0;
    EXPECT_EQ(S_OK, view->GetViewStatus(&status));
    EXPECT_EQ(static_cast<DWORD>(VIEWSTATUS_OPAQUE | VIEWSTATUS_SOLIDBKGND), status);
    SIZEL size{300, 400};
    ole->SetExtent(DVASPECT_CONTENT, &size);
    RECTL rect{};
    EXPECT_EQ(S_OK, view->GetRect(DVASPECT_CONTENT, &rect));
    EXPECT_EQ(300, rect.right);
    EXPECT_EQ(400, rect.bottom);

    // The advise sink is held until replaced.
    AdviseSink sink;
    DWORD aspects = 0, advf = 0;
    EXPECT_EQ(S_OK, view->SetAdvise(DVASPECT_CONTENT, ADVF_PRIMEFIRST, &sink));
    EXPECT_EQ(2u, sink.refs);
    ComPtr<IAdviseSink> back;
    EXPECT_EQ(S_OK, view->GetAdvise(&aspects, &advf, back.Put()));
    EXPECT_EQ(static_cast<DWORD>(DVASPECT_CONTENT), aspects);
    EXPECT_EQ(static_cast<DWORD>(ADVF_PRIMEFIRST), advf);
    EXPECT_EQ(static_cast<IAdviseSink*>(&sink), back.Get());
    back.Reset();
    EXPECT_EQ(S_OK, view->SetAdvise(0, 0, nullptr));
    EXPECT_EQ(1u, sink.refs);
    EXPECT_EQ(S_OK, view->GetAdvise(nullptr, nullptr, back.Put()));
    EXPECT_FALSE(back);
}

TEST_F(WindowedControl, PersistenceRoundTripsTheExtent)
{
    auto saved = MakeControl();
    ComPtr<IPersistStreamInit> persist;
    ASSERT_EQ(S_OK, saved->QueryInterface(IID_IPersistStreamInit, persist.PutVoid()));
    EXPECT_EQ(S_OK, persist->InitNew());
    EXPECT_EQ(S_FALSE, persist->IsDirty());
    SIZEL size{2222, 3333};
    saved->SetExtent(DVASPECT_CONTENT, &size);
    EXPECT_EQ(S_OK, persist->IsDirty());
    ULARGE_INTEGER max{};
    EXPECT_EQ(S_OK, persist->GetSizeMax(&max));

    ComPtr<IStream> stream;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()));
    ASSERT_EQ(S_OK, persist->Save(stream.Get(), TRUE));
    EXPECT_EQ(S_FALSE, persist->IsDirty());
    STATSTG stat{};
    stream->Stat(&stat, STATFLAG_NONAME);
    EXPECT_EQ(max.QuadPart, stat.cbSize.QuadPart) << "the size announced is the size written";

    auto loaded = MakeControl();
    ComPtr<IPersistStreamInit> loader;
    ASSERT_EQ(S_OK, loaded->QueryInterface(IID_IPersistStreamInit, loader.PutVoid()));
    const LARGE_INTEGER start{};
    stream->Seek(start, STREAM_SEEK_SET, nullptr);
    ASSERT_EQ(S_OK, loader->Load(stream.Get()));
    SIZEL got{};
    loaded->GetExtent(DVASPECT_CONTENT, &got);
    EXPECT_EQ(2222, got.cx);
    EXPECT_EQ(3333, got.cy);
    CLSID clsid{};
    EXPECT_EQ(S_OK, loader->GetClassID(&clsid));
    EXPECT_TRUE(IsEqualCLSID(kTestControlClass, clsid));

    // An empty stream keeps the defaults; a record of another version is refused.
    ComPtr<IStream> empty;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, empty.Put()));
    EXPECT_EQ(S_OK, loader->Load(empty.Get()));
    ComPtr<IStream> foreign;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, foreign.Put()));
    const DWORD record[3] = {0x00020000, 1, 2};
    foreign->Write(record, sizeof(record), nullptr);
    foreign->Seek(start, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(E_FAIL, loader->Load(foreign.Get()));
    loaded->GetExtent(DVASPECT_CONTENT, &got);
    EXPECT_EQ(2222, got.cx) << "a refused record changes nothing";
    EXPECT_EQ(E_POINTER, loader->Load(static_cast<IStream*>(nullptr)));

    // The same record through a storage.
    ComPtr<ILockBytes> bytes;
    ASSERT_EQ(S_OK, CreateILockBytesOnHGlobal(nullptr, TRUE, bytes.Put()));
    ComPtr<IStorage> storage;
    ASSERT_EQ(S_OK, StgCreateDocfileOnILockBytes(bytes.Get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, storage.Put()));
    ComPtr<IPersistStorage> inStorage;
    ASSERT_EQ(S_OK, saved->QueryInterface(IID_IPersistStorage, inStorage.PutVoid()));
    ASSERT_EQ(S_OK, inStorage->Save(storage.Get(), TRUE));
    auto third = MakeControl();
    ComPtr<IPersistStorage> fromStorage;
    ASSERT_EQ(S_OK, third->QueryInterface(IID_IPersistStorage, fromStorage.PutVoid()));
    ASSERT_EQ(S_OK, fromStorage->Load(storage.Get()));
    third->GetExtent(DVASPECT_CONTENT, &got);
    EXPECT_EQ(2222, got.cx);
    EXPECT_EQ(3333, got.cy);
}

TEST_F(WindowedControl, QuickActivationTakesTheSiteAndAnswersStatus)
{
    Site site;
    auto ole = MakeControl();
    ComPtr<IQuickActivate> quick;
    ASSERT_EQ(S_OK, ole->QueryInterface(IID_IQuickActivate, quick.PutVoid()));
    QACONTAINER container{sizeof(QACONTAINER)};
    container.pClientSite = &site;
    QACONTROL control{sizeof(QACONTROL)};
    control.dwMiscStatus = 0xDEAD;
    ASSERT_EQ(S_OK, quick->QuickActivate(&container, &control));
    EXPECT_EQ(kMiscStatus, control.dwMiscStatus);
    EXPECT_EQ(static_cast<DWORD>(VIEWSTATUS_OPAQUE | VIEWSTATUS_SOLIDBKGND), control.dwViewStatus);
    EXPECT_EQ(0u, control.dwEventCookie) << "this control has no outgoing interface";
    EXPECT_EQ(static_cast<ULONG>(sizeof(QACONTROL)), control.cbSize);
    ComPtr<IOleClientSite> got;
    ole->GetClientSite(got.Put());
    EXPECT_EQ(static_cast<IOleClientSite*>(&site), got.Get());
    got.Reset();

    QACONTAINER small{8};
    EXPECT_EQ(E_INVALIDARG, quick->QuickActivate(&small, &control));
    EXPECT_EQ(E_POINTER, quick->QuickActivate(nullptr, &control));
    SIZEL size{100, 50};
    EXPECT_EQ(S_OK, quick->SetContentExtent(&size));
    SIZEL back{};
    EXPECT_EQ(S_OK, quick->GetContentExtent(&back));
    EXPECT_EQ(100, back.cx);
    ole->SetClientSite(nullptr);
    ole.Reset();
    quick.Reset();
    EXPECT_EQ(1u, site.refs);
}
