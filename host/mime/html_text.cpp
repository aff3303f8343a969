#include "host/mime/html_text.h"

#include <gumbo.h>

#include <algorithm>
#include <iterator>

#include "host/charset/charsets.h"
#include "host/mime/html_memory.h"

namespace wrenfold {
namespace {

constexpr std::u16string_view kUnreadable =
    u"[This HTML text cannot be shown: it is nested too deeply or too large.]";
constexpr std::u16string_view kCut = u"[The rest of this HTML text is left out: it is too long.]";

// Elements that stand on lines of their own, and those that are not shown.
constexpr GumboTag kLineTags[] = {
    GUMBO_TAG_P,          GUMBO_TAG_DIV,     GUMBO_TAG_TR,       GUMBO_TAG_LI,      GUMBO_TAG_UL,
    GUMBO_TAG_OL,         GUMBO_TAG_DL,      GUMBO_TAG_DT,       GUMBO_TAG_DD,      GUMBO_TAG_H1,
    GUMBO_TAG_H2,         GUMBO_TAG_H3,      GUMBO_TAG_H4,       GUMBO_TAG_H5,      GUMBO_TAG_H6,
    GUMBO_TAG_HR,         GUMBO_TAG_PRE,     GUMBO_TAG_TABLE,    GUMBO_TAG_CAPTION, GUMBO_TAG_BLOCKQUOTE,
    GUMBO_TAG_CENTER,     GUMBO_TAG_SECTION, GUMBO_TAG_ARTICLE,  GUMBO_TAG_HEADER,  GUMBO_TAG_FOOTER,
    GUMBO_TAG_NAV,        GUMBO_TAG_ASIDE,   GUMBO_TAG_MAIN,     GUMBO_TAG_ADDRESS, GUMBO_TAG_FIGURE,
    GUMBO_TAG_FIGCAPTION, GUMBO_TAG_FORM,    GUMBO_TAG_FIELDSET, GUMBO_TAG_OPTION,  GUMBO_TAG_DETAILS,
    GUMBO_TAG_SUMMARY};
constexpr GumboTag kHiddenTags[] = {GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE,   GUMBO_TAG_TITLE,
                                    GUMBO_TAG_IFRAME, GUMBO_TAG_NOEMBED, GUMBO_TAG_TEMPLATE};

template <std::size_t N>
bool Contains(const GumboTag (&tags)[N], GumboTag tag) {
  return std::find(std::begin(tags), std::end(tags), tag) != std::end(tags);
}

bool IsSpace(char16_t unit) { return unit == u' ' || (unit >= 9 && unit <= 13); }
bool IsWidthless(char16_t unit) {
  return unit == 0xAD || unit == 0x34F || unit == 0x200B || unit == 0x2060 || unit == 0xFEFF;
}
bool IsNoBreakSpace(char16_t unit) { return unit == 0xA0 || unit == 0x2007 || unit == 0x202F; }

// What is shown, piece by piece.
class ShownText {
 public:
  void Add(std::u16string_view text, bool preformatted) {
    for (const char16_t unit : text) {
      if (IsWidthless(unit)) continue;
      if (IsNoBreakSpace(unit)) {
        text_ += u' ';
        joins_ = false;
      } else if (preformatted || !IsSpace(unit)) {
        text_ += unit;
        joins_ = IsSpace(unit);
      } else {
        Blank();
      }
    }
  }

  // One blank for any number of them.
  void Blank() {
    if (text_.empty() || joins_) return;
    text_ += u' ';
    joins_ = true;
  }

  // Blocks add a line end only where a line is under way; <br> always does.
  void NewLine(bool always) {
    while (!text_.empty() && text_.back() == u' ') text_.pop_back();
    if (always || (!text_.empty() && text_.back() != u'\n')) text_ += u"\r\n";
    joins_ = true;
  }

  std::u16string Take() { return std::move(text_); }

 private:
  std::u16string text_;
  bool joins_ = false;  // a blank here would stand behind another one or a line end
};

// The tree in the order of its text, without recursion: it may be deeper than the stack.
class TreeWalk {
 public:
  explicit TreeWalk(ShownText& shown) : shown_(shown) {}

