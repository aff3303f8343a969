// Every text is a safe argument: the last text of the host, a text of the lent account record, and earlier
// results go to the host as they were passed, although the host's next answer, or our next result, ends them.
#include <gtest/gtest.h>

#include <set>

#include "src/catalogue/requests.h"
#include "tests/support/bad_texts.h"
#include "tests/support/forgetful_host_win.h"
#include "tests/support/guarded_win.h"
#include "tests/support/library.h"

namespace wfinfo_test {
namespace {

using wfinfo::catalogue::Kind;
using wfinfo::catalogue::kNoFirstSlot;
using wfinfo::catalogue::Parameter;
using wfinfo::catalogue::Row;
using wfinfo::catalogue::Rows;

// --- One test over all exports -------------------------------------------------------------------------

constexpr std::size_t kMostParameters = 12;

struct Left {
  const char* name;
  const char* why;
};

// Exports that cannot be called here. All of them are entered like the others.
constexpr Left kLeftOut[] = {
    {"Bypass_MessageBox", "waits for the user; its texts become UTF-16 before the box shows"},
    {"Bypass_ShellExecute", "starts programs; its texts become UTF-16 before that"},
    {"SelectCertCrcDialog", "shows a box without certificates; smime_tests call it"},
    {"SMIMEDecrypt", "takes a message, not a text, and shows a box; smime_tests call it"},
    {"SMIMEVerify", "takes a message, not a text, and shows a box; smime_tests call it"},
    {"Inet_OpenUrl", "goes to the network; asks the host nothing"},
    {"Sock_connect", "goes to the network; asks the host nothing"},
    {"Sock_gethostbyname", "goes to the network; asks the host nothing"},
    {"Sock_gethostbyaddr", "goes to the network; asks the host nothing"},
};

bool IsLeftOut(const Row& row) {
  for (const Left& left : kLeftOut) {
    if (row.name == left.name) return true;
  }
  // Called by other programs, in whose processes there is no host to ask.
  return row.family == "Simple MAPI";
}

struct Word {
  const char* name;
  std::size_t parameter;
  const char* text;
};

// Texts that an export must have to go as far as its requests, or to leave nothing behind.
constexpr Word kWords[] = {
    {"GetMailFlag", 0, "mark"},
    {"SetMailFlag", 0, "mark"},
    {"SetCharSet", 0, "euro"},
    {"NextPrevCustom", 0, "unread"},
    {"NextPrevCustom", 1, "up"},
    {"NextPrevCustom", 2, "Mail"},
    {"NextPrevCustom", 3, "Roll"},
    {"NextUnreadCustom", 0, "Roll"},
    {"PrevUnreadCustom", 0, "Roll"},
    {"MakeReply", 0, "QueryMultiReply"},
    {"MakeReplyCustom", 0, "Query"},
    {"MakeReplyCustom", 1, "CopyAttach"},
    {"MakeReplyCustom", 2, "QueryMultiReply"},
    {"MakeResentForward", 1, "sendnow"},
    {"MakeResentForward", 2, "log"},
    {"MakeResentForward", 3, "bcc"},
    {"OpenLog", 0, "direct"},
    {"Import", 1, "mbox"},
    {"Import", 2, "recv"},
    {"Import", 3, "makelog"},
    {"Import", 4, "tcurrent"},
    {"Import", 5, "mdnreply"},
    {"Import", 6, "nospamfilter"},
    {"Export", 1, "mbox"},
    {"Export", 2, "noencode"},
    {"Export", 3, "orikaeshi"},
    {"Export", 4, "append"},
    {"Export", 5, "transmittimestamp"},
    {"CheckDuplication", 0, "batch"},  // an unknown mode is reported without end
    {"SetDuplicationCheckOption", 0, "checkdate"},
    {"GetTemplateName", 0, "reply"},
    {"LoadTemplate", 0, "reply"},
    {"GetTemplateAssociatedSign", 0, "reply"},
    {"GetFolderMailCount", 2, "unread"},
    {"SetAutoPushTimerMilli", 1, "yes"},
    {"SetAutoPushTimer", 1, "yes"},
    {"SetAutoPushTimerEver", 1, "yes"},
    {"QuoteWidth", 1, "72"},
    {"GetAccountProp", 0, "szMailAddress"},
    {"SetAccountProp", 0, "szTitle"},
    {"SetAccountProp", 1, "other"},
    {"CallByEmailList", 0, "RootHeader"},
    {"CallByEmailList", 1, "Subject, From"},
    {"LeftStr", 1, "3"},
    {"RightStr", 1, "3"},
    {"MidStr", 1, "1"},
    {"MidStr", 2, "3"},
    {"ShiftDate", 0, "Tue, 5 Mar 2024 09:07:03 +0900"},
    {"ShiftDate", 1, "1 day"},
    {"SubtractDate", 0, "Tue, 5 Mar 2024 09:07:03 +0900"},
    {"SubtractDate", 1, "Mon, 4 Mar 2024 09:07:03 +0900"},
    {"SubtractDate", 2, "hour"},
    {"FormatDate", 0, "Tue, 5 Mar 2024 09:07:03 +0900"},
    {"FormatDateDefault1601", 0, "Tue, 5 Mar 2024 09:07:03 +0900"},
    {"CurrentDate", 0, "no time"},
    {"Bypass_CreateDirectory", 0, "?:\\no such place"},
    {"SaveStringToFile", 0, "@file"},
    {"LoadDll", 0, "no such library"},
};

// Row, parameter: its text, or null when it is a number.
std::string TextOf(const Row& row, std::size_t parameter, const std::string& file) {
  for (const Word& word : kWords) {
    if (row.name == word.name && parameter == word.parameter) {
      return std::string(word.text) == "@file" ? file : word.text;
    }
  }
  return "argument " + std::to_string(parameter);
}

bool IsText(const Row& row, std::size_t parameter) {
  const std::string_view type = row.parameters[parameter].type;
  if (TypeOf(row.parameters[parameter]).shape == 'T' || type == "Rest") return true;
  if (type != "Value") return false;
  for (const Word& word : kWords) {
    if (row.name == word.name && parameter == word.parameter) return true;
  }
  return false;
}

bool TakesText(const Row& row) {
  for (std::size_t i = 0; i < row.parameters.size(); ++i) {
    if (IsText(row, i)) return true;
  }
  return false;
}

// Where an argument comes from.
enum class Origin { kHost, kShort, kInsideShort, kLong, kInsideLong, kRecord, kBook };
constexpr struct {
  Origin origin;
  const char* name;
} kOrigins[] = {
    {Origin::kHost, "the host's last text"},        {Origin::kShort, "the short result"},
    {Origin::kInsideShort, "inside the short one"}, {Origin::kLong, "the long result"},
    {Origin::kInsideLong, "inside the long one"},   {Origin::kRecord, "the lent account record"},
    {Origin::kBook, "a result of a book search"},
};

std::string g_current;  // the call that is being made, for the report of a crash

LONG CALLBACK TellCall(EXCEPTION_POINTERS*) {
  std::printf("crashed in %s\n", g_current.c_str());
  std::fflush(stdout);
  return EXCEPTION_CONTINUE_SEARCH;
}

// What a call did: its requests, its reports and its result.
struct Trace {
  std::vector<std::string> requests;
  std::vector<std::string> messages;
  std::string result;
  bool operator==(const Trace&) const = default;
};

void PrintTo(const Trace& trace, std::ostream* stream) {
  for (const std::string& request : trace.requests) *stream << request << " ";
  for (const std::string& message : trace.messages) *stream << "[" << message << "] ";
  *stream << "= " << trace.result;
}

class Arguments : public testing::TestWithParam<Forgets> {
 protected:
  void SetUp() override {
    SetUnhandledExceptionFilter(&TellCall);
    char temp[MAX_PATH];
    GetTempPathA(sizeof temp, temp);
    file_ = std::string(temp) + "wfinfo_argument_" + std::to_string(GetCurrentProcessId()) + ".txt";
    view_ = host_.windows().OpenOuterView();
    SetActiveWindow(host_.windows().frame());
    AnswerLikeAHost();
  }
  void TearDown() override { DeleteFileA(file_.c_str()); }

