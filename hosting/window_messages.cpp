// Messages of the control's own window, and the keyboard accelerators it passes to the browser.
#include "control/automation_call.h"
#include <cstring>
#include "hosting/host_policy.h"

using namespace tov;

namespace {
// The front end's readiness record: the two fields the control reads.
constexpr size_t kReadyOffset = 24;
constexpr size_t kHoldOffset = 32;

bool FieldSet(LPARAM record, size_t offset)
{
    LONG value = 0;
    std::memcpy(&value, reinterpret_cast<const BYTE*>(record) + offset, sizeof(value));
    return value != 0;
}

// Whether [p, p + n) is committed, readable memory of this process.
bool Readable(const void* p, size_t n)
{
    const auto* at = static_cast<const BYTE*>(p);
    const auto* end = at + n;
    if (!p || end < at) return false;
    while (at < end) {
        MEMORY_BASIC_INFORMATION info{};
        if (!VirtualQuery(at, &info, sizeof info) || info.State != MEM_COMMIT) return false;
        const DWORD access = info.Protect & 0xFF;
        if ((info.Protect & PAGE_GUARD) || access == PAGE_NOACCESS || access == PAGE_EXECUTE) return false;
        at = static_cast<const BYTE*>(info.BaseAddress) + info.RegionSize;
    }
    return true;
}

// The two messages carry pointers into the sender's memory: they mean something only when this thread
// sent or posted them itself and the pointer leads to readable memory here. A message another thread or
// process sent, or a pointer into nothing, is ignored.
bool OwnRecord(const void* record, size_t size)
{
    return InSendMessageEx(nullptr) == ISMEX_NOSEND && Readable(record, size);
}

// The front end's protocol is the message names; their numbers are whatever the system gives, once.
UINT ReadyForInputMessage()
{
    static const UINT message = RegisterWindowMessageA("TOV_CM_READY_FOR_INPUT");
    return message;
}
UINT WantKeyMessage()
{
    static const UINT message = RegisterWindowMessageA("WM_TOV_WANTKEY");
    return message;
}
} // namespace

bool CTOVHTMLControl::OnMessage(UINT msg, WPARAM wParam, LPARAM lParam, LRESULT& result)
{
    switch (msg) {
    case WM_ERASEBKGND:
        if (!m_pOleObject) return false;
        result = 1; // the browser covers the control: no erasing, no flicker
        return true;
    case WM_SETFOCUS:
        if (!m_pOleObject) return false;
        ActivateBrowserInPlace(true);
        result = 1;
        return true;
    case WM_SIZE:
        result = 0;
        if (m_pWebBrowser && m_bInPlaceActive) {
            try {
                ComPtr<IOleInPlaceObject> inPlace;
                RECT rc{};
                if (SUCCEEDED(m_pWebBrowser->QueryInterface(IID_IOleInPlaceObject, inPlace.PutVoid())) &&
                    GetClientRect(ControlWindow(), &rc))
                    inPlace->SetObjectRects(&rc, &rc);
            } catch (...) {
                ReportCaught(Failures(), "WM_SIZE");
            }
        }
        return true;
    default:
        break;
    }
    if (msg != 0 && msg == ReadyForInputMessage()) {
        // Without a record of its own both flags stay as they are.
        if (lParam && OwnRecord(reinterpret_cast<const void*>(lParam), kHoldOffset + sizeof(LONG))) {
            m_bHoldNavigateComplete = FieldSet(lParam, kHoldOffset);
            m_bReadyForInput = FieldSet(lParam, kReadyOffset);
        }
        result = 0;
        return true;
    }
    if (msg != 0 && msg == WantKeyMessage()) {
        result = OnTOVWantKey(wParam);
        return true;
    }
    return false;
}

LRESULT CTOVHTMLControl::OnTOVWantKey(WPARAM wParam)
{
    GetKeyState(VK_CONTROL);
    GetKeyState(VK_SHIFT);
    CTraceScope scope(m_trace, TraceSinkRef(), "OnTOVWantKey");
    if (!wParam || !OwnRecord(reinterpret_cast<const void*>(wParam), sizeof(MSG))) return 0;
    const auto* message = reinterpret_cast<const MSG*>(wParam);
    return host::WantsKey(static_cast<uint64_t>(message->wParam)) ? 1 : 0;
}

STDMETHODIMP CTOVHTMLControl::TranslateAccelerator(LPMSG lpmsg)
{
    ComPtr<IOleInPlaceActiveObject> active;
    if (!m_pOleObject || FAILED(m_pOleObject->QueryInterface(IID_IOleInPlaceActiveObject, active.PutVoid())) || !active)
        return S_FALSE;
    return active->TranslateAccelerator(lpmsg);
}
