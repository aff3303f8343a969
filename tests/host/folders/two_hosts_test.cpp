// Two hosts at work on the same files, each a process with a store of its own.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <map>

#include "host/files/file_hold.h"
#include "host/files/whole_file.h"
#include "host/folders/filing.h"
#include "host/folders/filter_rules.h"
#include "host/folders/folder_properties.h"
#include "host/requests/host_state.h"
#include "host/user/accounts.h"
#include "host/user/address_book.h"
#include "tests/host/mail/mail_folder_fixture.h"

namespace wrenfold {
namespace {

namespace fs = std::filesystem;

constexpr int kHosts = 2;
constexpr int kRounds = 12;  // the order of two processes is chance
constexpr std::size_t kMails = 20;

class TwoHosts : public MailFolderTest {
 protected:
  // Runs `host(n)` in kHosts processes that begin together once each is prepared.
  template <class Prepare>
  static void Run(Prepare prepare) {
    int gate[2];
    ASSERT_EQ(pipe(gate), 0);
    std::vector<pid_t> processes;
    for (int n = 0; n < kHosts; ++n) {
      const pid_t process = fork();
      if (process == 0) {
        close(gate[1]);
        const std::function<void()> host = prepare(n);
        char byte;
        [[maybe_unused]] const auto end = read(gate[0], &byte, 1);
        host();
        _exit(0);
      }
      processes.push_back(process);
    }
    close(gate[0]);
    usleep(50000);
    close(gate[1]);
    for (const pid_t process : processes) waitpid(process, nullptr, 0);
  }

