// A control's state before it has a browser: defaults, the properties that transform what they store, and
// post data without an object.
#include "support/control_fixture.h"
#include "framework/bstr.h"

using tov::Bstr;

using ControlState = tovtest::ControlFixture;

TEST_F(ControlState, DefaultsAndStoredValues)
{
    LONG v = -1;
    control->get_Version(&v);
    EXPECT_EQ(62, v);
    for (auto getter : {&ITOVHTMLControl::get_SimpleBrowse, &ITOVHTMLControl::get_DocumentComplete,
                        &ITOVHTMLControl::get_URLLength, &ITOVHTMLControl::get_PostDataLength, &ITOVHTMLControl::get_UIFlag,
                        &ITOVHTMLControl::get_PostDataModified}) {
        v = -1;
        EXPECT_EQ(S_OK, (control.Get()->*getter)(&v));
        EXPECT_EQ(0, v);
    }
    control->put_SimpleBrowse(5);
    control->get_SimpleBrowse(&v);
    EXPECT_EQ(1, v) << "any non-zero value reads back as 1";
    Bstr in(std::wstring_view(L"frame\0with zero", 15));
    Bstr frame;
    control->put_TargetFrame(in.Get());
    control->get_TargetFrame(frame.Put());
    EXPECT_EQ(in.View(), frame.View()) << "a copy of the whole length";
}

TEST_F(ControlState, PostDataHandsOutItsObjectOrTracesItsAbsence)
{
    Connect(1);
    IDispatch* out = reinterpret_cast<IDispatch*>(1);
    EXPECT_EQ(S_OK, control->get_PostData(&out));
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ((std::vector<std::string>{"=> get_PostData", Hashes(), "=> get_PostData", "(*pVal)->AddRef() failed",
                                        Hashes(), "<= get_PostData"}),
              Lines());
    tov::ComPtr<IDispatch> data, back;
    ASSERT_EQ(S_OK, container->QueryInterface(IID_IDispatch, data.PutVoid()));
    control->put_PostData(data.Get());
    EXPECT_EQ(S_OK, control->get_PostData(back.Put()));
    EXPECT_EQ(data.Get(), back.Get());
}
