// Templates and signatures.
#include <gtest/gtest.h>

#include "tests/support/bad_texts.h"

namespace wfinfo_test {
namespace {

struct Word {
  const char* word;
  long long code;
};

const Texts kBadTemplateKind = {"Invalid template kind specified in Template series function.",
                                u8"テンプレート系関数で、テンプレートの種類の指定が間違っています。"};

TEST(Templates, EachKindBecomesItsCode) {
  ScriptedHost host;
  for (const Word& w :
       {Word{"newmail", 0}, {"reply", 1}, {"forward", 2}, {"sign", 3}, {"Sign", 3}, {"NEWMAIL", 0}}) {
    host.Expect(113).Int(w.code).Int(-4).Answer("name");
    EXPECT_STREQ(GetTemplateName(w.word, -4), "name") << w.word;
    host.Expect(114).Int(w.code).Text("T").Answer("text");
    EXPECT_STREQ(LoadTemplate(w.word, "T"), "text") << w.word;
    host.Expect(115).Int(w.code).Text("T").Answer("signature");
    EXPECT_STREQ(GetTemplateAssociatedSign(w.word, "T"), "signature") << w.word;
  }
  host.Expect(113).Int(0).Int(9);
  EXPECT_STREQ(GetTemplateName("newmail", 9), "");
  host.Expect(114).Int(0).Text("T");
  EXPECT_STREQ(LoadTemplate("newmail", "T"), "");
  host.Expect(115).Int(0).Text("T");
  EXPECT_STREQ(GetTemplateAssociatedSign("newmail", "T"), "");
}

TEST(Templates, WrongKindsAreReportedAndSendNothing) {
  ScriptedHost host;
  for (const char* kind : {"signature", "", "new", "sign "}) {
    ExpectReports(host, {kBadTemplateKind}, [&] { EXPECT_STREQ(GetTemplateName(kind, 0), ""); });
    ExpectReports(host, {kBadTemplateKind}, [&] { EXPECT_STREQ(LoadTemplate(kind, nullptr), ""); });
    ExpectReports(host, {kBadTemplateKind},
                  [&] { EXPECT_STREQ(GetTemplateAssociatedSign(kind, nullptr), ""); });
  }
  for (const char* bad : BadTexts()) {
    const std::vector<Texts> both = {kNoTextMessage, kBadTemplateKind};
    ExpectReports(host, both, [&] { EXPECT_STREQ(GetTemplateName(bad, 0), ""); });
    ExpectReports(host, both, [&] { EXPECT_STREQ(LoadTemplate(bad, "T"), ""); });
    ExpectReports(host, both, [&] { EXPECT_STREQ(GetTemplateAssociatedSign(bad, "T"), ""); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_STREQ(LoadTemplate("sign", bad), ""); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_STREQ(GetTemplateAssociatedSign("sign", bad), ""); });
  }
}

TEST(Templates, PlainRequestsSendOneName) {
  ScriptedHost host;
  const struct {
    int code;
    long long (*send)(const char*);
  } requests[] = {{116, SwitchTemplate}, {117, SwitchSign}, {118, SetTargetDraftFolder}};
  for (const auto& r : requests) {
    host.Expect(r.code).Text("name").Answer(0x123456789LL);
    EXPECT_EQ(r.send("name"), 0x123456789LL);
    for (const char* bad : BadTexts())
      ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(r.send(bad), 0); });
  }
}

TEST(Templates, AFolderHasAReferenceOfEachKind) {
  ScriptedHost host;
  for (unsigned kind = 0; kind < 4; ++kind) {
    host.Expect(153).Text("A").Text("B").Int(kind).Answer("template");
    EXPECT_STREQ(GetTemplateReference("A", "B", kind), "template");
    host.Expect(153).Null().Null().Int(kind);
    EXPECT_STREQ(GetTemplateReference(nullptr, nullptr, kind), "");
    host.Expect(154).Null().Text("B").Int(kind).Text("T").Answer(0x123456789LL);
    EXPECT_EQ(SetTemplateReference(nullptr, "B", kind, "T"), 0x123456789LL);
  }
}

TEST(Templates, ReferencesOfOtherKindsOrOfBadFoldersAreRefused) {
  ScriptedHost host;
  for (const unsigned kind : {4u, 0x80000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(GetTemplateReference("A", "B", kind), nullptr);
    EXPECT_EQ(SetTemplateReference("A", "B", kind, "T"), 0);
  }
  for (const char* bad : UnreadableTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetTemplateReference(bad, bad, 0), nullptr); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(GetTemplateReference("A", bad, 0), nullptr); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetTemplateReference(bad, bad, 0, bad), 0); });
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetTemplateReference(nullptr, bad, 0, bad), 0); });
  }
  for (const char* bad : BadTexts()) {
    ExpectReports(host, {kNoTextMessage}, [&] { EXPECT_EQ(SetTemplateReference("A", "B", 0, bad), 0); });
  }
}

}  // namespace
}  // namespace wfinfo_test
