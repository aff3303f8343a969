// Messages as the host hands them over.
#include "src/mapi/message_image.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace wfinfo::mapi;

template <class Pointer>
Pointer At(std::size_t offset) {
  return reinterpret_cast<Pointer>(offset);
}

// An image as a host writes it, and its conversion in a block of exactly the stated room.
class ImageUnderTest {
 public:
  std::size_t Put(const void* bytes, std::size_t size) {
    const auto* first = static_cast<const char*>(bytes);
    image_.insert(image_.end(), first, first + size);
    return image_.size() - size;
  }
  template <class Pointer>
  Pointer Text(const std::string& text) {
    return At<Pointer>(Put(text.c_str(), text.size() + 1));
  }
  MailRecord mail{};

  const MailRecord& Convert() {
    std::memcpy(image_.data(), &mail, sizeof mail);
    return ConvertBytes(image_);
  }
  const MailRecord& ConvertBytes(const std::vector<char>& bytes) {
    room_.reset(new char[ImageRoom(bytes.size())]());
    if (!bytes.empty()) std::memcpy(room_.get(), bytes.data(), bytes.size());
    return *ConvertImage(room_.get(), bytes.size());
  }
  const char* start() const { return room_.get(); }
  std::size_t size() const { return image_.size(); }

 private:
  std::vector<char> image_ = std::vector<char>(sizeof(MailRecord));
  std::unique_ptr<char[]> room_;
};

TEST(MessageImage, EveryOffsetBecomesAnAddress) {
  ImageUnderTest image;
  image.mail.subject = image.Text<char*>("subject");
  image.mail.note_text = image.Text<char*>("note");
  image.mail.date_received = image.Text<char*>("2025/11/21 10:00");
  const Recipient sender = {0, 0, image.Text<char*>("Sender"), image.Text<char*>("s@x"), 0, nullptr};
  image.mail.originator = At<Recipient*>(image.Put(&sender, sizeof sender));
  const Recipient recipients[] = {
      {0, kTo, image.Text<char*>("Jo"), image.Text<char*>("j@x"), 3, At<void*>(8)},
      {0, kCc, nullptr, image.Text<char*>("k@x"), 0, nullptr}};
  image.mail.recipients = At<Recipient*>(image.Put(recipients, sizeof recipients));
  image.mail.recipient_count = 2;
  const FileRecord file = {
      0, 0, 0xFFFFFFFF, image.Text<char*>("C:\\a"), image.Text<char*>("a"), image.Text<char*>("t")};
  image.mail.files = At<FileRecord*>(image.Put(&file, sizeof file));
  image.mail.file_count = 1;

  const MailRecord& mail = image.Convert();
  EXPECT_STREQ(mail.subject, "subject");
  EXPECT_STREQ(mail.note_text, "note");
  EXPECT_STREQ(mail.date_received, "2025/11/21 10:00");
  EXPECT_EQ(mail.message_type, nullptr);
  Recipient read;
  std::memcpy(&read, mail.originator, sizeof read);
  EXPECT_STREQ(read.name, "Sender");
  EXPECT_STREQ(read.address, "s@x");
  ASSERT_EQ(mail.recipient_count, 2u);
  std::memcpy(&read, mail.recipients, sizeof read);
  EXPECT_STREQ(read.name, "Jo");
  EXPECT_STREQ(read.address, "j@x");
  EXPECT_EQ(read.entry, At<void*>(8)) << "entry identifiers are not converted";
  std::memcpy(&read, mail.recipients + 1, sizeof read);
  EXPECT_EQ(read.name, nullptr);
  EXPECT_STREQ(read.address, "k@x");
  ASSERT_EQ(mail.file_count, 1u);
  FileRecord read_file;
  std::memcpy(&read_file, mail.files, sizeof read_file);
  EXPECT_STREQ(read_file.path, "C:\\a");
  EXPECT_STREQ(read_file.file_name, "a");
  EXPECT_STREQ(static_cast<char*>(read_file.file_type), "t");
}

