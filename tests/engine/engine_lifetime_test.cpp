// What the engine leaves behind and how the control lives through its failures: create-and-release
// cycles that leave no target, window, handle or file, a killed engine, a missing engine binary.
#include "engine/engine_fixture.h"
#include "support/process_state.h"

namespace tovtest {
namespace {

class EngineLifetime : public EngineFixture {};

TEST_F(EngineLifetime, CyclesOfCreateShowAndReleaseLeaveNothingBehind)
{
    const auto cycle = [&](int i) {
        tovfe::ContainerWindow window(400, 300);
        auto other = ocx.CreateControl();
        ASSERT_TRUE(other);
        ASSERT_EQ(S_OK, window.Attach(other.Get()));
        LONG code = -1;
        ASSERT_EQ(S_OK, other->InitControl(&code));
        ASSERT_EQ(0, code);
        tov::Bstr prefix;
        other->get_URLPrefixLocal(prefix.Put());
        tovfe::DataStore::Instance().Put(std::wstring(prefix.View()) + L"cycle.htm",
                                         "<html><body>cycle " + std::to_string(i) + "</body></html>", L"html");
        ASSERT_EQ(S_OK, other->ShowData(tov::Bstr(L"cycle.htm").Get(), nullptr, 1, &code));
        ASSERT_EQ(0, code);
        ASSERT_TRUE(WaitFor([&] {
            LONG complete = 0;
            other->get_DocumentComplete(&complete);
            tov::Bstr html;
            other->GetHTMLSourceContent(html.Put());
            return complete == 1 && html.View().find(L"cycle " + std::to_wstring(i)) != std::wstring_view::npos;
        })) << "cycle " << i;
        window.Destroy();
        other.Reset();
        Settle(20);
    };
    cycle(0); // the first pays for what stays loaded
    const ProcessState before = ProcessState::Now();
    for (int i = 1; i <= 100 && !HasFatalFailure(); ++i) cycle(i);
    ASSERT_TRUE(WaitFor([&] { return EnginePages() == 1; }, 10000)) << "only the fixture control's page is left";
    const ProcessState after = ProcessState::Now();
    EXPECT_EQ(before.windows, after.windows);
    EXPECT_EQ(before.tempFiles, after.tempFiles);
    EXPECT_LE(after.handles, before.handles + 16) << "handles";
    EXPECT_LE(after.gdiObjects, before.gdiObjects + 16) << "GDI objects";
    EXPECT_LE(after.userObjects, before.userObjects + 16) << "USER objects";
}

TEST_F(EngineLifetime, AKilledEngineIsRefusedAndTheNextInitControlStartsAnother)
{
    const auto folders = EngineFolders();
    ASSERT_EQ(1u, folders.size());
    const int pid = atoi(ReadSmallFile(folders[0] + L"\\engine.pid").c_str());
    ASSERT_GT(pid, 1);
    // A native program: started by its path, its handle under Wine says nothing about it.
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    std::wstring command = L"kill -9 " + std::to_wstring(pid);
    ASSERT_TRUE(CreateProcessW(L"Z:\\bin\\kill", command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi));
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    ASSERT_TRUE(WaitFor([&] { return EngineFolders().empty(); }, 15000)) << "the engine is gone";

    PutPage(L"after.htm", "<html><body>after</body></html>");
    EXPECT_EQ(5, ShowData(L"after.htm")) << "the browser refuses";
    EXPECT_EQ(L"", Html());
    EXPECT_TRUE(IsWindow(Window())) << "the control and its container live on";

    // A new browser, a new engine.
    tovfe::ContainerWindow window(400, 300);
    auto other = ocx.CreateControl();
    ASSERT_EQ(S_OK, window.Attach(other.Get()));
    LONG code = -1;
    ASSERT_EQ(S_OK, other->InitControl(&code));
    EXPECT_EQ(0, code);
    EXPECT_EQ(1u, EngineFolders().size());
    window.Destroy();
    other.Reset();
}

// No engine runs before these tests: the control is made here, not by the engine fixture.
class NoEngineYet : public ControlFixture {};

TEST_F(NoEngineYet, AMissingEngineBinaryFailsInitControlAndTheTraceSaysWhy)
{
    tovfe::EngineClasses engine;
    ASSERT_EQ(S_OK, engine.Register());
    AtlHost host(400, 300);
    ASSERT_EQ(S_OK, host.Attach(control.Get()));
    Connect(1);
    SetEnvironmentVariableW(L"TOV_ENGINE_BINARY", L"/nonexistent/engine-binary");
    LONG code = -1;
    const HRESULT hr = control->InitControl(&code);
    SetEnvironmentVariableW(L"TOV_ENGINE_BINARY", nullptr);
    EXPECT_EQ(S_OK, hr);
    EXPECT_EQ(4, code);
    EXPECT_EQ(1u, LinesWith("/nonexistent/engine-binary")) << "the reason is traced";
    EXPECT_TRUE(EngineFolders().empty()) << "nothing was started";
    host.Destroy();
    engine.Revoke();
}

} // namespace
} // namespace tovtest
