// Resources a front end and its tools find in the OCX besides code.
#include <gtest/gtest.h>
#include <cstring>
#include <string>
#include <vector>
#include "server/resource.h"
#include "support/ocx.h"

namespace {

class Resources : public testing::Test {
protected:
    void SetUp() override
    {
        module = LoadLibraryExW(tovtest::OcxPath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
        ASSERT_NE(nullptr, module);
    }
    void TearDown() override { FreeLibrary(module); }

    std::vector<unsigned char> Bytes(LPCWSTR type, LPCWSTR name, WORD lang = MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL))
    {
        HRSRC r = lang ? FindResourceExW(module, type, name, lang) : FindResourceW(module, name, type);
        if (!r) return {};
        auto* p = static_cast<const unsigned char*>(LockResource(LoadResource(module, r)));
        return std::vector<unsigned char>(p, p + SizeofResource(module, r));
    }
    HMODULE module = nullptr;
};

// Reads an extended dialog template field by field.
class TemplateReader {
public:
    explicit TemplateReader(const std::vector<unsigned char>& d) : m_d(d) {}
    WORD Word() { WORD w; std::memcpy(&w, &m_d.at(m_at + 1) - 1, 2); m_at += 2; return w; }
    DWORD Dword() { DWORD v; std::memcpy(&v, &m_d.at(m_at + 3) - 3, 4); m_at += 4; return v; }
    short Short() { return static_cast<short>(Word()); }
    std::wstring String()
    {
        std::wstring s;
        for (WORD c; (c = Word()) != 0;) s += static_cast<wchar_t>(c);
        return s;
    }
    // A name-or-ordinal field: "#n" for an ordinal.
    std::wstring SzOrOrd()
    {
        if (Peek() == 0xFFFF) { Word(); return L"#" + std::to_wstring(Word()); }
        return String();
    }
    WORD Peek() const { WORD w; std::memcpy(&w, &m_d.at(m_at + 1) - 1, 2); return w; }
    void AlignDword() { m_at = (m_at + 3) & ~size_t(3); }
    size_t Pos() const { return m_at; }

private:
    const std::vector<unsigned char>& m_d;
    size_t m_at = 0;
};

} // namespace

TEST_F(Resources, ProjectNameManifestAndRegistrationScript)
{
    wchar_t text[64] = {};
    ASSERT_GT(LoadStringW(module, IDS_PROJNAME, text, 64), 0);
    EXPECT_STREQ(L"TOVHTMLControl", text);

    auto manifest = Bytes(RT_MANIFEST, MAKEINTRESOURCEW(2), 0);
    ASSERT_FALSE(manifest.empty());
    const std::string m(manifest.begin(), manifest.end());
    EXPECT_NE(std::string::npos, m.find("level=\"asInvoker\""));
    EXPECT_NE(std::string::npos, m.find("uiAccess=\"false\""));
    EXPECT_EQ(std::string::npos, m.find("dependency")) << "the manifest asks for nothing else";

    auto script = Bytes(L"REGISTRY", MAKEINTRESOURCEW(IDR_TOVHTMLCONTROL), 0);
    ASSERT_FALSE(script.empty());
    const std::string s(script.begin(), script.end());
    EXPECT_NE(std::string::npos, s.find("%MODULE%"));
    EXPECT_FALSE(Bytes(L"TYPELIB", MAKEINTRESOURCEW(1), 0).empty());
}

