#pragma once
// The front end's protocol handler for its provider data, as the browser reaches it through urlmon:
// "tovhtmlp:" URLs and the moniker form "mk:@TOVHTML:..." both serve what the data store holds under the
// URL without "mk:". Registered for this process as temporary namespace handlers of urlmon's session.
#include <windows.h>
#include <string>

namespace tovfe {

// {7C0A5E51-2B1D-4E55-9B7E-2F3C7A1D0C61}: the handler's class in this process.
inline constexpr CLSID CLSID_ProviderProtocol = {0x7c0a5e51, 0x2b1d, 0x4e55, {0x9b, 0x7e, 0x2f, 0x3c, 0x7a, 0x1d, 0x0c, 0x61}};

// The MIME type the handler reports for a data subtype ("html" → "text/html", "gif" → "image/gif" ...).
std::wstring MimeTypeOfSubtype(const std::wstring& subtype);

class ProviderProtocolRegistration {
public:
    ProviderProtocolRegistration();
    ~ProviderProtocolRegistration();
    ProviderProtocolRegistration(const ProviderProtocolRegistration&) = delete;
    ProviderProtocolRegistration& operator=(const ProviderProtocolRegistration&) = delete;

    HRESULT Result() const { return m_result; }
    // How many requests the handler answered, found or not.
    static int Requests();

private:
    HRESULT m_result = E_FAIL;
};

} // namespace tovfe
