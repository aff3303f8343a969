#include "host/writing/draft.h"

#include <algorithm>

#include "host/base/ascii.h"
#include "host/mail/headers.h"
#include "host/mime/html_text.h"
#include "host/mime/html_write.h"
#include "host/writing/draft_text.h"
#include "host/writing/quoting.h"

namespace wrenfold {
namespace {

std::string Html(std::string_view host) {
  return SystemCharsets().ToHostText(HtmlOfText(SystemCharsets().FromHostText(host)));
}

void PutBody(Draft& draft, std::string_view body) {
  const MailText parts = SplitMail(draft.text);
  std::string text(parts.headers);
  // A last header may lack its line end.
  if (!text.empty() && !text.ends_with('\n')) text += "\r\n";
  draft.text = text.append("\r\n").append(body);
}

// What stands around the quoted text: a frame is laid around a mark that no text holds.
struct Around {
  std::string before;
  std::string behind;
};

Around AroundOf(const Frame& frame) {
  constexpr std::string_view kMark("\0\r\n", 3);
  const std::string framed = ComposeBody(frame.form, kMark, frame.sign);
  const std::size_t at = framed.find(kMark);
  return {framed.substr(0, at), framed.substr(at + kMark.size())};
}

// The body without the frame around it; all of it when the frame is not there.
std::string_view Unframed(std::string_view body, const Frame& frame) {
  const Around around = AroundOf(frame);
  const bool framed = body.size() >= around.before.size() + around.behind.size() &&
                      body.starts_with(around.before) && body.ends_with(around.behind);
  if (framed) {
    body.remove_prefix(around.before.size());
    body.remove_suffix(around.behind.size());
  } else if (!frame.sign.empty() && body.ends_with(frame.sign)) {
    body.remove_suffix(frame.sign.size());
  }
  return body;
}

// Where the end of the line with the cursor begins, and what it is; nullopt without such a line. At the end
// of the body it may be missing.
struct CursorLine {
  std::size_t end_at;
  std::string_view end;
};

std::optional<CursorLine> LineOfCursor(const Draft& draft) {
  std::string_view rest = BodyOf(draft);
  for (std::size_t line = 0; !rest.empty(); ++line) {
    const HostLine taken = TakeLine(rest);
    if (line < draft.cursor_line) continue;
    const std::size_t at =
        static_cast<std::size_t>(taken.text.data() - draft.text.data()) + taken.text.size();
    return CursorLine{at, taken.end};
  }
  return std::nullopt;
}

}  // namespace

bool IsEmpty(const Draft& draft) {
  const auto has = [&draft](std::string_view name) {
    return !HeaderValue(draft.text, name).value_or("").empty();
  };
  return !has("To") && !has("Cc") && !has("Bcc") && !has("Subject") && Trim(BodyOf(draft)).empty() &&
         draft.attachments.empty();
}

std::string_view BodyOf(const Draft& draft) { return SplitMail(draft.text).body; }

void SetBody(Draft& draft, std::string_view body) {
  PutBody(draft, FoldAndQuote(body, "", kUnfoldedWidth));
  if (!draft.html.empty()) draft.html = Html(BodyOf(draft));
}

void ChangeFrame(Draft& draft, const Frame& old, const Frame& frame) {
  draft.quoted = Unframed(BodyOf(draft), old);
  PutBody(draft, ComposeBody(frame.form, draft.quoted, frame.sign));
  if (draft.html.empty()) return;
  if (frame.sign_html.empty()) {
    draft.html = Html(BodyOf(draft));
  } else {
    draft.html = Html(ComposeBody(frame.form, draft.quoted, "")) + frame.sign_html;
  }
}

void SetHtmlEditing(Draft& draft, bool on, const Frame& frame) {
  if (on && !draft.html.empty()) return;
  std::string_view body = BodyOf(draft);
  if (!on) {
    draft.html.clear();
  } else if (!frame.sign.empty() && !frame.sign_html.empty() && body.ends_with(frame.sign)) {
    body.remove_suffix(frame.sign.size());
    draft.html = Html(body) + frame.sign_html;
  } else {
    // Even an empty text is HTML then.
    draft.html = Html(body) + (body.empty() ? "<br>" : "");
  }
}

void SetHtml(Draft& draft, std::string_view html) {
  const Charsets& charsets = SystemCharsets();
  PutBody(draft, charsets.ToHostText(TextOfHtml(charsets.FromHostText(html))));
  draft.html = html;
}

std::size_t CountLines(const Draft& draft) {
  std::size_t count = 0;
  for (std::string_view rest = BodyOf(draft); !rest.empty(); ++count) TakeLine(rest);
  return count;
}

bool IsCursorLineUnfolded(const Draft& draft) {
  const auto line = LineOfCursor(draft);
  return line && line->end == "\r\r\n";
}

bool SwitchCursorLine(Draft& draft) {
  const auto line = LineOfCursor(draft);
  if (!line) return false;
  draft.text.replace(line->end_at, line->end.size(), line->end == "\r\r\n" ? "\r\n" : "\r\r\n");
  return true;
}

}  // namespace wrenfold
