#include "common/CHourGlass.h"

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
  Host& host = *CurrentSession().host;
  try {
    host.DiscardPendingInput();
    host.ShowNormalPointer();
  } catch (...) {
    // The operation's own result counts, not the pointer.
  }
}

}  // namespace tsv
