// Whatever bytes a host hands over as a message: every address lies inside the image, every array in
// it whole.
#include <cstdint>
#include <cstring>
#include <vector>

#include "fuzz/demand.h"
#include "src/mapi/message_image.h"

using namespace wfinfo::mapi;

namespace {

struct Bounds {
  const char* start;
  std::size_t size;

  void Check(const void* address, std::size_t length) const {
    if (address == nullptr) return;
    const auto* at = static_cast<const char*>(address);
    Demand(at > start && at < start + size && length <= static_cast<std::size_t>(start + size - at));
  }
};

template <class Record>
void CheckRecords(const Bounds& bounds, const Record* first, std::uint32_t count,
                  const void* (*first_text)(const Record&), const void* (*second_text)(const Record&)) {
  if (first == nullptr) {
    Demand(count == 0);
    return;
  }
  bounds.Check(first, count * sizeof(Record));
  for (std::uint32_t i = 0; i < count; ++i) {
    Record record;
    std::memcpy(&record, reinterpret_cast<const char*>(first) + i * sizeof record, sizeof record);
    bounds.Check(first_text(record), 1);
    bounds.Check(second_text(record), 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<char> image(ImageRoom(size));
  if (size > 0) std::memcpy(image.data(), data, size);
  const MailRecord mail = *ConvertImage(image.data(), size);
  const Bounds bounds = {image.data(), size};
  for (const char* text : {mail.subject, mail.note_text, mail.date_received}) {
    bounds.Check(text, 1);
    // Terminated within the room; an image shorter than a record is followed by the rest of the record.
    Demand(text == nullptr || text + std::strlen(text) < image.data() + image.size());
  }
  const auto name = [](const Recipient& r) -> const void* { return r.name; };
  const auto address = [](const Recipient& r) -> const void* { return r.address; };
  CheckRecords<Recipient>(bounds, mail.originator, mail.originator != nullptr ? 1 : 0, name, address);
  CheckRecords<Recipient>(bounds, mail.recipients, mail.recipient_count, name, address);
  CheckRecords<FileRecord>(
      bounds, mail.files, mail.file_count, [](const FileRecord& f) -> const void* { return f.path; },
      [](const FileRecord& f) -> const void* { return f.file_name; });
  return 0;
}
