#pragma once
// The front end as the control sees it: a container that hands out services, and the trace service
// that a test sets to a level and that collects every line.
#include <windows.h>
#include <map>
#include <string>
#include <vector>
#include "frontend/call_log.h"
#include "framework/com_ptr.h"
#include "tov_frontend.h"

namespace tovfe {

// Reference counting shared by the front-end stand-ins.
template <class Itf> class RefCounted : public Itf {
public:
    STDMETHODIMP_(ULONG) AddRef() override { return ++m_refs; }
    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG n = --m_refs;
        if (!n) delete this;
        return n;
    }
    ULONG RefCount() const { return m_refs; }
    virtual ~RefCounted() = default;

private:
    ULONG m_refs = 1;
};

class FrontendContainer final : public RefCounted<ITOVFrontendContainer> {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP GetService(REFGUID guidService, REFIID riid, IUnknown** ppService) override;

    void AddService(REFGUID sid, IUnknown* service);
    CallLog& Log() { return m_log; }

private:
    std::map<std::wstring, tov::ComPtr<IUnknown>> m_services;
    CallLog m_log;
};

class TraceSinkStandIn final : public RefCounted<ITOVTraceSink> {
public:
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;
    STDMETHODIMP GetTypeInfoCount(UINT* n) override { if (n) *n = 0; return S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override { return E_NOTIMPL; }
    STDMETHODIMP WriteLine(GUID component, LPCSTR text) override;
    STDMETHODIMP GetTraceLevel(GUID component, ULONG* pLevel) override;

    void SetLevel(ULONG level) { m_level = level; }
    void FailGetLevel(HRESULT hr) { m_levelFailure = hr; }
    const std::vector<std::string>& Lines() const { return m_lines; }
    const std::vector<GUID>& Components() const { return m_components; }
    void ClearLines() { m_lines.clear(); m_components.clear(); }
    int LevelQueries() const { return m_levelQueries; }
    // Every line written so far, one per row, for a person reading the demo.
    std::string Text() const;

private:
    ULONG m_level = 0;
    HRESULT m_levelFailure = S_OK;
    int m_levelQueries = 0;
    std::vector<std::string> m_lines;
    std::vector<GUID> m_components;
};

std::wstring GuidKey(REFGUID g);

// A container with the trace service registered.
void MakeFrontend(tov::ComPtr<FrontendContainer>& container, tov::ComPtr<TraceSinkStandIn>& sink);

} // namespace tovfe
