// Templates of the small host.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "host/user/templates.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

class HostTemplates : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("wrenfold-templates-" + std::to_string(getpid()));
    Write("reply/Thanks.txt", "#sign Work\nThank you.\n{body}\r\n");
    Write("reply/bare.TXT", "no end");
    Write("reply/readme.md", "x");
    Write("sign/Work.txt", "-- \nAlice\n");
    Write("secret.txt", "secret");
    templates_.Open(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }
  void Write(const std::string& name, const std::string& text) const {
    fs::create_directories((folder_ / name).parent_path());
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }

  fs::path folder_;
  TemplateFolder templates_;
};

TEST_F(HostTemplates, AreTextFilesByKind) {
  EXPECT_EQ(templates_.Names(1), (std::vector<std::string>{"Thanks", "bare"}));
  EXPECT_EQ(templates_.Names(0), std::vector<std::string>{});
  EXPECT_EQ(templates_.Names(4), std::vector<std::string>{});
  EXPECT_EQ(templates_.Text(1, "thanks"), "Thank you.\r\n{body}\r\n");
  EXPECT_EQ(templates_.Text(1, "bare"), "no end");
  EXPECT_EQ(templates_.Sign(1, "Thanks"), "Work");
  EXPECT_EQ(templates_.Sign(1, "bare"), "");
  EXPECT_EQ(templates_.Text(3, "Work"), "-- \r\nAlice\r\n");
  EXPECT_EQ(templates_.Text(1, "../secret"), "") << "no way out of the folder";
  EXPECT_TRUE(templates_.Has(3, "WORK"));
  EXPECT_FALSE(templates_.Has(3, "Thanks"));
  EXPECT_EQ(TemplateFolder().Names(1), std::vector<std::string>{}) << "no folder at all";
}

TEST_F(HostTemplates, SignaturesMayHaveAnHtmlForm) {
  Write("sign/Formal.html", "<p>Bob &amp; <b>Co</b></p>\n");
  Write("sign/Work.html", "<i>Alice</i>\n");
  Write("reply/Page.html", "x");
  EXPECT_EQ(templates_.Names(3), (std::vector<std::string>{"Formal", "Work"})) << "each name once";
  EXPECT_EQ(templates_.Names(1), (std::vector<std::string>{"Thanks", "bare"})) << "signatures only";
  EXPECT_TRUE(templates_.Has(3, "formal"));
  EXPECT_EQ(templates_.Text(3, "Formal"), "Bob & Co\r\n") << "as text";
  EXPECT_EQ(templates_.Text(3, "Work"), "-- \r\nAlice\r\n") << "its own text";
  EXPECT_EQ(templates_.Html(3, "Work"), "<i>Alice</i>\r\n");
  EXPECT_EQ(templates_.Html(3, "none"), "");
}

}  // namespace
}  // namespace wrenfold
