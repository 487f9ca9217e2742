#include "common/CHourGlass.h"

#include "common/Errors.h"
#include "common/Session.h"

namespace tsv {

void CHourGlass::Show(bool action) {
  Host& host = *CurrentSession().host;
  if (action) {
    host.ShowBusyPointer();
  } else {
    host.ShowNormalPointer();
  }
  busy_ = action;
}

CHourGlass::~CHourGlass() {
  if (!busy_) return;
  // The operation's own result counts, not what befalls the pointer; but it must not stay busy.
  const std::shared_ptr<Host> host = CurrentSession().host;
  Module1::IgnoringErrors([&] { host->DiscardPendingInput(); });
  Module1::IgnoringErrors([&] { host->ShowNormalPointer(); });
}

}  // namespace tsv
