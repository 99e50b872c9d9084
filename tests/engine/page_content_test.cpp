// A real page under the front end's hands: table scripts that change the DOM, replaced and closed
// content, pictures through the temporary file, the page's pixels in the window, a right click.
#include <cstring>
#include "engine/engine_fixture.h"
#include "framework/handles.h"
#include "frontend/table_standin.h"

namespace tovtest {
namespace {

class PageContent : public EngineFixture {
protected:
    void RunScript(const std::string& line)
    {
        auto table = tovfe::MakeScriptTable({line}, static_cast<LONG>(line.size()));
        ASSERT_EQ(S_OK, control->putref_ScriptText(table.Object()));
        ASSERT_EQ(S_OK, control->ExecuteScript());
    }
    // The colour of the browser window's pixel at x, y as the screen shows it.
    COLORREF ScreenPixel(int x, int y) const
    {
        const tov::WindowDc dc(BrowserWindow());
        return GetPixel(dc.Get(), x, y);
    }
    // A 24-bit picture of one colour, as a BMP file.
    static std::string SolidBmp(int width, int height, BYTE r, BYTE g, BYTE b)
    {
        const int row = (width * 3 + 3) & ~3;
        const DWORD pixels = static_cast<DWORD>(row * height);
        BITMAPFILEHEADER file{};
        BITMAPINFOHEADER info{};
        file.bfType = 0x4D42;
        file.bfOffBits = sizeof file + sizeof info;
        file.bfSize = file.bfOffBits + pixels;
        info.biSize = sizeof info;
        info.biWidth = width;
        info.biHeight = height;
        info.biPlanes = 1;
        info.biBitCount = 24;
        std::string bytes(reinterpret_cast<const char*>(&file), sizeof file);
        bytes.append(reinterpret_cast<const char*>(&info), sizeof info);
        std::string line(static_cast<size_t>(row), '\0');
        for (int x = 0; x < width; ++x) {
            line[static_cast<size_t>(x * 3)] = static_cast<char>(b);
            line[static_cast<size_t>(x * 3 + 1)] = static_cast<char>(g);
            line[static_cast<size_t>(x * 3 + 2)] = static_cast<char>(r);
        }
        for (int y = 0; y < height; ++y) bytes += line;
        return bytes;
    }
};

TEST_F(PageContent, ScriptsChangeTheRealDocumentAndReplacedContentRunsItsOwn)
{
    PutPage(L"doc.htm", "<html><head><title>doc</title></head><body><div id=\"out\">before</div></body></html>");
    ShowPage(L"doc.htm");
    // The control marked the page as hosted when it completed.
    RunScript("document.getElementById('out').textContent = 'after ' + tovHtmlControl;");
    EXPECT_NE(std::wstring::npos, Html().find(L"<div id=\"out\">after TRUE</div>")) << Html();

    events.events.clear();
    tov::Bstr replaced(L"<html><body><p id=\"x\">new</p>"
                       L"<script>document.getElementById('x').textContent = 'ran';</script></body></html>");
    BSTR content = replaced.Get();
    ASSERT_EQ(S_OK, control->SetHTMLSourceContent(&content));
    ASSERT_TRUE(WaitFor([&] { return Html().find(L"<p id=\"x\">ran</p>") != std::wstring::npos; })) << Html();

    ASSERT_EQ(S_OK, control->CloseDocument());
    ASSERT_TRUE(WaitFor([&] { return Html().find(L"ran") == std::wstring::npos; })) << "the blank page replaced it";
    EXPECT_EQ(L"<html><head></head><body></body></html>", Html());
}

TEST_F(PageContent, APictureShowsThroughItsTemporaryFileWhichGoesWithTheControl)
{
    PutPage(L"red.bmp", SolidBmp(64, 48, 0xE0, 0x10, 0x10), L"bmp");
    events.events.clear();
    ASSERT_EQ(0, ShowData(L"red.bmp"));
    ASSERT_TRUE(WaitFor([&] { return !Events(2).empty() && DocumentComplete() == 1; }));
    const std::wstring shown = Events(2).at(0).args.at(0);
    ASSERT_EQ(0u, shown.rfind(L"file:///", 0)) << shown;
    EXPECT_NE(std::wstring::npos, shown.find(L"red.bmp")) << shown;
    std::wstring path = shown.substr(8);
    for (auto& c : path)
        if (c == L'/') c = L'\\';
    EXPECT_TRUE(FileExists(path)) << "the temporary file while the picture shows";

    // The picture's pixels reach the window: the engine shows it somewhere in the view.
    RECT client{};
    GetClientRect(BrowserWindow(), &client);
    ASSERT_TRUE(WaitFor([&] {
        for (int y = 0; y < client.bottom; y += 8)
            for (int x = 0; x < client.right; x += 8)
                if (ScreenPixel(x, y) == RGB(0xE0, 0x10, 0x10)) return true;
        return false;
    }, 10000)) << "red pixels of the picture in the browser window";

    Unadvise(cookie);
    cookie = 0;
    host.Destroy();
    control.Reset();
    EXPECT_FALSE(FileExists(path)) << "deleted with the control";
}

TEST_F(PageContent, TheWindowShowsThePagesPixels)
{
    PutPage(L"blue.htm", "<html><body style=\"margin:0;background:#2050c0\"><div style=\"position:absolute;left:100px;"
                         "top:100px;width:80px;height:60px;background:#f0e020\"></div></body></html>");
    ShowPage(L"blue.htm");
    ASSERT_TRUE(WaitFor([&] { return ScreenPixel(20, 20) == RGB(0x20, 0x50, 0xC0); }, 10000)) << "the page's background";
    EXPECT_TRUE(WaitFor([&] { return ScreenPixel(130, 120) == RGB(0xF0, 0xE0, 0x20); }, 5000)) << "the box on it";
}

TEST_F(PageContent, ARightClickAsksTheFrontEndForItsMenuAtTheCursor)
{
    ASSERT_EQ(S_OK, control->put_UIFlag(2));
    PutPage(L"menu.htm", "<html><body><p>right click me</p></body></html>");
    ShowPage(L"menu.htm");
    POINT at{40, 30};
    ClientToScreen(BrowserWindow(), &at);
    ASSERT_TRUE(tovfe::PlaceMousePointer(at)) << "the pointer stays where a user's mouse is when they click";
    events.events.clear();
    Click(40, 30, true);
    ASSERT_TRUE(WaitFor([&] { return !Events(4).empty(); })) << "ContextMenuRequest";
    POINT cursor{};
    GetCursorPos(&cursor);
    const auto request = Events(4).at(0);
    EXPECT_EQ(std::to_wstring(cursor.x), request.args.at(0));
    EXPECT_EQ(std::to_wstring(cursor.y), request.args.at(1));
}

} // namespace
} // namespace tovtest
