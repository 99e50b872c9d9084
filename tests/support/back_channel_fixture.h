#pragma once
// A control hosted in a real container with a scripted browser, connected to a front end that has GUI
// services and a recording sink for the control's events: the setting of every back-channel test.
#include <olectl.h>
#include <string>
#include <vector>
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "support/event_sink.h"
#include "frontend/data_provider_standin.h"
#include "frontend/gui_service_standin.h"
#include "frontend/scripted_browser.h"
#include "framework/bstr.h"

namespace tovtest {

class BackChannelFixture : public ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        tovfe::DataStore::Instance().Clear();
        services = tovfe::AddGUIServices(*container.Get(), 1252, L"EN");
        Connect(0);
        ASSERT_EQ(S_OK, browsers.Register());
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
        LONG code = -1;
        ASSERT_EQ(S_OK, control->InitControl(&code));
        ASSERT_EQ(0, code);
        browser = browsers.Last();
        ASSERT_NE(nullptr, browser);
        cookie = Advise(sink);
        ASSERT_NE(0u, cookie);
    }
    void TearDown() override
    {
        if (control) {
            if (cookie) Unadvise(cookie);
            control->put_PostData(nullptr);
        }
        host.Destroy();
        ControlFixture::TearDown();
        browsers.Revoke();
        tovfe::DataStore::Instance().Clear();
    }

    tov::ComPtr<IConnectionPoint> EventsPoint()
    {
        if (!control) return nullptr;
        tov::ComPtr<IConnectionPointContainer> cpc;
        tov::ComPtr<IConnectionPoint> point;
        if (SUCCEEDED(control->QueryInterface(IID_IConnectionPointContainer, cpc.PutVoid())))
            cpc->FindConnectionPoint(DIID__TOVHTMLControlEvents, point.Put());
        return point;
    }
    DWORD Advise(RecordingEventSink& s)
    {
        DWORD c = 0;
        if (auto point = EventsPoint()) point->Advise(&s, &c);
        return c;
    }
    void Unadvise(DWORD c)
    {
        if (auto point = EventsPoint()) point->Unadvise(c);
    }

    HWND ControlHwnd()
    {
        tov::ComPtr<IOleWindow> window;
        HWND hwnd = nullptr;
        if (SUCCEEDED(control->QueryInterface(IID_IOleWindow, window.PutVoid()))) window->GetWindow(&hwnd);
        return hwnd;
    }
    // The front end's readiness message with its two indicators.
    void SetReady(bool ready, bool hold = false)
    {
        LONG record[10] = {};
        record[6] = ready ? 1 : 0; // offset 24
        record[8] = hold ? 1 : 0;  // offset 32
        SendMessageW(ControlHwnd(), RegisterWindowMessageA("TOV_CM_READY_FOR_INPUT"), 0, reinterpret_cast<LPARAM>(record));
    }
    void SetNavigationStyle(const wchar_t* style)
    {
        tov::Bstr s(style);
        control->put_NavigationStyle(s.Get());
    }
    // A data provider object as the front end puts it into PostData.
    tovfe::DataProviderStandIn* GivePostDataProvider()
    {
        tovfe::DataProviderStandIn* provider = tovfe::DataProviderStandIn::Create();
        control->put_PostData(provider);
        provider->Release(); // the control holds it now
        return provider;
    }
    static std::string Stored(tovfe::DataProviderStandIn* provider)
    {
        auto it = provider->posted.find(L"TOVEVENT:|PostData");
        return it == provider->posted.end() ? std::string("<nothing>") : it->second;
    }
    LONG Property(HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*get)(LONG*))
    {
        LONG value = -12345;
        (control.Get()->*get)(&value);
        return value;
    }
    std::wstring Property(HRESULT (STDMETHODCALLTYPE ITOVHTMLControl::*get)(BSTR*))
    {
        tov::Bstr value;
        (control.Get()->*get)(value.Put());
        return value.IsNull() ? L"<null>" : std::wstring(value.View());
    }
    // The BeforeNavigate events the front end received.
    std::vector<FiredEvent> BeforeNavigates() const
    {
        std::vector<FiredEvent> out;
        for (const auto& e : sink.events)
            if (e.id == 1) out.push_back(e);
        return out;
    }
    std::vector<std::wstring> NavigateCompleteUrls() const
    {
        std::vector<std::wstring> out;
        for (const auto& e : sink.events)
            if (e.id == 2) out.push_back(e.args.at(0));
        return out;
    }
    // The URL of a BeforeNavigate event joined from its pieces.
    static std::wstring JoinedUrl(const FiredEvent& e)
    {
        std::wstring url;
        for (size_t i = 2; i < e.args.size(); ++i)
            if (e.args[i] != L"<null>") url += e.args[i];
        return url;
    }
    static std::vector<std::wstring> Pieces(const FiredEvent& e)
    {
        return std::vector<std::wstring>(e.args.begin() + 2, e.args.end());
    }

    tovfe::ScriptedBrowserClass browsers;
    tovfe::DataProviderRegistration providerClass;
    AtlHost host;
    tovfe::ScriptedBrowser* browser = nullptr;
    tovfe::GUIServices services;
    RecordingEventSink sink;
    DWORD cookie = 0;
};

} // namespace tovtest