TEST(MessageImage, TypeAndConversationAreLeftAlone) {
  ImageUnderTest image;
  image.mail.message_type = At<char*>(16);
  image.mail.conversation_id = At<char*>(24);
  const MailRecord& mail = image.Convert();
  EXPECT_EQ(mail.message_type, At<char*>(16));
  EXPECT_EQ(mail.conversation_id, At<char*>(24));
}

TEST(MessageImage, OffsetsOutsideTheImageBecomeNull) {
  for (const std::size_t beyond :
       {std::size_t{0}, std::size_t{1}, std::size_t{1} << 40, SIZE_MAX - sizeof(MailRecord)}) {
    ImageUnderTest image;
    const std::size_t offset = image.size() + beyond;
    image.mail.subject = At<char*>(offset);
    image.mail.originator = At<Recipient*>(offset);
    image.mail.recipients = At<Recipient*>(offset);
    image.mail.recipient_count = 1;
    image.mail.files = At<FileRecord*>(offset);
    image.mail.file_count = 0xFFFFFFFF;
    const MailRecord& mail = image.Convert();
    EXPECT_EQ(mail.subject, nullptr) << offset;
    EXPECT_EQ(mail.originator, nullptr);
    EXPECT_EQ(mail.recipients, nullptr);
    EXPECT_EQ(mail.recipient_count, 0u);
    EXPECT_EQ(mail.files, nullptr);
    EXPECT_EQ(mail.file_count, 0u);
  }
}

TEST(MessageImage, AnArrayThatDoesNotFitIsDroppedWhole) {
  ImageUnderTest image;
  const Recipient recipients[2] = {};
  image.mail.recipients = At<Recipient*>(image.Put(recipients, sizeof recipients - 1));
  image.mail.recipient_count = 2;
  const MailRecord& mail = image.Convert();
  EXPECT_EQ(mail.recipients, nullptr);
  EXPECT_EQ(mail.recipient_count, 0u);
}

TEST(MessageImage, RecordsThatOverlapAreDropped) {
  ImageUnderTest image;
  const Recipient two[2] = {};
  const std::size_t offset = image.Put(two, sizeof two);
  image.mail.originator = At<Recipient*>(8);  // over the mail itself
  image.mail.recipients = At<Recipient*>(offset);
  image.mail.recipient_count = 2;
  image.mail.files = At<FileRecord*>(offset + 20);
  image.mail.file_count = 1;
  const MailRecord& mail = image.Convert();
  EXPECT_EQ(mail.originator, nullptr);
  EXPECT_EQ(mail.recipient_count, 2u);
  EXPECT_EQ(mail.files, nullptr);
}

TEST(MessageImage, RecordsMayStandInAnyOrderSideBySide) {
  ImageUnderTest image;
  const FileRecord file = {};
  const Recipient two[2] = {};
  image.mail.files = At<FileRecord*>(image.Put(&file, sizeof file));
  image.mail.file_count = 1;
  image.mail.recipients = At<Recipient*>(image.Put(two, sizeof two));
  image.mail.recipient_count = 2;
  image.mail.originator = At<Recipient*>(image.Put(two, sizeof two[0]));
  const MailRecord& mail = image.Convert();
  EXPECT_NE(mail.originator, nullptr);
  EXPECT_EQ(mail.recipient_count, 2u);
  EXPECT_EQ(mail.file_count, 1u) << "in front of those converted before, and touching them";
}

TEST(MessageImage, ATextAtTheVeryEndIsTerminated) {
  ImageUnderTest image;
  image.mail.subject = At<char*>(image.Put("abc", 3));
  EXPECT_STREQ(image.Convert().subject, "abc");
}

TEST(MessageImage, TheRoomIsARecordAtLeastAndAZeroByte) {
  EXPECT_EQ(ImageRoom(0), sizeof(MailRecord) + 1);
  EXPECT_EQ(ImageRoom(sizeof(MailRecord)), sizeof(MailRecord) + 1);
  EXPECT_EQ(ImageRoom(5000), 5001u);
}

TEST(MessageImage, AnImageShorterThanARecordIsAnEmptyMail) {
  ImageUnderTest image;
  const MailRecord& mail = image.ConvertBytes({});
  EXPECT_EQ(mail.subject, nullptr);
  EXPECT_EQ(mail.recipient_count, 0u);
}

}  // namespace
