// The front end's numbered framework events reach the right hooks of a control on the common base.
#include <shlobj.h>
#include "frontend/context_menu_standin.h"
#include "frontend/event_parameter_standin.h"
#include "frontend/gui_service_standin.h"
#include "guicontrol/hook_recorder.h"

using tovfe::EventParameterStandIn;
using FrameworkEvents = tovtest::GUIControlTest;
using Hooks = std::vector<std::wstring>;

TEST_F(FrameworkEvents, EachNumberReachesItsHookAfterThePreHandlerAndOthersAreIgnored)
{
    auto parameter = EventParameterStandIn::Create({});
    auto menu = tovfe::ContextMenuStandIn::Create({{L"FC_COPY", L"FC_PASTE"}, 1});
    IUnknown* p = static_cast<ITOVEventParameter*>(parameter.Get());
    IUnknown* m = static_cast<ITOVContextMenu*>(menu.Get());
    const struct { LONG event; IUnknown* parameter; const wchar_t* hook; LONG result = 1; } cases[] = { // hook null: none
        {104, nullptr, L"OnEvent104", 0}, {101, nullptr, L"OnEvent101"}, {101, p, L"OnEvent101WithParameter +p"},
        {102, p, L"OnEvent102"}, {103, nullptr, L"OnTraceSettingsChanged"}, {105, p, L"OnEvent105"},
        {106, p, L"OnEvent106 +p"}, {106, nullptr, nullptr}, {300, m, L"OnContextMenuItemSelected +p item"},
        {300, p, nullptr}, {300, nullptr, nullptr}, {301, p, L"OnEvent301 +p"}, {302, nullptr, L"OnEvent302"},
        {501, p, L"OnEvent5xx 501 +p"}, {505, nullptr, L"OnEvent5xx 505"}, {100, p, nullptr}, {107, p, nullptr},
        {303, p, nullptr}, {400, p, nullptr}, {451, p, nullptr}, {500, p, nullptr}, {506, p, nullptr},
    };
    control->hookAnswer = 1; // only event 104 passes its hook's answer on
    for (const auto& c : cases) {
        SCOPED_TRACE(c.event);
        HRESULT result = E_FAIL;
        EXPECT_EQ(c.hook ? Hooks{c.hook} : Hooks{}, Handle(c.event, c.parameter, &result));
        EXPECT_EQ(c.result, result);
    }
    for (LONG drag : {401, 402, 410, 420, 421, 422, 425, 426, 427, 430, 440, 450}) {
        SCOPED_TRACE(drag);
        EXPECT_EQ(Hooks{L"OnDragEvent " + std::to_wstring(drag) + L" ''"}, Handle(drag, nullptr));
    }
    HRESULT result = E_FAIL;
    control->hookAnswer = 0;
    Handle(104, nullptr, &result);
    EXPECT_EQ(1, result) << "104 answers 1 when its hook answers 0";

    // The pre-handler decides first: anything but 1 is the result, and no hook runs.
    control->preHandleAnswer = 7;
    EXPECT_EQ(Hooks{}, Handle(101, nullptr, &result));
    EXPECT_EQ(7, result);
    control->preHandleAnswer = 1;
    control->throwIn = L"OnEvent105";
    EXPECT_EQ(Hooks{L"OnEvent105"}, Handle(105, nullptr, &result));
    EXPECT_EQ(E_UNEXPECTED, result);
}

