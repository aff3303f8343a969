// Templates and signatures, and which of them the mail being written has.
#include "host/requests/request_server_win.h"
#include "host/services/draft_win.h"
#include "host/services/folder_lookup_win.h"
#include "host/services/services_win.h"

namespace wrenfold {
namespace {

TemplateFolder& Templates(Request& request) { return request.state.commands.templates; }
std::size_t Kind(Request& request, std::size_t slot) {
  return static_cast<std::size_t>(request.Number(slot));
}

// kind, index
Answer Name(Request& request) {
  const std::vector<std::string> names = Templates(request).Names(Kind(request, 0));
  const auto index = static_cast<std::size_t>(request.Number(1));
  return request.AnswerText(index < names.size() ? names[index] : "");
}

// kind, name
Answer Load(Request& request) {
  return request.AnswerText(Templates(request).Text(Kind(request, 0), request.Text(1)));
}
Answer Sign(Request& request) {
  return request.AnswerText(Templates(request).Sign(Kind(request, 0), request.Text(1)));
}

// --- The mail being written ---

// A template brings its signature along, if it has one.
Answer SwitchTemplate(Request& request) {
  if (!request.state.HasDraft()) return {};
  const auto kind = static_cast<std::size_t>(request.state.draft_purpose());
  if (!Templates(request).Has(kind, request.Text(0))) return {};
  DraftParts& parts = request.state.commands.draft;
  parts.template_name = request.Text(0);
  const std::string sign = Templates(request).Sign(kind, parts.template_name);
  if (!sign.empty()) parts.sign_name = sign;
  ComposeDraft(request);
  return Request::Done(true);
}

// "" takes the signature away.
Answer SwitchSign(Request& request) {
  const std::string_view name = request.Text(0);
  const bool known = name.empty() || Templates(request).Has(kSignKind, name);
  if (!request.state.HasDraft() || !known) return {};
  request.state.commands.draft.sign_name = name;
  ComposeDraft(request);
  return Request::Done(true);
}

template <std::string DraftParts::*kName>
Answer CurrentName(Request& request) {
  return request.AnswerText(request.state.HasDraft() ? request.state.commands.draft.*kName : "");
}

// --- What a folder uses ---

// folder pair, kind
Answer Reference(Request& request) {
  const auto folder = FolderOfPair(request, 0);
  if (!folder) return {};
  const auto& references = request.state.commands.template_references;
  const auto found = references.find({*folder, Kind(request, 2)});
  return request.AnswerText(found == references.end() ? "" : found->second);
}

// folder pair, kind, name; "" takes the template away.
Answer SetReference(Request& request) {
  const auto folder = FolderOfPair(request, 0);
  const std::string_view name = request.Text(3);
  if (!folder || (!name.empty() && !Templates(request).Has(Kind(request, 2), name))) return {};
  request.state.commands.template_references[{*folder, Kind(request, 2)}] = name;
  return Request::Done(true);
}

// Drafts and information stay in memory: the folder only has to exist.
Answer IsFolder(Request& request) { return Request::Done(FolderOf(request, 0).has_value()); }
Answer IsFolderPair(Request& request) { return Request::Done(FolderOfPair(request, 0).has_value()); }

constexpr Service kServices[] = {
    {113, "II", Name, "name of a template of a kind by its number, \"\" behind the last"},
    {114, "IT", Load, "text of a template, \"\" when there is none"},
    {115, "IT", Sign, "name of the signature that comes with a template"},
    {116, "T", SwitchTemplate, "1 when the mail being written has the template now"},
    {117, "T", SwitchSign, "1 when the mail being written has the signature now; \"\" takes it away"},
    {118, "T", IsFolder, "1 when there is such a folder; nothing is kept in it"},
    {151, "", CurrentName<&DraftParts::template_name>,
     "template of the mail being written, \"\" without one"},
    {152, "", CurrentName<&DraftParts::sign_name>, "signature of the mail being written, \"\" without one"},
    {153, "TTI", Reference, "template with which new mails, replies (1) or forwards (2) in a folder begin"},
    {154, "TTIT", SetReference,
     "sets the template of a folder and kind, kept while the program runs; \"\" takes it away"},
    {200, "TT", IsFolderPair, "1 when there is such a folder; nothing is kept in it"},
};

}  // namespace

const ServiceFamily kTemplatesServices = {kServices, {}};

}  // namespace wrenfold
