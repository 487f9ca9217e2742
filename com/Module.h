#pragma once

#include "TesoviaLib2.h"
#include "db/dao/windows/Ole.h"

// The server as one module: what keeps it loaded, and its own description.
namespace tsv::com {

using db::dao::ComPointer;
using db::dao::OleValue;

HMODULE ModuleHandle() noexcept;

// Counts the objects and locks that clients hold. The first one keeps the module in the process for good: each
// thread's session lives in it, and would be lost with the open ledger if the platform unloaded it in between.
void AddLock() noexcept;
void ReleaseLock() noexcept;
bool HasLocks() noexcept;

// The description that the module carries as a resource; null when it cannot be read.
ComPointer<ITypeLib> TypeLibrary();

// The members of one of its interfaces as they stand in the table of virtual functions.
ComPointer<ITypeInfo> InterfaceDescription(REFIID id);

}  // namespace tsv::com
