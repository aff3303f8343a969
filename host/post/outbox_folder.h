// The mails that wait to be sent, and those that were: two folders of .eml files, which outlive the program.
//
//   outbox/NAME.eml.new --rename--> outbox/NAME.eml --sent--> Sent/NAME.eml
//
// A mail is whole at any time: an interrupted run leaves it in the outbox, from where it is sent again, with
// the Message-ID that it had.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/writing/outgoing_text.h"

namespace wrenfold {

// Why a mail is not sent that another host is sending.
inline constexpr char kSentByAnother[] = "another program is sending it";

class OutboxFolder {
 public:
  // Hands a finished mail on; returns why that failed, else nullopt.
  using Hand =
      std::function<std::optional<std::string>(const std::filesystem::path& file, const std::string& mail)>;

  // The folders are made when the first mail comes.
  void Open(std::filesystem::path outbox, std::filesystem::path sent);

  const std::filesystem::path& folder() const { return outbox_; }
  const std::filesystem::path& sent() const { return sent_; }

  // Puts a mail (RFC 5322) into the outbox, as <unique>.eml; `file` names it. Returns why it cannot
  // be written.
  std::optional<std::string> Add(std::string_view mail, const std::string& unique,
                                 std::filesystem::path& file) const;

  // The mails that are to be sent, in order of their names; those with "X-Unsent: 1" wait for their writer.
  // With `now`, as in a Date header, only those that are due then.
  std::vector<std::filesystem::path> Waiting(std::string_view now = "") const;

  // Fills in what the mail lacks, hands it on, and moves it to the sent ones. Returns why it stays, or that
  // it was sent but could not be moved: then the next call tries that again and hands nothing on.
  std::optional<std::string> Send(const std::filesystem::path& file, const MailStamp& stamp,
                                  const Hand& hand);

 private:
  std::optional<std::string> File(const std::filesystem::path& file, std::string mail);
  std::optional<std::string> Forget(const std::filesystem::path& file);

  std::filesystem::path outbox_;
  std::filesystem::path sent_;
  // Files that were handed on and lie in the outbox still, with the mail while it has no copy among the sent.
  std::map<std::filesystem::path, std::string> sent_in_run_;
};

// The .eml files of a folder in order of their names; none when it cannot be read.
std::vector<std::filesystem::path> MailFilesOf(const std::filesystem::path& folder);
// With its .mbox files among them.
std::vector<std::filesystem::path> MailAndMboxFilesOf(const std::filesystem::path& folder);

// Files of the folder that a program which was ended did not finish: no mails, but nothing that may be lost.
std::vector<std::filesystem::path> UnfinishedFilesOf(const std::filesystem::path& folder);
inline constexpr char kUnfinished[] = ".tmp";  // the end of a name while a mail of another program is written

// Moves a file, also to another volume, to a name that is free; a failure leaves the file where it was, and
// what has the name. Returns why.
std::optional<std::string> MoveFileTo(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace wrenfold
