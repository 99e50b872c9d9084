// The post data of a TOVEVENT form: unescaped and stored in the front end's data provider object, where
// the front end reads it back under "TOVEVENT:" / "PostData".
#include "control/automation_call.h"
#include "framework/handles.h"
#include <cstdint>
#include <optional>
#include "navigation/unescape_url.h"

using namespace tov;

namespace {

constexpr uint64_t kLargestPostData = 0x7FFFFFFE; // the length must fit the event's 32-bit argument

// The array a post-data VARIANT really holds, through any chain of VARIANT references. Any other shape
// (empty, a string, a number, a null array) holds none, so no memory is ever read through it.
const SAFEARRAY* PostDataArray(const VARIANT* v)
{
    for (int depth = 0; v && depth < 16; ++depth) {
        if (v->vt == (VT_BYREF | VT_VARIANT)) {
            v = v->pvarVal;
            continue;
        }
        if (!(v->vt & VT_ARRAY)) return nullptr;
        if (v->vt & VT_BYREF) return v->pparray ? *v->pparray : nullptr;
        return v->parray;
    }
    return nullptr;
}

// The bytes of a usable array: one dimension, a data pointer, and a size that fits the event's length.
std::optional<std::string_view> PostDataBytes(const VARIANT* postData)
{
    const SAFEARRAY* array = PostDataArray(postData);
    if (!array || array->cDims != 1 || !array->pvData) return std::nullopt;
    const uint64_t size = uint64_t(array->rgsabound[0].cElements) * array->cbElements;
    if (size > kLargestPostData) return std::nullopt;
    return std::string_view(static_cast<const char*>(array->pvData), static_cast<size_t>(size));
}

// The container is reset first, so the front end never reads post data of an earlier event.
void ResetContainer(ITOVDataProvider* provider)
{
    ComPtr<IUnknown> container;
    if (FAILED(provider->GetDataContainer(container.Put())) || !container) return;
    if (const auto reset = QueryAs<ITOVDataContainer>(container.Get(), IID_ITOVDataContainer)) reset->ResetContainer();
}

} // namespace

HRESULT CTOVHTMLControl::StorePostData(ITOVDataProvider* provider, const VARIANT* PostData, CTraceScope& scope)
{
    ResetContainer(provider);
    m_lPostDataLength = 0;
    ComPtr<IStream> stream;
    const HRESULT created = CreateStreamOnHGlobal(nullptr, TRUE, stream.Put());
    if (FAILED(created) || !stream) return FAILED(created) ? created : E_OUTOFMEMORY;

    const bool detailed = m_trace.Level() >= 2;
    const std::optional<std::string_view> bytes = PostDataBytes(PostData);
    const std::string_view raw = bytes.value_or(std::string_view());
    LONG size = 0;
    if (bytes) {
        size = static_cast<LONG>(raw.size());
        if (detailed) scope.Write("Size of Postdata before Transformation: " + std::to_string(size), trace::kDetail);
    }
    if (size != 0) {
        // The data is unescaped straight into the stream's own memory (it never grows): one buffer less
        // for a large form.
        const DWORD start = GetTickCount();
        ULARGE_INTEGER capacity;
        capacity.QuadPart = raw.size() + 1;
        HGLOBAL memory = nullptr;
        if (FAILED(stream->SetSize(capacity)) || FAILED(GetHGlobalFromStream(stream.Get(), &memory))) memory = nullptr;
        tov::GlobalMemoryLock locked(memory);
        if (char* buffer = locked.As<char>()) {
            if (detailed) {
                scope.Write("Postdata before Transformation", trace::kDetail);
                scope.Write(raw, trace::kDetail);
            }
            // Bounded by the data's length: zero bytes inside the form data are kept.
            const size_t plain = url::UnescapeData(raw.data(), raw.size(), buffer, static_cast<uint32_t>(m_lUIFlag),
                                                   url::SystemAnsiConverter());
            locked.Unlock(); // the stream may move its memory when it is cut to size
            if (detailed) scope.Write("Size of Postdata after Transformation: " + std::to_string(plain), trace::kDetail);
            ULARGE_INTEGER used;
            used.QuadPart = plain;
            LARGE_INTEGER end;
            end.QuadPart = static_cast<LONGLONG>(plain);
            size = 0;
            if (SUCCEEDED(stream->SetSize(used)) && SUCCEEDED(stream->Seek(end, STREAM_SEEK_SET, nullptr)))
                size = static_cast<LONG>(plain);
            if (size != 0 && detailed) {
                scope.Write("Postdata after Transformation", trace::kDetail);
                const tov::GlobalMemoryLock again(memory);
                if (const char* text = again.As<const char>()) scope.Write(std::string_view(text, plain), trace::kDetail);
            }
        } else {
            // No memory for the transformation: the event tells the untransformed size, the stream stays empty.
            ULARGE_INTEGER none{};
            stream->SetSize(none);
        }
        if (detailed)
            scope.Write("Used time for postdata transformation: " + std::to_string(static_cast<int>(GetTickCount() - start)) +
                            " ms.",
                        trace::kDetail);
    }
    m_lPostDataLength = size;
    if (m_bScriptRecording) m_bPostDataModified = 1;
    Bstr name(L"PostData");
    return provider->SetDataFromStream(L"TOVEVENT:", name.Get(), stream.Get());
}
