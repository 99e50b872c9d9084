#include "hosting/detached_windows.h"
#include <utility>

namespace tov {
namespace {

void StopAndQuit(IWebBrowser2* browser)
{
    if (!browser) return;
    browser->Stop();
    browser->Quit();
}

} // namespace

ComPtr<IWebBrowser2> DetachedBrowserWindows::OpenWindowFor(const Bstr& url)
{
    const auto found = m_mapDetachedBrowsers.find(url);
    if (found == m_mapDetachedBrowsers.end()) return nullptr;
    const ComPtr<IWebBrowser2> remembered = found->second;
    m_pDetachedBrowser = remembered;
    SHANDLE_PTR window = 0;
    if (remembered) remembered->get_HWND(&window);
    if (window != 0) return remembered;
    // Looked up again: the call may have let other calls change the list.
    const auto entry = m_mapDetachedBrowsers.find(url);
    if (entry != m_mapDetachedBrowsers.end() && entry->second.Get() == remembered.Get()) m_mapDetachedBrowsers.erase(entry);
    m_pDetachedBrowser.Reset();
    StopAndQuit(remembered.Get());
    return nullptr;
}

void DetachedBrowserWindows::Remember(const Bstr& url, const ComPtr<IWebBrowser2>& browser)
{
    m_pDetachedBrowser = browser;
    m_mapDetachedBrowsers[url] = browser;
}

bool DetachedBrowserWindows::CloseLast()
{
    const ComPtr<IWebBrowser2> closing = std::exchange(m_pDetachedBrowser, nullptr);
    if (!closing) return false;
    for (auto it = m_mapDetachedBrowsers.begin(); it != m_mapDetachedBrowsers.end(); ++it) {
        if (it->second.Get() == closing.Get()) {
            m_mapDetachedBrowsers.erase(it);
            break;
        }
    }
    StopAndQuit(closing.Get());
    return true;
}

void DetachedBrowserWindows::CloseAll()
{
    auto windows = std::exchange(m_mapDetachedBrowsers, {});
    m_pDetachedBrowser.Reset();
    for (auto& [url, browser] : windows) StopAndQuit(browser.Get());
}

} // namespace tov
