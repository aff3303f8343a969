// The address book, which also stands for the directory server: look-ups by address, and searches whose
// results the library gives back when it is done with them.
#include <iterator>

#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/terminal/terminal_text.h"

namespace wrenfold {
namespace {

constexpr Slot kNoEntries = -1;

AddressBook& Book(Request& request) { return request.state.commands.books.selected(); }

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
  if (Book(request).empty()) return Request::AnswerNumber(kNoEntries);
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

// --- Choosing a book, adding to it ---

Answer Select(Request& request) {
  const std::string name = Quoted(SystemCharsets().HostToUtf8(request.Text(0)), 60);
  if (!request.HasText(0)) return request.Fail("no address book is named");
  return request.state.commands.books.Select(request.Text(0))
             ? Request::Done(true)
             : request.Fail("there is no address book " + name);
}

// address, name, group, first note; 0 for what is not known.
Answer AddMember(Request& request) {
  BookEntry entry;
  constexpr BookPart kParts[] = {BookPart::kAddress, BookPart::kName, BookPart::kGroup, BookPart::kNote1};
  for (std::size_t slot = 0; slot < std::size(kParts); ++slot) {
    if (request.Number(slot) == 0) continue;
    if (!request.HasText(slot)) return request.Fail("parameter " + std::to_string(slot + 1) + " is no text");
    entry[static_cast<std::size_t>(kParts[slot])] = request.Text(slot);
  }
  if (const auto reason = Book(request).Add(entry)) return request.Fail(*reason);
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {72, "T", Select, "chooses the address book that is looked into, by the name of its file"},
    {74, "A", TakeBack, "takes the results of the search before back"},
    {98, "T", Part<1>, "name of an address, \"\" when it is not in the book; so with the codes below"},
    {99, "T", Part<2>, "its second name"},
    {100, "T", Part<3>, "its third name"},
    {106, "T", Part<kNote1>, "its first note"},
    {107, "T", Part<kNote1 + 1>, "its second note"},
    {108, "T", Part<kNote1 + 2>, "its third note"},
    {109, "T", Group, "its group, without those above"},
    {110, "T", Part<kGroupPart>, "path of its group"},
    {143, "TII", Search,
     "the entries that hold the text anywhere, as `Name <address>`; fails without a book"},
    {144, "TITTI", Search, "the same: the book stands for the directory server"},
    {145, "TI", ItemPart, "part of a result, by the number of its column"},
    {157, "T", Part<static_cast<std::size_t>(BookPart::kDate)>, "its date"},
    {165, "T", Members, "the entries of a group and its subgroups, as a list for a header"},
    {194, "T", Part<kNote1 + 3>, "its fourth note"},
    {195, "T", Part<kNote1 + 4>, "its fifth note"},
    {196, "T", Part<kNote1 + 5>, "its sixth note"},
    {197, "T", Part<kNote1 + 6>, "its seventh note"},
    {198, "T", Part<kNote1 + 7>, "its eighth note"},
    {201, "T", Part<kGroupPart>, "path of the group of a result"},
    {243, "T", IsKnown, "1 when the address is in the book"},
    {266, "TTTT", AddMember,
     "adds an entry to the book and its file: address, name, group, first note, null for what is not known"},
};

}  // namespace

const ServiceFamily kBookServices = {kServices, {}};

}  // namespace wrenfold
