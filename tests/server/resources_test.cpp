// Resources a front end and its tools find in the OCX besides code, one comparison per resource.
// The registration script and the type library are proven by registering and by reading the library, the
// SimpleBrowse dialog template by the control opening its dialog.
#include <gtest/gtest.h>
#include <string>
#include <vector>
#include "framework/handles.h"
#include "support/ocx.h"

TEST(Resources, ManifestAndVersionRecord)
{
    const std::wstring path = tovtest::OcxPath();
    tov::UniqueLibrary module(LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
    const HRSRC manifest = FindResourceExW(module.Get(), RT_MANIFEST, MAKEINTRESOURCEW(2), 0);
    ASSERT_TRUE(manifest);
    const std::string m(static_cast<const char*>(LockResource(LoadResource(module.Get(), manifest))),
                        SizeofResource(module.Get(), manifest));
    EXPECT_NE(std::string::npos, m.find("level=\"asInvoker\""));
    EXPECT_EQ(std::string::npos, m.find("dependency")) << "the manifest asks for nothing else";

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
