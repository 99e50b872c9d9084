#pragma once
// Stand-in for the separately installed pluggable protocol handler "TOV.HTMLPlug.1": the control only
// learns whether it can be created. Installing it maps the ProgID to a class object
// registered in this process; uninstalling removes both.
#include <windows.h>
#include <unknwn.h>

namespace tovfe {

// {54A19894-2053-419E-A15F-7A2BDDE7B92A}: the stand-in's own class.
inline constexpr CLSID CLSID_PluggableProtocolStandIn = {0x54a19894, 0x2053, 0x419e, {0xa1, 0x5f, 0x7a, 0x2b, 0xdd, 0xe7, 0xb9, 0x2a}};

class PluggableProtocolInstallation {
public:
    // `creationResult` is what creating the handler answers (S_OK: it is created).
    explicit PluggableProtocolInstallation(HRESULT creationResult = S_OK);
    ~PluggableProtocolInstallation();
    PluggableProtocolInstallation(const PluggableProtocolInstallation&) = delete;
    PluggableProtocolInstallation& operator=(const PluggableProtocolInstallation&) = delete;

    int Created() const;

private:
    DWORD m_cookie = 0;
};

} // namespace tovfe
