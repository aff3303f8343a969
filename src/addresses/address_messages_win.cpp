#include "src/addresses/address_messages_win.h"

namespace wfinfo {

Message MessageOf(AddressError error) {
  switch (error) {
    case AddressError::kNone:
    case AddressError::kNoEntry:
      break;
    case AddressError::kOpenSection:
      return {"Double quotations or parentheses mismatch.", "引用符または括弧の対応が取れていません。"};
    case AddressError::kEntryTooLong:
      return {"Name+Email address total length too long.",
              "名前とメールアドレスを合わせた長さが長すぎます。"};
    case AddressError::kNameTooLong:
      return {"Name length too long.", "名前が長すぎます。"};
    case AddressError::kNoCommaBetween:
      return {"The comma between <...> and <...> seems to be missing.",
              "<...> と <...> の間のコンマが抜けているようです。"};
    case AddressError::kBracketMismatch:
      return {
          "Email address specification failed. It seems that '<' and '>' mismatch or separating comma "
          "missing.",
          "メールアドレスの指定が正しくありません。'<' と '>' の対応が取れていないか、"
          "区切りのコンマが抜けているようです。"};
    case AddressError::kFullWidthComma:
      return {"Zenkaku comma exists after <...>", "<...> の後に全角のコンマがあります。"};
    case AddressError::kNoComma:
      return {"It seems that email addresses separating comma is missing.",
              "メールアドレスを区切るコンマが抜けているようです。"};
    case AddressError::kAddressTooLong:
      return {"Email address length too long.", "メールアドレスが長すぎます。"};
  }
  return {"", ""};
}

}  // namespace wfinfo
