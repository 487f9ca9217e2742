#include "db/jet/Scope.h"

#include "db/EngineError.h"
#include "types/Text.h"

namespace tsv::db::jet {
namespace {

bool SameName(std::string_view a, std::string_view b) { return text::CompareFolded(a, b) == 0; }

const SourceColumn* ColumnOf(const Source& source, std::string_view name) {
  const SourceColumn* found = nullptr;
  for (const SourceColumn& column : source.columns) {
    if (!SameName(column.name, name)) continue;
    if (found) Raise(EngineError::AmbiguousField, name);
    found = &column;
  }
  return found;
}

}  // namespace

void Scope::Add(Source source) {
  if (Find(source.alias)) Raise(EngineError::SyntaxInFrom, "nome repetido");
  sources_.push_back(std::move(source));
}

const Source* Scope::Find(std::string_view alias) const {
  for (const Source& source : sources_) {
    if (SameName(source.alias, alias)) return &source;
  }
  return nullptr;
}

Resolved Scope::Resolve(std::string_view qualifier, std::string_view name) const {
  Resolved found;
  for (const Source& source : sources_) {
    if (!qualifier.empty() && !SameName(source.alias, qualifier)) continue;
    const SourceColumn* column = ColumnOf(source, name);
    if (!column) continue;
    if (found.column) Raise(EngineError::AmbiguousField, name);
    found = {&source, column, false};
  }
  if (found.column || !outer_) return found;
  found = outer_->Resolve(qualifier, name);
  found.outer = true;
  return found;
}

}  // namespace tsv::db::jet
