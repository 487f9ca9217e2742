#pragma once

#include "Classes.h"

namespace tsv::com {

// Makes the objects of one class. The reference is the caller's.
IClassFactory* NewClassFactory(const Class& of);

}  // namespace tsv::com
