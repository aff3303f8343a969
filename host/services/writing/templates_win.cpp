// Templates and signatures, and which of them the mail being written has.
#include <filesystem>
#include <system_error>

#include "host/base/paths.h"
#include "host/charset/charsets.h"
#include "host/requests/request_server_win.h"
#include "host/services/services_win.h"
#include "host/shared/folder_lookup_win.h"
#include "host/shared/written_mail_win.h"
#include "host/terminal/failure_win.h"
#include "host/terminal/terminal_text.h"

namespace wrenfold {
namespace {

TemplateFolder& Templates(Request& request) { return request.state.commands.templates; }
std::size_t Kind(Request& request, std::size_t slot) {
  return static_cast<std::size_t>(request.Number(slot));
}

std::string NoSuch(std::string_view what, std::string_view name) {
  return "there is no " + std::string(what) + " " + Quoted(SystemCharsets().HostToUtf8(name), 60);
}

// kind, index
Answer Name(Request& request) {
  const std::vector<std::string> names = Templates(request).Names(Kind(request, 0));
  const auto index = static_cast<std::size_t>(request.Number(1));
  return request.AnswerText(index < names.size() ? names[index] : "");
}

// kind, name
Answer Load(Request& request) {
  const std::size_t kind = Kind(request, 0);
  const std::string_view name = request.Text(1);
  if (!Templates(request).Has(kind, name))
    return request.Fail(NoSuch(kind == kSignKind ? "signature" : "template", name));
  return request.AnswerText(Templates(request).Text(kind, name));
}
Answer Sign(Request& request) {
  const std::size_t kind = Kind(request, 0);
  if (!Templates(request).Has(kind, request.Text(1)))
    return request.Fail(NoSuch("template", request.Text(1)));
  return request.AnswerText(Templates(request).Sign(kind, request.Text(1)));
}

// --- The mail being written ---

// What was written into the body stays between the new template and the new signature.
Answer Reframe(Request& request, std::string_view template_name, std::string_view sign_name) {
  Draft& draft = *request.state.writing.draft;
  const Frame old = FrameOf(request.state, draft);
  draft.template_name = template_name;
  draft.sign_name = sign_name;
  ChangeFrame(draft, old, FrameOf(request.state, draft));
  return Request::Done(true);
}

// A template brings its signature along, if it has one; "" takes the template away.
Answer SwitchTemplate(Request& request) {
  const Draft& draft = *request.state.writing.draft;
  const auto kind = static_cast<std::size_t>(draft.purpose);
  const std::string name(request.Text(0));
  const bool known = request.HasText(0) && (name.empty() || Templates(request).Has(kind, name));
  if (!known) return request.Fail(NoSuch("template", name));
  const std::string sign = Templates(request).Sign(kind, name);
  return Reframe(request, name, sign.empty() ? std::string(draft.sign_name) : sign);
}

// "" takes the signature away.
Answer SwitchSign(Request& request) {
  const std::string name(request.Text(0));
  const bool known = request.HasText(0) && (name.empty() || Templates(request).Has(kSignKind, name));
  if (!known) return request.Fail(NoSuch("signature", name));
  return Reframe(request, std::string(request.state.writing.draft->template_name), name);
}

template <std::string Draft::*kName>
Answer CurrentName(Request& request) {
  return request.AnswerText(request.state.HasDraft() ? *request.state.writing.draft.*kName : "");
}

Answer IsSignHtml(Request& request) {
  return Request::Done(!Templates(request).Html(kSignKind, request.state.writing.draft->sign_name).empty());
}

// --- What a folder uses ---

// folder pair, kind
Answer Reference(Request& request) {
  const auto folder = FolderOfPair(request, 0);
  if (!folder) return request.Fail("there is no such folder");
  const auto& references = request.state.commands.template_references;
  const auto found = references.find({*folder, Kind(request, 2)});
  return request.AnswerText(found == references.end() ? "" : found->second);
}

// folder pair, kind, name; "" takes the template away.
Answer SetReference(Request& request) {
  const auto folder = FolderOfPair(request, 0);
  const std::string_view name = request.Text(3);
  if (!folder) return request.Fail("there is no such folder");
  if (!name.empty() && !Templates(request).Has(Kind(request, 2), name))
    return request.Fail(NoSuch("template", name));
  request.state.commands.template_references[{*folder, Kind(request, 2)}] = name;
  return Request::Done(true);
}

// Drafts are files: an mbox takes none. "" is the usual folder again.
Answer SetDraftFolder(Request& request) {
  WritingState& writing = request.state.writing;
  if (request.HasText(0) && request.Text(0).empty()) {
    writing.target.clear();
    return Request::Done(true);
  }
  const auto folder = request.HasText(0) ? FolderOf(request, 0) : std::nullopt;
  if (!folder) return request.Fail(NoSuch("folder", request.Text(0)));
  const std::filesystem::path path = request.state.folders()[*folder].path;
  std::error_code error;
  if (!std::filesystem::is_directory(path, error)) {
    return request.Fail(PathToUtf8(path) + " is a file: it takes no drafts");
  }
  writing.target = path;
  return Request::Done(true);
}

// The small host makes no information items: the user is told where they would lie.
Answer SetInfoFolder(Request& request, std::size_t folder) {
  Tell("information items go to " + request.state.folders()[folder].name + " (simulated: there are none)");
  return Request::Done(true);
}

constexpr Service kServices[] = {
    {113, "II", Name, "name of a template or signature of a kind by its number, \"\" behind the last"},
    {114, "IT", Load, "text of a template or signature"},
    {115, "IT", Sign, "name of the signature that comes with a template"},
    {116, "T", WithDraft<SwitchTemplate>,
     "puts the mail being written into another template, with the template's signature if it has one; what "
     "was written stays"},
    {117, "T", WithDraft<SwitchSign>, "gives the mail being written another signature, none for \"\""},
    {118, "T", SetDraftFolder, "folder in which drafts are saved from then on, \"\" for the usual one"},
    {151, "", CurrentName<&Draft::template_name>, "template of the mail being written"},
    {152, "", CurrentName<&Draft::sign_name>, "signature of the mail being written"},
    {153, "TTI", Reference,
     "template with which new mails, replies (1) or forwards (2) in a folder begin; kept while the program "
     "runs"},
    {154, "TTIT", SetReference, "chooses that template, none for \"\""},
    {200, "TT", WithFolder<SetInfoFolder>, "tells where information items would go; the host makes none"},
    {308, "", WithDraft<IsSignHtml>, "1 when the signature of the mail being written has an HTML form"},
};

}  // namespace

const ServiceFamily kTemplatesServices = {kServices, {}};

}  // namespace wrenfold
