// The windowed-control base driven by a minimal control in the real container the demo uses: its window,
// clipping and closing, the refused verbs, persistence of the extent and quick activation.
#include <gtest/gtest.h>
#include <olectl.h>
#include <vector>
#include "counting_object.h"
#include "framework/com_ptr.h"
#include "framework/connection_points.h"
#include "framework/object_root.h"
#include "framework/windowed_control.h"
#include "support/atl_host.h"

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

ComPtr<IOleObject> MakeControl()
{
    ComPtr<IOleObject> ole;
    EXPECT_EQ(S_OK, tov::ObjectRoot::CreateInstance<TestControl>(nullptr, IID_IOleObject, ole.PutVoid()));
    return ole;
}

std::vector<LONG> Extent(IOleObject* ole)
{
    SIZEL got{};
    ole->GetExtent(DVASPECT_CONTENT, &got);
    return {got.cx, got.cy};
}

} // namespace

class WindowedControl : public testing::Test {
protected:
    void SetUp() override { locks = tov::Module::LockCount(); }
    void TearDown() override { EXPECT_EQ(locks, tov::Module::LockCount()) << "every control is gone"; }
    LONG locks = 0;
};

TEST_F(WindowedControl, InTheContainerItsWindowClipsClosesAndRefusesOtherVerbs)
{
    tovtest::AtlHost host(300, 200);
    auto ole = MakeControl();
    MSG msg{};
    RECT position{0, 0, 300, 200};
    EXPECT_EQ(E_UNEXPECTED, ole->DoVerb(OLEIVERB_INPLACEACTIVATE, &msg, nullptr, 0, host.HostWindow(), &position)) << "no site";
    ASSERT_EQ(S_OK, host.Attach(ole.Get()));
    auto inplace = tov::QueryAs<IOleInPlaceObject>(ole.Get(), IID_IOleInPlaceObject);
    HWND hwnd = nullptr;
    ASSERT_EQ(S_OK, inplace->GetWindow(&hwnd));
    EXPECT_EQ(host.HostWindow(), GetParent(hwnd));

    ComPtr<IOleClientSite> site;
    ASSERT_EQ(S_OK, ole->GetClientSite(site.Put()));
    EXPECT_EQ(OLEOBJ_S_INVALIDVERB, ole->DoVerb(7, &msg, site.Get(), 0, host.HostWindow(), &position));
    EXPECT_EQ(E_NOTIMPL, ole->DoVerb(OLEIVERB_OPEN, &msg, site.Get(), 0, host.HostWindow(), &position));

    // Clipping gives the window a region of its visible part in window coordinates; no clip, no region.
    const RECT pos{30, 40, 130, 90}, clip{30, 40, 80, 90};
    ASSERT_EQ(S_OK, inplace->SetObjectRects(&pos, &clip));
    RECT box{};
    EXPECT_EQ(SIMPLEREGION, GetWindowRgnBox(hwnd, &box));
    EXPECT_EQ((std::vector<LONG>{0, 0, 50, 50}), (std::vector<LONG>{box.left, box.top, box.right, box.bottom}));
    ASSERT_EQ(S_OK, inplace->SetObjectRects(&pos, nullptr));
    EXPECT_EQ(ERROR, GetWindowRgnBox(hwnd, &box));
    inplace.Reset();
    site.Reset();

    EXPECT_EQ(S_OK, ole->Close(OLECLOSE_NOSAVE));
    EXPECT_EQ(S_OK, ole->Close(OLECLOSE_NOSAVE)) << "twice is harmless";
    EXPECT_FALSE(IsWindow(hwnd));
    host.Destroy();
}

TEST_F(WindowedControl, PersistenceRoundTripsTheExtentAndRefusesAnotherVersion)
{
    auto saved = MakeControl(), loaded = MakeControl();
    auto persist = tov::QueryAs<IPersistStreamInit>(saved.Get(), IID_IPersistStreamInit);
    auto loader = tov::QueryAs<IPersistStreamInit>(loaded.Get(), IID_IPersistStreamInit);
    ASSERT_TRUE(persist && loader);
    EXPECT_EQ(S_OK, persist->InitNew());
    SIZEL size{2222, 3333};
    ASSERT_EQ(S_OK, saved->SetExtent(DVASPECT_CONTENT, &size));
    EXPECT_EQ(S_OK, persist->IsDirty());
    ComPtr<IStream> stream, empty, foreign;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, stream.Put()));
    ASSERT_EQ(S_OK, persist->Save(stream.Get(), TRUE));
    EXPECT_EQ(S_FALSE, persist->IsDirty());
    const LARGE_INTEGER start{};
    stream->Seek(start, STREAM_SEEK_SET, nullptr);
    ASSERT_EQ(S_OK, loader->Load(stream.Get()));
    EXPECT_EQ((std::vector<LONG>{2222, 3333}), Extent(loaded.Get()));

    // An empty stream keeps what is there; a record of another version is refused and changes nothing.
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, empty.Put()));
    EXPECT_EQ(S_OK, loader->Load(empty.Get()));
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, foreign.Put()));
    const DWORD record[3] = {0x00020000, 1, 2};
    foreign->Write(record, sizeof(record), nullptr);
    foreign->Seek(start, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(E_FAIL, loader->Load(foreign.Get()));
    EXPECT_EQ((std::vector<LONG>{2222, 3333}), Extent(loaded.Get()));
}

TEST_F(WindowedControl, QuickActivationConnectsTheContainersEventSinkOfTheRightInterface)
{
    CountingObject sink(IID_IPropertyNotifySink), other;
    {
        auto quick = tov::QueryAs<IQuickActivate>(MakeControl().Get(), IID_IQuickActivate);
        ASSERT_TRUE(quick);
        QACONTAINER container{sizeof(QACONTAINER)};
        container.pUnkEventSink = &sink;
        QACONTROL control{sizeof(QACONTROL)};
        ASSERT_EQ(S_OK, quick->QuickActivate(&container, &control));
        EXPECT_EQ(kMiscStatus, control.dwMiscStatus);
        EXPECT_EQ(1u, control.dwEventCookie);
        EXPECT_EQ(2u, sink.RefCount()) << "the connection holds the sink";

        container.pUnkEventSink = &other;
        control = QACONTROL{sizeof(QACONTROL)};
        EXPECT_EQ(S_OK, quick->QuickActivate(&container, &control)) << "a sink of another interface is not connected";
        EXPECT_EQ(0u, control.dwEventCookie);
        QACONTAINER small{8};
        EXPECT_EQ(E_INVALIDARG, quick->QuickActivate(&small, &control));
        EXPECT_EQ(E_POINTER, quick->QuickActivate(nullptr, &control));
    }
    EXPECT_EQ(1u, sink.RefCount());
}