  void Walk(const GumboNode* root) {
    for (const GumboNode* node = root; node != nullptr;) {
      const GumboVector* const children = Enter(node);
      if (children != nullptr && children->length > 0) {
        node = static_cast<const GumboNode*>(children->data[0]);
        continue;
      }
      Leave(node);
      while (node != root && Next(node) == nullptr) {
        node = node->parent;
        Leave(node);
      }
      node = node == root ? nullptr : Next(node);
    }
  }

 private:
  static const GumboVector& ChildrenOf(const GumboNode* node) {
    return node->type == GUMBO_NODE_DOCUMENT ? node->v.document.children : node->v.element.children;
  }

  static const GumboNode* Next(const GumboNode* node) {
    const GumboVector& siblings = ChildrenOf(node->parent);
    const std::size_t next = node->index_within_parent + 1;
    return next < siblings.length ? static_cast<const GumboNode*>(siblings.data[next]) : nullptr;
  }

  static bool IsElement(const GumboNode* node) { return node->type == GUMBO_NODE_ELEMENT; }

  // The children to go on with; null for none.
  const GumboVector* Enter(const GumboNode* node) {
    if (node->type == GUMBO_NODE_DOCUMENT) return &node->v.document.children;
    if (node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE ||
        node->type == GUMBO_NODE_CDATA) {
      shown_.Add(Utf8ToWide(node->v.text.text), preformatted_ > 0);
    }
    if (!IsElement(node)) return nullptr;
    const GumboTag tag = node->v.element.tag;
    if (Contains(kHiddenTags, tag)) return nullptr;
    if (tag == GUMBO_TAG_BR || Contains(kLineTags, tag)) shown_.NewLine(tag == GUMBO_TAG_BR);
    if (tag == GUMBO_TAG_PRE) ++preformatted_;
    return &node->v.element.children;
  }

  void Leave(const GumboNode* node) {
    if (!IsElement(node)) return;
    const GumboTag tag = node->v.element.tag;
    if (tag == GUMBO_TAG_TD || tag == GUMBO_TAG_TH) shown_.Blank();
    if (Contains(kLineTags, tag)) shown_.NewLine(false);
    if (tag == GUMBO_TAG_PRE) --preformatted_;
  }

  ShownText& shown_;
  int preformatted_ = 0;  // <pre> around this
};

struct Reading {
  std::string html;  // UTF-8
  unsigned depth = 0;
  ShownText shown;
  bool well = false;
};

// Only the parser can be broken off, and nothing here that has a destructor is alive then.
void Read(void* data) {
  Reading& reading = *static_cast<Reading*>(data);
  GumboOptions options = kGumboDefaultOptions;
  options.max_tree_depth = reading.depth;
  options.max_errors = 0;
  const GumboOutput* const output =
      gumbo_parse_with_options(&options, reading.html.data(), reading.html.size());
  reading.well = output->status == GUMBO_STATUS_OK;
  if (reading.well) TreeWalk(reading.shown).Walk(output->document);
}

// At most `limit` bytes, whole characters; a zero byte would end the parser's texts.
std::string ParserInput(std::u16string_view html, std::size_t limit, bool& cut) {
  std::string utf8 = WideToUtf8(html);
  cut = utf8.size() > limit;
  if (cut) {
    std::size_t length = limit;
    while (length > 0 && (static_cast<unsigned char>(utf8[length]) & 0xC0) == 0x80) --length;
    utf8.resize(length);
  }
  std::replace(utf8.begin(), utf8.end(), '\0', ' ');
  return utf8;
}

}  // namespace

std::u16string TextOfHtml(std::u16string_view html, const HtmlLimits& limits) {
  bool cut = false;
  Reading reading{ParserInput(html, limits.html_bytes, cut), limits.depth, {}, false};
  if (!WithBoundedHtmlMemory(limits.memory_bytes, Read, &reading) || !reading.well) {
    reading.shown = {};
    reading.shown.Add(kUnreadable, false);
  } else if (cut) {
    reading.shown.NewLine(false);
    reading.shown.Add(kCut, false);
  }
  return reading.shown.Take();
}

}  // namespace wrenfold
