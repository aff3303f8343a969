#include "src/mapi/lost_mail_win.h"

#include "src/bridge/language_win.h"

namespace wfinfo::mapi {
namespace {

constexpr Message kDenied = {
    "TamarinMail cannot be reached from this program, and the mail is lost. If TamarinMail runs as an "
    "administrator, close it and start it as usual, then send the mail again.",
    "このプログラムからはタマリンメールに接続できないため、メールを渡せませんでした。"
    "タマリンメールを管理者として実行している場合は、終了して通常どおり起動してから、"
    "もう一度送信してください。"};
constexpr Message kFailed = {
    "The mail could not be handed over to TamarinMail and is lost (error %u). Please send it again.",
    "メールをタマリンメールに渡せませんでした (エラー %u)。もう一度送信してください。"};

}  // namespace

void TellOfLostMail(DWORD error) {
  char text[512];
  wsprintfA(text, Chosen(error == ERROR_ACCESS_DENIED ? kDenied : kFailed), error);
  MessageBoxA(nullptr, text, nullptr, MB_ICONHAND | MB_SYSTEMMODAL);
}

}  // namespace wfinfo::mapi
