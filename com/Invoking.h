#pragma once

#include "Module.h"

namespace tsv::com {

// Calls a member of an object by its dispatch number, through the description of its interface. The members take their
// arguments by reference, as early-bound clients need it; a script passes what it has. So each argument is converted to
// the declared type, by the library's own rules and not by the machine's locale, a missing optional one is zero or
// empty, and named ones find their places; more arguments than the member takes are refused. No member changes its
// arguments, so none is copied back.
HRESULT InvokeMember(ITypeInfo* description, IDispatch* object, DISPID member, WORD flags, DISPPARAMS* given,
                     VARIANT* result, EXCEPINFO* report, UINT* wrongArgument) noexcept;

}  // namespace tsv::com
