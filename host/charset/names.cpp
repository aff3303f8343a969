#include "host/charset/names.h"

#include <algorithm>
#include <string>

#include "host/base/ascii.h"

namespace wrenfold {
namespace {

// The letters and digits of each name, in lower case: "ISO_8859-2" and "iso8859-2" are one name.
// Latin-1 is read as Windows-1252, whose printable 0x80-0x9F it often means.
constexpr CharsetName kCharsets[] = {
    {"usascii", Encoding::kWindows1252, 0, 0, true},
    {"ascii", Encoding::kWindows1252, 0, 0, true},
    {"us", Encoding::kWindows1252, 0, 0, true},
    {"646", Encoding::kWindows1252, 0, 0, true},
    {"iso646us", Encoding::kWindows1252, 0, 0, true},
    {"iso646irv1991", Encoding::kWindows1252, 0, 0, true},
    {"isoir6", Encoding::kWindows1252, 0, 0, true},
    {"ansix341968", Encoding::kWindows1252, 0, 0, true},
    {"ansix341986", Encoding::kWindows1252, 0, 0, true},
    {"cp367", Encoding::kWindows1252, 0, 0, true},
    {"csascii", Encoding::kWindows1252, 0, 0, true},
    {"iso88591", Encoding::kWindows1252, 0, 0, false},
    {"latin1", Encoding::kWindows1252, 0, 0, false},
    {"l1", Encoding::kWindows1252, 0, 0, false},
    {"cp819", Encoding::kWindows1252, 0, 0, false},
    {"iso8859", Encoding::kWindows1252, 0, 0, false},
    {"8859", Encoding::kWindows1252, 0, 0, false},
    {"isoir100", Encoding::kWindows1252, 0, 0, false},
    {"csisolatin1", Encoding::kWindows1252, 0, 0, false},
    {"latin", Encoding::kWindows1252, 0, 0, false},
    {"cp1252", Encoding::kWindows1252, 0, 0, false},
    {"utf8", Encoding::kUtf8, 0, 0, false},
    {"utf", Encoding::kUtf8, 0, 0, false},
    {"u8", Encoding::kUtf8, 0, 0, false},
    {"utf8sig", Encoding::kUtf8, 0, 0, false},
    {"cp65001", Encoding::kUtf8, 0, 0, false},
    {"unicode11utf8", Encoding::kUtf8, 0, 0, false},
    {"utf8ucs2", Encoding::kUtf8, 0, 0, false},
    {"utf8ucs4", Encoding::kUtf8, 0, 0, false},
    {"utf7", Encoding::kUtf7, 0, 0, true},
    {"u7", Encoding::kUtf7, 0, 0, true},
    {"unicode11utf7", Encoding::kUtf7, 0, 0, true},
    {"cp65000", Encoding::kUtf7, 0, 0, true},
    {"utf16be", Encoding::kUtf16Big, 0, 0, false},
    {"unicodebigunmarked", Encoding::kUtf16Big, 0, 0, false},
    {"utf16le", Encoding::kUtf16, 0, 0, false},
    {"unicodelittleunmarked", Encoding::kUtf16, 0, 0, false},
    {"utf16", Encoding::kUtf16Any, 0, 0, false},
    {"u16", Encoding::kUtf16Any, 0, 0, false},
    {"unicode", Encoding::kUtf16Any, 0, 0, false},
    {"ucs2", Encoding::kUtf16Any, 0, 0, false},
    {"iso10646ucs2", Encoding::kUtf16Any, 0, 0, false},
    {"utf32be", Encoding::kUtf32Big, 0, 0, false},
    {"utf32", Encoding::kUtf32, 0, 0, false},
    {"u32", Encoding::kUtf32, 0, 0, false},
    {"utf32le", Encoding::kUtf32, 0, 0, false},
    {"iso2022jp", Encoding::kIso2022Jp, 0, 0, true},
    {"iso2022jp1", Encoding::kIso2022Jp, 0, 0, true},
    {"iso2022jp2", Encoding::kIso2022Jp, 0, 0, true},
    {"iso2022jp3", Encoding::kIso2022Jp, 0, 0, true},
    {"iso2022jp2004", Encoding::kIso2022Jp, 0, 0, true},
    {"iso2022jpext", Encoding::kIso2022Jp, 0, 0, true},
    {"iso2022jpms", Encoding::kIso2022Jp, 0, 0, true},
    {"csiso2022jp", Encoding::kIso2022Jp, 0, 0, true},
    {"csiso2022jp2", Encoding::kIso2022Jp, 0, 0, true},
    {"jis", Encoding::kIso2022Jp, 0, 0, true},
    {"cp50220", Encoding::kIso2022Jp, 0, 0, true},
    {"cp50221", Encoding::kIso2022Jp, 0, 0, true},
    {"cp50222", Encoding::kIso2022Jp, 0, 0, true},
    {"shiftjis", Encoding::kShiftJis, 0, 0, false},
    {"sjis", Encoding::kShiftJis, 0, 0, false},
    {"xsjis", Encoding::kShiftJis, 0, 0, false},
    {"csshiftjis", Encoding::kShiftJis, 0, 0, false},
    {"mskanji", Encoding::kShiftJis, 0, 0, false},
    {"cp932", Encoding::kShiftJis, 0, 0, false},
    {"windows31j", Encoding::kShiftJis, 0, 0, false},
    {"cswindows31j", Encoding::kShiftJis, 0, 0, false},
    {"cp943", Encoding::kShiftJis, 0, 0, false},
    {"xmacjapanese", Encoding::kShiftJis, 0, 0, false},
    {"shiftjis2004", Encoding::kShiftJis, 0, 0, false},
    {"sjis2004", Encoding::kShiftJis, 0, 0, false},
    {"shiftjisx0213", Encoding::kShiftJis, 0, 0, false},
    {"sjisx0213", Encoding::kShiftJis, 0, 0, false},
    {"eucjp", Encoding::kEucJp, 0, 0, false},
    {"xeucjp", Encoding::kEucJp, 0, 0, false},
    {"xeuc", Encoding::kEucJp, 0, 0, false},
    {"ujis", Encoding::kEucJp, 0, 0, false},
    {"eucjpms", Encoding::kEucJp, 0, 0, false},
    {"cp51932", Encoding::kEucJp, 0, 0, false},
    {"eucjis2004", Encoding::kEucJp, 0, 0, false},
    {"eucjisx0213", Encoding::kEucJp, 0, 0, false},
    {"jisx0213", Encoding::kEucJp, 0, 0, false},
    {"cseucpkdfmtjapanese", Encoding::kEucJp, 0, 0, false},
    {"iso88592", Encoding::kCodePage, 28592, 0, false},
    {"latin2", Encoding::kCodePage, 28592, 0, false},
    {"l2", Encoding::kCodePage, 28592, 0, false},
    {"isoir101", Encoding::kCodePage, 28592, 0, false},
    {"csisolatin2", Encoding::kCodePage, 28592, 0, false},
    {"iso88593", Encoding::kCodePage, 28593, 0, false},
    {"latin3", Encoding::kCodePage, 28593, 0, false},
    {"l3", Encoding::kCodePage, 28593, 0, false},
    {"isoir109", Encoding::kCodePage, 28593, 0, false},
    {"csisolatin3", Encoding::kCodePage, 28593, 0, false},
    {"iso88594", Encoding::kCodePage, 28594, 0, false},
    {"latin4", Encoding::kCodePage, 28594, 0, false},
    {"l4", Encoding::kCodePage, 28594, 0, false},
    {"isoir110", Encoding::kCodePage, 28594, 0, false},
    {"csisolatin4", Encoding::kCodePage, 28594, 0, false},
    {"iso88595", Encoding::kCodePage, 28595, 0, false},
    {"cyrillic", Encoding::kCodePage, 28595, 0, false},
    {"isoir144", Encoding::kCodePage, 28595, 0, false},
    {"csisolatincyrillic", Encoding::kCodePage, 28595, 0, false},
    {"iso88596", Encoding::kCodePage, 28596, 0, false},
    {"arabic", Encoding::kCodePage, 28596, 0, false},
    {"asmo708", Encoding::kCodePage, 28596, 0, false},
    {"ecma114", Encoding::kCodePage, 28596, 0, false},
    {"isoir127", Encoding::kCodePage, 28596, 0, false},
    {"csisolatinarabic", Encoding::kCodePage, 28596, 0, false},
    {"iso88597", Encoding::kCodePage, 28597, 0, false},
    {"greek", Encoding::kCodePage, 28597, 0, false},
    {"greek8", Encoding::kCodePage, 28597, 0, false},
    {"ecma118", Encoding::kCodePage, 28597, 0, false},
    {"elot928", Encoding::kCodePage, 28597, 0, false},
    {"isoir126", Encoding::kCodePage, 28597, 0, false},
    {"csisolatingreek", Encoding::kCodePage, 28597, 0, false},
    {"iso88598", Encoding::kCodePage, 28598, 0, false},
    {"iso88598i", Encoding::kCodePage, 28598, 0, false},
    {"iso88598e", Encoding::kCodePage, 28598, 0, false},
    {"hebrew", Encoding::kCodePage, 28598, 0, false},
    {"isoir138", Encoding::kCodePage, 28598, 0, false},
    {"csisolatinhebrew", Encoding::kCodePage, 28598, 0, false},
    {"iso88599", Encoding::kCodePage, 28599, 1254, false},
    {"latin5", Encoding::kCodePage, 28599, 1254, false},
    {"l5", Encoding::kCodePage, 28599, 1254, false},
    {"isoir148", Encoding::kCodePage, 28599, 1254, false},
    {"csisolatin5", Encoding::kCodePage, 28599, 1254, false},
    {"iso885910", Encoding::kCodePage, 28600, 0, false},
    {"latin6", Encoding::kCodePage, 28600, 0, false},
    {"l6", Encoding::kCodePage, 28600, 0, false},
    {"isoir157", Encoding::kCodePage, 28600, 0, false},
    {"csisolatin6", Encoding::kCodePage, 28600, 0, false},
    {"iso885911", Encoding::kCodePage, 874, 0, false},
    {"thai", Encoding::kCodePage, 874, 0, false},
    {"iso885913", Encoding::kCodePage, 28603, 1257, false},
    {"latin7", Encoding::kCodePage, 28603, 1257, false},
    {"l7", Encoding::kCodePage, 28603, 1257, false},
    {"iso885914", Encoding::kCodePage, 28604, 0, false},
    {"latin8", Encoding::kCodePage, 28604, 0, false},
    {"l8", Encoding::kCodePage, 28604, 0, false},
    {"isoir199", Encoding::kCodePage, 28604, 0, false},
    {"isoceltic", Encoding::kCodePage, 28604, 0, false},
    {"iso885915", Encoding::kCodePage, 28605, 0, false},
    {"latin9", Encoding::kCodePage, 28605, 0, false},
    {"l9", Encoding::kCodePage, 28605, 0, false},
    {"iso885916", Encoding::kCodePage, 28606, 0, false},
    {"latin10", Encoding::kCodePage, 28606, 0, false},
    {"l10", Encoding::kCodePage, 28606, 0, false},
    {"isoir226", Encoding::kCodePage, 28606, 0, false},
    {"cp874", Encoding::kCodePage, 874, 0, false},
    {"tis620", Encoding::kCodePage, 874, 0, false},
    {"tis6200", Encoding::kCodePage, 874, 0, false},
    {"tis62025290", Encoding::kCodePage, 874, 0, false},
    {"tis62025291", Encoding::kCodePage, 874, 0, false},
    {"isoir166", Encoding::kCodePage, 874, 0, false},
    {"cp1250", Encoding::kCodePage, 1250, 0, false},
    {"cp1251", Encoding::kCodePage, 1251, 0, false},
    {"cp1253", Encoding::kCodePage, 1253, 0, false},
    {"cp1254", Encoding::kCodePage, 1254, 0, false},
    {"cp1255", Encoding::kCodePage, 1255, 0, false},
    {"cp1256", Encoding::kCodePage, 1256, 0, false},
    {"cp1257", Encoding::kCodePage, 1257, 0, false},
    {"cp1258", Encoding::kCodePage, 1258, 0, false},
    {"xcp1251", Encoding::kCodePage, 1251, 0, false},
    {"koi8r", Encoding::kCodePage, 20866, 0, false},
    {"koi8", Encoding::kCodePage, 20866, 0, false},
    {"cskoi8r", Encoding::kCodePage, 20866, 0, false},
    {"cp20866", Encoding::kCodePage, 20866, 0, false},
    {"koi8u", Encoding::kCodePage, 21866, 20866, false},
    {"koi8ru", Encoding::kCodePage, 21866, 20866, false},
    {"cp21866", Encoding::kCodePage, 21866, 20866, false},
    {"gb2312", Encoding::kCodePage, 936, 0, false},
    {"gbk", Encoding::kCodePage, 936, 0, false},
    {"xgbk", Encoding::kCodePage, 936, 0, false},
    {"cp936", Encoding::kCodePage, 936, 0, false},
    {"gb23121980", Encoding::kCodePage, 936, 0, false},
    {"gb231280", Encoding::kCodePage, 936, 0, false},
    {"chinese", Encoding::kCodePage, 936, 0, false},
    {"csgb2312", Encoding::kCodePage, 936, 0, false},
    {"csiso58gb231280", Encoding::kCodePage, 936, 0, false},
    {"isoir58", Encoding::kCodePage, 936, 0, false},
    {"euccn", Encoding::kCodePage, 936, 0, false},
    {"eucgb2312cn", Encoding::kCodePage, 936, 0, false},
    {"xmacsimpchinese", Encoding::kCodePage, 936, 0, false},
    {"gb18030", Encoding::kGb18030, 54936, 936, false},
    {"gb180302000", Encoding::kGb18030, 54936, 936, false},
    {"hz", Encoding::kHz, 936, 0, true},
    {"hzgb", Encoding::kHz, 936, 0, true},
    {"hzgb2312", Encoding::kHz, 936, 0, true},
    {"cp52936", Encoding::kHz, 936, 0, true},
    {"big5", Encoding::kCodePage, 950, 0, false},
    {"big5tw", Encoding::kCodePage, 950, 0, false},
    {"csbig5", Encoding::kCodePage, 950, 0, false},
    {"xxbig5", Encoding::kCodePage, 950, 0, false},
    {"cp950", Encoding::kCodePage, 950, 0, false},
    {"big5hkscs", Encoding::kCodePage, 950, 0, false},
    {"hkscs", Encoding::kCodePage, 950, 0, false},
    {"xmactradchinese", Encoding::kCodePage, 950, 0, false},
    {"euckr", Encoding::kCodePage, 949, 0, false},
    {"cseuckr", Encoding::kCodePage, 949, 0, false},
    {"xeuckr", Encoding::kCodePage, 949, 0, false},
    {"korean", Encoding::kCodePage, 949, 0, false},
    {"ksc5601", Encoding::kCodePage, 949, 0, false},
    {"ksc56011987", Encoding::kCodePage, 949, 0, false},
    {"csksc56011987", Encoding::kCodePage, 949, 0, false},
    {"ksx1001", Encoding::kCodePage, 949, 0, false},
    {"isoir149", Encoding::kCodePage, 949, 0, false},
    {"cp949", Encoding::kCodePage, 949, 0, false},
    {"uhc", Encoding::kCodePage, 949, 0, false},
    {"xwindows949", Encoding::kCodePage, 949, 0, false},
    {"xmackorean", Encoding::kCodePage, 949, 0, false},
    {"johab", Encoding::kCodePage, 1361, 0, false},
    {"cp1361", Encoding::kCodePage, 1361, 0, false},
    {"iso2022kr", Encoding::kIso2022Kr, 949, 0, true},
    {"csiso2022kr", Encoding::kIso2022Kr, 949, 0, true},
    {"macintosh", Encoding::kCodePage, 10000, 0, false},
    {"macroman", Encoding::kCodePage, 10000, 0, false},
    {"mac", Encoding::kCodePage, 10000, 0, false},
    {"xmacroman", Encoding::kCodePage, 10000, 0, false},
    {"csmacintosh", Encoding::kCodePage, 10000, 0, false},
    {"macgreek", Encoding::kCodePage, 10006, 0, false},
    {"maccyrillic", Encoding::kCodePage, 10007, 0, false},
    {"xmaccyrillic", Encoding::kCodePage, 10007, 0, false},
    {"maccentraleurope", Encoding::kCodePage, 10029, 0, false},
    {"maccenteuro", Encoding::kCodePage, 10029, 0, false},
    {"maclatin2", Encoding::kCodePage, 10029, 0, false},
    {"xmacce", Encoding::kCodePage, 10029, 0, false},
    {"maciceland", Encoding::kCodePage, 10079, 0, false},
    {"macturkish", Encoding::kCodePage, 10081, 0, false},
    {"macarabic", Encoding::kCodePage, 10004, 0, false},
    {"maccroatian", Encoding::kCodePage, 10082, 0, false},
    {"macromanian", Encoding::kCodePage, 10010, 0, false},
    {"cp437", Encoding::kCodePage, 437, 0, false},
    {"cp720", Encoding::kCodePage, 720, 0, false},
    {"cp737", Encoding::kCodePage, 737, 0, false},
    {"cp775", Encoding::kCodePage, 775, 0, false},
    {"cp850", Encoding::kCodePage, 850, 0, false},
    {"cp852", Encoding::kCodePage, 852, 0, false},
    {"cp855", Encoding::kCodePage, 855, 0, false},
    {"cp857", Encoding::kCodePage, 857, 0, false},
    {"cp858", Encoding::kCodePage, 858, 0, false},
    {"cp860", Encoding::kCodePage, 860, 0, false},
    {"cp861", Encoding::kCodePage, 861, 0, false},
    {"cp862", Encoding::kCodePage, 862, 0, false},
    {"cp863", Encoding::kCodePage, 863, 0, false},
    {"cp864", Encoding::kCodePage, 864, 0, false},
    {"cp865", Encoding::kCodePage, 865, 0, false},
    {"cp866", Encoding::kCodePage, 866, 0, false},
    {"cp869", Encoding::kCodePage, 869, 0, false},
    {"cspc8codepage437", Encoding::kCodePage, 437, 0, false},
    {"cspc775baltic", Encoding::kCodePage, 775, 0, false},
    {"cspc850multilingual", Encoding::kCodePage, 850, 0, false},
    {"cspcp852", Encoding::kCodePage, 852, 0, false},
    {"cspc862latinhebrew", Encoding::kCodePage, 862, 0, false},
    {"cpis", Encoding::kCodePage, 861, 0, false},
    {"cpgr", Encoding::kCodePage, 869, 0, false},
    {"cp37", Encoding::kCodePage, 37, 0, false},
    {"cp273", Encoding::kCodePage, 20273, 0, false},
    {"cp424", Encoding::kCodePage, 20424, 0, false},
    {"cp500", Encoding::kCodePage, 500, 0, false},
    {"cp875", Encoding::kCodePage, 875, 0, false},
    {"cp1026", Encoding::kCodePage, 1026, 0, false},
    {"cp1140", Encoding::kCodePage, 1140, 0, false},
    {"cp39", Encoding::kCodePage, 37, 0, false},
    {"ebcdiccpca", Encoding::kCodePage, 37, 0, false},
    {"ebcdiccpnl", Encoding::kCodePage, 37, 0, false},
    {"ebcdiccpus", Encoding::kCodePage, 37, 0, false},
    {"ebcdiccpwt", Encoding::kCodePage, 37, 0, false},
    {"ebcdiccphe", Encoding::kCodePage, 20424, 0, false},
    {"ebcdiccpbe", Encoding::kCodePage, 500, 0, false},
    {"ebcdiccpch", Encoding::kCodePage, 500, 0, false},
};

std::string LettersAndDigits(std::string_view name) {
  std::string plain;
  for (const char c : name.substr(0, name.find('*'))) {
    const char lower = LowerAscii(c);
    if (IsDigit(lower) || IsLetter(lower)) plain += lower;
  }
  return plain;
}

// "iso885921987" without its year.
std::string WithoutYear(std::string name) {
  constexpr std::string_view kIso = "iso8859";
  const bool has_year =
      name.starts_with(kIso) && name.size() > kIso.size() + 4 &&
      (name.compare(name.size() - 4, 2, "19") == 0 || name.compare(name.size() - 4, 2, "20") == 0);
  if (has_year) name.resize(name.size() - 4);
  return name;
}

// "windows1250", "ibm037", "1250" as "cp1250", "cp37"; "" for a name that is no number of a page.
std::string AsCodePage(std::string_view name) {
  for (const std::string_view prefix : {"windows", "xwindows", "csibm", "ibm", "ms", "cp", "xcp", ""}) {
    if (!name.starts_with(prefix)) continue;
    std::string_view number = name.substr(prefix.size());
    if (number.empty() || !std::all_of(number.begin(), number.end(), IsDigit)) continue;
    while (number.starts_with('0')) number.remove_prefix(1);
    return "cp" + std::string(number);
  }
  return {};
}

const CharsetName* Find(const std::string& plain) {
  const auto found = std::find_if(std::begin(kCharsets), std::end(kCharsets),
                                  [&plain](const CharsetName& row) { return row.name == plain; });
  return found == std::end(kCharsets) ? nullptr : found;
}

}  // namespace

const CharsetName* FindCharset(std::string_view name) {
  const std::string plain = WithoutYear(LettersAndDigits(name));
  const CharsetName* const found = Find(plain);
  return found != nullptr ? found : Find(AsCodePage(plain));
}

bool IsEightBitCharset(std::string_view name) {
  const CharsetName* const charset = FindCharset(name);
  return charset != nullptr && !charset->seven_bit && !IsUnicode(charset->encoding);
}

bool NamesNoCharset(std::string_view name) {
  constexpr std::string_view kNone[] = {"",     "unknown8bit", "unknown", "default", "defaultcharset",
                                        "8bit", "binary"};
  return std::find(std::begin(kNone), std::end(kNone), LettersAndDigits(name)) != std::end(kNone);
}

}  // namespace wrenfold
