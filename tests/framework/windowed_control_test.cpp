// The windowed-control base driven by a minimal control and a small site: what the site hears through
// activation, clipping and closing, the refused verbs, persistence of the extent and quick activation.
// The control itself in a real container is tested with the control.
#include <gtest/gtest.h>
#include <olectl.h>
#include <string>
#include <vector>
#include "counting_object.h"
#include "framework/com_ptr.h"
#include "framework/connection_points.h"
#include "framework/handles.h"
#include "framework/object_root.h"
#include "framework/windowed_control.h"

using tov::ComPtr;
using tovtest::CountingObject;

namespace {

// {6F3B1C52-1D1E-4C55-9A0B-4E8A0D3C2F11}
constexpr CLSID kTestControlClass = {0x6f3b1c52, 0x1d1e, 0x4c55, {0x9a, 0x0b, 0x4e, 0x8a, 0x0d, 0x3c, 0x2f, 0x11}};
constexpr DWORD kMiscStatus = 131473;

// A control on the base with nothing of its own but a class, its misc status and one outgoing interface.
class TestControl final : public tov::ObjectRoot, public tov::WindowedControlBase, public tov::ConnectionPointContainerImpl {
public:
    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        if (IsEqualIID(riid, IID_IUnknown)) return static_cast<IOleObject*>(this);
        if (IsEqualIID(riid, IID_IConnectionPointContainer)) return static_cast<IConnectionPointContainer*>(this);
        return FindControlInterface(riid);
    }
    tov::EventConnectionPoint events{*static_cast<IOleObject*>(this), *this, IID_IPropertyNotifySink};

protected:
    const CLSID& ControlClassId() const override { return kTestControlClass; }
    DWORD ControlMiscStatus() const override { return kMiscStatus; }
    IUnknown* ControlIdentity() override { return ControllingUnknown(); }
    const IID& DefaultSourceIid() const override { return IID_IPropertyNotifySink; }
    std::vector<tov::EventConnectionPoint*> ConnectionPoints() override { return {&events}; }
};

// A container's site that can host in place inside a top-level window of the test; it records by name
// the in-place calls a container expects.
class Site : public IOleClientSite, public IOleInPlaceSite {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override
    {
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IOleClientSite))
            *ppv = static_cast<IOleClientSite*>(this);
        else if (IsEqualIID(riid, IID_IOleInPlaceSite) || IsEqualIID(riid, IID_IOleWindow))
            *ppv = static_cast<IOleInPlaceSite*>(this);
        else
            return *ppv = nullptr, E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++refs; }
    STDMETHODIMP_(ULONG) Release() override { return --refs; }

    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD, DWORD, IMoniker** pp) override { *pp = nullptr; return E_NOTIMPL; }
    STDMETHODIMP GetContainer(IOleContainer** pp) override { *pp = nullptr; return E_NOINTERFACE; }
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(BOOL) override { return S_OK; }
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }

    STDMETHODIMP GetWindow(HWND* phwnd) override { *phwnd = window.Get(); return Note(__func__); }
    STDMETHODIMP ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP CanInPlaceActivate() override { Note(__func__); return canActivate; }
    STDMETHODIMP OnInPlaceActivate() override { return Note(__func__); }
    STDMETHODIMP OnUIActivate() override { return Note(__func__); }
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** doc, LPRECT pos, LPRECT clip,
                                  LPOLEINPLACEFRAMEINFO) override
    {
        *frame = nullptr;
        *doc = nullptr;
        *pos = *clip = position;
        return Note(__func__);
    }
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(BOOL) override { return Note(__func__); }
    STDMETHODIMP OnInPlaceDeactivate() override { return Note(__func__); }
    STDMETHODIMP DiscardUndoState() override { return S_OK; }
    STDMETHODIMP DeactivateAndUndo() override { return S_OK; }
    STDMETHODIMP OnPosRectChange(LPCRECT) override { return S_OK; }

    HRESULT Note(const char* call) { calls.push_back(call); return S_OK; }
    HRESULT Activate(IOleObject* ole, LONG verb = OLEIVERB_INPLACEACTIVATE)
    {
        MSG msg{};
        return ole->DoVerb(verb, &msg, this, 0, window.Get(), &position);
    }
    tov::UniqueWindow window{CreateWindowExW(0, L"STATIC", L"site", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 500, 400,
                                             nullptr, nullptr, nullptr, nullptr)};
    ULONG refs = 1;
    HRESULT canActivate = S_OK;
    RECT position{10, 20, 210, 170};
    std::vector<std::string> calls;
};

