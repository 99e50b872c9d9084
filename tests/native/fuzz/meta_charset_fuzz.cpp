// Fuzz target: the meta-tag scan on arbitrary pages; a found charset is always a piece of the page.
#include <cstdint>
#include <cstdlib>
#include <string>
#include "navigation/meta_charset.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string page(reinterpret_cast<const char*>(data), size);
    const auto charset = tov::meta::FindMetaCharset(page);
    if (charset && charset->size() > page.size()) std::abort();
    return 0;
}
