// The mail list as CSV.
#include <algorithm>
#include <variant>

#include "host/base/paths.h"
#include "host/base/utf8_mark.h"
#include "host/charset/charsets.h"
#include "host/files/safe_saving.h"
#include "host/list/csv_list.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/over_mails_win.h"
#include "host/shared/selection_win.h"
#include "host/terminal/progress.h"

namespace wrenfold {
namespace {

enum Which : Slot { kList = 0, kSelected = 1, kAllFolders = 2 };
enum Encoding : Slot { kUtf8WithMark = 0, kHostText = 1 };

std::vector<std::size_t> MailsOf(Request& request, Slot which) {
  HostState& state = request.state;
  if (which == kSelected) return SelectedMails(request);
  if (which == kList) return state.MailsOf(state.folder());
  std::vector<std::size_t> mails;
  for (std::size_t folder = 0; folder < state.folders().size(); ++folder) {
    std::ranges::copy(state.MailsOf(folder), std::back_inserter(mails));
  }
  return mails;
}

// A header on one line, as UTF-8.
std::string HeaderLine(HostState& state, std::size_t mail, std::string_view name) {
  std::string line = SystemCharsets().HostToUtf8(state.Header(mail, name));
  std::erase_if(line, [](char c) { return c == '\r' || c == '\n'; });
  return line;
}

std::string ValueOf(HostState& state, std::size_t mail, CsvColumn column) {
  switch (column) {
    case CsvColumn::kDate:
      return HeaderLine(state, mail, "Date");
    case CsvColumn::kFrom:
      return HeaderLine(state, mail, "From");
    case CsvColumn::kTo:
      return HeaderLine(state, mail, "To");
    case CsvColumn::kCc:
      return HeaderLine(state, mail, "Cc");
    case CsvColumn::kSubject:
      return HeaderLine(state, mail, "Subject");
    case CsvColumn::kSize:
      return std::to_string(state.Mail(mail).raw.size());
    case CsvColumn::kFolder:
      return state.folders()[state.Mail(mail).folder].name;
    case CsvColumn::kFile:
      return PathToUtf8(state.Mail(mail).source.filename());
    case CsvColumn::kUnread:
      return (state.StateWord(mail) & kStateUnread) != 0 ? "1" : "0";
  }
  return "";
}

std::string Table(HostState& state, const std::vector<std::size_t>& mails,
                  const std::vector<CsvColumn>& columns) {
  std::vector<std::string> values(columns.size());
  std::ranges::transform(columns, values.begin(),
                         [](CsvColumn column) { return std::string(NameOf(column)); });
  std::string table = CsvLine(values);
  Progress progress("exporting mails", mails.size());
  for (const std::size_t mail : mails) {
    progress.Step();
    std::ranges::transform(columns, values.begin(),
                           [&](CsvColumn column) { return ValueOf(state, mail, column); });
    table += CsvLine(values);
  }
  return table;
}

// file, which mails, encoding, columns joined by "+" or nothing. Answers the number of mails.
Answer Export(Request& request) {
  HostState& state = request.state;
  if (!request.HasText(0) || request.Text(0).empty())
    return request.Fail("CsvExport needs the name of a file");
  const Slot which = request.Number(1);
  const Slot encoding = request.Number(2);
  if (which < kList || which > kAllFolders)
    return request.Fail("no mails are meant by " + std::to_string(which));
  if (encoding < kUtf8WithMark || encoding > kHostText)
    return request.Fail("no encoding has the number " + std::to_string(encoding));
  if (request.Number(3) != 0 && !request.HasText(3)) return request.Fail("the columns cannot be read");
  const auto columns = ParseCsvColumns(SystemCharsets().HostToUtf8(request.Text(3)));
  if (const auto* word = std::get_if<std::string>(&columns)) return request.Fail(NoCsvColumn(*word));
  const std::vector<std::size_t> mails = MailsOf(request, which);
  std::string table = Table(state, mails, std::get<std::vector<CsvColumn>>(columns));
  table = encoding == kHostText ? SystemCharsets().Utf8ToHost(table) : std::string(kUtf8Mark) + table;
  const std::filesystem::path file = PathFromUtf8(SystemCharsets().HostToUtf8(request.Text(0)));
  const std::string over =
      WhyOverOpenMails(state, {file, ExportType::kMbox, ExportNaming::kNumber, ExportWrite::kTruncate});
  if (!over.empty()) return request.Fail(over);
  if (auto reason = WriteSafely(file, table)) return request.Fail(*std::move(reason));
  return Request::AnswerNumber(static_cast<Slot>(mails.size()));
}

constexpr Service kServices[] = {
    {142, "TIIT", WithRoot<Export>,
     "number of mails written to the CSV file of the first parameter: 0 of the list, 1 selected, 2 of all "
     "folders; 0 as UTF-8, 1 as host text; columns such as `date+subject`, or 0"},
};

}  // namespace

const ServiceFamily kCsvServices = {kServices, {}};

}  // namespace wrenfold
