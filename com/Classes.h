#pragma once

#include <span>

#include "Module.h"

namespace tsv::com {

// One class that clients can create.
struct Class {
  const CLSID& id;
  const wchar_t* progId;
  const wchar_t* description;
  IUnknown* (*create)();  // the reference is the caller's
};

std::span<const Class> Classes();

}  // namespace tsv::com
