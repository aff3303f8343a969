// Registering certificates, dialog 105, display.
#include <gtest/gtest.h>

#include "resources/resource_ids.h"
#include "src/smime/import_win.h"
#include "tests/inside/smime/support.h"
#include "tests/support/library.h"
#include "tests/support/scripted_host_win.h"

namespace wfinfo_test {
namespace {

using namespace wfinfo::smime;

struct SeenRow {
  std::string check;
  std::string combo;
  bool checked;
  bool enabled;
  bool visible;
};

SeenRow RowOf(HWND dialog, int i) {
  const HWND check = GetDlgItem(dialog, IDC_IMPORT_FIRST_CHECK + i);
  const bool enabled = IsWindowEnabled(check) != FALSE;
  const bool visible = (GetWindowLongA(check, GWL_STYLE) & WS_VISIBLE) != 0;
  for (const int first : {IDC_IMPORT_FIRST_COMBO, IDC_IMPORT_FIRST_LABEL}) {
    const HWND other = GetDlgItem(dialog, first + i);
    EXPECT_EQ(IsWindowEnabled(other) != FALSE, enabled) << first + i;
    EXPECT_EQ((GetWindowLongA(other, GWL_STYLE) & WS_VISIBLE) != 0, visible) << first + i;
  }
  return {TextOf(dialog, IDC_IMPORT_FIRST_CHECK + i), TextOf(dialog, IDC_IMPORT_FIRST_COMBO + i),
          IsDlgButtonChecked(dialog, IDC_IMPORT_FIRST_CHECK + i) == BST_CHECKED, enabled, visible};
}

// What a driver does: notes the first row and presses OK.
std::function<void(HWND)> NoteFirstRow(std::vector<SeenRow>& rows) {
  return [&rows](HWND dialog) {
    rows.push_back(RowOf(dialog, 0));
    Press(dialog, IDOK);
  };
}

class SmimeImport : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(LoadCryptoLibrary());
    person_ = middle_.Issue(ForEmail("alice@example.org"));
  }
  void TearDown() override {
    crypto_.ExpectBalance();
    CertFreeCertificateContext(person_);
  }
  bool Has(const char* store, PCCERT_CONTEXT cert) {
    const PCCERT_CONTEXT found = CertFindCertificateInStore(crypto_.Store(store).get(), X509_ASN_ENCODING, 0,
                                                            CERT_FIND_EXISTING, cert, nullptr);
    if (found != nullptr) CertFreeCertificateContext(found);
    return found != nullptr;
  }
  void AddChain() {
    source_.Add(person_);
    source_.Add(middle_.cert());
    source_.Add(root_.cert());
  }
  int Import(bool quiet = false) { return SMIMEAddCertificate(source_.get(), quiet, host_.frame()); }

  ScriptedHost host_;
  CountedCrypto crypto_;
  Authority root_{"Root"};
  Authority middle_{"Middle", &root_};
  PCCERT_CONTEXT person_ = nullptr;
  MemoryStore source_;
};

TEST_F(SmimeImport, EachKindIsProposedForItsStore) {
  AddChain();
  std::vector<SeenRow> rows;
  BoxCloser closer;
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, [&](HWND dialog) {
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), host_.frame());
    for (int i = 0; i < 5; ++i) rows.push_back(RowOf(dialog, i));
    Press(dialog, IDOK);
  });
  EXPECT_EQ(Import(), 1);
  ASSERT_EQ(rows.size(), 5u);
  const SeenRow expected[] = {
      {"alice@example.org register", "Other person", true, true, true},
      {"Middle register", "Intermediate certification authority", true, true, true},
      {"Root register", "Trusted certification authority", false, true, true},
  };
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(rows[i].check, expected[i].check);
    EXPECT_EQ(rows[i].combo, expected[i].combo);
    EXPECT_EQ(rows[i].checked, expected[i].checked) << i;
    EXPECT_TRUE(rows[i].enabled && rows[i].visible);
  }
  for (int i = 3; i < 5; ++i) EXPECT_FALSE(rows[i].enabled || rows[i].visible) << i;
  EXPECT_TRUE(Has("AddressBook", person_));
  EXPECT_TRUE(Has("CA", middle_.cert()));
  EXPECT_FALSE(Has("ROOT", root_.cert()));
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text, "2 certificates are registered.");
  EXPECT_EQ(closer.boxes()[0].caption, "Register certificate");
}

