// Certificates, stores and dialogs for the S/MIME tests.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "src/smime/crypto_binding_win.h"

namespace wfinfo_test {

// The dialogs of this program are those of the library.
void UseThisModule();

// Now, moved by whole days.
FILETIME DaysFromNow(int days);

// What a certificate is to say.
struct CertSpec {
  std::string name = {};                         // common name
  std::vector<std::string> emails = {};          // emailAddress attributes of the subject
  std::vector<std::string> alt_emails = {};      // RFC 822 names of the alternative-name extension
  std::vector<std::string> old_alt_emails = {};  // the same in an extension of the older identifier, in front
  std::vector<std::string> crl_urls = {};        // distribution points
  std::vector<std::wstring> utf8_emails = {};    // emailAddress attributes of the subject as UTF8String
  std::string encoded_alt_names = {};            // an alternative-name extension as it is
  int from_days = -10;
  int to_days = 10;
  bool is_authority = false;
};

// An authority that signs certificates and revocation lists. All share few keys: making one takes a while.
class Authority {
 public:
  // Self-signed, or signed by `issuer`.
  explicit Authority(const std::string& name, Authority* issuer = nullptr, CertSpec spec = {});
  ~Authority();
  Authority(const Authority&) = delete;

  PCCERT_CONTEXT cert() const { return cert_; }
  PCCERT_CONTEXT Issue(const CertSpec& spec);
  std::string IssueDer(const CertSpec& spec);
  // A revocation list; `from_days` and `to_days` bound its validity.
  std::string Revoke(const std::vector<PCCERT_CONTEXT>& revoked, int from_days = -5, int to_days = 5);

 private:
  PCCERT_CONTEXT Build(const CertSpec& spec, HCRYPTPROV issuer_key, const CERT_NAME_BLOB& issuer,
                       HCRYPTPROV subject_key);

  HCRYPTPROV key_ = 0;
  PCCERT_CONTEXT cert_ = nullptr;
};

// An alternative-name extension that holds `mail_names` as they are, zeroes too; each below 100 bytes.
std::string EncodedMailNames(const std::vector<std::string>& mail_names);

// The address that a spec gets when only an address matters.
inline CertSpec ForEmail(const std::string& email) { return {.name = email, .emails = {email}}; }

// A store in memory that enumerates its certificates in the order in which they were added.
class MemoryStore {
 public:
  MemoryStore();
  ~MemoryStore();
  MemoryStore(const MemoryStore&) = delete;
  void Add(PCCERT_CONTEXT cert);
  HCERTSTORE get() const { return store_; }

 private:
  HCERTSTORE store_;
  std::vector<PCCERT_CONTEXT> added_;
};

// Makes CertOpenSystemStoreA of the library open stores in memory, which start empty, for as long as it
// lives, and counts what the library takes and gives back.
class CountedCrypto {
 public:
  CountedCrypto();
  ~CountedCrypto();
  CountedCrypto(const CountedCrypto&) = delete;

  // The memory store that stands for the system store `name`.
  MemoryStore& Store(const std::string& name);
  // Names of entries that are missing, stores that do not open, and libraries that do not load.
  std::vector<std::string> missing_entries;
  std::vector<std::string> missing_stores;
  std::vector<std::string> missing_modules;
  // The system's stores are opened after all.
  bool uses_real_stores = false;
  // Replaced entries.
  std::map<std::string, void*> replaced;

  // Contexts and stores that the library still holds.
  int open_certs() const;
  int open_stores() const;
  int open_chains() const;
  int open_crls() const;
  // Fails the test when anything is held.
  void ExpectBalance(int certs = 0, int stores = 0) const;
};

// While alive, answers dialogs of this process: calls `act` once for each that shows control `control_id`, on
// another thread.
class DialogDriver {
 public:
  DialogDriver(int control_id, std::function<void(HWND)> act);
  // Presses `button`.
  DialogDriver(int control_id, int button);
  ~DialogDriver();
  DialogDriver(const DialogDriver&) = delete;
  int count() const;

 private:
  struct State;
  std::shared_ptr<State> state_;
  std::thread thread_;
};

// For the entry CertGetCertificateChain: every chain is fine.
BOOL WINAPI GoodChain(HCERTCHAINENGINE engine, PCCERT_CONTEXT cert, LPFILETIME time, HCERTSTORE store,
                      PCERT_CHAIN_PARA para, DWORD flags, LPVOID reserved, PCCERT_CHAIN_CONTEXT* chain);

// As if the user had pressed that button.
void Press(HWND dialog, int button);

std::string TextOf(HWND dialog, int control);
// A report's text in code page 932, whatever the system's code page is.
std::string HostTextOf(HWND control);
std::vector<std::string> LinesOf(HWND dialog, int list);

}  // namespace wfinfo_test
