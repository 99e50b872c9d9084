#pragma once
// A control initialised in a real container, with the scripted browser as the WebBrowser class, the browser
// application class and the data provider stand-in registered in this process.
#include <algorithm>
#include "support/atl_host.h"
#include "support/control_fixture.h"
#include "frontend/browser_application_class.h"
#include "frontend/data_provider_standin.h"
#include "frontend/scripted_browser.h"
#include "framework/bstr.h"

namespace tovtest {

class InitializedControlFixture : public ControlFixture {
protected:
    void SetUp() override
    {
        ControlFixture::SetUp();
        tovfe::DataStore::Instance().Clear();
        ASSERT_EQ(S_OK, browsers.Register());
        ASSERT_EQ(S_OK, applications.Register());
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
    }
    void TearDown() override
    {
        host.Destroy();
        ControlFixture::TearDown();
        tovfe::DataStore::Instance().Clear();
    }

    // InitControl with the trace at `level`; afterwards the logs and trace lines are empty.
    void Init(ULONG level = 2)
    {
        Connect(level);
        LONG code = -1;
        control->InitControl(&code);
        ASSERT_EQ(0, code);
        browser = browsers.Last();
        ASSERT_NE(nullptr, browser);
        browser->OwnLog().Clear();
        ClearLines();
    }
    // The calls the control's own browser received, without interface queries.
    std::vector<std::wstring> BrowserCalls() const { return WithoutQueries(browser->OwnLog()); }
    static std::vector<std::wstring> WithoutQueries(const tovfe::CallLog& log)
    {
        std::vector<std::wstring> calls = log.Texts();
        calls.erase(std::remove_if(calls.begin(), calls.end(),
                                   [](const std::wstring& c) { return c.rfind(L"QueryInterface(", 0) == 0; }),
                    calls.end());
        return calls;
    }
    std::wstring LocalPrefix() const
    {
        tov::Bstr prefix;
        control->get_URLPrefixLocal(prefix.Put());
        return std::wstring(prefix.View());
    }
    bool HasLine(const std::string& line) const
    {
        const auto lines = Lines();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    tovfe::DataProviderRegistration provider;
    tovfe::ScriptedBrowserClass browsers;
    tovfe::BrowserApplicationClass applications;
    AtlHost host;
    tovfe::ScriptedBrowser* browser = nullptr;
};

} // namespace tovtest
