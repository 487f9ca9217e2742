#include "common/Recordsets.h"

#include "common/Errors.h"

namespace tsv::Module1 {

void FecharRecordset(std::shared_ptr<db::Recordset>& recordset) noexcept {
  if (recordset) IgnoringErrors([&] { recordset->Close(); });
  recordset.reset();
}

void FecharBanco(std::shared_ptr<db::Database>& banco) noexcept {
  if (banco) IgnoringErrors([&] { banco->Close(); });
  banco.reset();
}

void CompletarContagem(db::Recordset& recordset) noexcept {
  IgnoringErrors([&] { recordset.MoveLast(); });
  IgnoringErrors([&] { recordset.MoveFirst(); });
}

}  // namespace tsv::Module1
