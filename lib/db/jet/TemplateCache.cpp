#include "db/jet/TemplateCache.h"

#include "db/DataTypes.h"

namespace tsv::db::jet {

void CompileInto(Template& fresh, const Lexed& lexed, const Catalog& catalog, const Dialect& dialect) {
  fresh.shape = lexed.shape;
  fresh.compiled = Compile(lexed, catalog, dialect);
  auto fields = std::make_shared<std::vector<FieldDescription>>();
  fields->reserve(fresh.compiled.columns.size());
  for (const ResultColumn& column : fresh.compiled.columns) fields->push_back({column.name, DataTypeOf(column.type)});
  fresh.fields = std::move(fields);
}

bool Fits(const Compiled& compiled, const std::vector<Variant>& literals) {
  return std::all_of(compiled.fixed.begin(), compiled.fixed.end(),
                     [&](const auto& fixed) { return literals[fixed.first] == fixed.second; });
}

}  // namespace tsv::db::jet
