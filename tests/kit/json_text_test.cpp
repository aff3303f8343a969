#include "tools/kit/json_text.h"

#include <gtest/gtest.h>

namespace {

using kit::Json;
using kit::ReadJson;
using kit::WriteJson;

TEST(KitJson, ReadsWhatOthersWrite) {
  const auto json =
      ReadJson(R"( {"a": [1, -2.5, true, null], "b": {"c": "\u65e5\ud83d\ude00\n\"\\\/"}, "d": ""} )");
  ASSERT_TRUE(json.has_value());
  EXPECT_EQ((*json)["a"].items.size(), 4u);
  EXPECT_EQ((*json)["a"].items[1].number, -2.5);
  EXPECT_TRUE((*json)["a"].items[2].truth);
  EXPECT_EQ((*json)["b"]["c"].text, "日😀\n\"\\/");
  EXPECT_EQ((*json)["d"].kind, Json::Kind::kText);
  EXPECT_EQ((*json)["none"].kind, Json::Kind::kNull);
  EXPECT_EQ((*json)["none"]["deeper"].Int(7), 7);
}

TEST(KitJson, RefusesWhatIsNoJson) {
  const struct {
    const char* text;
    const char* why;
  } kCases[] = {{"", "nothing"},
                {"{", "no end"},
                {"[1,]", "a comma too many"},
                {"[1] 2", "more behind it"},
                {R"({"a" 1})", "no colon"},
                {R"({a: 1})", "a name without quotes"},
                {R"("a)", "a text without an end"},
                {R"("\x")", "no such escape"},
                {R"("\u12")", "a short escape"},
                {R"("\ud800x")", "half a character"},
                {"tru", "no word"}};
  for (const auto& [text, why] : kCases) EXPECT_FALSE(ReadJson(text).has_value()) << why;
  EXPECT_FALSE(ReadJson(std::string(100, '[') + std::string(100, ']')).has_value()) << "too deep";
}

TEST(KitJson, WritesWhatItReads) {
  Json object = Json::Object();
  object.With("text", "a\"\\\n\x01 日本").With("number", 1.25).With("whole", 3).With("list", Json::List());
  const std::string text = WriteJson(object);
  EXPECT_EQ(text,
            "{\n  \"text\": \"a\\\"\\\\\\n\\u0001 日本\",\n  \"number\": 1.25,\n  \"whole\": 3,\n  \"list\": "
            "[]\n}\n");
  const auto again = ReadJson(text);
  ASSERT_TRUE(again.has_value());
  EXPECT_EQ(WriteJson(*again), text);
}

}  // namespace
