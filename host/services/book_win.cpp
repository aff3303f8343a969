// The address book, which also stands for the directory server: look-ups by address, and searches whose
// results the library gives back when it is done with them.
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

constexpr Slot kFailed = -1;

AddressBook& Book(Request& request) { return request.state.commands.book; }

template <std::size_t kPart>
Answer Part(Request& request) {
  return request.AnswerText(Book(request).Part(request.Text(0), kPart));
}

constexpr auto kGroupPart = static_cast<std::size_t>(BookPart::kGroup);
constexpr auto kNote1 = static_cast<std::size_t>(BookPart::kNote1);

Answer Group(Request& request) {
  return request.AnswerText(std::string(LastGroup(Book(request).Part(request.Text(0), kGroupPart))));
}

Answer IsKnown(Request& request) {
  return Request::AnswerNumber(request.HasText(0) && Book(request).Find(request.Text(0)) != nullptr ? 1 : 0);
}

Answer LendBlock(Request& request, const std::vector<std::string>& texts) {
  std::list<std::string>& lent = request.state.commands.lent_blocks;
  lent.push_back(TextBlock(texts));
  return Request::AnswerNumber(reinterpret_cast<Slot>(lent.back().data()));
}

// The text to search; what follows it narrows the search in a host with several books, here there is one.
Answer Search(Request& request) {
  if (Book(request).empty()) return Request::AnswerNumber(kFailed);
  return LendBlock(request, Book(request).Search(request.Text(0)));
}

// block
Answer TakeBack(Request& request) {
  const auto* block = reinterpret_cast<const char*>(request.Number(0));
  const std::size_t taken = std::erase_if(request.state.commands.lent_blocks,
                                          [block](const std::string& lent) { return lent.data() == block; });
  return Request::AnswerNumber(taken > 0 ? 1 : 0);
}

// item, part by BookPart
Answer ItemPart(Request& request) {
  return request.AnswerText(Book(request).Part(request.Text(0), static_cast<std::size_t>(request.Number(1))));
}

// Addresses of a group, as a list for a header.
Answer Members(Request& request) {
  std::string list;
  for (const std::string& member : Book(request).Members(request.Text(0))) {
    list += (list.empty() ? "" : ", ") + member;
  }
  return request.AnswerText(list);
}

constexpr Service kServices[] = {
    {74, "A", TakeBack, "takes the results of a search in the book back: 1, 0 for others"},
    {98, "T", Part<1>, "the name in the book of an address, \"\" when there is none"},
    {99, "T", Part<2>, "the second name in the book of an address"},
    {100, "T", Part<3>, "the third name in the book of an address"},
    {106, "T", Part<kNote1>, "the first note in the book of an address"},
    {107, "T", Part<kNote1 + 1>, "the second note in the book of an address"},
    {108, "T", Part<kNote1 + 2>, "the third note in the book of an address"},
    {109, "T", Group, "the last step of the group's path in the book of an address"},
    {110, "T", Part<kGroupPart>, "the path of the group in the book of an address"},
    {143, "TII", Search,
     "the entries of the book that hold the text anywhere, as `Name <address>`; without a book the search "
     "fails"},
    {144, "TITTI", Search, "the same as 143: the book stands for the directory server"},
    {145, "TI", ItemPart, "part of a result, by the number of its [column](#address-book)"},
    {157, "T", Part<static_cast<std::size_t>(BookPart::kDate)>, "the date in the book of an address"},
    {165, "T", Members, "the entries of a group and its subgroups, as a list for a header"},
    {194, "T", Part<kNote1 + 3>, "the fourth note in the book of an address"},
    {195, "T", Part<kNote1 + 4>, "the fifth note in the book of an address"},
    {196, "T", Part<kNote1 + 5>, "the sixth note in the book of an address"},
    {197, "T", Part<kNote1 + 6>, "the seventh note in the book of an address"},
    {198, "T", Part<kNote1 + 7>, "the eighth note in the book of an address"},
    {201, "T", Part<kGroupPart>, "path of the group of a result"},
    {243, "T", IsKnown, "1 when the address is in the book"},
};

}  // namespace

const ServiceFamily kBookServices = {kServices, {}};

}  // namespace wrenfold