TEST_F(FrameworkEvents, DragEventsReadTheFirstFileOfTheKeptDataObject)
{
    auto wide = tovfe::DragDataStandIn::Create({L"C:\\in\\first.txt", L"C:\\in\\second.txt"});
    auto narrow = tovfe::DragDataStandIn::Create({L"D:\\narrow.dat"}, false);
    EXPECT_EQ(Hooks{L"OnDragEvent 401 +p 'C:\\in\\first.txt'"}, Handle(401, static_cast<IDataObject*>(wide.Get())));
    // Later events of the drag come without the object: the kept one is read.
    EXPECT_EQ(Hooks{L"OnDragEvent 410 +p 'C:\\in\\first.txt'"}, Handle(410, nullptr));
    EXPECT_EQ(Hooks{L"OnDragEvent 420 +p 'D:\\narrow.dat'"}, Handle(420, static_cast<IDataObject*>(narrow.Get())));

    const auto block = [](DWORD offset, const std::string& list) {
        const DROPFILES header{offset, {}, FALSE, TRUE};
        return std::string(reinterpret_cast<const char*>(&header), sizeof(header)) + list;
    };
    const struct { const char* what; std::string block; std::wstring expected; } cases[] = {
        {"shorter than its header", std::string(5, 'x'), L""},
        {"list offset inside the header", block(0, std::string("a\0b\0\0\0", 6)), L""},
        {"list offset beyond the block", block(4096, std::string(8, 'a')), L""},
        // An allocation may be larger than asked for; its zeroed tail ends the name.
        {"name without terminator", block(sizeof(DROPFILES), std::string("A\0B\0", 4)), L"AB"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        wide->SetRawBlock(c.block);
        EXPECT_EQ(Hooks{L"OnDragEvent 425 +p '" + c.expected + L"'"}, Handle(425, static_cast<IDataObject*>(wide.Get())));
    }
}

// Event 106 reads the DPI record (child "dpi_change", decimal attributes, -1 for what is missing) and tells
// the GUI service before the hook runs.
TEST_F(FrameworkEvents, Event106TellsTheGUIServiceTheDpiRecord)
{
    auto services = tovfe::AddGUIServices(*container.Get());
    ASSERT_EQ(S_OK, control->SetContainer(Container()));
    const auto told = [&](IUnknown* p) { // what the GUI service was told, then the hooks that ran
        services.gui->Log().Clear();
        const Hooks hooks = Handle(106, p);
        Hooks texts = services.gui->Log().Texts();
        texts.insert(texts.end(), hooks.begin(), hooks.end());
        return texts;
    };
    const struct { const char* what; tovfe::EventParameterDescription description; const wchar_t* told; } cases[] = {
        {"complete", {{L"dpi_change", {{L"dpi", L"144"}, {L"scalingFactor_x", L"150"}, {L"scalingFactor_y", L"125"}}}}, L"144, 150, 125"},
        {"no dpi_change child", {{L"other", {{L"dpi", L"96"}}}}, L"-1, -1, -1"}, {"no attributes", {{L"dpi_change", {}}}, L"-1, -1, -1"},
        {"leading blanks, signs, trailing text, no hexadecimal",
         {{L"dpi_change", {{L"dpi", L"  96dpi"}, {L"scalingFactor_x", L"-20"}, {L"scalingFactor_y", L"0x7"}}}}, L"96, -20, 0"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        auto p = EventParameterStandIn::Create(c.description);
        EXPECT_EQ((Hooks{L"OnDpiChanged(" + std::wstring(c.told) + L")", L"OnEvent106 +p"}),
                  told(static_cast<ITOVEventParameter*>(p.Get())));
    }
    const Hooks unknown{L"OnDpiChanged(-1, -1, -1)", L"OnEvent106 +p"};
    auto failing = EventParameterStandIn::Create({{L"dpi_change", {{L"dpi", L"120"}}}});
    failing->Plan().Fail(L"GetChild", E_FAIL);
    EXPECT_EQ(unknown, told(static_cast<ITOVEventParameter*>(failing.Get())));
    EXPECT_EQ(unknown, told(Container())) << "not an event parameter";
    EXPECT_EQ(Hooks{unknown[0]}, told(nullptr)) << "without a parameter: no hook";
    // A failing GUI service changes nothing for the control.
    services.gui->Plan().Fail(L"OnDpiChanged", E_FAIL);
    EXPECT_EQ(unknown, told(Container()));
}
