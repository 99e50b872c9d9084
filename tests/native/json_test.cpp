// Engine protocol messages: invalid UTF-8 and lone surrogates are repaired, field access never throws.
#include <gtest/gtest.h>
#include "engine/json.h"

using namespace tovengine;

namespace {
const std::string R = "\xEF\xBF\xBD"; // U+FFFD
}

TEST(Json, MessagesWithInvalidTextStillParse)
{
    const std::string valid = "M\xC3\xBCller \xE2\x82\xAC \xF0\x9F\x98\x80";
    const struct { std::string raw; std::string text; const char* what; } cases[] = {
        {"a\x80" "b", "a" + R + "b", "lone continuation byte"},
        {valid + "\xBF" + valid, valid + R + valid, "valid text around a bad byte stays"},
        {"\xC0\xAF|\xE0\x80\xAF", R + R + "|" + R + R + R, "overlong forms"},
        {"\xED\xA0\x80\xED\xB0\x80", R + R + R + R + R + R, "surrogates written as UTF-8"},
        {"\xF4\x90\x80\x80|\xF8\x88\x80\x80\x80", R + R + R + R + "|" + R + R + R + R + R, "past U+10FFFF"},
        {"x\xE2\x82", "x" + R + R, "sequence cut short by the end of the string"},
        {"x\xF0\x9F\x98", "x" + R + R + R, "four-byte sequence cut short"},
        {"\\ud800x\\udc00", R + "x" + R, "unpaired surrogate escapes"},
        {"\\ud83d\\ude00\\\\ud800\\ud800", "\xF0\x9F\x98\x80\\ud800" + R, "a pair stays; an escaped backslash starts no escape"},
        {"\\u00e9\\n" + valid, "\xC3\xA9\n" + valid, "nothing to repair"},
    };
    for (const auto& c : cases) {
        const Json m = ParseMessage("{\"id\":7,\"result\":{\"text\":\"" + c.raw + "\"}}");
        ASSERT_TRUE(m.is_object()) << c.what;
        EXPECT_EQ(7, IntField(m, "id")) << c.what;
        const Json* result = ObjectField(m, "result");
        ASSERT_NE(nullptr, result) << c.what;
        EXPECT_EQ(c.text, StringField(*result, "text")) << c.what;
    }
    for (const char* broken : {"", "{\"id\":", "{\"id\":1}}", "\xFF", "not json"})
        EXPECT_TRUE(ParseMessage(broken).is_discarded()) << broken;
}

TEST(Json, FieldsFallBackForMissingFieldsAndOtherTypes)
{
    const Json m = ParseMessage(R"({"s":"x","i":-42,"f":2.75,"b":true,"o":{"k":1},"n":null,"a":[1],
                                    "big":1e300,"huge":-1e19,"u":18446744073709551615})");
    EXPECT_EQ("x", StringField(m, "s"));
    EXPECT_EQ(-42, IntField(m, "i"));
    EXPECT_EQ(2, IntField(m, "f"));
    EXPECT_EQ(2.75, NumberField(m, "f"));
    EXPECT_EQ(-42.0, NumberField(m, "i"));
    EXPECT_TRUE(BoolField(m, "b"));
    EXPECT_EQ(&m["o"], ObjectField(m, "o"));
    // Numbers no long long holds give the fallback rather than some other number.
    for (const char* name : {"big", "huge", "u"}) EXPECT_EQ(5, IntField(m, name, 5)) << name;

    const Json notObjects[] = {m, Json::array({1}), Json("s"), Json(), ParseMessage("nope")};
    for (const Json& j : notObjects) {
        for (const char* name : {"s", "i", "b", "o", "n", "a", "missing"}) {
            const std::string type = j.is_object() ? j.value(name, Json()).type_name() : "root";
            if (type != "string") EXPECT_EQ("fb", StringField(j, name, "fb")) << name << " " << type;
            if (type != "number") EXPECT_EQ(9, IntField(j, name, 9)) << name << " " << type;
            if (type != "number") EXPECT_EQ(0.5, NumberField(j, name, 0.5)) << name << " " << type;
            if (type != "boolean") EXPECT_TRUE(BoolField(j, name, true)) << name << " " << type;
            if (type != "object") EXPECT_EQ(nullptr, ObjectField(j, name)) << name << " " << type;
        }
    }
}

TEST(Json, TextReplacesInvalidUtf8)
{
    const Json value = {{"s", "a\xFF" "b\xE2\x82\xAC\xC3"}, {"n", 1}};
    std::string text;
    EXPECT_NO_THROW(text = JsonText(value));
    EXPECT_EQ("{\"n\":1,\"s\":\"a" + R + "b\xE2\x82\xAC" + R + "\"}", text);
    EXPECT_EQ("a" + R + "b\xE2\x82\xAC" + R, StringField(ParseMessage(text), "s"));
}