  void AnswerLikeAHost() {
    for (const Row& row : Rows()) {
      if (row.kind != Kind::kThin) continue;
      host_.HaveSlots(row.code, row.parameters.size() + (row.first_slot != kNoFirstSlot ? 1 : 0));
      if (row.result == "Str") host_.AnswerText(row.code, "answer " + std::to_string(row.code));
    }
    constexpr struct {
      int code;
      std::size_t slots;
    } kSlots[] = {{3, 1},   {4, 1},   {8, 3},   {43, 2},  {44, 2},  {45, 1},  {61, 1},  {62, 1},  {71, 1},
                  {75, 1},  {86, 1},  {91, 5},  {94, 2},  {97, 2},  {104, 3}, {113, 2}, {114, 2}, {115, 2},
                  {119, 7}, {120, 7}, {126, 5}, {135, 2}, {139, 3}, {143, 3}, {144, 5}, {153, 3}, {154, 4},
                  {158, 1}, {160, 1}, {193, 2}, {229, 3}, {246, 2}, {260, 2}, {262, 2}, {282, 2}, {290, 3},
                  {291, 2}, {292, 3}, {293, 4}, {307, 3}, {315, 1}, {316, 1}, {317, 3}, {216, 1}};
    for (const auto& [code, slots] : kSlots) host_.HaveSlots(code, slots);
    constexpr char kMail[] = "Subject: s\r\nargument 0: found\r\nFrom: f\r\n\r\nbody\r\n";
    host_.AnswerText(1, kMail);
    for (const int code : {2, 5, 47, 86, 111, 113, 114, 115, 153, 158, 262, 291, 292, 293, 297}) {
      host_.AnswerText(code, "answer " + std::to_string(code));
    }
    host_.AnswerText(143, std::string("found\0", 6));
    host_.AnswerNumber(4, 2);
    host_.AnswerNumber(129, 0);
    for (const int code : {144, 15, 263, 290, 307, 315, 316}) host_.AnswerNumber(code, 0);
  }

