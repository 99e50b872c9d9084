#pragma once
// The browser windows the control opened outside itself for URLs the front end wanted shown there: one
// per URL, reused while the user keeps it open, and the one used last (which CloseDocument closes).
// Windows are always taken out of the list before they are stopped and quit: a browser's Quit, and any
// other call on it, may let calls into the control.
#include <windows.h>
#include <exdisp.h>
#include <map>
#include "framework/bstr.h"
#include "framework/com_ptr.h"

namespace tov {

class DetachedBrowserWindows {
public:
    // The window remembered for `url`, now the one used last, when it is still open. A window the user
    // has closed meanwhile (it answers with no handle) is forgotten, stopped and quit: null then.
    ComPtr<IWebBrowser2> OpenWindowFor(const Bstr& url);
    // Remembers `browser` for `url`, instead of an earlier one, as the one used last.
    void Remember(const Bstr& url, const ComPtr<IWebBrowser2>& browser);
    const ComPtr<IWebBrowser2>& Last() const noexcept { return m_pDetachedBrowser; }
    // The control showed something itself: no window counts as used last any more.
    void ForgetLast() noexcept { m_pDetachedBrowser.Reset(); }
    // Stops, quits and forgets the window used last; false when there is none.
    bool CloseLast();
    // Stops, quits and forgets every window; none is used last afterwards.
    void CloseAll();

private:
    std::map<Bstr, ComPtr<IWebBrowser2>, BstrLocaleLess> m_mapDetachedBrowsers;
    ComPtr<IWebBrowser2> m_pDetachedBrowser;
};

} // namespace tov
