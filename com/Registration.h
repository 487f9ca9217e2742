#pragma once

#include "Module.h"

namespace tsv::com {

// Writes the module's classes and its description into the registry: for the whole machine where the user may, for
// himself otherwise.
HRESULT Register() noexcept;

// Takes them out again, from both places.
HRESULT Unregister() noexcept;

}  // namespace tsv::com
