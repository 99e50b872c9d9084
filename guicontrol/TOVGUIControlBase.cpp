#include "guicontrol/TOVGUIControlBase.h"
#include "framework/hresult_error.h"

CTOVGUIControlBase::~CTOVGUIControlBase()
{
    ReleaseServices();
    m_pContainer.Reset();
}

void CTOVGUIControlBase::ReleaseServices()
{
    m_pTraceSink.Reset();
}

STDMETHODIMP CTOVGUIControlBase::SetContainer(IUnknown* pContainer)
{
    try {
        if (!pContainer && m_bConnected) {
            OnContainerDisconnecting();
            m_bConnected = false;
        }
        ReleaseServices();
        m_pContainer.Reset();
        if (pContainer) pContainer->QueryInterface(IID_ITOVFrontendContainer, m_pContainer.PutVoid());
        if (m_pContainer) {
            OnContainerConnected();
            m_bConnected = true;
        }
    } catch (...) {
    }
    return S_OK;
}

STDMETHODIMP CTOVGUIControlBase::HandleEvent(LONG lEvent, IUnknown*)
{
    try {
        if (lEvent == 103) OnTraceSettingsChanged();
        return 1;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

STDMETHODIMP CTOVGUIControlBase::ForwardToGUIService(LONG)
{
    return S_OK;
}

ITOVTraceSink* CTOVGUIControlBase::GetTraceSink()
{
    if (!m_pTraceSink && m_pContainer) {
        tov::ComPtr<IUnknown> service;
        if (SUCCEEDED(m_pContainer->GetService(SID_TOVTraceSink, IID_ITOVTraceSink, service.Put())) && service)
            service->QueryInterface(IID_ITOVTraceSink, m_pTraceSink.PutVoid());
    }
    return m_pTraceSink.Get();
}
