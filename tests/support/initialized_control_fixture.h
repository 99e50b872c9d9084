#pragma once
// A control in a real container, with the scripted browser as the WebBrowser class, the browser application
// class and the data provider stand-in registered in this process; Init() runs InitControl.
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
    // With a level, SetUp runs Init at it.
    explicit InitializedControlFixture(int initLevel = -1) : m_initLevel(initLevel) {}
    void SetUp() override
    {
        ControlFixture::SetUp();
        tovfe::DataStore::Instance().Clear();
        ASSERT_EQ(S_OK, browsers.Register());
        ASSERT_EQ(S_OK, applications.Register());
        ASSERT_EQ(S_OK, host.Attach(control.Get()));
        if (m_initLevel >= 0) Init(m_initLevel);
    }
    void TearDown() override
    {
        host.Destroy();
        ControlFixture::TearDown();
        tovfe::DataStore::Instance().Clear();
    }

    // InitControl, connected with the trace at `level` first unless it is negative; afterwards the logs
    // and trace lines are empty.
    void Init(int level = 2)
    {
        if (level >= 0) Connect(level);
        LONG code = -1;
        ASSERT_EQ(S_OK, control->InitControl(&code));
        ASSERT_EQ(0, code);
        browser = browsers.Last();
        ASSERT_NE(nullptr, browser);
        browser->Log().Clear();
        browser->OwnLog().Clear();
        ClearLines();
    }
    // The show methods; their pRetCode.
    LONG ShowURL(const wchar_t* url, const wchar_t* frame = nullptr)
    {
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowURL(tov::Bstr(url).Get(), tov::Bstr(frame).Get(), &code));
        return code;
    }
    LONG ShowData(const wchar_t* url, const wchar_t* frame = nullptr, LONG local = 1)
    {
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowData(tov::Bstr(url).Get(), tov::Bstr(frame).Get(), local, &code));
        return code;
    }
    LONG InBrowser(const std::wstring& url)
    {
        LONG code = -1;
        EXPECT_EQ(S_OK, control->ShowURLInBrowser(tov::Bstr(url).Get(), &code));
        return code;
    }
    // The internal blank page as the browser records its navigation.
    static inline const std::wstring kBlank = L"Navigate(about:blank, <null>, <null>, <null>, <null>)";
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
    std::wstring LocalPrefix() const { return Property(&ITOVHTMLControl::get_URLPrefixLocal); }

    tovfe::DataProviderRegistration provider;
    tovfe::ScriptedBrowserClass browsers;
    tovfe::BrowserApplicationClass applications;
    AtlHost host;
    tovfe::ScriptedBrowser* browser = nullptr;

private:
    int m_initLevel;
};

} // namespace tovtest
