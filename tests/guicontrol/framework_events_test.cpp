// The front end's numbered framework events reach the right hooks of a control on the common base.
#include <gtest/gtest.h>
#include <shlobj.h>
#include "frontend/context_menu_standin.h"
#include "frontend/event_parameter_standin.h"
#include "framework/variant.h"
#include "guicontrol/hook_recorder.h"

using tov::ComPtr;
using tovtest::HookRecorder;

namespace {

class FrameworkEvents : public testing::Test {
protected:
    void SetUp() override
    {
        control = HookRecorder::Create();
        parameter = tovfe::EventParameterStandIn::Create({});
    }
    // The hooks one event calls, and its result.
    std::vector<std::wstring> Handle(LONG event, IUnknown* p, HRESULT* result = nullptr)
    {
        control->hooks.clear();
        const HRESULT hr = control->HandleEvent(event, p);
        if (result) *result = hr;
        return control->hooks;
    }

    ComPtr<HookRecorder> control;
    ComPtr<tovfe::EventParameterStandIn> parameter;
};

using Hooks = std::vector<std::wstring>;

} // namespace

TEST_F(FrameworkEvents, EachNumberCallsItsHook)
{
    IUnknown* p = static_cast<ITOVEventParameter*>(parameter.Get());
    const struct {
        LONG event;
        IUnknown* parameter;
        Hooks hooks;
    } cases[] = {
        {101, nullptr, {L"OnEvent101"}},
        {101, p, {L"OnEvent101WithParameter with parameter"}},
        {102, p, {L"OnEvent102"}},
        {103, nullptr, {L"OnTraceSettingsChanged"}},
        {104, nullptr, {L"OnEvent104"}},
        {105, p, {L"OnEvent105"}},
        {106, p, {L"OnEvent106 with parameter"}},
        {106, nullptr, {}},
        {301, p, {L"OnEvent301 with parameter"}},
        {302, nullptr, {L"OnEvent302"}},
        {501, p, {L"OnEvent5xx 501 with parameter"}},
        {505, nullptr, {L"OnEvent5xx 505"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.event);
        HRESULT result = E_FAIL;
        EXPECT_EQ(c.hooks, Handle(c.event, c.parameter, &result));
        EXPECT_EQ(1, result);
    }
    for (LONG drag : {401, 402, 410, 420, 421, 422, 425, 426, 427, 430, 440, 450}) {
        SCOPED_TRACE(drag);
        EXPECT_EQ(Hooks{L"OnDragEvent " + std::to_wstring(drag) + L" ''"}, Handle(drag, nullptr));
    }
}

TEST_F(FrameworkEvents, NumbersWithoutAHookAreIgnored)
{
    for (LONG event : std::initializer_list<LONG>{0, -1, 1, 100, 107, 199, 200, 299, 300, 303, 399, 400, 403, 451, 499, 500, 506, 599, 600, 1000,
                       0x7FFFFFFF, static_cast<LONG>(0x80000000)}) {
        SCOPED_TRACE(event);
        HRESULT result = E_FAIL;
        EXPECT_EQ(Hooks{}, Handle(event, nullptr, &result)) << "300 without a menu has nothing to select";
        EXPECT_EQ(1, result);
    }
}

TEST_F(FrameworkEvents, FrontendActiveFollows101And102)
{
    EXPECT_EQ(1, control->FrontendActive());
    Handle(102, nullptr);
    EXPECT_EQ(0, control->FrontendActive());
    Handle(105, nullptr);
    EXPECT_EQ(0, control->FrontendActive());
    Handle(101, static_cast<ITOVEventParameter*>(parameter.Get()));
    EXPECT_EQ(1, control->FrontendActive());
}

TEST_F(FrameworkEvents, Event104AnswersOneWhenItsHookAnswersZero)
{
    HRESULT result = E_FAIL;
    Handle(104, nullptr, &result);
    EXPECT_EQ(1, result);
    control->hookAnswer = 1;
    Handle(104, nullptr, &result);
    EXPECT_EQ(0, result);
    control->hookAnswer = -5;
    Handle(104, nullptr, &result);
    EXPECT_EQ(0, result);
    // The others answer 1 whatever their hook says.
    Handle(105, nullptr, &result);
    EXPECT_EQ(1, result);
}

TEST_F(FrameworkEvents, PreHandleDecidesFirstAndExceptionsBecomeUnexpected)
{
    control->preHandleAnswer = 7;
    HRESULT result = E_FAIL;
    EXPECT_EQ(Hooks{}, Handle(102, nullptr, &result));
    EXPECT_EQ(7, result);
    EXPECT_EQ(1, control->FrontendActive()) << "nothing of the event was done";

    control->preHandleAnswer = 1;
    control->throwIn = L"OnEvent105";
    EXPECT_EQ(Hooks{L"OnEvent105"}, Handle(105, nullptr, &result));
    EXPECT_EQ(E_UNEXPECTED, result);
    control->throwIn = L"OnContextMenuItemSelected";
    auto menu = tovfe::ContextMenuStandIn::Create({{L"A"}, 0});
    Handle(300, static_cast<ITOVContextMenu*>(menu.Get()), &result);
    EXPECT_EQ(E_UNEXPECTED, result);
}

TEST_F(FrameworkEvents, ContextMenuSelectionPassesTheChosenEntry)
{
    auto menu = tovfe::ContextMenuStandIn::Create({{L"FC_COPY", L"FC_PASTE", L"FC_PRINT"}, 2});
    IUnknown* asParameter = static_cast<ITOVContextMenu*>(menu.Get());
    EXPECT_EQ(Hooks{L"OnContextMenuItemSelected with parameter item"}, Handle(300, asParameter));
    EXPECT_EQ((std::vector<std::wstring>{L"GetSelectedIndex()", L"GetItem(2)"}), menu->Log().Texts());

    // A selected index outside the menu, or a menu that cannot tell it, brings no entry.
    auto outside = tovfe::ContextMenuStandIn::Create({{L"FC_COPY"}, 5});
    EXPECT_EQ(Hooks{L"OnContextMenuItemSelected with parameter <null>"}, Handle(300, static_cast<ITOVContextMenu*>(outside.Get())));
    menu->Log().Clear();
    menu->FailCall(L"GetSelectedIndex", E_FAIL);
    EXPECT_EQ(Hooks{L"OnContextMenuItemSelected with parameter <null>"}, Handle(300, asParameter));
    EXPECT_EQ(std::vector<std::wstring>{L"GetSelectedIndex()"}, menu->Log().Texts());

    // A parameter that is no menu, or none at all: no selection.
    EXPECT_EQ(Hooks{}, Handle(300, static_cast<ITOVEventParameter*>(parameter.Get())));
    EXPECT_EQ(Hooks{}, Handle(300, nullptr));
}

TEST_F(FrameworkEvents, DragEventsKeepTheDataObjectAndReadTheFirstFile)
{
    auto wide = tovfe::DragDataStandIn::Create({L"C:\\in\\first.txt", L"C:\\in\\second.txt"});
    EXPECT_EQ(Hooks{L"OnDragEvent 401 with parameter 'C:\\in\\first.txt'"}, Handle(401, static_cast<IDataObject*>(wide.Get())));
    EXPECT_EQ(static_cast<IDataObject*>(wide.Get()), control->DragData());
    // Later events of the drag come without the object: the kept one is read.
    EXPECT_EQ(Hooks{L"OnDragEvent 410 with parameter 'C:\\in\\first.txt'"}, Handle(410, nullptr));

    auto narrow = tovfe::DragDataStandIn::Create({L"D:\\narrow.dat"}, false);
    EXPECT_EQ(Hooks{L"OnDragEvent 420 with parameter 'D:\\narrow.dat'"}, Handle(420, static_cast<IDataObject*>(narrow.Get())));
    EXPECT_EQ(static_cast<IDataObject*>(narrow.Get()), control->DragData());

    auto empty = tovfe::DragDataStandIn::Create({});
    EXPECT_EQ(Hooks{L"OnDragEvent 430 with parameter ''"}, Handle(430, static_cast<IDataObject*>(empty.Get())));
}

TEST_F(FrameworkEvents, MalformedFileListsGiveNoFileName)
{
    auto data = tovfe::DragDataStandIn::Create({});
    IDataObject* asData = static_cast<IDataObject*>(data.Get());
    DROPFILES header{};
    header.fWide = TRUE;
    const std::string headerBytes(reinterpret_cast<const char*>(&header), sizeof(header));
    const struct {
        const char* what;
        std::string block;
        std::wstring expected;
    } cases[] = {
        {"empty block", std::string(), L""},
        {"shorter than its header", std::string(5, 'x'), L""},
        {"list offset inside the header", headerBytes + std::string("a\0b\0\0\0", 6), L""},
        {"list offset beyond the block", [&] {
             DROPFILES beyond = header;
             beyond.pFiles = 4096;
             return std::string(reinterpret_cast<const char*>(&beyond), sizeof(beyond)) + std::string(8, 'a');
         }(), L""},
        {"name without terminator", [&] {
             DROPFILES h = header;
             h.pFiles = sizeof(DROPFILES);
             return std::string(reinterpret_cast<const char*>(&h), sizeof(h)) + std::string("A\0B\0", 4);
         }(), L"AB"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        data->SetRawBlock(c.block);
        const Hooks hooks = Handle(425, asData);
        ASSERT_EQ(1u, hooks.size());
        // An allocation may be larger than asked for; its zeroed tail ends the name.
        EXPECT_EQ(L"OnDragEvent 425 with parameter '" + c.expected + L"'", hooks[0]);
    }
    // A parameter that is no data object leaves the kept one.
    Handle(426, static_cast<ITOVEventParameter*>(parameter.Get()));
    EXPECT_EQ(asData, control->DragData());
}

TEST_F(FrameworkEvents, DpiRecordFollowsTheDecimalRules)
{
    using tovfe::EventParameterStandIn;
    const struct {
        const char* what;
        tovfe::EventParameterDescription description;
        LONG dpi, x, y;
    } cases[] = {
        {"complete", {{L"dpi_change", {{L"dpi", L"144"}, {L"scalingFactor_x", L"150"}, {L"scalingFactor_y", L"125"}}}}, 144, 150, 125},
        {"no dpi_change child", {{L"other", {{L"dpi", L"96"}}}}, -1, -1, -1},
        {"no attributes", {{L"dpi_change", {}}}, -1, -1, -1},
        {"empty texts", {{L"dpi_change", {{L"dpi", L""}, {L"scalingFactor_x", L""}}}}, -1, -1, -1},
        {"leading blanks, signs and trailing text", {{L"dpi_change", {{L"dpi", L"  96dpi"}, {L"scalingFactor_x", L"-20"}, {L"scalingFactor_y", L"+7x"}}}}, 96, -20, 7},
        {"no digits", {{L"dpi_change", {{L"dpi", L"high"}}}}, 0, -1, -1},
        {"hexadecimal is not read", {{L"dpi_change", {{L"dpi", L"0x60"}}}}, 0, -1, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        auto p = EventParameterStandIn::Create(c.description);
        const TOVDpiRecord record = CTOVGUIControlBase::ReadDpiRecord(static_cast<ITOVEventParameter*>(p.Get()));
        EXPECT_EQ(c.dpi, record.dpi);
        EXPECT_EQ(c.x, record.scalingFactorX);
        EXPECT_EQ(c.y, record.scalingFactorY);
    }

    auto p = EventParameterStandIn::Create({{L"dpi_change", {{L"dpi", L"120"}}}});
    CTOVGUIControlBase::ReadDpiRecord(static_cast<ITOVEventParameter*>(p.Get()));
    EXPECT_EQ((std::vector<std::wstring>{L"GetChild(dpi_change)", L"GetAttribute(dpi, )", L"GetAttribute(scalingFactor_x, )",
                                         L"GetAttribute(scalingFactor_y, )"}),
              p->Log().Texts());

    p->FailGetChild(E_FAIL);
    EXPECT_EQ(-1, CTOVGUIControlBase::ReadDpiRecord(static_cast<ITOVEventParameter*>(p.Get())).dpi);
    EXPECT_EQ(-1, CTOVGUIControlBase::ReadDpiRecord(nullptr).dpi);
    auto menu = tovfe::ContextMenuStandIn::Create({});
    EXPECT_EQ(-1, CTOVGUIControlBase::ReadDpiRecord(static_cast<ITOVContextMenu*>(menu.Get())).dpi);
}

TEST_F(FrameworkEvents, PersonalisationAndDataProviderCallsReachTheirHooks)
{
    ComPtr<ITOVGUITessarilControl> tessaril;
    ComPtr<_ITOVDataProviderEvents> data;
    ASSERT_EQ(S_OK, control->QueryInterface(IID_ITOVGUITessarilControl, tessaril.PutVoid()));
    ASSERT_EQ(S_OK, control->QueryInterface(IID__ITOVDataProviderEvents, data.PutVoid()));
    ComPtr<IUnknown> a, b;
    tessaril->QueryInterface(IID_IUnknown, a.PutVoid());
    data->QueryInterface(IID_IUnknown, b.PutVoid());
    EXPECT_EQ(a.Get(), b.Get()) << "one identity";

    tov::Variant value;
    LONG result = 0;
    EXPECT_EQ(S_OK, tessaril->SetTessarilProperty(L"url", L"https://example.invalid/"));
    EXPECT_EQ(S_OK, tessaril->TessarilMethod4(L"color", 3, &value, &result));
    EXPECT_EQ(44, result);
    EXPECT_EQ(S_OK, tessaril->ResetTessarilProperty());
    EXPECT_EQ(S_OK, tessaril->TessarilMethod6(nullptr));
    EXPECT_EQ(S_OK, tessaril->TessarilMethod7(L"x", nullptr));
    EXPECT_EQ(S_OK, tessaril->TessarilMethod8(nullptr));
    EXPECT_EQ(S_OK, data->DataEvent3(a.Get()));
    EXPECT_EQ(S_OK, data->DataEvent5(nullptr, L"tovq5:1", 2, 3));
    EXPECT_EQ(S_OK, data->DataEvent6(nullptr));
    for (auto quiet : {&_ITOVDataProviderEvents::DataEvent4, &_ITOVDataProviderEvents::DataEvent7,
                       &_ITOVDataProviderEvents::DataEvent8, &_ITOVDataProviderEvents::DataEvent9})
        EXPECT_EQ(S_OK, (data.Get()->*quiet)(1));
    EXPECT_EQ((Hooks{L"OnSetTessarilProperty url=https://example.invalid/", L"OnTessarilMethod4 color 3 value",
                     L"OnResetTessarilProperty", L"OnTessarilMethod6 <null>", L"OnTessarilMethod7 x", L"OnTessarilMethod8",
                     L"OnDataEvent3 with parameter", L"OnDataEvent5 tovq5:1 2 3", L"OnDataEvent6"}),
              control->hooks);

    // The hook's answer is the result; an exception is not let through.
    control->hookAnswer = 1;
    EXPECT_EQ(S_FALSE, tessaril->ResetTessarilProperty());
    control->throwIn = L"OnSetTessarilProperty";
    EXPECT_EQ(E_FAIL, tessaril->SetTessarilProperty(nullptr, nullptr));
}
