// A control's state before it has a browser: defaults, simple properties, null arguments.
#include "support/control_fixture.h"
#include "framework/bstr.h"

using tov::Bstr;
using tov::ComPtr;
using tovtest::ControlFixture;

using ControlState = ControlFixture;

TEST_F(ControlState, FreshControlHasItsDefaults)
{
    LONG v = -1;
    EXPECT_EQ(S_OK, control->get_Version(&v));
    EXPECT_EQ(62, v);
    for (auto getter : {&ITOVHTMLControl::get_SimpleBrowse, &ITOVHTMLControl::get_DocumentComplete,
                        &ITOVHTMLControl::get_URLLength, &ITOVHTMLControl::get_PostDataLength, &ITOVHTMLControl::get_UIFlag,
                        &ITOVHTMLControl::get_PostDataModified}) {
        v = -1;
        EXPECT_EQ(S_OK, (control.Get()->*getter)(&v));
        EXPECT_EQ(0, v);
    }
    Bstr frame, headers;
    EXPECT_EQ(S_OK, control->get_TargetFrame(frame.Put()));
    EXPECT_EQ(S_OK, control->get_Headers(headers.Put()));
    ASSERT_FALSE(frame.IsNull());
    ASSERT_FALSE(headers.IsNull());
    EXPECT_EQ(0u, frame.Length());
    EXPECT_EQ(0u, headers.Length());
}

TEST_F(ControlState, SimplePropertiesStoreWhatTheyAreGiven)
{
    LONG v = 0;
    control->put_SimpleBrowse(5);
    control->get_SimpleBrowse(&v);
    EXPECT_EQ(1, v) << "any non-zero value reads back as 1";
    control->put_SimpleBrowse(0);
    control->get_SimpleBrowse(&v);
    EXPECT_EQ(0, v);

    control->put_URLLength(1234);
    control->put_PostDataLength(-7);
    control->put_UIFlag(0x400002);
    control->get_URLLength(&v);
    EXPECT_EQ(1234, v);
    control->get_PostDataLength(&v);
    EXPECT_EQ(-7, v);
    control->get_UIFlag(&v);
    EXPECT_EQ(0x400002, v);

    Bstr in(std::wstring_view(L"frame\0with zero", 15)), out;
    EXPECT_EQ(S_OK, control->put_TargetFrame(in.Get()));
    EXPECT_EQ(S_OK, control->get_TargetFrame(out.Put()));
    EXPECT_EQ(15u, out.Length()) << "a copy of the same length";
    EXPECT_EQ(in.View(), out.View());
    EXPECT_NE(in.Get(), out.Get());
    EXPECT_EQ(S_OK, control->put_TargetFrame(nullptr));
    EXPECT_EQ(S_OK, control->get_TargetFrame(out.Put()));
    EXPECT_FALSE(out.IsNull()) << "null stays null inside but reads back as an empty string";
    EXPECT_EQ(0u, out.Length());

    Bstr headers(L"X-A: 1\r\n");
    EXPECT_EQ(S_OK, control->put_Headers(headers.Get()));
    EXPECT_EQ(S_OK, control->get_Headers(out.Put()));
    EXPECT_EQ(headers.View(), out.View());
}

TEST_F(ControlState, PostDataHoldsOneReferenceAndTracesAMissingObject)
{
    Connect(1);
    IDispatch* out = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(S_OK, control->get_PostData(&out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ((std::vector<std::string>{"=> get_PostData", Hashes(), "=> get_PostData", "(*pVal)->AddRef() failed",
                                        Hashes(), "<= get_PostData"}),
              Lines());

    ComPtr<IDispatch> data;
    ASSERT_EQ(S_OK, container->QueryInterface(IID_IDispatch, data.PutVoid()));
    EXPECT_EQ(S_OK, control->put_PostData(data.Get()));
    EXPECT_EQ(S_OK, control->get_PostData(&out));
    EXPECT_EQ(data.Get(), out);
    out->Release();
    EXPECT_EQ(S_OK, control->put_PostData(nullptr));
    EXPECT_EQ(S_OK, control->get_PostData(&out));
    EXPECT_EQ(nullptr, out);
}

TEST_F(ControlState, NullOutPointersAndNullStringsNeverCrash)
{
    Connect(2);
    EXPECT_EQ(S_OK, control->get_Version(nullptr));
    EXPECT_EQ(S_OK, control->get_URLLength(nullptr));
    EXPECT_EQ(S_OK, control->get_PostDataLength(nullptr));
    EXPECT_EQ(S_OK, control->get_PostData(nullptr));
    EXPECT_EQ(S_OK, control->get_SimpleBrowse(nullptr));
    EXPECT_EQ(S_OK, control->get_DocumentComplete(nullptr));
    EXPECT_EQ(S_OK, control->get_UIFlag(nullptr));
    EXPECT_EQ(S_OK, control->get_PostDataModified(nullptr));
    EXPECT_EQ(E_POINTER, control->get_TargetFrame(nullptr));
    EXPECT_EQ(E_POINTER, control->get_Headers(nullptr));
    EXPECT_EQ(S_OK, control->put_Headers(nullptr));
    for (auto method : {&ITOVHTMLControl::GoBack, &ITOVHTMLControl::GoForward, &ITOVHTMLControl::GoHome,
                        &ITOVHTMLControl::Stop, &ITOVHTMLControl::DoRefresh})
        EXPECT_EQ(S_OK, (control.Get()->*method)(nullptr));
}

TEST_F(ControlState, TraceScopesOfTheAccessors)
{
    Connect(1);
    LONG v = 0;
    Bstr b;
    control->get_Headers(b.Put());
    control->put_Headers(nullptr);
    control->get_URLLength(&v);
    control->get_PostDataLength(&v);
    control->put_ScriptRecording(1);
    control->get_TargetFrame(b.Put()); // no scope
    control->put_URLLength(3);         // no scope
    EXPECT_EQ((std::vector<std::string>{"=> get_Headers", "<= get_Headers", "=> put_Headers", "<= put_Headers",
                                        "=> get_URLLength", "<= get_URLLength", "=> get_PostDataLength",
                                        "<= get_PostDataLength", "=> put_ScriptRecording", "<= put_ScriptRecording"}),
              Lines());
}