  // `text` as a live result of the given origin.
  const char* Live(Origin origin, const std::string& text) {
    switch (origin) {
      case Origin::kHost:
        host_.AnswerText(42, text);
        return RootFolder();
      case Origin::kShort:
        return ToLower(text.c_str());
      case Origin::kInsideShort:
        return ToLower(("in " + text).c_str()) + 3;
      case Origin::kLong:
        return LeftStr(text.c_str(), 60000);
      case Origin::kInsideLong:
        return LeftStr(("in " + text).c_str(), 60000) + 3;
      case Origin::kBook:
        host_.AnswerText(143, text + '\0');
        DoBookGrep("all", 0, 0);
        return GetGrepResult(0);
      case Origin::kRecord:
        break;
    }
    LoadAccountProp("account");
    std::strcpy(host_.record(), text.c_str());
    return AsText(GetAccountProp("szTitle"));
  }

  Slot Invoke(const Row& row, const std::array<Slot, kMostParameters>& a) {
    using Export = Slot (*)(Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot, Slot);
    const auto function = reinterpret_cast<Export>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleA("WFINFO.dll"), std::string(row.name).c_str())));
    return function(a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9], a[10], a[11]);
  }

  std::string ResultOf(const Row& row, Slot result) const {
    if (row.result == "Void" || row.result == "Handle") return "";
    if (row.result != "Str" && row.result != "OptStr") return std::to_string(static_cast<int>(result));
    return result == 0 ? "null" : AsText(result);
  }

  // Calls `row` with one of its texts from `origin`, or, when `all` says so, all of them being that one; with
  // `live` off, a private copy stands in its place.
  Trace CallWith(const Row& row, std::size_t chosen, bool all, Origin origin, bool live) {
    // What a call before left behind is the same for both.
    DoBookGrep("before", 0, 0);
    LoadAccountProp("account before");
    LoadAccountProp(nullptr);
    std::string chosen_text = TextOf(row, chosen, file_);
    if (origin == Origin::kShort || origin == Origin::kInsideShort) {
      for (char& c : chosen_text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    }
    const char* const result = Live(origin, chosen_text);
    EXPECT_EQ(std::string(result), chosen_text);
    std::array<std::string, kMostParameters> texts;
    std::array<Slot, kMostParameters> arguments{};
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
      texts[i] = all ? chosen_text : TextOf(row, i, file_);
      const std::string_view type = row.parameters[i].type;
      if (IsText(row, i)) arguments[i] = AsValue(texts[i].c_str());
      if (type == "Int32" || type == "UInt32" || type == "Value")
        arguments[i] = IsText(row, i) ? arguments[i] : 1;
    }
    if (row.name == "ExecAt") arguments[0] = reinterpret_cast<Slot>(view_);
    const std::string private_copy = chosen_text;
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
      if (i != chosen && !(all && IsText(row, i))) continue;
      arguments[i] = AsValue(live ? result : private_copy.c_str());
    }
    host_.TakeRequests();
    host_.windows().TakeMessages();
    Trace trace;
    const Slot answer = Invoke(row, arguments);
    trace.result = ResultOf(row, answer);
    trace.requests = host_.TakeRequests();
    trace.messages = host_.windows().TakeMessages();
    StopAutoPushTimer();
    LoadAccountProp(nullptr);
    host_.windows().TakeMessages();
    return trace;
  }

  // The requests of the row are the same with a live result as with a private text.
  void Compare(const Row& row, std::size_t chosen, bool all) {
    for (const auto& [origin, name] : kOrigins) {
      g_current = std::string(row.name) + ", parameter " + std::to_string(chosen) +
                  (all ? " and all others" : "") + ", " + name;
      SCOPED_TRACE(g_current);
      const Trace expected = CallWith(row, chosen, all, origin, false);
      EXPECT_EQ(CallWith(row, chosen, all, origin, true), expected);
      if (!expected.requests.empty()) asked_.insert(row.name);
    }
  }

  ForgetfulHost host_{GetParam()};
  HWND view_ = nullptr;
  std::string file_;
  std::set<std::string_view> asked_;
};

