#pragma once
// JSON for the engine protocol. The header-only library comes through an include folder of its own
// (made by the build), so no header of the build machine's C library reaches the cross compiler.
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace tovengine {

using Json = nlohmann::json;

// Text for the wire; strings with invalid UTF-8 are sent with replacement characters instead of failing.
inline std::string JsonText(const Json& value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Parses a message; invalid UTF-8 and unpaired surrogate escapes inside are replaced first, so that no
// answer is lost to them. A value
// that is not JSON at all comes back discarded.
Json ParseMessage(std::string_view text);

// Field access that never throws: the default when the field is missing or of another type.
std::string StringField(const Json& object, const char* name, std::string fallback = {});
long long IntField(const Json& object, const char* name, long long fallback = 0);
bool BoolField(const Json& object, const char* name, bool fallback = false);
double NumberField(const Json& object, const char* name, double fallback = 0);
const Json* ObjectField(const Json& object, const char* name);

} // namespace tovengine
