// The files the control made go at release whatever their names: under a double-byte thread code page
// and a Western one, names that convert exactly and names that do not, temporary files registered twice
// for one URL, files already gone, and whatever the release left when the list itself goes.
#include <gtest/gtest.h>
#include "frontend/folders.h"
#include "navigation/temporary_files.h"
#include "support/ocx.h"

namespace {

class TemporaryFiles : public testing::Test {
protected:
    void SetUp() override { ASSERT_FALSE(folder.Path().empty()); }
    void TearDown() override { SetThreadLocale(m_before); }

    std::wstring Make(const std::wstring& name)
    {
        const std::wstring path = folder.Path() + L"\\" + name;
        HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        EXPECT_NE(INVALID_HANDLE_VALUE, file) << testing::PrintToString(path);
        CloseHandle(file);
        return path;
    }
    std::vector<std::wstring> Left() const { return tovfe::FilesIn(folder.Path()); }

    tovfe::ScratchFolder folder{tovtest::TempDir() + L"made-files"};

private:
    LCID m_before = GetThreadLocale();
};

// Latin, Japanese and Thai letters: each code page converts some of them exactly and not the others.
const std::vector<std::wstring> kNames = {L"plain.gif", L"\u00E4\u00F6\u00FC.gif", L"\u3042\u3044.gif",
                                          L"\u0E01\u0E02.gif", L"mixed\u00E4\u3042\u0E01.html"};

} // namespace

TEST_F(TemporaryFiles, EveryFileGoesWhateverItsNameUnderEitherCodePage)
{
    for (const LANGID language : {MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT), MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)}) {
        ASSERT_TRUE(SetThreadLocale(MAKELCID(language, SORT_DEFAULT)));
        SCOPED_TRACE(testing::Message() << "thread locale " << language);
        tov::TemporaryFiles files;
        for (const std::wstring& name : kNames) {
            const std::wstring path = Make(name);
            files.AddTempFile(L"tovq5:/a/" + name, tov::Bstr(path));
        }
        const std::wstring source = Make(L"4F1C2A3B-0000-4000-8000-00AA00BB00CC}.html");
        files.AddSourceFile(source);
        // One URL shown twice: two entries, and the file gone before its second deletion.
        files.AddTempFile(L"tovq5:/a/plain.gif", tov::Bstr(folder.Path() + L"\\plain.gif"));
        EXPECT_EQ(kNames.size() + 1, files.TempFileCount());
        EXPECT_TRUE(files.SourceFileCreated());

        files.DeleteTempFiles();
        EXPECT_EQ(std::vector<std::wstring>{L"4F1C2A3B-0000-4000-8000-00AA00BB00CC}.html"}, Left())
            << "temporary files first, the source file stays until its own turn";
        EXPECT_EQ(0u, files.TempFileCount());
        files.DeleteSourceFiles();
        EXPECT_TRUE(Left().empty()) << testing::PrintToString(Left());
        EXPECT_FALSE(files.SourceFileCreated());
    }
}

TEST_F(TemporaryFiles, WhatTheReleaseLeftGoesWithTheList)
{
    {
        tov::TemporaryFiles files;
        files.AddTempFile(L"tovq5:/a/x.gif", tov::Bstr(Make(L"\u3042.gif")));
        files.AddSourceFile(Make(L"source.html"));
    }
    EXPECT_TRUE(Left().empty()) << testing::PrintToString(Left());
}

// A file held open cannot go now: it stays, and the list forgets it (the release is not repeated).
TEST_F(TemporaryFiles, AHeldFileStaysAndIsForgotten)
{
    tov::TemporaryFiles files;
    const std::wstring held = Make(L"held.gif");
    files.AddTempFile(L"tovq5:/a/held.gif", tov::Bstr(held));
    HANDLE h = CreateFileW(held.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, h);
    files.DeleteTempFiles();
    CloseHandle(h);
    EXPECT_EQ(std::vector<std::wstring>{L"held.gif"}, Left());
    EXPECT_EQ(0u, files.TempFileCount());
}
