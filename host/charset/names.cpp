#include "host/charset/names.h"

#include <algorithm>
#include <string>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

// Latin-1 is read as Windows-1252, whose printable 0x80-0x9F it often means.
constexpr CharsetName kCharsets[] = {
    {"us-ascii", Encoding::kWindows1252, 0, 0, true},
    {"ascii", Encoding::kWindows1252, 0, 0, true},
    {"ansi_x3.4-1968", Encoding::kWindows1252, 0, 0, true},
    {"iso-8859-1", Encoding::kWindows1252, 0, 0, false},
    {"iso8859-1", Encoding::kWindows1252, 0, 0, false},
    {"latin1", Encoding::kWindows1252, 0, 0, false},
    {"windows-1252", Encoding::kWindows1252, 0, 0, false},
    {"cp1252", Encoding::kWindows1252, 0, 0, false},
    {"utf-8", Encoding::kUtf8, 0, 0, false},
    {"utf8", Encoding::kUtf8, 0, 0, false},
    {"unicode-1-1-utf-8", Encoding::kUtf8, 0, 0, false},
    {"utf-7", Encoding::kUtf7, 0, 0, true},
    {"unicode-1-1-utf-7", Encoding::kUtf7, 0, 0, true},
    {"utf-16", Encoding::kUtf16Big, 0, 0, false},
    {"utf-16be", Encoding::kUtf16Big, 0, 0, false},
    {"utf-16le", Encoding::kUtf16, 0, 0, false},
    {"iso-2022-jp", Encoding::kIso2022Jp, 0, 0, true},
    {"iso-2022-jp-1", Encoding::kIso2022Jp, 0, 0, true},
    {"iso-2022-jp-2", Encoding::kIso2022Jp, 0, 0, true},
    {"iso-2022-jp-3", Encoding::kIso2022Jp, 0, 0, true},
    {"iso-2022-jp-2004", Encoding::kIso2022Jp, 0, 0, true},
    {"iso-2022-jp-ms", Encoding::kIso2022Jp, 0, 0, true},
    {"csiso2022jp", Encoding::kIso2022Jp, 0, 0, true},
    {"cp50220", Encoding::kIso2022Jp, 0, 0, true},
    {"cp50221", Encoding::kIso2022Jp, 0, 0, true},
    {"cp50222", Encoding::kIso2022Jp, 0, 0, true},
    {"shift_jis", Encoding::kShiftJis, 0, 0, false},
    {"shift-jis", Encoding::kShiftJis, 0, 0, false},
    {"shiftjis", Encoding::kShiftJis, 0, 0, false},
    {"sjis", Encoding::kShiftJis, 0, 0, false},
    {"x-sjis", Encoding::kShiftJis, 0, 0, false},
    {"csshiftjis", Encoding::kShiftJis, 0, 0, false},
    {"ms_kanji", Encoding::kShiftJis, 0, 0, false},
    {"windows-31j", Encoding::kShiftJis, 0, 0, false},
    {"cswindows31j", Encoding::kShiftJis, 0, 0, false},
    {"windows-932", Encoding::kShiftJis, 0, 0, false},
    {"cp932", Encoding::kShiftJis, 0, 0, false},
    {"euc-jp", Encoding::kEucJp, 0, 0, false},
    {"eucjp", Encoding::kEucJp, 0, 0, false},
    {"x-euc-jp", Encoding::kEucJp, 0, 0, false},
    {"x-euc", Encoding::kEucJp, 0, 0, false},
    {"eucjp-ms", Encoding::kEucJp, 0, 0, false},
    {"cp51932", Encoding::kEucJp, 0, 0, false},
    {"iso-8859-2", Encoding::kCodePage, 28592, 0, false},
    {"iso-8859-3", Encoding::kCodePage, 28593, 0, false},
    {"iso-8859-4", Encoding::kCodePage, 28594, 0, false},
    {"iso-8859-5", Encoding::kCodePage, 28595, 0, false},
    {"iso-8859-6", Encoding::kCodePage, 28596, 0, false},
    {"iso-8859-7", Encoding::kCodePage, 28597, 0, false},
    {"iso-8859-8", Encoding::kCodePage, 28598, 0, false},
    {"iso-8859-8-i", Encoding::kCodePage, 28598, 0, false},
    {"iso-8859-9", Encoding::kCodePage, 28599, 1254, false},
    {"iso-8859-13", Encoding::kCodePage, 28603, 1257, false},
    {"iso-8859-15", Encoding::kCodePage, 28605, 0, false},
    {"windows-874", Encoding::kCodePage, 874, 0, false},
    {"tis-620", Encoding::kCodePage, 874, 0, false},
    {"windows-1250", Encoding::kCodePage, 1250, 0, false},
    {"windows-1251", Encoding::kCodePage, 1251, 0, false},
    {"cp1251", Encoding::kCodePage, 1251, 0, false},
    {"windows-1253", Encoding::kCodePage, 1253, 0, false},
    {"windows-1254", Encoding::kCodePage, 1254, 0, false},
    {"windows-1255", Encoding::kCodePage, 1255, 0, false},
    {"windows-1256", Encoding::kCodePage, 1256, 0, false},
    {"windows-1257", Encoding::kCodePage, 1257, 0, false},
    {"windows-1258", Encoding::kCodePage, 1258, 0, false},
    {"koi8-r", Encoding::kCodePage, 20866, 0, false},
    {"koi8-u", Encoding::kCodePage, 21866, 20866, false},
    {"gb2312", Encoding::kCodePage, 936, 0, false},
    {"gbk", Encoding::kCodePage, 936, 0, false},
    {"x-gbk", Encoding::kCodePage, 936, 0, false},
    {"cp936", Encoding::kCodePage, 936, 0, false},
    {"gb18030", Encoding::kCodePage, 54936, 936, false},
    {"big5", Encoding::kCodePage, 950, 0, false},
    {"big5-hkscs", Encoding::kCodePage, 950, 0, false},
    {"cp950", Encoding::kCodePage, 950, 0, false},
    {"euc-kr", Encoding::kCodePage, 949, 0, false},
    {"ks_c_5601-1987", Encoding::kCodePage, 949, 0, false},
    {"cp949", Encoding::kCodePage, 949, 0, false},
    {"uhc", Encoding::kCodePage, 949, 0, false},
};

std::string Plain(std::string_view name) {
  std::string plain;
  for (const char c : name.substr(0, name.find('*'))) {
    if (c != ' ' && c != '\t' && c != '"' && c != '\'') plain += LowerAscii(c);
  }
  return plain;
}

}  // namespace

const CharsetName* FindCharset(std::string_view name) {
  const std::string plain = Plain(name);
  const auto found = std::find_if(std::begin(kCharsets), std::end(kCharsets),
                                  [&plain](const CharsetName& row) { return row.name == plain; });
  return found == std::end(kCharsets) ? nullptr : found;
}

}  // namespace wrenfold
