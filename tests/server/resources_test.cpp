// Resources a front end and its tools find in the OCX besides code, read field by field.
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
    std::vector<unsigned char> Bytes(LPCWSTR type, WORD name, WORD lang = MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL))
    {
        HRSRC r = FindResourceExW(module.Get(), type, MAKEINTRESOURCEW(name), lang);
        if (!r) return {};
        auto* p = static_cast<const unsigned char*>(LockResource(LoadResource(module.Get(), r)));
        return std::vector<unsigned char>(p, p + SizeofResource(module.Get(), r));
    }
    tov::UniqueLibrary module{LoadLibraryExW(tovtest::OcxPath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE)};
};

// Little-endian fields of a resource in order.
struct Reader {
    const std::vector<unsigned char>& d;
    size_t at = 0;
    WORD Word() { WORD w; std::memcpy(&w, &d.at(at + 1) - 1, 2); at += 2; return w; }
    DWORD Dword() { const DWORD low = Word(); return low | DWORD(Word()) << 16; }
    std::wstring String() { std::wstring s; for (WORD c; (c = Word()) != 0;) s += wchar_t(c); return s; }
    // A name-or-ordinal field: "#n" for an ordinal.
    std::wstring SzOrOrd()
    {
        if (d.at(at) != 0xFF || d.at(at + 1) != 0xFF) return String();
        at += 2;
        return L"#" + std::to_wstring(Word());
    }
};

} // namespace

// The registration script and the type library are proven by registering and by reading the library.
TEST_F(Resources, ProjectNameAndManifest)
{
    ASSERT_TRUE(module);
    wchar_t text[64] = {};
    ASSERT_GT(LoadStringW(module.Get(), IDS_PROJNAME, text, 64), 0);
    EXPECT_STREQ(L"TOVHTMLControl", text);
    const auto manifest = Bytes(RT_MANIFEST, 2, 0);
    const std::string m(manifest.begin(), manifest.end());
    EXPECT_NE(std::string::npos, m.find("level=\"asInvoker\""));
    EXPECT_NE(std::string::npos, m.find("uiAccess=\"false\""));
    EXPECT_EQ(std::string::npos, m.find("dependency")) << "the manifest asks for nothing else";
}

TEST_F(Resources, VersionRecordCarriesTheListedKeys)
{
    const std::wstring path = tovtest::OcxPath();
    std::vector<unsigned char> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    ASSERT_FALSE(block.empty());
    ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
    void* p = nullptr;
    UINT n = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &p, &n));
    EXPECT_EQ(DWORD(VFT_DLL), static_cast<const VS_FIXEDFILEINFO*>(p)->dwFileType);
    EXPECT_EQ(DWORD(VOS__WINDOWS32), static_cast<const VS_FIXEDFILEINFO*>(p)->dwFileOS);
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &p, &n));
    EXPECT_EQ(0x04B00000u, *static_cast<const DWORD*>(p)) << "language neutral, Unicode";
    auto value = [&](const wchar_t* key) -> std::wstring {
        const std::wstring path = std::wstring(L"\\StringFileInfo\\000004b0\\") + key;
        if (!VerQueryValueW(block.data(), path.c_str(), &p, &n)) return L"<missing>";
        return p ? static_cast<const wchar_t*>(p) : L"";
    };
    EXPECT_EQ(L"Orignal Version", value(L"Comments"));
    EXPECT_EQ(L"TOV HTML Control", value(L"FileDescription"));
    EXPECT_EQ(L"TOVHTML", value(L"InternalName"));
    EXPECT_EQ(L"TOVHTML.OCX", value(L"OriginalFilename"));
    EXPECT_EQ(L"", value(L"TOV hint"));
    for (const wchar_t* key : {L"FileVersion", L"ProductVersion", L"Build No", L"CompanyName", L"LegalCopyright", L"ProductName"})
        EXPECT_NE(L"<missing>", value(key)) << key;
}

TEST_F(Resources, SimpleBrowseDialogTemplateAndItsInitialisationData)
{
    const auto d = Bytes(RT_DIALOG, IDD_TOVSIMPLEBROWSE, MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
    ASSERT_FALSE(d.empty()) << "dialog 105, language 1033";
    Reader r{d};
    // Version, extended signature, help id, extended style, style, item count, position and size.
    EXPECT_EQ((std::vector<DWORD>{1, 0xFFFF, 0, 0, 0x80CA00C2u, 3, 0, 0, 591, 370}),
              (std::vector<DWORD>{r.Word(), r.Word(), r.Dword(), r.Dword(), r.Dword(), r.Word(), r.Word(), r.Word(), r.Word(), r.Word()}));
    EXPECT_EQ((std::vector<std::wstring>{L"", L"", L"TOVSimpleBrowse"}), (std::vector<std::wstring>{r.SzOrOrd(), r.SzOrOrd(), r.String()}));
    EXPECT_EQ((std::vector<DWORD>{8, 0, 0}), (std::vector<DWORD>{r.Word(), r.Word(), DWORD(r.Word() & 0xFF)})) << "size, weight, italic";
    EXPECT_EQ(L"MS Sans Serif", r.String());
    const struct {
        std::vector<DWORD> fields; // help id, extended style, style, x, y, cx, cy, id
        const wchar_t* cls;
        const wchar_t* text;
    } items[] = {
        {{0, 0, 0x48010001, 577, 7, 7, 6, IDOK}, L"#128", L"OK"},
        {{0, 0, 0x48010000, 577, 7, 7, 6, IDCANCEL}, L"#128", L"Cancel"},
        {{0, 0, 0x50010000, 7, 7, 577, 356, IDC_SIMPLEBROWSE_BROWSER}, L"{8856F961-340A-11D0-A96B-00C04FD705A2}", L""},
    };
    for (const auto& want : items) {
        SCOPED_TRACE(want.text);
        r.at = (r.at + 3) & ~size_t(3);
        EXPECT_EQ(want.fields, (std::vector<DWORD>{r.Dword(), r.Dword(), r.Dword(), r.Word(), r.Word(), r.Word(), r.Word(), r.Dword()}));
        const std::wstring cls = r.SzOrOrd();
        EXPECT_TRUE(cls == want.cls || (want.cls[0] == L'#' && _wcsicmp(cls.c_str(), L"Button") == 0));
        EXPECT_EQ(want.text, r.SzOrOrd());
        EXPECT_EQ(0, r.Word()) << "no creation data";
    }

    // The hosted browser's recorded state: item 202, the OLE-control message, 160 bytes, a closing zero.
    const auto init = Bytes(MAKEINTRESOURCEW(RT_DLGINIT_TYPE), IDD_TOVSIMPLEBROWSE, 0);
    ASSERT_EQ(2u + 2 + 4 + 160 + 2, init.size());
    Reader s{init};
    EXPECT_EQ((std::vector<DWORD>{IDC_SIMPLEBROWSE_BROWSER, 0x0376, 160}), (std::vector<DWORD>{s.Word(), s.Word(), s.Dword()}));
    s.at += 8;
    EXPECT_EQ((std::vector<DWORD>{22913, 15319}), (std::vector<DWORD>{s.Dword(), s.Dword()})) << "HIMETRIC size of item 202";
    EXPECT_EQ(0, init[init.size() - 2] | init[init.size() - 1]);
}
