#include "engine/page.h"
#include "engine/base64.h"
#include "engine/engine_urls.h"
#include "engine/page_hooks.h"
#include "engine/served_content.h"
#include "engine/text.h"
#include "framework/hresult_error.h"

namespace tovengine {
namespace {

const char kContextMenuBinding[] = "__tovContextMenu";

// The form's content type, as the platform browser hands headers to BeforeNavigate.
std::wstring HeaderText(const Json& headers)
{
    std::wstring text;
    if (!headers.is_object()) return text;
    for (const auto& [name, value] : headers.items()) {
        if (!value.is_string()) continue;
        if (_stricmp(name.c_str(), "Content-Type") != 0) continue;
        text += Wide(name) + L": " + Wide(value.get<std::string>()) + L"\r\n";
    }
    return text;
}

// The exact bytes the engine encoded: postDataEntries carries them, the postData string may not.
std::optional<std::string> PostBytes(const Json& request)
{
    if (!BoolField(request, "hasPostData")) return std::nullopt;
    std::string bytes;
    const auto entries = request.find("postDataEntries");
    if (entries != request.end() && entries->is_array()) {
        for (const Json& entry : *entries) {
            const auto field = entry.is_object() ? entry.find("bytes") : entry.end();
            if (field != entry.end() && field->is_string()) bytes += Base64Decode(field->get_ref<const std::string&>());
        }
    } else {
        bytes = StringField(request, "postData");
    }
    return bytes;
}

} // namespace

std::shared_ptr<Page> Page::Create(PageListener& listener, int width, int height)
{
    std::shared_ptr<Page> page(new Page(listener));
    page->Start(width, height);
    return page;
}

Page::~Page()
{
    Close();
}

bool Page::Alive() const
{
    return !m_closed && m_engine && m_engine->Alive();
}

void Page::Send(const std::string& method, Json params, DevToolsConnection::Reply reply)
{
    if (!Alive()) return;
    m_engine->Connection().Send(method, std::move(params), m_session, std::move(reply));
}

void Page::Start(int width, int height)
{
    m_engine = EngineHost::Acquire();
    DevToolsConnection& c = m_engine->Connection();
    m_width = width > 0 ? width : 800;
    m_height = height > 0 ? height : 600;
    m_context = StringField(c.Call("Target.createBrowserContext", {{"disposeOnDetach", true}}), "browserContextId");
    m_target = StringField(c.Call("Target.createTarget", {{"url", "about:blank"},
                                                          {"browserContextId", m_context},
                                                          {"width", m_width},
                                                          {"height", m_height}}),
                           "targetId");
    m_session = StringField(c.Call("Target.attachToTarget", {{"targetId", m_target}, {"flatten", true}}), "sessionId");
    if (m_context.empty() || m_target.empty() || m_session.empty()) tov::Throw(E_FAIL);

    std::weak_ptr<Page> weak = weak_from_this();
    c.Subscribe(m_session, [weak](const std::string& method, const Json& params) {
        if (auto page = weak.lock()) page->OnEvent(method, params);
    });
    c.WhenClosed([weak] {
        if (auto page = weak.lock(); page && !page->m_closed) page->m_listener->OnEngineGone();
    });

    c.Call("Page.enable", Json::object(), m_session);
    c.Call("Runtime.enable", Json::object(), m_session);
    c.Call("Page.addScriptToEvaluateOnNewDocument", {{"source", PageHooksScript()}}, m_session);
    c.Call("Runtime.addBinding", {{"name", kContextMenuBinding}}, m_session);
    const Json tree = c.Call("Page.getFrameTree", Json::object(), m_session);
    if (const Json* frameTree = ObjectField(tree, "frameTree"))
        if (const Json* frame = ObjectField(*frameTree, "frame")) m_mainFrame = StringField(*frame, "id");
    m_frames[m_mainFrame].url = L"about:blank";
    m_frames[m_mainFrame].nameKnown = true;
    // Only documents and the hosts this DLL answers for stop in the browser object's hands.
    const Json patterns = Json::array({
        {{"urlPattern", "*"}, {"resourceType", "Document"}, {"requestStage", "Request"}},
        {{"urlPattern", std::string(urls::kServedRoot) + "*"}, {"requestStage", "Request"}},
        {{"urlPattern", std::string(urls::kEventRoot) + "*"}, {"requestStage", "Request"}},
    });
    c.Call("Fetch.enable", {{"patterns", patterns}}, m_session);
    Resize(m_width, m_height);
    c.Call("Page.startScreencast", {{"format", "png"}, {"everyNthFrame", 1}}, m_session);
}

void Page::Close() noexcept
{
    if (m_closed) return;
    m_closed = true;
    if (!m_engine) return;
    try {
        DevToolsConnection& c = m_engine->Connection();
        c.Unsubscribe(m_session);
        if (c.Alive()) {
            // Disposing the context closes its pages, popups included.
            if (!m_context.empty()) c.Call("Target.disposeBrowserContext", {{"browserContextId", m_context}}, {}, 5000);
        }
    } catch (...) {
        // An engine that is gone has nothing left to close.
    }
    m_engine.reset();
}

// ---- Host navigations --------------------------------------------------------------------------------

HRESULT Page::Navigate(const std::wstring& url, const std::string& frameId, const std::optional<std::string>& postData,
                       const std::wstring& headers)
{
    if (!Alive()) return E_FAIL;
    const std::string engineUrl = urls::ToEngine(Utf8(url));
    const std::string frame = EngineFrame(frameId);
    m_hostNavigations.push_back({frame, engineUrl, postData, headers});
    Json params = {{"url", engineUrl}, {"transitionType", "typed"}};
    if (frame != m_mainFrame) params["frameId"] = frame;
    Send("Page.navigate", std::move(params));
    return S_OK;
}

std::optional<std::wstring> Page::HistoryEntry(int delta)
{
    if (!Alive()) return std::nullopt;
    try {
        const Json history = m_engine->Connection().Call("Page.getNavigationHistory", Json::object(), m_session);
        const long long index = IntField(history, "currentIndex", -1) + delta;
        const auto entries = history.find("entries");
        if (entries == history.end() || !entries->is_array() || index < 0 ||
            index >= static_cast<long long>(entries->size()))
            return std::nullopt;
        return Wide(urls::FromEngine(StringField((*entries)[static_cast<size_t>(index)], "url")));
    } catch (const tov::HResultError&) {
        return std::nullopt;
    }
}

HRESULT Page::GoHistory(int delta)
{
    if (!Alive()) return E_FAIL;
    try {
        const Json history = m_engine->Connection().Call("Page.getNavigationHistory", Json::object(), m_session);
        const long long index = IntField(history, "currentIndex", -1) + delta;
        const auto entries = history.find("entries");
        if (entries == history.end() || !entries->is_array() || index < 0 ||
            index >= static_cast<long long>(entries->size()))
            return E_FAIL;
        const Json& entry = (*entries)[static_cast<size_t>(index)];
        m_hostNavigations.push_back({m_mainFrame, StringField(entry, "url"), std::nullopt, {}});
        Send("Page.navigateToHistoryEntry", {{"entryId", IntField(entry, "id")}});
        return S_OK;
    } catch (const tov::HResultError& e) {
        return e.Code();
    }
}

HRESULT Page::Reload()
{
    if (!Alive()) return E_FAIL;
    // A refresh is announced to nobody, as the platform browser does it.
    m_reloading = true;
    m_hostNavigations.push_back({m_mainFrame, {}, std::nullopt, {}});
    Send("Page.reload", {{"ignoreCache", true}});
    return S_OK;
}

HRESULT Page::StopLoading()
{
    if (!Alive()) return E_FAIL;
    Send("Page.stopLoading", Json::object());
    return S_OK;
}

// ---- Script --------------------------------------------------------------------------------------------

std::string Page::Evaluate(const std::string& frameId, const std::string& expression)
{
    if (!Alive()) tov::Throw(E_FAIL);
    Json params = {{"expression", expression}, {"returnByValue", true}};
    const std::string frame = EngineFrame(frameId);
    if (frame != m_mainFrame) {
        const auto it = m_frames.find(frame);
        if (it == m_frames.end() || it->second.context == 0) tov::Throw(E_FAIL);
        params["contextId"] = it->second.context;
    }
    Json answer;
    try {
        answer = m_engine->Connection().Call("Runtime.evaluate", std::move(params), m_session);
    } catch (const tov::HResultError& e) {
        // A page busy in a script of its own (an endless loop) answers nothing: its script is stopped.
        if (e.Code() == HRESULT_FROM_WIN32(ERROR_TIMEOUT)) Send("Runtime.terminateExecution", Json::object());
        throw;
    }
    if (answer.contains("exceptionDetails")) tov::Throw(DISP_E_EXCEPTION);
    const Json* result = ObjectField(answer, "result");
    if (!result) return {};
    const auto value = result->find("value");
    if (value == result->end() || value->is_null()) return {};
    return value->is_string() ? value->get<std::string>() : JsonText(*value);
}

void Page::EvaluateLater(const std::string& frameId, const std::string& expression)
{
    Json params = {{"expression", expression}};
    const std::string frame = EngineFrame(frameId);
    if (frame != m_mainFrame) {
        const auto it = m_frames.find(frame);
        if (it == m_frames.end() || it->second.context == 0) return;
        params["contextId"] = it->second.context;
    }
    Send("Runtime.evaluate", std::move(params));
}

// ---- Frames --------------------------------------------------------------------------------------------

std::wstring Page::FrameUrl(const std::string& frameId) const
{
    const auto it = m_frames.find(EngineFrame(frameId));
    return it == m_frames.end() ? std::wstring() : it->second.url;
}

std::wstring Page::FrameName(const std::string& frameId) const
{
    const auto it = m_frames.find(EngineFrame(frameId));
    return it == m_frames.end() ? std::wstring() : it->second.name;
}

std::string Page::FrameByName(const std::wstring& name) const
{
    for (const auto& [id, frame] : m_frames)
        if (id != m_mainFrame && frame.name == name) return id;
    return {};
}

// ---- View ----------------------------------------------------------------------------------------------

void Page::Resize(int width, int height)
{
    if (width <= 0 || height <= 0) return;
    // Every own navigation sets the zoom again: the engine lays the page out anew only when it changed.
    if (m_metricsSent && width == m_width && height == m_height && m_zoom == m_sentZoom) return;
    m_metricsSent = true;
    m_sentZoom = m_zoom;
    m_width = width;
    m_height = height;
    const double scale = m_zoom / 100.0;
    Send("Emulation.setDeviceMetricsOverride", {{"width", static_cast<int>(width / scale)},
                                                {"height", static_cast<int>(height / scale)},
                                                {"deviceScaleFactor", scale},
                                                {"mobile", false}});
}

void Page::Zoom(int percent)
{
    if (percent < 10 || percent > 1000) return;
    m_zoom = percent;
    Resize(m_width, m_height);
}

void Page::Mouse(const char* type, int x, int y, const char* button, int clickCount, int modifiers, int deltaX, int deltaY)
{
    const double scale = m_zoom / 100.0;
    Json params = {{"type", type},   {"x", x / scale}, {"y", y / scale}, {"button", button}, {"clickCount", clickCount},
                   {"modifiers", modifiers}};
    if (deltaX || deltaY) {
        params["deltaX"] = deltaX;
        params["deltaY"] = deltaY;
    }
    Send("Input.dispatchMouseEvent", std::move(params));
}

void Page::Key(const char* type, int virtualKey, const std::wstring& text, int modifiers)
{
    Json params = {{"type", type}, {"windowsVirtualKeyCode", virtualKey}, {"modifiers", modifiers}};
    if (!text.empty()) {
        params["text"] = Utf8(text);
        params["unmodifiedText"] = Utf8(text);
    }
    Send("Input.dispatchKeyEvent", std::move(params));
}

// ---- Engine events -------------------------------------------------------------------------------------

void Page::OnEvent(const std::string& method, const Json& params)
{
    if (m_closed) return;
    if (method == "Fetch.requestPaused") {
        OnRequestPaused(params);
    } else if (method == "Page.frameAttached") {
        const std::string id = StringField(params, "frameId");
        m_frames[id].parentId = StringField(params, "parentFrameId");
    } else if (method == "Page.frameDetached") {
        m_frames.erase(StringField(params, "frameId"));
    } else if (method == "Page.frameStartedLoading") {
        const std::string id = StringField(params, "frameId");
        m_frames[id].loading = true;
        if (id == m_mainFrame && !m_loading) {
            m_loading = true;
            m_listener->OnDownloadBegin();
        }
    } else if (method == "Page.frameNavigated") {
        if (const Json* frame = ObjectField(params, "frame")) OnFrameNavigated(*frame);
    } else if (method == "Page.frameStoppedLoading") {
        OnFrameStoppedLoading(StringField(params, "frameId"));
    } else if (method == "Page.frameRequestedNavigation") {
        // A script's own navigation to a scheme the engine does not load is seen only here.
        const std::string url = StringField(params, "url");
        if (url.size() >= 9 && _strnicmp(url.c_str(), "tovevent:", 9) == 0) {
            PageListener::Navigation nav;
            nav.frameId = ListenerFrame(StringField(params, "frameId"));
            nav.url = Wide(url);
            nav.targetName = nav.frameId.empty() ? std::wstring() : FrameName(nav.frameId);
            m_listener->OnBeforeNavigate(nav);
        }
    } else if (method == "Page.windowOpen") {
        const std::string url = StringField(params, "url");
        // The engine opened a page of its own for it; the browser's host decides where the URL goes.
        ClosePagesOpenedByThis(kPopupLookups);
        m_listener->OnNewWindow(Wide(urls::FromEngine(url)));
    } else if (method == "Page.screencastFrame") {
        Send("Page.screencastFrameAck", {{"sessionId", IntField(params, "sessionId")}});
        m_listener->OnFrame(StringField(params, "data"));
    } else if (method == "Runtime.executionContextCreated") {
        if (const Json* context = ObjectField(params, "context")) {
            const Json* aux = ObjectField(*context, "auxData");
            if (aux && BoolField(*aux, "isDefault")) {
                const auto it = m_frames.find(StringField(*aux, "frameId"));
                if (it != m_frames.end()) it->second.context = static_cast<int>(IntField(*context, "id"));
            }
        }
    } else if (method == "Runtime.bindingCalled") {
        if (StringField(params, "name") == kContextMenuBinding) {
            const Json point = ParseMessage(StringField(params, "payload"));
            const double scale = m_zoom / 100.0;
            m_listener->OnContextMenu(static_cast<int>(NumberField(point, "x") * scale),
                                      static_cast<int>(NumberField(point, "y") * scale));
        }
    } else if (method == "Inspector.targetCrashed" || method == "Inspector.detached") {
        m_listener->OnEngineGone();
    }
}

void Page::ClosePagesOpenedByThis(int lookupsLeft)
{
    // The engine lists the page it opened some time after it told of it: looked for again until found.
    Send("Target.getTargets", Json::object(), [weak = weak_from_this(), lookupsLeft](const Json* result, const Json*) {
        auto page = weak.lock();
        if (!page || page->m_closed || !result) return;
        bool found = false;
        const auto infos = result->find("targetInfos");
        if (infos != result->end() && infos->is_array())
            for (const Json& info : *infos)
                if (StringField(info, "openerId") == page->m_target && StringField(info, "targetId") != page->m_target) {
                    page->m_engine->Connection().Send("Target.closeTarget", {{"targetId", StringField(info, "targetId")}});
                    found = true;
                }
        if (!found && lookupsLeft > 1) page->ClosePagesOpenedByThis(lookupsLeft - 1);
    });
}

void Page::OnFrameNavigated(const Json& frame)
{
    const std::string id = StringField(frame, "id");
    Frame& state = m_frames[id];
    state.parentId = StringField(frame, "parentId");
    state.name = Wide(StringField(frame, "name"));
    state.nameKnown = true;
    state.url = Wide(urls::FromEngine(StringField(frame, "url")));
    state.context = 0;
    state.committed = true;
    std::erase_if(m_hostNavigations, [&](const HostNavigation& n) { return n.frameId == id; });
    if (id == m_mainFrame && m_reloading) return;
    m_listener->OnNavigateComplete(ListenerFrame(id), state.url);
}

void Page::OnFrameStoppedLoading(const std::string& frameId)
{
    const auto it = m_frames.find(frameId);
    if (it == m_frames.end()) return;
    it->second.loading = false;
    // A navigation that was cancelled or failed before a document came leaves no completion.
    const bool committed = std::exchange(it->second.committed, false);
    const std::wstring url = it->second.url;
    if (frameId != m_mainFrame) {
        if (committed) m_listener->OnDocumentComplete(frameId, url);
        return;
    }
    const bool reloading = std::exchange(m_reloading, false);
    if (committed && !reloading) {
        m_listener->OnDocumentComplete({}, url);
        Send("Runtime.evaluate", {{"expression", "document.title"}, {"returnByValue", true}},
             [weak = weak_from_this()](const Json* result, const Json*) {
                 auto page = weak.lock();
                 if (!page || page->m_closed || !result) return;
                 if (const Json* value = ObjectField(*result, "result"))
                     page->m_listener->OnTitleChange(Wide(StringField(*value, "value")));
             });
    }
    if (m_loading) {
        m_loading = false;
        m_listener->OnDownloadComplete();
    }
}

// ---- Requests ------------------------------------------------------------------------------------------

void Page::Continue(const std::string& requestId, const Json& extra)
{
    Json params = extra;
    params["requestId"] = requestId;
    Send("Fetch.continueRequest", std::move(params));
}

void Page::Fail(const std::string& requestId)
{
    Send("Fetch.failRequest", {{"requestId", requestId}, {"errorReason", "Aborted"}});
}

void Page::Serve(const std::string& requestId, const std::string& engineUrl)
{
    const ServedResponse response = LoadServed(Wide(urls::FromEngine(engineUrl)));
    Json headers = Json::array();
    if (!response.mimeType.empty()) headers.push_back({{"name", "Content-Type"}, {"value", response.mimeType}});
    headers.push_back({{"name", "Cache-Control"}, {"value", "no-store"}});
    Send("Fetch.fulfillRequest", {{"requestId", requestId},
                                  {"responseCode", response.status},
                                  {"responseHeaders", headers},
                                  {"body", Base64Encode(response.body)}});
}

void Page::OnRequestPaused(const Json& params)
{
    const std::string requestId = StringField(params, "requestId");
    const Json* request = ObjectField(params, "request");
    if (!request || requestId.empty()) return;
    const std::string url = StringField(*request, "url");
    const bool document = StringField(params, "resourceType") == "Document";
    const std::string frameId = StringField(params, "frameId");

    if (!document) {
        if (urls::IsServed(url)) Serve(requestId, url);
        else if (urls::IsEvent(url)) Fail(requestId);
        else Continue(requestId);
        return;
    }

    // The host's own navigation was announced when it was asked for.
    auto host = std::find_if(m_hostNavigations.begin(), m_hostNavigations.end(), [&](const HostNavigation& n) {
        return n.frameId == frameId && (n.engineUrl == url || n.engineUrl.empty());
    });
    if (host == m_hostNavigations.end())
        host = std::find_if(m_hostNavigations.begin(), m_hostNavigations.end(),
                            [&](const HostNavigation& n) { return n.frameId == frameId; });
    if (host != m_hostNavigations.end()) {
        HostNavigation navigation = std::move(*host);
        m_hostNavigations.erase(host);
        if (navigation.postData) {
            Json extra = {{"method", "POST"}, {"postData", Base64Encode(*navigation.postData)}};
            Json headers = Json::array();
            if (const Json* own = ObjectField(*request, "headers"))
                for (const auto& [name, value] : own->items())
                    if (value.is_string()) headers.push_back({{"name", name}, {"value", value}});
            std::wstring lines = navigation.headers;
            for (size_t start = 0; start < lines.size();) {
                size_t end = lines.find(L"\r\n", start);
                if (end == std::wstring::npos) end = lines.size();
                const std::wstring line = lines.substr(start, end - start);
                const size_t colon = line.find(L':');
                if (colon != std::wstring::npos) {
                    size_t valueStart = colon + 1;
                    while (valueStart < line.size() && line[valueStart] == L' ') ++valueStart;
                    headers.push_back({{"name", Utf8(line.substr(0, colon))}, {"value", Utf8(line.substr(valueStart))}});
                }
                start = end + 2;
            }
            extra["headers"] = headers;
            if (urls::IsServed(url)) Serve(requestId, url);
            else Continue(requestId, extra);
            return;
        }
        if (urls::IsServed(url)) Serve(requestId, url);
        else Continue(requestId);
        return;
    }

    PageListener::Navigation nav;
    nav.frameId = ListenerFrame(frameId);
    nav.url = Wide(urls::FromEngine(url));
    nav.postData = PostBytes(*request);
    if (nav.postData) nav.headers = HeaderText(request->contains("headers") ? (*request)["headers"] : Json());
    const auto frame = m_frames.find(frameId);
    const bool nameKnown = frameId == m_mainFrame || (frame != m_frames.end() && frame->second.nameKnown);
    if (nameKnown) {
        nav.targetName = nav.frameId.empty() ? std::wstring() : frame->second.name;
        ContinueDocument(requestId, url, nav, true);
        return;
    }
    // A frame's first document: its name stands on the frame element in the parent document, which
    // answers while this request waits.
    Send("DOM.getFrameOwner", {{"frameId", frameId}},
         [weak = weak_from_this(), requestId, url, nav, frameId](const Json* owner, const Json*) mutable {
             auto page = weak.lock();
             if (!page || page->m_closed) return;
             const long long node = owner ? IntField(*owner, "backendNodeId") : 0;
             if (node == 0) {
                 page->ContinueDocument(requestId, url, nav, true);
                 return;
             }
             page->Send("DOM.describeNode", {{"backendNodeId", node}},
                        [weak, requestId, url, nav, frameId](const Json* described, const Json*) mutable {
                            auto page = weak.lock();
                            if (!page || page->m_closed) return;
                            std::wstring name;
                            const Json* node = described ? ObjectField(*described, "node") : nullptr;
                            const auto attributes = node ? node->find("attributes") : Json::const_iterator();
                            if (node && attributes != node->end() && attributes->is_array())
                                for (size_t i = 0; i + 1 < attributes->size(); i += 2)
                                    if ((*attributes)[i] == "name" && (*attributes)[i + 1].is_string())
                                        name = Wide((*attributes)[i + 1].get<std::string>());
                            Frame& frame = page->m_frames[frameId];
                            frame.name = name;
                            frame.nameKnown = true;
                            nav.targetName = name;
                            page->ContinueDocument(requestId, url, nav, true);
                        });
         });
}

void Page::ContinueDocument(const std::string& requestId, const std::string& engineUrl,
                            const PageListener::Navigation& nav, bool announce)
{
    // The engine cannot load a TOVEVENT: its request only carried the page's own encoding of it. Its end
    // leaves as soon as the host has heard of it, or before anything the host's handlers send meanwhile:
    // the page answers no script while its top document's request waits, and handlers may well ask it.
    if (urls::IsEvent(engineUrl)) {
        if (Alive()) m_engine->Connection().SendAfterHandler("Fetch.failRequest", {{"requestId", requestId}, {"errorReason", "Aborted"}}, m_session);
        if (announce) m_listener->OnBeforeNavigate(nav);
        return;
    }
    const bool cancel = announce && m_listener->OnBeforeNavigate(nav);
    if (m_closed) return;
    if (cancel) Fail(requestId);
    else if (urls::IsServed(engineUrl)) Serve(requestId, engineUrl);
    else Continue(requestId);
}

} // namespace tovengine