TEST_F(Resources, VersionRecordCarriesTheListedKeys)
{
    const std::wstring path = tovtest::OcxPath();
    std::vector<unsigned char> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    ASSERT_FALSE(block.empty());
    ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
    void* fixedInfo = nullptr;
    UINT len = 0;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", &fixedInfo, &len));
    auto* ffi = static_cast<VS_FIXEDFILEINFO*>(fixedInfo);
    EXPECT_EQ(DWORD(VFT_DLL), ffi->dwFileType);
    EXPECT_EQ(DWORD(VOS__WINDOWS32), ffi->dwFileOS);

    struct Translation { WORD lang, codePage; }* tr = nullptr;
    ASSERT_TRUE(VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", reinterpret_cast<void**>(&tr), &len));
    EXPECT_EQ(0, tr->lang);
    EXPECT_EQ(0x04B0, tr->codePage);

    auto value = [&](const wchar_t* key) -> std::wstring {
        wchar_t* v = nullptr;
        UINT n = 0;
        std::wstring path = std::wstring(L"\\StringFileInfo\\000004b0\\") + key;
        if (!VerQueryValueW(block.data(), path.c_str(), reinterpret_cast<void**>(&v), &n)) return L"<missing>";
        return v ? std::wstring(v) : L"";
    };
    EXPECT_EQ(L"Orignal Version", value(L"Comments"));
    EXPECT_EQ(L"TOV HTML Control", value(L"FileDescription"));
    EXPECT_EQ(L"TOVHTML", value(L"InternalName"));
    EXPECT_EQ(L"TOVHTML.OCX", value(L"OriginalFilename"));
    EXPECT_EQ(L"", value(L"TOV hint"));
    for (const wchar_t* key : {L"FileVersion", L"ProductVersion", L"Build No", L"CompanyName", L"LegalCopyright", L"ProductName"})
        EXPECT_NE(L"<missing>", value(key)) << key;
}

TEST_F(Resources, SimpleBrowseDialogTemplate)
{
    auto d = Bytes(RT_DIALOG, MAKEINTRESOURCEW(IDD_TOVSIMPLEBROWSE), MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US));
    ASSERT_FALSE(d.empty()) << "dialog 105, language 1033";
    TemplateReader r(d);
    EXPECT_EQ(1, r.Word());      // version
    EXPECT_EQ(0xFFFF, r.Word()); // extended template
    EXPECT_EQ(0u, r.Dword());    // help id
    EXPECT_EQ(0u, r.Dword());    // extended style
    EXPECT_EQ(0x80CA00C2u, r.Dword());
    const DWORD style = 0x80CA00C2u;
    EXPECT_TRUE(style & DS_SYSMODAL);
    EXPECT_FALSE(style & (WS_VISIBLE | WS_THICKFRAME));
    ASSERT_EQ(3, r.Word()); // items
    EXPECT_EQ(0, r.Short());
    EXPECT_EQ(0, r.Short());
    EXPECT_EQ(591, r.Short());
    EXPECT_EQ(370, r.Short());
    EXPECT_EQ(L"", r.SzOrOrd()); // menu
    EXPECT_EQ(L"", r.SzOrOrd()); // class
    EXPECT_EQ(L"TOVSimpleBrowse", r.String());
    EXPECT_EQ(8, r.Word()); // point size
    EXPECT_EQ(0, r.Word()); // weight
    EXPECT_EQ(0, r.Word() & 0xFF); // italic, then character set in the high byte
    EXPECT_EQ(L"MS Sans Serif", r.String());

    struct Item {
        WORD id;
        const wchar_t* cls;
        const wchar_t* text;
        DWORD style;
        short x, y, cx, cy;
    };
    const Item items[] = {
        {IDOK, L"#128", L"OK", 0x48010001, 577, 7, 7, 6},
        {IDCANCEL, L"#128", L"Cancel", 0x48010000, 577, 7, 7, 6},
        {IDC_SIMPLEBROWSE_BROWSER, L"{8856F961-340A-11D0-A96B-00C04FD705A2}", L"", 0x50010000, 7, 7, 577, 356},
    };
    for (const Item& want : items) {
        SCOPED_TRACE(want.id);
        r.AlignDword();
        EXPECT_EQ(0u, r.Dword()); // help id
        EXPECT_EQ(0u, r.Dword()); // extended style
        EXPECT_EQ(want.style, r.Dword());
        EXPECT_EQ(want.x, r.Short());
        EXPECT_EQ(want.y, r.Short());
        EXPECT_EQ(want.cx, r.Short());
        EXPECT_EQ(want.cy, r.Short());
        EXPECT_EQ(want.id, r.Dword());
        const std::wstring cls = r.SzOrOrd();
        EXPECT_TRUE(cls == want.cls || (want.cls[0] == L'#' && _wcsicmp(cls.c_str(), L"Button") == 0)) << cls.size();
        EXPECT_EQ(want.text, r.SzOrOrd());
        EXPECT_EQ(0, r.Word()); // no creation data
    }
}

TEST_F(Resources, SimpleBrowseInitialisationData)
{
    auto d = Bytes(MAKEINTRESOURCEW(RT_DLGINIT_TYPE), MAKEINTRESOURCEW(IDD_TOVSIMPLEBROWSE), 0);
    ASSERT_EQ(2u + 2 + 4 + 160 + 2, d.size());
    TemplateReader r(d);
    EXPECT_EQ(IDC_SIMPLEBROWSE_BROWSER, r.Word());
    EXPECT_EQ(0x0376, r.Word());
    EXPECT_EQ(160u, r.Dword());
    const size_t data = r.Pos();
    DWORD cx = 0, cy = 0;
    std::memcpy(&cx, &d[data + 8], 4);
    std::memcpy(&cy, &d[data + 12], 4);
    EXPECT_EQ(22913u, cx) << "HIMETRIC width of item 202";
    EXPECT_EQ(15319u, cy);
    EXPECT_EQ(0, d[d.size() - 2]);
    EXPECT_EQ(0, d[d.size() - 1]);
}
