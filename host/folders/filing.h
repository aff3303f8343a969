// Mails to other folders, on disk and in the store.
//
// A mail with a file of its own is renamed into the folder; one of an mbox is written there first and then
// left out of the mbox, which is rewritten beside and renamed. An interrupted move leaves mails twice, never
// not at all, and only those that had their new places by then. A mail that cannot be written, or not be
// taken from where it lies, stays there, and nothing is left of the try. Names in use get a number behind
// them: "a (2).eml"; mails without a file are named by their date: "20250602-090000.eml".
//
// The file that holds a mail, and the folder or mbox that it goes to, are held (file_hold.h) while that is
// done: of two hosts one waits for the other. A store that is read-only changes in memory alone.
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "host/mail/mail_store.h"

namespace wrenfold {

struct Filed {
  std::vector<std::size_t> mails;  // those that it was done with
  std::string failure;             // why not with the others, the first reason in UTF-8; "" when with all
};

// A mail that is in `target` already is done with.
Filed MoveMails(MailStore& store, std::span<const std::size_t> mails, std::size_t target);

// Adds the copies to the store, behind its mails: `mails` of the result are the ones copied, in the
// same order.
Filed CopyMails(MailStore& store, std::span<const std::size_t> mails, std::size_t target);

// Removes the mails for good. In the store they stay, in no file.
Filed EraseMails(MailStore& store, std::span<const std::size_t> mails);

}  // namespace wrenfold
