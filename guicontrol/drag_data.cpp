#include "guicontrol/drag_data.h"
#include <shlobj.h>
#include <cstring>
#include <optional>
#include "framework/code_pages.h"
#include "framework/handles.h"

namespace {

// Holds a medium the data object handed out, locked while the text is read.
class LockedMedium {
public:
    LockedMedium() = default;
    ~LockedMedium()
    {
        m_lock.reset();
        ReleaseStgMedium(&m_medium);
    }
    LockedMedium(const LockedMedium&) = delete;
    LockedMedium& operator=(const LockedMedium&) = delete;

    STGMEDIUM* Put() { return &m_medium; }
    const BYTE* Lock()
    {
        if (m_medium.tymed != TYMED_HGLOBAL || !m_medium.hGlobal) return nullptr;
        m_size = GlobalSize(m_medium.hGlobal);
        m_lock.emplace(m_medium.hGlobal);
        return m_lock->As<const BYTE>();
    }
    SIZE_T Size() const { return m_lock && m_lock->As<const BYTE>() ? m_size : 0; }

private:
    STGMEDIUM m_medium{};
    std::optional<tov::GlobalMemoryLock> m_lock; // unlocked before the medium is released
    SIZE_T m_size = 0;
};

// The zero-terminated string of `Char` at `offset`; the block's end stops an unterminated one.
template <class Char> std::wstring StringAt(const BYTE* block, SIZE_T size, SIZE_T offset)
{
    std::basic_string<Char> text;
    for (SIZE_T at = offset; at + sizeof(Char) <= size; at += sizeof(Char)) {
        Char c;
        std::memcpy(&c, block + at, sizeof(Char));
        if (c == 0) break;
        text.push_back(c);
    }
    if constexpr (sizeof(Char) == sizeof(wchar_t)) {
        return std::wstring(text.begin(), text.end());
    } else {
        return tov::Widen(text, CP_ACP);
    }
}

} // namespace

std::wstring FirstDroppedFileName(IDataObject* data)
{
    if (!data) return {};
    FORMATETC format{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    LockedMedium medium;
    if (FAILED(data->GetData(&format, medium.Put()))) return {};
    const BYTE* block = medium.Lock();
    const SIZE_T size = medium.Size();
    if (!block || size < sizeof(DROPFILES)) return {};
    DROPFILES header;
    std::memcpy(&header, block, sizeof(header));
    if (header.pFiles < sizeof(DROPFILES) || header.pFiles >= size) return {};
    return header.fWide ? StringAt<wchar_t>(block, size, header.pFiles) : StringAt<char>(block, size, header.pFiles);
}
