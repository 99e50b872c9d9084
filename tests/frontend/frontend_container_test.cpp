// The front-end container's services and its trace sink.
#include <gtest/gtest.h>
#include "frontend/frontend_container.h"

using tov::ComPtr;
using tovfe::FrontendContainer;
using tovfe::TraceSinkStandIn;

namespace {

// {3E5D1F20-6B7A-4C8D-9E0F-A1B2C3D4E5F6}
const GUID kOtherService = {0x3e5d1f20, 0x6b7a, 0x4c8d, {0x9e, 0x0f, 0xa1, 0xb2, 0xc3, 0xd4, 0xe5, 0xf6}};

ULONG Refs(IUnknown* p)
{
    p->AddRef();
    return p->Release();
}

class Frontend : public testing::Test {
protected:
    void SetUp() override
    {
        tovfe::MakeFrontend(container, sink);
        ASSERT_TRUE(container && sink);
    }

    ComPtr<FrontendContainer> container;
    ComPtr<TraceSinkStandIn> sink;
};

} // namespace

TEST_F(Frontend, GetServiceHandsOutRegisteredServicesOnly)
{
    ComPtr<IUnknown> service;
    ASSERT_EQ(S_OK, container->GetService(SID_TOVTraceSink, IID_ITOVTraceSink, service.Put()));
    ComPtr<ITOVTraceSink> trace;
    ASSERT_EQ(S_OK, service.As(IID_ITOVTraceSink, trace));
    EXPECT_EQ(static_cast<ITOVTraceSink*>(sink.Get()), trace.Get());

    EXPECT_EQ(E_NOINTERFACE, container->GetService(kOtherService, IID_IUnknown, service.Put()));
    EXPECT_FALSE(service);
    EXPECT_EQ(E_POINTER, container->GetService(kOtherService, IID_IUnknown, nullptr));
    EXPECT_EQ((std::vector<std::wstring>{L"GetService({7BB065F4-3E8E-11D3-90E3-006094B9D64F})",
                                         L"GetService({3E5D1F20-6B7A-4C8D-9E0F-A1B2C3D4E5F6})",
                                         L"GetService({3E5D1F20-6B7A-4C8D-9E0F-A1B2C3D4E5F6})"}),
              container->Log().Texts());

    trace.Reset();
    auto other = TraceSinkStandIn::Create();
    container->AddService(SID_TOVTraceSink, static_cast<ITOVTraceSink*>(other.Get()));
    EXPECT_EQ(1u, Refs(static_cast<ITOVTraceSink*>(sink.Get()))) << "a replaced service is released";
    container->AddService(SID_TOVTraceSink, nullptr);
    EXPECT_EQ(E_NOINTERFACE, container->GetService(SID_TOVTraceSink, IID_IUnknown, service.Put()));
    EXPECT_EQ(1u, Refs(static_cast<ITOVTraceSink*>(other.Get()))) << "a removed service is released";
}

TEST_F(Frontend, TraceSinkAnswersTheLevelOrThePlannedFailure)
{
    sink->SetLevel(3);
    ULONG level = 0;
    EXPECT_EQ(S_OK, sink->GetTraceLevel(GUID_NULL, &level));
    EXPECT_EQ(3u, level);
    sink->FailGetLevel(E_ACCESSDENIED);
    level = 9;
    EXPECT_EQ(E_ACCESSDENIED, sink->GetTraceLevel(GUID_NULL, &level));
    EXPECT_EQ(0u, level);
    EXPECT_EQ(E_POINTER, sink->GetTraceLevel(GUID_NULL, nullptr));
    EXPECT_EQ(3, sink->LevelQueries());
}

TEST_F(Frontend, TraceSinkCollectsLinesWithTheirComponents)
{
    EXPECT_EQ(S_OK, sink->WriteLine(kOtherService, "=> InitControl"));
    EXPECT_EQ(S_OK, sink->WriteLine(GUID_NULL, nullptr));
    EXPECT_EQ((std::vector<std::string>{"=> InitControl", ""}), sink->Lines());
    ASSERT_EQ(2u, sink->Components().size());
    EXPECT_TRUE(IsEqualGUID(kOtherService, sink->Components()[0]));
    EXPECT_EQ("=> InitControl\n\n", sink->Text());
    sink->ClearLines();
    EXPECT_TRUE(sink->Lines().empty());
    EXPECT_TRUE(sink->Components().empty());
}
