#pragma once
// Parameter objects of the front end's framework events, built from a test's description: a record of
// named children with text attributes (event 106 and its "dpi_change"), and a dragged data object
// with a file list (the 400 range). The menu of event 300 is the context-menu stand-in.
#include <windows.h>
#include <objidl.h>
#include <map>
#include <memory>
#include <string>
#include <vector>
#include "frontend/frontend_container.h"
#include "framework/hresult_error.h"

namespace tovfe {

// Child name → attribute name → text.
using EventParameterDescription = std::map<std::wstring, std::map<std::wstring, std::wstring>>;

class EventRecordStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVEventRecord> {
public:
    static tov::ComPtr<EventRecordStandIn> Create(std::map<std::wstring, std::wstring> attributes,
                                                  std::shared_ptr<Recorder> rec);

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVEventRecord>(IID_ITOVEventRecord, this),
                             tov::Entry<ITOVEventRecord>(IID_IDispatch, this)});
    }
    // A missing attribute answers a copy of the default text.
    STDMETHODIMP GetAttribute(BSTR name, BSTR defaultText, BSTR* pValue) override;

private:
    friend class tov::ObjectRoot;
    EventRecordStandIn() = default;

    std::map<std::wstring, std::wstring> m_attributes;
    std::shared_ptr<Recorder> m_rec;
};

class EventParameterStandIn final : public tov::ObjectRoot, public EarlyBoundOnly<ITOVEventParameter> {
public:
    static tov::ComPtr<EventParameterStandIn> Create(const EventParameterDescription& description);

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<ITOVEventParameter>(IID_ITOVEventParameter, this),
                             tov::Entry<ITOVEventParameter>(IID_IDispatch, this)});
    }
    // A missing child answers S_FALSE and null, as the front end's records do.
    STDMETHODIMP GetChild(BSTR name, ITOVEventRecord** ppChild) override;

    // "GetChild(name)" and "GetAttribute(name, default)" in order.
    CallLog& Log() { return m_rec->log; }
    FailurePlan& Plan() { return m_rec->plan; }

private:
    friend class tov::ObjectRoot;
    EventParameterStandIn() = default;

    std::map<std::wstring, tov::ComPtr<EventRecordStandIn>> m_children;
    std::shared_ptr<Recorder> m_rec;
};

// A dragged data object offering CF_HDROP in an HGLOBAL, with wide or narrow file names.
class DragDataStandIn final : public tov::ObjectRoot, public IDataObject {
public:
    static tov::ComPtr<DragDataStandIn> Create(std::vector<std::wstring> files, bool wide = true);

    TOV_IUNKNOWN_DELEGATING
    void* FindInterface(REFIID riid) noexcept override
    {
        return Lookup(riid, {tov::Entry<IDataObject>(IID_IDataObject, this)});
    }
    STDMETHODIMP GetData(FORMATETC* pFormat, STGMEDIUM* pMedium) override;
    STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    STDMETHODIMP QueryGetData(FORMATETC* pFormat) override;
    STDMETHODIMP GetCanonicalFormatEtc(FORMATETC*, FORMATETC* pOut) override;
    STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    STDMETHODIMP EnumFormatEtc(DWORD, IEnumFORMATETC** pp) override { return tov::NotImplemented(pp); }
    STDMETHODIMP DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    STDMETHODIMP EnumDAdvise(IEnumSTATDATA** pp) override { if (pp) *pp = nullptr; return OLE_E_ADVISENOTSUPPORTED; }

    // Replaces the raw CF_HDROP block, for malformed lists.
    void SetRawBlock(std::string bytes) { m_block = std::move(bytes); }
    int GetDataCalls() const { return m_getDataCalls; }

private:
    friend class tov::ObjectRoot;
    DragDataStandIn() = default;

    std::string m_block;
    int m_getDataCalls = 0;
};

} // namespace tovfe
