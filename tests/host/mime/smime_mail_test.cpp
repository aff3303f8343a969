// Which part of a mail is the S/MIME message, and what it signs.
#include "host/mime/smime_mail.h"

#include <gtest/gtest.h>

#include <string>

namespace wrenfold {
namespace {

TEST(SmimeMailFile, AnOpaqueMessageIsDecoded) {
  for (const std::string type :
       {"application/pkcs7-mime", "application/x-pkcs7-mime; smime-type=signed-data"}) {
    const auto mail =
        ReadSmimeMail("Content-Type: " + type + "\nContent-Transfer-Encoding: base64\n\nMIIB\nAA==\n");
    ASSERT_TRUE(mail) << type;
    EXPECT_EQ(mail->message, std::string("0\x82\x01\0", 4));
    EXPECT_FALSE(mail->is_detached);
    EXPECT_EQ(mail->content, "");
  }
}

TEST(SmimeMailFile, ADetachedSignatureComesWithWhatItSigns) {
  const std::string mail_text =
      "Content-Type: multipart/signed; protocol=\"application/pkcs7-signature\"; "
      "boundary=\"b\"\n\nignored\n--b\n"
      "Content-Type: text/plain\n\nHello\r\nyou\n\n--b\nContent-Type: application/x-pkcs7-signature\n"
      "Content-Transfer-Encoding: base64\n\nMIIB\n--b--\n";
  const auto mail = ReadSmimeMail(mail_text);
  ASSERT_TRUE(mail);
  EXPECT_TRUE(mail->is_detached);
  EXPECT_EQ(mail->message, "0\x82\x01");
  EXPECT_EQ(mail->content, "Content-Type: text/plain\r\n\r\nHello\r\nyou\r\n")
      << "the last line end is the delimiter's";
}

TEST(SmimeMailFile, OtherMailsAreNone) {
  EXPECT_FALSE(ReadSmimeMail(""));
  EXPECT_FALSE(ReadSmimeMail("Subject: x\n\ntext"));
  EXPECT_FALSE(ReadSmimeMail("Content-Type: multipart/signed; boundary=b\n\n--b\n\nonly one\n--b--\n"));
  EXPECT_FALSE(ReadSmimeMail("Content-Type: multipart/signed\n\n--b\n\na\n--b\n\nb\n--b--\n"));
  EXPECT_FALSE(
      ReadSmimeMail("Content-Type: multipart/signed; boundary=b\n\n--b\n\na\n--b\n"
                    "Content-Type: application/pgp-signature\n\nb\n--b--\n"));
}

}  // namespace
}  // namespace wrenfold