  static std::string Mail(std::size_t number) {
    return "Subject: s\nDate: Mon, 2 Jun 2025 09:00:00 +0000\nMessage-ID: <" + std::to_string(number) +
           "@x>\n\ntext\n";
  }
  void WriteMbox() {
    std::string mbox;
    for (std::size_t i = 0; i < kMails; ++i) mbox += "From a@x Mon Jan  1 00:00:00 2024\n" + Mail(i) + "\n";
    Write("mails/box.mbox", mbox);
  }
  // How often each mail lies in all files together, as "1 1 1 2".
  std::string Counts() const {
    std::map<std::size_t, int> counts;
    for (std::size_t i = 0; i < kMails; ++i) counts[i] = 0;
    for (const auto& entry : fs::recursive_directory_iterator(root_)) {
      if (!entry.is_regular_file()) continue;
      const std::string bytes = ReadWholeFile(entry.path()).value_or("");
      for (auto& [number, count] : counts) {
        const std::string id = "<" + std::to_string(number) + "@x>";
        for (auto at = bytes.find(id); at != bytes.npos; at = bytes.find(id, at + 1)) ++count;
      }
    }
    std::string text;
    for (const auto& [number, count] : counts) text += std::to_string(count);
    return text;
  }
};

const std::string kAllOnce(kMails, '1');

std::size_t FolderCalled(const MailStore& store, const std::string& name) {
  for (std::size_t i = 0; i < store.folders().size(); ++i) {
    if (store.folders()[i].name == name) return i;
  }
  return 0;
}

TEST_F(TwoHosts, FileOutOfOneMboxWithoutLosingAMail) {
  for (int round = 0; round < kRounds; ++round) {
    fs::remove_all(root_);
    WriteMbox();
    fs::create_directories(root_ / "mails/to");
    Run([this](int host) {
      auto* store = new MailStore;
      store->Add(root_ / "mails");
      return [this, store, host] {
        for (std::size_t n = 0; n < kMails / 2; ++n) {
          const std::size_t mail = host == 0 ? n : kMails - 1 - n;
          // One that waits finds the mbox changed, and reads it again.
          for (int tries = 0; tries < 100; ++tries) {
            if (MoveMails(*store, std::span(&mail, 1), FolderCalled(*store, "to")).failure.empty()) break;
            const FileHold hold(root_ / "mails/box.mbox");
            store->ReadAgain(FolderCalled(*store, "box"));
            if (MoveMails(*store, std::span(&mail, 1), FolderCalled(*store, "to")).failure.empty()) break;
          }
        }
      };
    });
    ASSERT_EQ(Counts(), kAllOnce) << "round " << round;
    ASSERT_EQ(Read("mails/box.mbox"), "") << "round " << round;
  }
}

// Into an mbox, since a rename into a folder cannot be done twice. Both begin with the same mail, so that
// they meet at it and at many behind it.
TEST_F(TwoHosts, ReceiveFromOneInboxEachMailOnce) {
  for (int round = 0; round < kRounds; ++round) {
    fs::remove_all(root_);
    for (std::size_t i = 0; i < kMails; ++i) Write("inbox/" + std::to_string(i) + ".eml", Mail(i));
    Write("mails/box.mbox", "From a@x Mon Jan  1 00:00:00 2024\nSubject: seen\n\n\n");
    Run([this](int) {
      auto* state = new HostState;
      state->AddMails(root_ / "mails", MailStore::Unreadable::kSkip);
      const std::size_t box = state->tree().Find("box", 0).value_or(0);
      return [this, state, box] {
        for (std::size_t n = 0; n < kMails; ++n)
          state->Receive(root_ / "inbox" / (std::to_string(n) + ".eml"), box, false);
      };
    });
    ASSERT_EQ(Counts(), kAllOnce) << "round " << round;
  }
}

TEST_F(TwoHosts, ReceiveTheMailsOfOneFileOnce) {
  for (int round = 0; round < kRounds; ++round) {
    fs::remove_all(root_);
    WriteMbox();
    fs::create_directories(root_ / "inbox");
    fs::rename(root_ / "mails/box.mbox", root_ / "inbox/several.mbox");
    Write("mails/seen.eml", "Subject: seen\n\n");
    Run([this](int) {
      auto* state = new HostState;
      state->AddMails(root_ / "mails", MailStore::Unreadable::kSkip);
      return [this, state] { state->Receive(root_ / "inbox/several.mbox", 0, false); };
    });
    ASSERT_EQ(Counts(), kAllOnce) << "round " << round;
  }
}

TEST_F(TwoHosts, GiveFilesOfOneNameNamesOfTheirOwn) {
  for (int round = 0; round < kRounds; ++round) {
    fs::remove_all(root_);
    fs::create_directories(root_ / "mails/to");
    for (std::size_t i = 0; i < kMails; ++i) Write("mails/" + std::to_string(i) + "/same.eml", Mail(i));
    Run([this](int host) {
      auto* store = new MailStore;
      store->Add(root_ / "mails");
      return [store, host] {
        for (std::size_t mail = static_cast<std::size_t>(host); mail < kMails; mail += kHosts)
          MoveMails(*store, std::span(&mail, 1), FolderCalled(*store, "to"));
      };
    });
    ASSERT_EQ(Counts(), kAllOnce) << "round " << round;
  }
}

TEST_F(TwoHosts, KeepWhatBothWriteIntoSmallFiles) {
  constexpr int kEntries = 25;
  const auto book_file = Write("book.csv", "address, name\n");
  const auto rules_file = Write("filters.txt", "");
  const auto accounts_file = Write("accounts.txt", "");
  Run([&](int host) {
    auto* book = new AddressBook;
    book->Open(book_file);
    auto* folders = new FolderProperties(root_);
    auto* accounts = new AccountStore;
    accounts->Open(accounts_file);
    return [=] {
      for (int i = 0; i < kEntries; ++i) {
        const std::string name = std::string(1, static_cast<char>('a' + host)) + std::to_string(i);
        BookEntry entry;
        entry[0] = name + "@x";
        book->Add(entry);
        folders->Set(name, "icon", "1", false);
        AddFilterRule(rules_file, {"subject: " + name, name});
        accounts->Create(name);
        accounts->SetText(name, 0, "text of " + name);
      }
    };
  });
  const auto lines = [this](const std::string& file, const std::string& text) {
    const std::string bytes = Read(file);
    int count = 0;
    for (auto at = bytes.find(text); at != bytes.npos; at = bytes.find(text, at + 1)) ++count;
    return count;
  };
  EXPECT_EQ(lines("book.csv", "@x"), kHosts * kEntries);
  EXPECT_EQ(lines("folders.txt", "icon"), kHosts * kEntries);
  EXPECT_EQ(lines("filters.txt", "=>"), kHosts * kEntries);
  EXPECT_EQ(lines("accounts.txt", "text of"), kHosts * kEntries);
}

}  // namespace
}  // namespace wrenfold
