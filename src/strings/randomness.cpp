#include "src/strings/randomness.h"

#include <array>

#include "src/text/ascii.h"

namespace wfinfo {

// Counts of letter pairs in English books: P. Norvig, "English Letter Frequency Counts: Mayzner Revisited"
// (2012), from the Google Books n-grams of 2012. The 386 pairs that occur most, in order, from "th" (100
// thousand million times) to "mf" (108 million times).
constexpr char kLetterPairs[] =
    "thheineranreonatenndtiesorteofedisitalarsttontngsehaasouiolevecomedehiriroicneea"
    "racelichllbemasiomurcaeltalansdifohopeecprnoctusacotiltrlyncetutsssorsunlowageie"
    "wheewiemadolrtpowenaulnitsmoowpaimmiaishirsuidosiviaamficivipligtuevldrympfeblab"
    "ghtyopwosaayexkefrooavagifapgrodbosprddoucbueiovbyrmepttocfaefcurnscgidayocrcldu"
    "gaquueffbaeylsvaumppuauplugohtruugdsltpircrregauckewmubrbiptakpuuirgibtlnykirkys"
    "obmmfuphogmsyeudmbipuboirlgudrhrcctwftwnnuafhunneovorvnfxpgnsmflizoknlmyglawjuoa"
    "eqsyslpsjolfnvjenkkngsdyhyzeksxtbsikddcyrpskxioeoywslvdlrfeudgwrxayinmebrbtmxceh"
    "tcgyjahnypzaggymswbjlmcsiiixxeohlkdvlpaxoxufdmiusfbtkaytekpmyagtwlrhylhsahycynrw"
    "hmlwhlaeziazlcpyajiqnjbbnhuokllrtngmsnnrfymndwsbyrdnsqzoojydlbwtlgkonpsrkynqlnnw"
    "tffscqdhsdvydjhwxuaomlukuyejezhbnzmcnbtpybxhuxtzbvmf";
static_assert(sizeof kLetterPairs == 2 * kLetterPairCount + 1);

namespace {

constexpr std::size_t kShortestRun = 5;  // letters, and bytes of a label or run, that are judged

constexpr bool IsVowel(char c) { return c == 'a' || c == 'e' || c == 'i' || c == 'o' || c == 'u'; }

// For each first letter, one bit for each second letter.
constexpr std::array<unsigned, 26> MakeKnownPairs() {
  std::array<unsigned, 26> known{};
  for (std::size_t i = 0; i < 2 * kLetterPairCount; i += 2) {
    known[static_cast<std::size_t>(kLetterPairs[i] - 'a')] |= 1u << (kLetterPairs[i + 1] - 'a');
  }
  return known;
}
constexpr auto kKnownPairs = MakeKnownPairs();

bool IsKnownPair(char first, char second) {
  if (!IsLower(first) || !IsLower(second)) return false;
  return (kKnownPairs[static_cast<std::size_t>(first - 'a')] >> (second - 'a') & 1) != 0;
}

// The last label of `domain` in front of `end`: letters, digits and hyphens.
std::string_view LabelBefore(std::string_view domain, std::size_t end) {
  std::size_t begin = end;
  while (begin > 0 && (IsLetter(domain[begin - 1]) || IsDigit(domain[begin - 1]) || domain[begin - 1] == '-'))
    --begin;
  return domain.substr(begin, end - begin);
}

std::string_view ChooseLabel(std::string_view domain) {
  std::size_t end = domain.size();
  for (bool last = true;; last = false) {
    const std::string_view label = LabelBefore(domain, end);
    if (!last && label.size() >= kShortestRun) return label;
    end -= label.size();
    if (end == 0 || domain[end - 1] != '.') return {};
    --end;
  }
}

}  // namespace

int RandomnessScore(std::string_view text) {
  std::size_t letters = 0, vowels = 0, pairs = 0, known = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsLetter(text[i])) continue;
    ++letters;
    if (IsVowel(text[i])) ++vowels;
    if (i + 1 >= text.size() || !IsLetter(text[i + 1])) continue;
    ++pairs;
    if (IsKnownPair(text[i], text[i + 1])) ++known;
  }
  if (letters < kShortestRun) return 0;
  if (vowels * (letters <= 7 ? 7 : 5) >= letters) return 0;
  if (vowels == 0) return 1;
  return known * 3 < pairs * 2 ? 1 : 0;
}

int DomainRandomness(std::string_view domain) {
  const std::string_view label = ChooseLabel(domain);
  int balance = 0;
  for (std::size_t at = 0; at < label.size();) {
    const std::size_t hyphen = label.find('-', at);
    const std::string_view run = label.substr(at, hyphen == label.npos ? hyphen : hyphen - at);
    if (run.size() >= kShortestRun) balance += RandomnessScore(run) != 0 ? 1 : -1;
    at += run.size() + 1;
  }
  return balance > 0 ? 1 : 0;
}

}  // namespace wfinfo
