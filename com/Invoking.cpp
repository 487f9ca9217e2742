#include "Invoking.h"

#include <deque>
#include <optional>
#include <vector>

#include "Failure.h"
#include "types/Conversions.h"

namespace tsv::com {
namespace {

using db::dao::NewBstr;
using db::dao::ObjectOf;
using db::dao::ValueOf;

// One function of the description, given back with it.
class Function {
 public:
  Function(ITypeInfo* description, DISPID member, WORD flags) : description_(description) {
    for (UINT index = 0; SUCCEEDED(description_->GetFuncDesc(index, &function_)); ++index) {
      if (function_->memid == member && (function_->invkind & flags) != 0) return;
      description_->ReleaseFuncDesc(function_);
      function_ = nullptr;
    }
    function_ = nullptr;
  }
  ~Function() {
    if (function_) description_->ReleaseFuncDesc(function_);
  }
  Function(const Function&) = delete;
  Function& operator=(const Function&) = delete;

  explicit operator bool() const noexcept { return function_ != nullptr; }
  const FUNCDESC* operator->() const noexcept { return function_; }
  std::size_t Count() const noexcept { return static_cast<std::size_t>(function_->cParams); }
  const ELEMDESC& Parameter(std::size_t index) const noexcept { return function_->lprgelemdescParam[index]; }
  bool Is(std::size_t index, USHORT flag) const noexcept {
    return (Parameter(index).paramdesc.wParamFlags & flag) != 0;
  }