struct RegionTraits {
    static HRGN Invalid() noexcept { return nullptr; }
    static void Close(HRGN h) noexcept { DeleteObject(h); }
};

ComPtr<IOleObject> MakeControl()
{
    ComPtr<IOleObject> ole;
    EXPECT_EQ(S_OK, tov::ObjectRoot::CreateInstance<TestControl>(nullptr, IID_IOleObject, ole.PutVoid()));
    return ole;
}

HWND WindowOf(IOleObject* ole)
{
    HWND hwnd = nullptr;
    if (auto inplace = tov::QueryAs<IOleInPlaceObject>(ole, IID_IOleInPlaceObject)) inplace->GetWindow(&hwnd);
    return hwnd;
}

} // namespace

// The site and its window are made before the control and outlive it.
class WindowedControl : public testing::Test {
protected:
    void SetUp() override { locks = tov::Module::LockCount(); }
    void TearDown() override
    {
        EXPECT_EQ(locks, tov::Module::LockCount()) << "the control is gone";
        EXPECT_EQ(1u, site.refs) << "every reference on the site was given back";
    }
    LONG locks = 0;
    Site site;
};

TEST_F(WindowedControl, ActivationClippingAndCloseTellTheSiteAndTheWindowGoesWithThem)
{
    auto ole = MakeControl();
    ASSERT_EQ(S_OK, ole->SetClientSite(&site));
    ASSERT_EQ(S_OK, site.Activate(ole.Get()));
    ASSERT_EQ(S_OK, site.Activate(ole.Get(), OLEIVERB_UIACTIVATE));
    EXPECT_EQ((std::vector<std::string>{"CanInPlaceActivate", "OnInPlaceActivate", "GetWindow", "GetWindowContext",
                                        "GetWindow", "GetWindowContext", "OnUIActivate"}),
              site.calls)
        << "UI activation only for its own verb; the second activation keeps the window";
    const HWND hwnd = WindowOf(ole.Get());
    ASSERT_TRUE(IsWindow(hwnd));
    EXPECT_EQ(site.window.Get(), GetParent(hwnd));

    // Clipping gives the window a region of its visible part in window coordinates; no clip, no region.
    auto inplace = tov::QueryAs<IOleInPlaceObject>(ole.Get(), IID_IOleInPlaceObject);
    const RECT pos{30, 40, 130, 90}, clip{30, 40, 80, 90};
    ASSERT_EQ(S_OK, inplace->SetObjectRects(&pos, &clip));
    tov::UniqueHandle<HRGN, RegionTraits> region(CreateRectRgn(0, 0, 0, 0));
    RECT box{};
    EXPECT_EQ(SIMPLEREGION, GetWindowRgn(hwnd, region.Get()));
    GetRgnBox(region.Get(), &box);
    EXPECT_EQ((std::vector<LONG>{0, 0, 50, 50}), (std::vector<LONG>{box.left, box.top, box.right, box.bottom}));
    ASSERT_EQ(S_OK, inplace->SetObjectRects(&pos, nullptr));
    EXPECT_EQ(ERROR, GetWindowRgn(hwnd, region.Get()));
    inplace.Reset();

    site.calls.clear();
    EXPECT_EQ(S_OK, ole->Close(OLECLOSE_NOSAVE));
    EXPECT_EQ(S_OK, ole->Close(OLECLOSE_NOSAVE)) << "twice is harmless";
    EXPECT_EQ((std::vector<std::string>{"OnUIDeactivate", "OnInPlaceDeactivate"}), site.calls);
    EXPECT_FALSE(IsWindow(hwnd));
    ole->SetClientSite(nullptr);
}

TEST_F(WindowedControl, RefusedVerbsAndSitesLeaveNoWindow)
{
    auto ole = MakeControl();
    MSG msg{};
    EXPECT_EQ(E_UNEXPECTED, ole->DoVerb(OLEIVERB_INPLACEACTIVATE, &msg, nullptr, 0, site.window.Get(), &site.position))
        << "no site";
    EXPECT_EQ(OLEOBJ_S_INVALIDVERB, site.Activate(ole.Get(), 7));
    EXPECT_EQ(E_NOTIMPL, site.Activate(ole.Get(), OLEIVERB_OPEN));
    site.canActivate = S_FALSE;
    EXPECT_EQ(E_FAIL, site.Activate(ole.Get()));
    EXPECT_EQ(nullptr, WindowOf(ole.Get()));
    ole->SetClientSite(nullptr);
}

