// Resources a front end and its tools find in the OCX besides code, one comparison per resource.
// The registration script and the type library are proven by registering and by reading the library.
#include <gtest/gtest.h>
#include <cstring>
#include <string>
#include <vector>
#include "framework/handles.h"
#include "server/resource.h"
#include "support/ocx.h"

namespace {

class Resources : public testing::Test {
protected:
    std::vector<unsigned char> Bytes(LPCWSTR type, WORD name, WORD lang)
    {
        HRSRC r = FindResourceExW(module.Get(), type, MAKEINTRESOURCEW(name), lang);
        if (!r) return {};
        auto* p = static_cast<const unsigned char*>(LockResource(LoadResource(module.Get(), r)));
        return std::vector<unsigned char>(p, p + SizeofResource(module.Get(), r));
    }
    tov::UniqueLibrary module{LoadLibraryExW(tovtest::OcxPath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE)};
};

// Little-endian fields of a resource at a byte offset.
DWORD Field(const std::vector<unsigned char>& d, size_t at, size_t size = 2)
{
    DWORD v = 0;
    std::memcpy(&v, &d.at(at + size - 1) - (size - 1), size);
    return v;
}

} // namespace

TEST_F(Resources, ManifestAndVersionRecord)
{
    ASSERT_TRUE(module);
    const auto manifest = Bytes(RT_MANIFEST, 2, 0);
    const std::string m(manifest.begin(), manifest.end());
    EXPECT_NE(std::string::npos, m.find("level=\"asInvoker\""));
    EXPECT_EQ(std::string::npos, m.find("dependency")) << "the manifest asks for nothing else";

    const std::wstring path = tovtest::OcxPath();
    std::vector<unsigned char> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    ASSERT_FALSE(block.empty());
    ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
    std::vector<std::wstring> values;
    for (const wchar_t* key : {L"Comments", L"FileDescription", L"InternalName", L"OriginalFilename", L"TOV hint"}) {
        void* p = nullptr;
        UINT n = 0;
        const std::wstring query = std::wstring(L"\\StringFileInfo\\000004b0\\") + key;
        values.push_back(!VerQueryValueW(block.data(), query.c_str(), &p, &n) ? L"<missing>" : p ? static_cast<const wchar_t*>(p) : L"");
    }
    EXPECT_EQ((std::vector<std::wstring>{L"Orignal Version", L"TOV HTML Control", L"TOVHTML", L"TOVHTML.OCX", L""}), values)
        << "language neutral, Unicode";
}

TEST_F(Resources, SimpleBrowseDialogTemplateAndItsInitialisationData)
{
    const auto d = Bytes(RT_DIALOG, IDD_TOVSIMPLEBROWSE, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
    ASSERT_GT(d.size(), 26u) << "dialog 105, language 1033";
    // Version, extended signature, style, item count, width and height; then the hosted browser's class.
    EXPECT_EQ((std::vector<DWORD>{1, 0xFFFF, 0x80CA00C2u, 3, 591, 370}),
              (std::vector<DWORD>{Field(d, 0), Field(d, 2), Field(d, 12, 4), Field(d, 16), Field(d, 22), Field(d, 24)}));
    const std::wstring browser = L"{8856F961-340A-11D0-A96B-00C04FD705A2}";
    const std::string browserBytes(reinterpret_cast<const char*>(browser.c_str()), browser.size() * 2);
    EXPECT_NE(std::string::npos, std::string(d.begin(), d.end()).find(browserBytes));

    // The hosted browser's recorded state: item 202, the OLE-control message, 160 bytes with its HIMETRIC
    // size, a closing zero.
    const auto init = Bytes(MAKEINTRESOURCEW(RT_DLGINIT_TYPE), IDD_TOVSIMPLEBROWSE, 0);
    ASSERT_EQ(2u + 2 + 4 + 160 + 2, init.size());
    EXPECT_EQ((std::vector<DWORD>{IDC_SIMPLEBROWSE_BROWSER, 0x0376, 160, 22913, 15319, 0}),
              (std::vector<DWORD>{Field(init, 0), Field(init, 2), Field(init, 4, 4), Field(init, 16, 4), Field(init, 20, 4),
                                  Field(init, init.size() - 2)}));
}
