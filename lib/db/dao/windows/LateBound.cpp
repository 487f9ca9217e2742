#include "db/dao/windows/LateBound.h"

#include <algorithm>

#include "types/AutomationValues.h"
#include "types/Erro.h"

namespace tsv::db::dao {
namespace {

constexpr std::int32_t kNoSuchMember = 438;

[[noreturn]] void RaiseResult(HRESULT result) {
  if (result == DISP_E_UNKNOWNNAME || result == DISP_E_MEMBERNOTFOUND) {
    throw Erro(kNoSuchMember, "O objeto não tem esse membro.");
  }
  if (result == DISP_E_TYPEMISMATCH) Raise(RuntimeError::TypeMismatch);
  throw Erro(automation::NumberOf(result), "Falha de automação.");
}

}  // namespace

LateBound LateBound::Create(std::initializer_list<std::wstring_view> progIds) {
  for (const std::wstring_view progId : progIds) {
    CLSID classId;
    if (FAILED(CLSIDFromProgID(std::wstring(progId).c_str(), &classId))) continue;
    ComPointer<IDispatch> object;
    if (SUCCEEDED(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.ReceiveAny()))) {
      return LateBound(std::move(object));
    }
  }
  return {};
}

OleValue LateBound::Invoke(const wchar_t* name, WORD flags, Arguments& arguments) const {
  if (!object_) tsv::Raise(RuntimeError::ObjectNotSet);
  DISPID member = DISPID_UNKNOWN;
  LPOLESTR text = const_cast<LPOLESTR>(name);
  const HRESULT found = object_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &member);
  if (FAILED(found)) RaiseResult(found);

  // Automation passes arguments last to first.
  std::vector<VARIANT> reversed;
  std::transform(arguments.rbegin(), arguments.rend(), std::back_inserter(reversed),
                 [](OleValue& argument) { return argument.Raw(); });
  DISPID put = DISPID_PROPERTYPUT;
  const bool puts = (flags & DISPATCH_PROPERTYPUT) != 0;
  DISPPARAMS parameters = {reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()), puts ? 1u : 0u};
  OleValue result;
  const HRESULT outcome = CallMember(*object_.Get(), member, flags, parameters, puts ? nullptr : &result.Raw());
  if (FAILED(outcome)) RaiseResult(outcome);
  return result;
}

OleValue LateBound::Get(const wchar_t* name, Arguments arguments) const {
  return Invoke(name, DISPATCH_PROPERTYGET, arguments);
}

OleValue LateBound::Call(const wchar_t* name, Arguments arguments) const {
  return Invoke(name, DISPATCH_METHOD, arguments);
}

void LateBound::Put(const wchar_t* name, OleValue value) const {
  Arguments arguments;
  arguments.push_back(std::move(value));
  Invoke(name, DISPATCH_PROPERTYPUT, arguments);
}

LateBound LateBound::ObjectFrom(const wchar_t* name, Arguments arguments) const {
  const OleValue object = Invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments);
  return LateBound(ObjectOf(object.Raw()));
}

}  // namespace tsv::db::dao
