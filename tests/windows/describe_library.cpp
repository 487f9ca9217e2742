// describe_library FILE: prints what a type library says, one line a member: its place in the table of virtual
// functions counted from the first of the interface's own, its dispatch number, kind, name, and its arguments.
#include <cstdio>
#include <string>

#include "Module.h"

namespace {

using tsv::com::ComPointer;
using tsv::db::dao::TextOf;

std::string NameOf(ITypeInfo* description, MEMBERID member) {
  BSTR name = nullptr;
  description->GetDocumentation(member, &name, nullptr, nullptr, nullptr);
  const std::string text = TextOf(name);
  SysFreeString(name);
  return text;
}

std::string TypeName(ITypeInfo* description, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return TypeName(description, *type.lptdesc) + "*";
    case VT_USERDEFINED: {
      ComPointer<ITypeInfo> referred;
      description->GetRefTypeInfo(type.hreftype, referred.Receive());
      return NameOf(referred.Get(), MEMBERID_NIL);
    }
    case VT_I4:
    case VT_INT:
      return "long";
    case VT_UI1:
      return "byte";
    case VT_BOOL:
      return "VARIANT_BOOL";
    case VT_CY:
      return "CURRENCY";
    case VT_DATE:
      return "DATE";
    case VT_BSTR:
      return "BSTR";
    case VT_VARIANT:
      return "VARIANT";
    case VT_DISPATCH:
      return "IDispatch";
    case VT_UNKNOWN:
      return "IUnknown";
    case VT_HRESULT:
      return "HRESULT";
    default:
      return "type " + std::to_string(type.vt);
  }
}

const char* KindOf(INVOKEKIND kind) {
  return kind == INVOKE_PROPERTYGET ? "get" : kind == INVOKE_PROPERTYPUT ? "put" : "method";
}

void PrintFunctions(ITypeInfo* description, int count) {
  constexpr int kInherited = 7;  // of IUnknown and IDispatch
  for (int i = 0; i < count; ++i) {
    FUNCDESC* function = nullptr;
    description->GetFuncDesc(static_cast<UINT>(i), &function);
    std::printf("  %2d id %ld %s %s(", function->oVft / static_cast<int>(sizeof(void*)) - kInherited + 1,
                static_cast<long>(function->memid), KindOf(function->invkind),
                NameOf(description, function->memid).c_str());
    BSTR names[16] = {};  // the member's, then its arguments'
    UINT named = 0;
    description->GetNames(function->memid, names, 16, &named);
    for (int p = 0; p < function->cParams; ++p) {
      const ELEMDESC& parameter = function->lprgelemdescParam[p];
      const USHORT flags = parameter.paramdesc.wParamFlags;
      std::printf("%s%s%s%s", p == 0 ? "" : ", ", (flags & PARAMFLAG_FOPT) != 0 ? "optional " : "",
                  (flags & PARAMFLAG_FRETVAL) != 0 ? "returns " : "", TypeName(description, parameter.tdesc).c_str());
      const bool isNamed = function->invkind == INVOKE_FUNC && static_cast<UINT>(p) + 1 < named;
      if (isNamed) std::printf(" %s", TextOf(names[p + 1]).c_str());
    }
    std::puts(")");
    for (UINT n = 0; n < named; ++n) SysFreeString(names[n]);
    description->ReleaseFuncDesc(function);
  }
}

void PrintValues(ITypeInfo* description, int count) {
  for (int i = 0; i < count; ++i) {
    VARDESC* value = nullptr;
    description->GetVarDesc(static_cast<UINT>(i), &value);
    std::printf("  %s = %ld\n", NameOf(description, value->memid).c_str(), static_cast<long>(value->lpvarValue->lVal));
    description->ReleaseVarDesc(value);
  }
}

void PrintClass(ITypeInfo* description) {
  HREFTYPE reference = 0;
  ComPointer<ITypeInfo> implemented;
  description->GetRefTypeOfImplType(0, &reference);
  description->GetRefTypeInfo(reference, implemented.Receive());
  std::printf("  %s\n", NameOf(implemented.Get(), MEMBERID_NIL).c_str());
}

void Print(ITypeInfo* description) {
  TYPEATTR* attributes = nullptr;
  description->GetTypeAttr(&attributes);
  wchar_t id[40] = {};
  StringFromGUID2(attributes->guid, id, 40);
  const std::string name = NameOf(description, MEMBERID_NIL);
  if (attributes->typekind == TKIND_ENUM) {
    std::printf("enum %s\n", name.c_str());
    PrintValues(description, attributes->cVars);
  } else if (attributes->typekind == TKIND_COCLASS) {
    std::printf("class %s %ls\n", name.c_str(), id);
    PrintClass(description);
  } else if (attributes->typekind == TKIND_DISPATCH) {
    HREFTYPE reference = 0;
    ComPointer<ITypeInfo> table;
    TYPEATTR* own = nullptr;
    description->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference);
    description->GetRefTypeInfo(reference, table.Receive());
    table->GetTypeAttr(&own);
    std::printf("interface %s %ls\n", name.c_str(), id);
    PrintFunctions(table.Get(), own->cFuncs);
    table->ReleaseTypeAttr(own);
  }
  description->ReleaseTypeAttr(attributes);
}

}  // namespace

int main(int argc, char** argv) {
  ComPointer<ITypeLib> library;
  const tsv::db::dao::OleValue path{tsv::Variant(std::string(argc == 2 ? argv[1] : ""))};
  if (FAILED(LoadTypeLibEx(path.Raw().bstrVal, REGKIND_NONE, library.Receive()))) {
    std::puts("no type library");
    return 1;
  }
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ComPointer<ITypeInfo> description;
    library->GetTypeInfo(i, description.Receive());
    Print(description.Get());
  }
  return 0;
}
