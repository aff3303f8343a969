// The interpreter's half for lists and tables.
#include <utility>
#include <vector>

#include "host/macro/run.h"

namespace wrenfold::macro {
namespace {

// What is wrong with `index` into `whole`; nullopt when something stands there. Behind the last item stands
// nothing, but something may be put there.
std::optional<std::string> WrongIndex(const Value& whole, const Value& index, bool to_put) {
  if (whole.IsTable()) {
    if (!index.IsText()) return "a name in a table is a text, and this is " + std::string(index.Kind());
    if (to_put || whole.Table().contains(index.Text())) return std::nullopt;
    return "the table has no such name; has(table, name) tells, get(table, name, otherwise) goes on";
  }
  if (!whole.IsList()) {
    std::string text = "[ ] needs a list or a table, and this is " + std::string(whole.Kind());
    if (!whole.WhyNull().empty()) text.append(" (").append(whole.WhyNull()).append(")");
    return text;
  }
  if (!index.IsNumber()) return "a place in a list is a number, and this is " + std::string(index.Kind());
  const auto count = static_cast<std::int64_t>(whole.List().size());
  if (index.Number() >= 0 && index.Number() < count + (to_put ? 1 : 0)) return std::nullopt;
  return "the list has no value " + std::to_string(index.Number()) +
         (count == 0 ? "; it is empty" : "; they are 0 to " + std::to_string(count - 1));
}

const Value& Found(const Value& whole, const Value& index) {
  if (whole.IsTable()) return whole.Table().find(index.Text())->second;
  return whole.List()[static_cast<std::size_t>(index.Number())];
}

// The value at `index`, made when nothing stands there. WrongIndex has nothing against it.
Value& Inside(Value& whole, const Value& index) {
  if (whole.IsTable()) return whole.OwnEntries()[index.Text()];
  Value::Items& items = whole.OwnItems();
  const auto at = static_cast<std::size_t>(index.Number());
  if (at == items.size()) items.emplace_back();
  return items[at];
}

std::size_t BytesInside(const Value& whole, const Value& index) {
  if (whole.IsTable()) {
    const auto found = whole.Table().find(index.Text());
    return found == whole.Table().end() ? 0 : Value::EntryBytes(found->first, found->second);
  }
  const auto at = static_cast<std::size_t>(index.Number());
  return at == whole.List().size() ? 0 : Value::ItemBytes(whole.List()[at]);
}

std::string TooDeep() {
  return "more than " + std::to_string(kMostInside) + " lists and tables inside one another";
}

const Expression& RootOf(const Expression& place) {
  return place.kind == Expression::Kind::kIndex ? RootOf(place.parts[0]) : place;
}

// Puts `value` where the indices lead to; returns what is wrong.
std::optional<std::string> Put(Value& whole, std::span<const Value> indices, Value value) {
  if (indices.empty()) {
    whole = std::move(value);
    return std::nullopt;
  }
  const bool last = indices.size() == 1;
  if (auto wrong = WrongIndex(whole, indices[0], last)) return wrong;
  const std::size_t before = BytesInside(whole, indices[0]);
  Value& inside = Inside(whole, indices[0]);
  const auto wrong = Put(inside, indices.subspan(1), std::move(value));
  whole.Changed(BytesInside(whole, indices[0]) - before, inside.Depth());
  return wrong;
}

}  // namespace

std::optional<Value> Interpreter::Index(const Expression& expression) {
  const std::optional<Value> whole = Evaluate(expression.parts[0]);
  if (!whole) return std::nullopt;
  const std::optional<Value> index = Evaluate(expression.parts[1]);
  if (!index) return std::nullopt;
  if (auto wrong = WrongIndex(*whole, *index, false)) return Complain(expression.parts[1].place, *wrong);
  return Found(*whole, *index);
}

std::optional<Value> Interpreter::List(const Expression& expression) {
  auto items = EvaluateAll(expression.parts);
  return items ? Kept(expression.place, Value(*std::move(items))) : std::nullopt;
}

std::optional<Value> Interpreter::Table(const Expression& expression) {
  Value::Entries entries;
  for (std::size_t i = 0; i < expression.parts.size(); i += 2) {
    std::optional<Value> name = Evaluate(expression.parts[i]);
    if (!name) return std::nullopt;
    if (!name->IsText()) {
      return Complain(expression.parts[i].place,
                      "a name in a table is a text, and this is " + std::string(name->Kind()));
    }
    std::optional<Value> value = Evaluate(expression.parts[i + 1]);
    if (!value) return std::nullopt;
    entries.insert_or_assign(name->Text(), *std::move(value));
  }
  return Kept(expression.place, Value(std::move(entries)));
}

// `value` unless it goes over the bounds.
std::optional<Value> Interpreter::Kept(Place place, Value value) {
  if (value.Bytes() > limits_.text_bytes)
    return Complain(place, TooLarge(value.Kind().substr(2), limits_.text_bytes));
  if (value.Depth() > kMostInside) return Complain(place, TooDeep());
  return value;
}

bool Interpreter::Store(const Expression& place, Value value) {
  const auto indices = Indices(place);
  if (!indices) return false;
  // Nothing is evaluated any more: the variable stays where it is.
  Value* const variable = FindVariable(RootOf(place));
  return variable != nullptr && PutInside(place, *variable, *indices, std::move(value));
}

std::optional<Value> Interpreter::Append(const Expression& expression) {
  const Expression& place = expression.parts[0];
  if (!IsPlace(place))
    return Complain(expression.place, "append needs a variable that holds the list: append(list, value)");
  std::optional<Value> value = Evaluate(expression.parts[1]);
  if (!value) return std::nullopt;
  auto indices = Indices(place);
  if (!indices) return std::nullopt;
  Value* const variable = FindVariable(RootOf(place));
  if (variable == nullptr) return std::nullopt;
  const Value* list = variable;
  for (const Value& index : *indices) {
    if (const auto wrong = WrongIndex(*list, index, false)) return Complain(place.place, *wrong);
    list = &Found(*list, index);
  }
  if (!list->IsList())
    return Complain(place.place, "append needs a list, and this is " + std::string(list->Kind()));
  const auto length = static_cast<std::int64_t>(list->List().size());
  indices->emplace_back(length);
  if (!PutInside(place, *variable, *indices, *std::move(value))) return std::nullopt;
  return Value(length + 1);
}

// What stands in the [ ] behind a variable, from the left.
std::optional<std::vector<Value>> Interpreter::Indices(const Expression& place) {
  if (place.kind != Expression::Kind::kIndex) return std::vector<Value>();
  auto indices = Indices(place.parts[0]);
  if (!indices) return std::nullopt;
  std::optional<Value> index = Evaluate(place.parts[1]);
  if (!index) return std::nullopt;
  indices->push_back(*std::move(index));
  return indices;
}

bool Interpreter::PutInside(const Expression& place, Value& variable, std::span<const Value> indices,
                            Value value) {
  const std::size_t more = Value::EntryBytes(indices.back().IsText() ? indices.back().Text() : "", value);
  std::optional<std::string> wrong;
  if (more > limits_.text_bytes || variable.Bytes() > limits_.text_bytes - more) {
    wrong = TooLarge("list", limits_.text_bytes);
  } else if (static_cast<int>(indices.size()) + value.Depth() > kMostInside) {
    wrong = TooDeep();
  } else {
    wrong = Put(variable, indices, std::move(value));
  }
  if (wrong) Complain(place.place, *wrong);
  return !wrong;
}

}  // namespace wrenfold::macro