TEST_F(SmimeImport, QuietAddsWhatIsProposedWithoutAWord) {
  AddChain();
  EXPECT_EQ(Import(true), 1);
  EXPECT_TRUE(Has("AddressBook", person_));
  EXPECT_TRUE(Has("CA", middle_.cert()));
  EXPECT_FALSE(Has("ROOT", root_.cert()));
  EXPECT_EQ(Import(true), 1) << "nothing needs adding any more";
}

TEST_F(SmimeImport, CancellingAddsNothing) {
  AddChain();
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, IDCANCEL);
  EXPECT_EQ(Import(), 0);
  EXPECT_FALSE(Has("AddressBook", person_));
}

TEST_F(SmimeImport, InstalledOnesAreShownAndStay) {
  crypto_.Store("CA").Add(middle_.cert());
  source_.Add(middle_.cert());
  std::vector<SeenRow> rows;
  BoxCloser closer;
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, NoteFirstRow(rows));
  EXPECT_EQ(Import(), 1);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].check, "Installed - Middle");
  EXPECT_EQ(rows[0].combo, "Intermediate certification authority");
  EXPECT_TRUE(rows[0].checked && rows[0].visible);
  EXPECT_FALSE(rows[0].enabled);
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text, "This certificate was already registered in Windows cert store.");
}

TEST_F(SmimeImport, ARootIsAddedOnlyAfterAQuestion) {
  source_.Add(root_.cert());
  // Answers the question: first No, then Yes.
  std::vector<std::string> questions;
  std::vector<std::string> captions;
  bool stayed_open = false;
  HWND import_dialog = nullptr;
  DialogDriver answers(IDYES, [&](HWND box) {
    questions.push_back(TextOf(box, 0xFFFF));
    char caption[256];
    GetWindowTextA(box, caption, sizeof caption);
    captions.emplace_back(caption);
    const bool first = questions.size() == 1;
    Press(box, first ? IDNO : IDYES);
    if (!first) return;
    while (IsWindow(box)) Sleep(5);
    stayed_open = IsWindow(import_dialog) != FALSE;
    Press(import_dialog, IDOK);
  });
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, [&](HWND dialog) {
    import_dialog = dialog;
    CheckDlgButton(dialog, IDC_IMPORT_FIRST_CHECK, BST_CHECKED);
    Press(dialog, IDOK);
  });
  // The box at the end.
  DialogDriver last(IDOK, [&](HWND box) {
    if (GetDlgItem(box, IDC_IMPORT_FIRST_CHECK) == nullptr) Press(box, IDOK);
  });
  EXPECT_EQ(Import(), 1);
  EXPECT_TRUE(Has("ROOT", root_.cert()));
  EXPECT_TRUE(stayed_open);
  ASSERT_EQ(questions.size(), 2u);
  EXPECT_EQ(questions[0],
            "Root ... You are installing this certificate to the \"Trusted certification authority\" cert "
            "store.\n\n"
            "If you install it into this store, the certificate will be treated as 100% trust. Are you OK to "
            "continue?");
  EXPECT_EQ(captions[0], "Install to \"Trusted certification authority\" cert store");
}

TEST_F(SmimeImport, TheChosenStoreIsUsed) {
  source_.Add(person_);
  BoxCloser closer;
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, [](HWND dialog) {
    SendDlgItemMessageA(dialog, IDC_IMPORT_FIRST_COMBO, CB_SETCURSEL, 1, 0);
    Press(dialog, IDOK);
  });
  EXPECT_EQ(Import(), 1);
  EXPECT_TRUE(Has("CA", person_));
  EXPECT_FALSE(Has("AddressBook", person_));
}

TEST_F(SmimeImport, ASixthCertificateIsIgnoredWithABox) {
  std::vector<PCCERT_CONTEXT> people;
  for (int i = 0; i < 6; ++i) {
    people.push_back(root_.Issue(ForEmail(std::to_string(i) + "@x")));
    source_.Add(people.back());
  }
  {
    BoxCloser closer;
    DialogDriver driver(IDC_IMPORT_FIRST_CHECK, IDCANCEL);
    EXPECT_EQ(Import(), 0);
    ASSERT_EQ(closer.boxes().size(), 1u);
    EXPECT_NE(closer.boxes()[0].text.find("More than 5 certificates are ignored."), std::string::npos);
  }
  EXPECT_EQ(Import(true), 1) << "no box when quiet";
  for (int i = 0; i < 6; ++i) EXPECT_EQ(Has("AddressBook", people[i]), i < 5) << i;
  for (const PCCERT_CONTEXT person : people) CertFreeCertificateContext(person);
}