 private:
  ITypeInfo* description_;
  FUNCDESC* function_ = nullptr;
};

// What a parameter points to.
struct Target {
  VARTYPE type = VT_EMPTY;
  IID interfaceId = {};  // of an object; none for any
};

Target TargetOf(ITypeInfo* description, const ELEMDESC& parameter) {
  const TYPEDESC* type = &parameter.tdesc;
  if (type->vt == VT_PTR) type = type->lptdesc;
  const bool isObject = type->vt == VT_PTR;
  if (isObject) type = type->lptdesc;
  if (type->vt != VT_USERDEFINED) return {type->vt, IID{}};
  if (!isObject) return {VT_I4, IID{}};  // an enumeration
  Target target = {VT_UNKNOWN, IID_IUnknown};
  ComPointer<ITypeInfo> referred;
  TYPEATTR* attributes = nullptr;
  if (SUCCEEDED(description->GetRefTypeInfo(type->hreftype, referred.Receive())) &&
      SUCCEEDED(referred->GetTypeAttr(&attributes))) {
    target.interfaceId = attributes->guid;
    referred->ReleaseTypeAttr(attributes);
  }
  return target;
}

bool IsNothing(const VARIANT& argument) {
  OleValue plain;
  if (FAILED(VariantCopyInd(&plain.Raw(), const_cast<VARIANT*>(&argument)))) return false;
  return (plain.Raw().vt == VT_DISPATCH || plain.Raw().vt == VT_UNKNOWN) && !plain.Raw().punkVal;
}

// The argument as the declared type; none is zero or empty. Whether there must be an object is the member's to say.
OleValue Converted(const Target& target, const VARIANT* argument) {
  OleValue converted;
  VARIANT& out = converted.Raw();
  if (target.type == VT_VARIANT) {
    if (argument && FAILED(VariantCopyInd(&out, const_cast<VARIANT*>(argument)))) Raise(RuntimeError::TypeMismatch);
    return converted;
  }
  if (target.type == VT_UNKNOWN || target.type == VT_DISPATCH) {
    out.vt = target.type;
    if (!argument || IsNothing(*argument)) return converted;
    const ComPointer<IDispatch> object = ObjectOf(*argument);
    const IID& wanted = target.type == VT_DISPATCH ? IID_IDispatch : target.interfaceId;
    void* reference = nullptr;
    if (FAILED(object->QueryInterface(wanted, &reference))) Raise(RuntimeError::TypeMismatch);
    out.punkVal = static_cast<IUnknown*>(reference);
    return converted;
  }
  const Variant value = argument ? ValueOf(*argument) : Variant(Empty());
  switch (target.type) {
    case VT_BSTR:
      return OleValue{Variant(ToText(value))};
    case VT_I4:
    case VT_INT:
      return OleValue{Variant(ToLong(value))};
    case VT_UI1:
      return OleValue{Variant(ToByte(value))};
    case VT_BOOL:
      return OleValue{Variant(ToBoolean(value))};
    case VT_CY:
      return OleValue{Variant(ToCurrency(value))};
    case VT_DATE:
      return OleValue{Variant(ToDate(value))};
    default:
      Raise(RuntimeError::TypeMismatch);
  }
}

bool IsMissing(const VARIANT& argument) { return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND; }

// Which argument, counted as the caller stored them, each parameter takes.
using Places = std::vector<std::optional<UINT>>;

HRESULT FindPlaces(const Function& function, const DISPPARAMS& given, Places& places, UINT& wrong) {
  places.resize(function.Count());
  std::size_t takes = function.Count();
  while (takes > 0 && function.Is(takes - 1, PARAMFLAG_FRETVAL)) --takes;
  if (given.cArgs > takes) return DISP_E_BADPARAMCOUNT;
  for (UINT i = given.cNamedArgs; i < given.cArgs; ++i) places[given.cArgs - 1 - i] = i;
  for (wrong = 0; wrong < given.cNamedArgs; ++wrong) {
    const DISPID name = given.rgdispidNamedArgs[wrong];
    const bool isNewValue = name == DISPID_PROPERTYPUT && function->invkind != INVOKE_FUNC;
    const std::size_t position = isNewValue ? takes - 1 : static_cast<std::size_t>(name);
    if (position >= takes || places[position]) return DISP_E_PARAMNOTFOUND;
    places[position] = wrong;
  }
  return S_OK;
}

HRESULT Call(ITypeInfo* description, IDispatch* object, const Function& function, const DISPPARAMS& given,
             OleValue& returned, bool& ran, UINT& wrong) {
  Places places;
  const HRESULT found = FindPlaces(function, given, places, wrong);
  if (FAILED(found)) return found;
  VARTYPE returnedType = VT_VARIANT;
  std::deque<OleValue> values;  // their addresses stay
  std::vector<VARIANT> pointers;
  for (std::size_t i = 0; i < function.Count(); ++i) {
    const Target target = TargetOf(description, function.Parameter(i));
    OleValue* value = &returned;
    if (function.Is(i, PARAMFLAG_FRETVAL)) {
      returnedType = target.type;
    } else {
      const VARIANT* argument = places[i] ? &given.rgvarg[*places[i]] : nullptr;
      if (argument && IsMissing(*argument)) argument = nullptr;
      wrong = places[i].value_or(0);
      if (!argument && !function.Is(i, PARAMFLAG_FOPT)) return DISP_E_PARAMNOTOPTIONAL;
      value = &values.emplace_back(Converted(target, argument));
    }
    VARIANT pointer = {};
    pointer.vt = sizeof(void*) == sizeof(LONGLONG) ? VT_I8 : VT_I4;
    // All but a whole automation value begin at the same place of the union.
    pointer.byref = target.type == VT_VARIANT ? static_cast<void*>(&value->Raw()) : &value->Raw().byref;
    pointers.push_back(pointer);
  }

  std::vector<VARTYPE> types;
  std::vector<VARIANT*> arguments;
  for (VARIANT& pointer : pointers) {
    types.push_back(pointer.vt);
    arguments.push_back(&pointer);
  }
  VARIANT outcome = {};
  SetErrorInfo(0, nullptr);
  ran = true;
  const HRESULT called = DispCallFunc(object, static_cast<ULONG_PTR>(function->oVft), function->callconv, VT_ERROR,
                                      static_cast<UINT>(arguments.size()), types.data(), arguments.data(), &outcome);
  if (FAILED(called) || FAILED(outcome.scode)) return FAILED(called) ? called : outcome.scode;
  if (returnedType != VT_VARIANT) returned.Raw().vt = returnedType;
  return S_OK;
}

// What the member returned; objects as dispatch objects.
void Give(OleValue returned, VARIANT* result) {
  VARIANT& raw = returned.Raw();
  if (raw.vt == VT_UNKNOWN && raw.punkVal) {
    IDispatch* object = nullptr;
    if (SUCCEEDED(raw.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&object)))) {
      raw.punkVal->Release();
      raw.pdispVal = object;
      raw.vt = VT_DISPATCH;
    }
  } else if (raw.vt == VT_UNKNOWN) {
    raw.vt = VT_DISPATCH;  // no object: Nothing
  }
  *result = returned.Detach();
}

}  // namespace

HRESULT InvokeMember(ITypeInfo* description, IDispatch* object, DISPID member, WORD flags, DISPPARAMS* given,
                     VARIANT* result, EXCEPINFO* report, UINT* wrongArgument) noexcept {
  if (!description || !given) return E_FAIL;
  if (result) VariantInit(result);
  UINT wrong = 0;
  bool ran = false;
  HRESULT outcome = S_OK;
  const HRESULT converted = Guarded(IID_NULL, [&] {
    const Function function(description, member, flags);
    if (!function) {
      outcome = DISP_E_MEMBERNOTFOUND;
      return;
    }
    OleValue returned;
    outcome = Call(description, object, function, *given, returned, ran, wrong);
    if (SUCCEEDED(outcome) && result) Give(std::move(returned), result);
  });
  if (SUCCEEDED(outcome) && SUCCEEDED(converted)) return S_OK;
  if (wrongArgument) *wrongArgument = wrong;
  if (SUCCEEDED(converted) && !ran) return outcome;
  return TakeFailure(FAILED(converted) ? converted : outcome, report);
}

}  // namespace tsv::com
