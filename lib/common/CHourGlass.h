#pragma once

namespace tsv {

// Shows the busy pointer while an operation runs. On release it throws away what the user typed or clicked meanwhile,
// so that it does not reach the client's windows, and shows the normal pointer.
class CHourGlass {
 public:
  CHourGlass() { Show(true); }
  ~CHourGlass();
  CHourGlass(const CHourGlass&) = delete;
  CHourGlass& operator=(const CHourGlass&) = delete;

  void Show(bool action = true);  // after Show(false) the release does nothing

 private:
  bool busy_ = false;
};

}  // namespace tsv
