#pragma once
// One engine page (a DevTools target in a browser context of its own) with its frames, as the browser
// object sees it: navigations announced before they start and cancellable, completions per frame, URLs
// the engine cannot fetch served through urlmon, TOVEVENT links and forms turned back into the requests
// the page made, the page's rendering and its context-menu requests. Everything here runs on the
// browser's thread, from the connection's deliveries; nothing waits for a page answer while a request
// of the page is paused.
#include <windows.h>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include "engine/engine_host.h"

namespace tovengine {

// What the page tells its browser object. Frame ids are the engine's; "" stands for the top document.
class PageListener {
public:
    virtual ~PageListener() = default;
    struct Navigation {
        std::string frameId;      // "" for the top document
        std::wstring url;         // the browser's URL (TOVEVENT, provider scheme ...)
        long flags = 0;
        std::wstring targetName;  // the frame's name for a frame, else the target the page named
        std::optional<std::string> postData;
        std::wstring headers;
    };
    // True cancels: the navigation does not happen and the page stays.
    virtual bool OnBeforeNavigate(const Navigation& navigation) = 0;
    virtual void OnNavigateComplete(const std::string& frameId, const std::wstring& url) = 0;
    virtual void OnDocumentComplete(const std::string& frameId, const std::wstring& url) = 0;
    virtual void OnTitleChange(const std::wstring& title) = 0;
    virtual void OnDownloadBegin() = 0;
    virtual void OnDownloadComplete() = 0;
    // A page asked for a new window with `url`.
    virtual void OnNewWindow(const std::wstring& url) = 0;
    // A new rendering of the whole view: a PNG file in base64, as the engine sends it.
    virtual void OnFrame(const std::string& picture) = 0;
    // The user asked for a context menu at a point of the view (CSS pixels of the top document).
    virtual void OnContextMenu(int x, int y) = 0;
    virtual void OnEngineGone() = 0;
};

class Page : public std::enable_shared_from_this<Page> {
public:
    // A new page in a browser context of its own, blank, rendering at `width` x `height`. Throws
    // tov::HResultError when the engine cannot give one.
    static std::shared_ptr<Page> Create(PageListener& listener, int width, int height);
    ~Page();
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;

    // Ends the page and its browser context; no listener call follows.
    void Close() noexcept;
    bool Alive() const;

    // Navigation the host asked for. `announced`: the host fired BeforeNavigate itself already.
    // `frameId` "" for the top document. Returns E_FAIL when the engine is gone.
    HRESULT Navigate(const std::wstring& url, const std::string& frameId, const std::optional<std::string>& postData,
                     const std::wstring& headers);
    // -1 back, +1 forward; the URL of the entry when there is one.
    std::optional<std::wstring> HistoryEntry(int delta);
    HRESULT GoHistory(int delta);
    HRESULT Reload();
    HRESULT StopLoading();

    // Runs script in a frame's document and hands back its result as text (JSON for objects); throws
    // tov::HResultError when the page does not answer or the script throws.
    std::string Evaluate(const std::string& frameId, const std::string& expression);
    // Runs script without waiting for it.
    void EvaluateLater(const std::string& frameId, const std::string& expression);

    // The browser's URL of a frame (the top document for "").
    std::wstring FrameUrl(const std::string& frameId) const;
    std::string FrameByName(const std::wstring& name) const;
    std::wstring FrameName(const std::string& frameId) const;
    bool Loading() const { return m_loading; }
    void Resize(int width, int height);
    void Zoom(int percent);

    // Input into the view, in view pixels.
    void Mouse(const char* type, int x, int y, const char* button, int clickCount, int modifiers, int deltaX = 0,
               int deltaY = 0);
    void Key(const char* type, int virtualKey, const std::wstring& text, int modifiers);

private:
    explicit Page(PageListener& listener) : m_listener(&listener) {}
    void Start(int width, int height);
    void OnEvent(const std::string& method, const Json& params);
    void OnRequestPaused(const Json& params);
    void ContinueDocument(const std::string& requestId, const std::string& engineUrl, const PageListener::Navigation& nav,
                          bool announce);
    void Serve(const std::string& requestId, const std::string& engineUrl);
    void Fail(const std::string& requestId);
    void Continue(const std::string& requestId, const Json& extra = Json::object());
    void OnFrameNavigated(const Json& frame);
    // Closes the pages the engine opened for this one's links and scripts (the host opens its own).
    static constexpr int kPopupLookups = 500;
    void ClosePagesOpenedByThis(int lookupsLeft);
    void OnFrameStoppedLoading(const std::string& frameId);
    std::string ListenerFrame(const std::string& frameId) const { return frameId == m_mainFrame ? std::string() : frameId; }
    std::string EngineFrame(const std::string& frameId) const { return frameId.empty() ? m_mainFrame : frameId; }
    void Send(const std::string& method, Json params, DevToolsConnection::Reply reply = {});

    struct Frame {
        std::string parentId;
        std::wstring name;
        std::wstring url;
        bool nameKnown = false;
        bool loading = false;
        bool committed = false; // a document came since the frame started loading
        int context = 0;        // the default script context of its current document
    };
    // A navigation the host asked for, so that its request is not announced again.
    struct HostNavigation {
        std::string frameId;
        std::string engineUrl;
        std::optional<std::string> postData;
        std::wstring headers;
    };

    PageListener* m_listener;
    std::shared_ptr<EngineHost> m_engine;
    std::string m_context;
    std::string m_target;
    std::string m_session;
    std::string m_mainFrame;
    std::map<std::string, Frame> m_frames;
    std::vector<HostNavigation> m_hostNavigations;
    bool m_reloading = false;
    bool m_loading = false;
    bool m_closed = false;
    int m_width = 0;
    int m_height = 0;
    int m_zoom = 100;
    int m_sentZoom = 100;
    bool m_metricsSent = false;
};

} // namespace tovengine