TEST_F(SmimeImport, ARepeatedCertificateIsOneRow) {
  source_.Add(person_);
  source_.Add(person_);
  source_.Add(middle_.cert());
  std::vector<SeenRow> rows;
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, [&](HWND dialog) {
    for (int i = 0; i < 3; ++i) rows.push_back(RowOf(dialog, i));
    Press(dialog, IDCANCEL);
  });
  EXPECT_EQ(Import(), 0);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[1].check, "Middle register");
  EXPECT_FALSE(rows[2].visible);
}

TEST_F(SmimeImport, FailuresAreCounted) {
  AddChain();
  crypto_.Store("CA").Add(middle_.cert());
  crypto_.missing_stores = {"AddressBook"};
  BoxCloser closer;
  EXPECT_EQ(Import(true), 0);
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_NE(
      closer.boxes()[0].text.find("0 certificates are registered, 1 certificates was already registered, 1 "
                                  "certificates are failed to register."),
      std::string::npos);
  MemoryStore alone;
  alone.Add(person_);
  EXPECT_EQ(SMIMEAddCertificate(alone.get(), 1, nullptr), 0);
  ASSERT_EQ(closer.boxes().size(), 2u);
  EXPECT_NE(closer.boxes()[1].text.find("Failed to register certificate."), std::string::npos);
}

TEST_F(SmimeImport, AFailureShowsItsOwnCode) {
  AddChain();
  crypto_.replaced["CertAddCertificateContextToStore"] =
      reinterpret_cast<void*>(+[](HCERTSTORE, PCCERT_CONTEXT, DWORD disposition, PCCERT_CONTEXT*) -> BOOL {
        EXPECT_EQ(disposition, static_cast<DWORD>(CERT_STORE_ADD_NEW));
        SetLastError(0x80070005);
        return FALSE;
      });
  BoxCloser closer;
  EXPECT_EQ(Import(true), 0);
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text,
            "Error occurred in S/MIME: Failed to register certificate., \nerror code=0x80070005");
}

TEST_F(SmimeImport, ARepeatedCertificateDoesNotShiftTheOthers) {
  source_.Add(person_);
  source_.Add(person_);
  source_.Add(middle_.cert());
  EXPECT_EQ(Import(true), 1);
  EXPECT_TRUE(Has("AddressBook", person_));
  EXPECT_TRUE(Has("CA", middle_.cert()));
  EXPECT_FALSE(Has("CA", person_));
  EXPECT_FALSE(Has("AddressBook", middle_.cert()));
}

TEST_F(SmimeImport, ACertificateThatComesAgainLaterIsThereAlready) {
  source_.Add(person_);
  source_.Add(middle_.cert());
  source_.Add(person_);
  BoxCloser closer;
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, IDOK);
  EXPECT_EQ(Import(), 1);
  ASSERT_EQ(closer.boxes().size(), 1u);
  EXPECT_EQ(closer.boxes()[0].text, "2 certificates are registered.");
}

TEST_F(SmimeImport, TheFirstStoreThatHasACertificateKeepsIt) {
  crypto_.Store("ROOT").Add(person_);
  crypto_.Store("CA").Add(person_);
  source_.Add(person_);
  std::vector<SeenRow> rows;
  BoxCloser closer;
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, NoteFirstRow(rows));
  EXPECT_EQ(Import(), 1);
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].combo, "Intermediate certification authority");
}

TEST_F(SmimeImport, AnInstalledRootNeedsNoQuestion) {
  crypto_.Store("ROOT").Add(root_.cert());
  source_.Add(root_.cert());
  BoxCloser closer;
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, IDOK);
  EXPECT_EQ(Import(), 1);
  ASSERT_EQ(closer.boxes().size(), 1u) << "the outcome only";
  EXPECT_EQ(closer.boxes()[0].text, "This certificate was already registered in Windows cert store.");
}

TEST_F(SmimeImport, AnyCertificateThatIsToBeARootIsAskedFor) {
  source_.Add(person_);
  BoxCloser closer(IDYES);
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, [](HWND dialog) {
    SendDlgItemMessageA(dialog, IDC_IMPORT_FIRST_COMBO, CB_SETCURSEL, 2, 0);
    Press(dialog, IDOK);
  });
  EXPECT_EQ(Import(), 1);
  EXPECT_TRUE(Has("ROOT", person_));
  ASSERT_EQ(closer.boxes().size(), 2u);
  EXPECT_EQ(closer.boxes()[0].text.find("alice@example.org ... You are installing"), 0u);
}