// Rows that may ask, and do not for the arguments of this test.
constexpr Left kAskNothing[] = {
    {"PgpEncryptSuper", "no program is installed"},   {"PgpEncrypt", "no program is installed"},
    {"PgpSign", "no program is installed"},           {"PgpDecrypt", "no program is installed"},
    {"GetAccountProp", "the key lies in the record"}, {"SetHighPriority", "there is no menu"},
    {"SetRequestNotification", "there is no menu"},
};

TEST_P(Arguments, AnEarlierResultIsSentAsItWasPassedByEveryExport) {
  std::size_t exports = 0;
  for (const Row& row : Rows()) {
    if (!TakesText(row) || IsLeftOut(row)) continue;
    ++exports;
    std::size_t texts = 0;
    for (std::size_t i = 0; i < row.parameters.size(); ++i) {
      if (!IsText(row, i)) continue;
      ++texts;
      Compare(row, i, false);
    }
    if (texts > 1) Compare(row, 0, true);
    bool excused = row.kind == Kind::kHand && row.requests.empty();
    for (const Left& silent : kAskNothing) excused = excused || row.name == silent.name;
    EXPECT_TRUE(excused || asked_.contains(row.name))
        << row.name << " asked nothing: its arguments are wrong";
  }
  EXPECT_GT(exports, 210u);
}

INSTANTIATE_TEST_SUITE_P(Hosts, Arguments, testing::Values(Forgets::kByOverwriting, Forgets::kByUnmapping),
                         [](const auto& hosts) {
                           return hosts.param == Forgets::kByOverwriting ? "ThatOverwriteTheirTexts"
                                                                         : "ThatUnmapTheirTexts";
                         });

TEST(ArgumentsLeftOut, StandInTheCatalogue) {
  for (const Left& left : kLeftOut) EXPECT_NE(wfinfo::catalogue::FindRow(left.name), nullptr) << left.name;
  for (const Left& left : kAskNothing) EXPECT_NE(wfinfo::catalogue::FindRow(left.name), nullptr) << left.name;
  for (const Word& word : kWords) EXPECT_NE(wfinfo::catalogue::FindRow(word.name), nullptr) << word.name;
}

}  // namespace
}  // namespace wfinfo_test
