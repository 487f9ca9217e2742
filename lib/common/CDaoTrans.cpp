#include "common/CDaoTrans.h"

#include "common/Errors.h"
#include "common/Session.h"

namespace tsv {

namespace {

db::Workspace& ThreadWorkspace() { return CurrentSession().Engine.Workspaces(0); }

}  // namespace

void CDaoTrans::BegTrans() {
  Module1::UnderHandler("em CDaoTrans_BegTrans", [&] {
    ThreadWorkspace().BeginTrans();
    ++open_;
  });
}

void CDaoTrans::ComTrans() {
  Module1::UnderHandler("em CDaoTrans_ComTrans", [&] {
    ThreadWorkspace().CommitTrans();
    --open_;
  });
}

void CDaoTrans::RollBack() noexcept {
  if (open_ <= 0) return;
  try {
    ThreadWorkspace().Rollback();
  } catch (...) {
    // A failed rollback must not hide the error that led to it; the engine undoes the transaction when it closes.
  }
  --open_;
}

CDaoTrans::~CDaoTrans() {
  while (open_ > 0) RollBack();
}

}  // namespace tsv