TEST_F(WindowedControl, PersistenceRoundTripsTheExtentThroughStreamAndStorage)
{
    auto saved = MakeControl(), loaded = MakeControl(), third = MakeControl();
    auto persist = tov::QueryAs<IPersistStreamInit>(saved.Get(), IID_IPersistStreamInit);
    auto loader = tov::QueryAs<IPersistStreamInit>(loaded.Get(), IID_IPersistStreamInit);
    ASSERT_TRUE(persist && loader);
    EXPECT_EQ(S_OK, persist->InitNew());
    SIZEL size{2222, 3333}, got{};
    ASSERT_EQ(S_OK, saved->SetExtent(DVASPECT_CONTENT, &size));
    EXPECT_EQ(S_OK, persist->IsDirty());
    ComPtr<IStream> stream, empty, foreign;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()));
    ASSERT_EQ(S_OK, persist->Save(stream.Get(), TRUE));
    EXPECT_EQ(S_FALSE, persist->IsDirty());
    const LARGE_INTEGER start{};
    stream->Seek(start, STREAM_SEEK_SET, nullptr);
    ASSERT_EQ(S_OK, loader->Load(stream.Get()));
    loaded->GetExtent(DVASPECT_CONTENT, &got);
    EXPECT_EQ((std::vector<LONG>{2222, 3333}), (std::vector<LONG>{got.cx, got.cy}));

    // An empty stream keeps what is there; a record of another version is refused and changes nothing.
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, empty.Put()));
    EXPECT_EQ(S_OK, loader->Load(empty.Get()));
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, foreign.Put()));
    const DWORD record[3] = {0x00020000, 1, 2};
    foreign->Write(record, sizeof(record), nullptr);
    foreign->Seek(start, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(E_FAIL, loader->Load(foreign.Get()));
    loaded->GetExtent(DVASPECT_CONTENT, &got);
    EXPECT_EQ(2222, got.cx);

    ComPtr<ILockBytes> bytes;
    ComPtr<IStorage> storage;
    ASSERT_EQ(S_OK, CreateILockBytesOnHGlobal(nullptr, TRUE, bytes.Put()));
    ASSERT_EQ(S_OK, StgCreateDocfileOnILockBytes(bytes.Get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, storage.Put()));
    ASSERT_EQ(S_OK, tov::QueryAs<IPersistStorage>(saved.Get(), IID_IPersistStorage)->Save(storage.Get(), TRUE));
    ASSERT_EQ(S_OK, tov::QueryAs<IPersistStorage>(third.Get(), IID_IPersistStorage)->Load(storage.Get()));
    third->GetExtent(DVASPECT_CONTENT, &got);
    EXPECT_EQ((std::vector<LONG>{2222, 3333}), (std::vector<LONG>{got.cx, got.cy}));
}

TEST_F(WindowedControl, QuickActivationTakesTheSiteAndConnectsTheContainersEventSink)
{
    CountingObject sink(IID_IPropertyNotifySink);
    {
        auto ole = MakeControl();
        auto quick = tov::QueryAs<IQuickActivate>(ole.Get(), IID_IQuickActivate);
        ASSERT_TRUE(quick);
        QACONTAINER container{sizeof(QACONTAINER)};
        container.pClientSite = &site;
        container.pUnkEventSink = &sink;
        QACONTROL control{sizeof(QACONTROL)};
        ASSERT_EQ(S_OK, quick->QuickActivate(&container, &control));
        EXPECT_EQ(kMiscStatus, control.dwMiscStatus);
        EXPECT_EQ(1u, control.dwEventCookie);
        EXPECT_EQ(2u, sink.refs) << "the connection holds the sink";
        EXPECT_EQ(2u, site.refs) << "the control holds the site";

        // A sink of another interface is not connected, and activation still succeeds.
        container.pUnkEventSink = static_cast<IOleClientSite*>(&site);
        control = QACONTROL{sizeof(QACONTROL)};
        EXPECT_EQ(S_OK, quick->QuickActivate(&container, &control));
        EXPECT_EQ(0u, control.dwEventCookie);
        QACONTAINER small{8};
        EXPECT_EQ(E_INVALIDARG, quick->QuickActivate(&small, &control));
        EXPECT_EQ(E_POINTER, quick->QuickActivate(nullptr, &control));
        ole->SetClientSite(nullptr);
    }
    EXPECT_EQ(1u, sink.refs);
}
