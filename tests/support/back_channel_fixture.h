#pragma once
// A control hosted in a real container with a scripted browser, connected to a front end that has GUI
// services and a recording sink for the control's events: the setting of every back-channel test.
#include <olectl.h>
#include <string>
#include <vector>
#include "support/initialized_control_fixture.h"
#include "frontend/data_provider_standin.h"
#include "frontend/gui_service_standin.h"

namespace tovtest {

class BackChannelFixture : public InitializedControlFixture {
protected:
    void SetUp() override
    {
        InitializedControlFixture::SetUp();
        services = tovfe::AddGUIServices(*container.Get(), 1252, L"EN");
        Init(0);
        cookie = Advise(sink);
        ASSERT_NE(0u, cookie);
    }
    void TearDown() override
    {
        if (control) {
            if (cookie) Unadvise(cookie);
            control->put_PostData(nullptr);
        }
        InitializedControlFixture::TearDown();
    }

    // The front end's readiness message with its two indicators.
    void SetReady(bool ready, bool hold = false)
    {
        LONG record[10] = {};
        record[6] = ready ? 1 : 0; // offset 24
        record[8] = hold ? 1 : 0;  // offset 32
        SendMessageW(Window(), RegisterWindowMessageA("TOV_CM_READY_FOR_INPUT"), 0, reinterpret_cast<LPARAM>(record));
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

    tovfe::GUIServices services;
    RecordingEventSink sink;
    DWORD cookie = 0;
};

} // namespace tovtest