TEST_F(SmimeImport, NoStoreGivesZero) {
  EXPECT_EQ(SMIMEAddCertificate(nullptr, 0, nullptr), 0);
  EXPECT_EQ(SMIMEAddCertificate(reinterpret_cast<void*>(5), 0, nullptr), 0);
}

TEST_F(SmimeImport, AnEncodedCertificateIsAddedOnce) {
  EXPECT_EQ(SMIMEAddEncodedCertificate(person_->pbCertEncoded, person_->cbCertEncoded), 1);
  EXPECT_EQ(SMIMEAddEncodedCertificate(person_->pbCertEncoded, person_->cbCertEncoded), 2);
  EXPECT_TRUE(Has("AddressBook", person_));
  EXPECT_EQ(SMIMEAddEncodedCertificate("garbage", 7), 0);
  EXPECT_EQ(SMIMEAddEncodedCertificate(nullptr, 7), 0);
  EXPECT_EQ(SMIMEAddEncodedCertificate(reinterpret_cast<void*>(9), 7), 0);
  crypto_.missing_stores = {"AddressBook"};
  EXPECT_EQ(SMIMEAddEncodedCertificate(person_->pbCertEncoded, person_->cbCertEncoded), 0);
}

TEST_F(SmimeImport, TheDialogIsJapaneseInJapaneseMode) {
  crypto_.Store("ROOT").Add(root_.cert());
  AddChain();
  host_.SetLanguage(Language::kJapanese);
  std::vector<SeenRow> rows;
  DialogDriver driver(IDC_IMPORT_FIRST_CHECK, [&](HWND dialog) {
    for (int i = 0; i < 3; ++i) rows.push_back(RowOf(dialog, i));
    Press(dialog, IDCANCEL);
  });
  EXPECT_EQ(Import(), 0);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].check, Sjis(u8"alice@example.org を登録する"));
  EXPECT_EQ(rows[0].combo, Sjis(u8"ほかの人"));
  EXPECT_EQ(rows[1].combo, Sjis(u8"中間証明機関"));
  EXPECT_EQ(rows[2].check, Sjis(u8"登録済み - Root"));
  EXPECT_EQ(rows[2].combo, Sjis(u8"信頼された証明機関"));
}

struct Shown {
  DWORD type;
  std::string name;
  HWND parent;
} g_shown;

TEST_F(SmimeImport, TheOwnersCertificateIsShown) {
  source_.Add(root_.cert());
  source_.Add(person_);
  crypto_.replaced["CryptUIDlgViewContext"] = reinterpret_cast<void*>(
      +[](DWORD type, const void* context, HWND parent, LPCWSTR, DWORD, void*) -> BOOL {
        char name[128];
        CertGetNameStringA(static_cast<PCCERT_CONTEXT>(context), CERT_NAME_FRIENDLY_DISPLAY_TYPE, 0, nullptr,
                           name, sizeof name);
        g_shown = {type, name, parent};
        return TRUE;
      });
  EXPECT_EQ(SMIMEShowCertificate(source_.get(), host_.frame()), 1);
  EXPECT_EQ(g_shown.type, static_cast<DWORD>(CERT_STORE_CERTIFICATE_CONTEXT));
  EXPECT_EQ(g_shown.name, "alice@example.org");
  EXPECT_EQ(g_shown.parent, host_.frame());
  MemoryStore roots;
  roots.Add(root_.cert());
  EXPECT_EQ(SMIMEShowCertificate(roots.get(), nullptr), 1);
  EXPECT_EQ(g_shown.name, "Root");
  MemoryStore empty;
  EXPECT_EQ(SMIMEShowCertificate(empty.get(), nullptr), 0);
  EXPECT_EQ(SMIMEShowCertificate(nullptr, nullptr), 0);
  crypto_.missing_modules = {"cryptui.dll"};
  g_crypto = {};
  EXPECT_EQ(SMIMEShowCertificate(source_.get(), nullptr), 0);
  host_.ExpectMessages({"CryptUIDlgViewContext function not useable. Cannot show the certificate."});
}

}  // namespace
}  // namespace wfinfo_test
